# SPDX-License-Identifier: MIT
"""Loop disks for system tests: made for one test, proved to be ours, taken down again."""

import hashlib
import os
import select
import subprocess
import tempfile
import time

SERVICE = "org.freedesktop.UDisks2"
LIMIT = 20  # seconds; what a machine under load still needs


def run(*command, **options):
    """Runs a command that must succeed, and returns what it has printed."""
    result = subprocess.run(command, capture_output=True, text=True, **options)
    assert result.returncode == 0, f"{command}: {result.stderr}"
    return result.stdout


def settle_udev():
    """Waits until udev has looked at every device. Under load, udev sometimes closes the connection instead of answering."""
    deadline = time.monotonic() + LIMIT
    while True:
        result = subprocess.run(["udevadm", "settle", f"--timeout={LIMIT}"], capture_output=True, text=True)
        if result.returncode == 0:
            return
        assert time.monotonic() < deadline, f"udev still has events to handle: {result.stderr}"


class DiskService:
    """Waits for what the disk service knows, by listening to its signals."""

    def __init__(self):
        self.monitor = subprocess.Popen(
            ["gdbus", "monitor", "--system", "--dest", SERVICE], stdout=subprocess.PIPE
        )
        os.set_blocking(self.monitor.stdout.fileno(), False)
        # The first line says that the subscription stands.
        select.select([self.monitor.stdout], [], [], LIMIT)

    def close(self):
        self.monitor.kill()
        self.monitor.wait()
        self.monitor.stdout.close()

    def property(self, node, interface, name):
        """A property of a block device as busctl prints it; empty when there is none."""
        path = "/org/freedesktop/UDisks2/block_devices/" + os.path.basename(node)
        result = subprocess.run(
            ["busctl", "get-property", SERVICE, path, f"{SERVICE}.{interface}", name],
            capture_output=True,
            text=True,
        )
        return result.stdout.strip() if result.returncode == 0 else ""

    def wait(self, what, condition):
        """Looks at the condition again with each signal, until it holds."""
        deadline = time.monotonic() + LIMIT
        while not condition():
            left = deadline - time.monotonic()
            if left <= 0:
                raise AssertionError(f"never came true: {what}")
            select.select([self.monitor.stdout], [], [], left)
            self.monitor.stdout.read()

    def is_mounted(self, node):
        answer = self.property(node, "Filesystem", "MountPoints")
        return answer not in ("", "aay 0")


class LoopDisk:
    """A disk in an image file, with one or more partitions of the given sizes in MiB."""

    def __init__(self, service, partition_sizes, read_only=False, with_partitions=True):
        self.service = service
        self.folder = tempfile.TemporaryDirectory(prefix="zorvex-disk.")
        self.image = os.path.join(self.folder.name, "disk.img")
        with open(self.image, "wb") as image:
            image.truncate((sum(partition_sizes) + 4) << 20)
        table = "label: gpt\n" + "".join(f",{size}M\n" for size in partition_sizes)
        run("sfdisk", "--quiet", self.image, input=table)
        # Without --partscan: with it, each writer's close would have udev read the table again, and where the
        # kernel has no partition parser all partitions would go.
        options = ["--read-only"] if read_only else []
        self.node = run("losetup", "--find", "--show", *options, self.image).strip()
        self.partitions = [f"{self.node}p{i + 1}" for i in range(len(partition_sizes))]
        try:
            # A former user of the loop device may have left partitions behind, which would not be announced again.
            self.delete_partitions()
            if with_partitions:
                self.add_partitions()
        except BaseException:
            self.close()
            raise

    def add_partitions(self):
        """Has the kernel make them, and waits for the disk service."""
        self.check_ours()
        run("partx", "--add", self.node)
        for node in self.partitions:
            self.service.wait(f"{node} is known", lambda: self.service.property(node, "Block", "Size"))

    def delete_partitions(self):
        """Those that the kernel has, whatever the table says. Opening one keeps it from being removed."""
        self.check_ours()
        name = os.path.basename(self.node)
        deadline = time.monotonic() + LIMIT
        for entry in os.listdir(f"/sys/block/{name}"):
            while entry.startswith(f"{name}p"):
                settle_udev()
                result = subprocess.run(["partx", "--delete", "--nr", entry.rpartition("p")[2], self.node],
                                        capture_output=True, text=True)
                if result.returncode == 0:
                    break
                assert time.monotonic() < deadline, f"{entry} stays: {result.stderr}"

    def check_ours(self):
        """A device is written to only after this."""
        backing = run("losetup", "--noheadings", "--output", "BACK-FILE", self.node).strip()
        assert backing == self.image, f"{self.node} is not ours: {backing}"

    def close(self):
        self.check_ours()
        for node in [self.node, *self.partitions]:
            if self.service.is_mounted(node):
                subprocess.run(["udisksctl", "unmount", "--block-device", node], capture_output=True)
        self.delete_partitions()
        run("losetup", "--detach", self.node)
        self.folder.cleanup()

    def bsd_name(self, node):
        with open(f"/sys/class/block/{os.path.basename(self.node)}/diskseq") as file:
            sequence = file.read().strip()
        return f"disk{sequence}" + (f"s{node.rsplit('p', 1)[1]}" if node != self.node else "")

    def digest(self):
        """A hash of all that is on the disk, holes left out."""
        run("blockdev", "--flushbufs", self.node)
        digest = hashlib.sha256()
        with open(self.image, "rb") as image:
            end = 0
            while True:
                try:
                    start = os.lseek(image.fileno(), end, os.SEEK_DATA)
                except OSError:
                    return digest.hexdigest()
                end = os.lseek(image.fileno(), start, os.SEEK_HOLE)
                image.seek(start)
                data = image.read(end - start)
                # A block of zeros may be a hole or not; it is the same content.
                for i in range(0, len(data), 4096):
                    if data[i : i + 4096].strip(b"\0"):
                        digest.update(b"%d:" % (start + i) + data[i : i + 4096])

    def read(self, node, offset, length):
        with open(node, "rb") as device:
            device.seek(offset)
            return device.read(length)

    def write(self, node, offset, data):
        self.check_ours()
        with open(node, "r+b", buffering=0) as device:
            device.seek(offset)
            device.write(data)
            os.fsync(device.fileno())


def probe(node, tag):
    """What blkid reads from the device itself."""
    return subprocess.run(
        ["blkid", "--probe", "--output", "value", "--match-tag", tag, node], capture_output=True, text=True
    ).stdout.rstrip("\n")
