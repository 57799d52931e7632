# SPDX-License-Identifier: MIT
"""What someone who means harm could try with diskutil as root: names, device paths, what the caller leaves behind,
bundles and devices that change between the look and the run. A second disk stands by, and stays as it is."""

import errno
import fcntl
import os
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DISKUTIL, DiskutilCase, diskutil  # noqa: E402
from loop_disk import LIMIT, probe, run  # noqa: E402

BUNDLE = "/Library/Filesystems/witness.fs"
RESOURCES = f"{BUNDLE}/Contents/Resources"

LOOP_CHANGE_FD = 0x4C06  # linux/loop.h

# Tells what it was started with. The shell reads its own signals, before it starts any program: to start one it holds all
# of them back, for a moment longer than that takes, and none afterwards.
WITNESS = """while read -r name signals; do case $name in Sig[IB]*) echo "$name $signals" ;; esac; done </proc/$$/status
echo "arguments:$*"
env | sort | sed 's/^/env:/'
for fd in 0 1 2 3 4 5 6 7 8 9 11 12 13 14 15 16 17 18 19; do [ ! -e "/proc/$$/fd/$fd" ] || echo "fd:$fd"; done
for fd in /proc/$$/fd/*; do [ "${fd##*/}" -lt 20 ] || echo "held:$(readlink "$fd")"; done
[ /proc/$$/fd/0 -ef /dev/null ] && echo "input:empty"
echo "mask:$(umask)"
echo "folder:$PWD"
"""

VERBS = [["verifyVolume"], ["repairVolume"], ["eraseVolume", "ext4", "Name"]]


class Attacks(DiskutilCase):
    def setUp(self):
        super().setUp()
        self.bystander = self.make_disk(20)
        self.erase(self.bystander, self.bystander.partitions[0], "ext4", "Bystander")
        self.bystander_digest = self.bystander.digest()
        self.addCleanup(self.assert_bystander_is_untouched)
        self.disk = self.make_disk(20)
        self.node = self.disk.partitions[0]
        self.folder = tempfile.mkdtemp(prefix="zorvex-attack.")
        self.addCleanup(shutil.rmtree, self.folder)

    def assert_bystander_is_untouched(self):
        self.assertEqual(self.bystander.digest(), self.bystander_digest, "another disk was written to")

    def make_volume(self, file_system="ext4", name="Volume"):
        self.erase(self.disk, self.node, file_system, name)

    def install_witness(self, script=WITNESS, **personality):
        self.install_bundle("witness", script, "ext4", **personality)

    def assert_refused(self, status, words, *arguments):
        before = self.disk.digest()
        result = diskutil(*arguments)
        self.assert_exit(result, status)
        self.assertIn(words, result.stderr)
        self.assertEqual(self.disk.digest(), before, "a refused operation wrote to the disk")

    def mount_over(self, file, other):
        """Has the file stand in the place of another, for whoever is in the test's mount namespace."""
        run("mount", "--bind", file, other)
        self.addCleanup(run, "umount", other)

    def put_over(self, program, script):
        """Has a script stand in the place of a program."""
        with open(f"{self.folder}/stand-in", "w") as file:
            file.write(script)
        os.chmod(f"{self.folder}/stand-in", 0o755)
        self.mount_over(f"{self.folder}/stand-in", program)

    def mount_out_of_sight(self, options):
        """Mounts the volume where neither diskutil nor the disk service sees it, until its input ends."""
        holder = subprocess.Popen(
            ["unshare", "--mount", "--propagation", "private", "sh", "-c",
             f"mount -o {options} '{self.node}' '{self.folder}' && echo held && exec cat"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.stdin.close)
        self.addCleanup(holder.stdout.close)
        self.assertEqual(holder.stdout.readline(), b"held\n")
        return holder

    # The device

    def test_a_mount_that_nobody_else_sees(self):
        self.make_volume()
        self.mount_out_of_sight("ro,noload")
        self.assert_refused(case.IN_USE, "is in use", "eraseVolume", "ext4", "Name", self.node)

    def test_a_refusal_at_the_last_moment_gives_the_volume_back(self):
        self.make_volume()
        holder = self.mount_out_of_sight("rw")
        self.mount(self.node)
        self.assert_exit(diskutil("eraseVolume", "ext4", "Name", self.node), case.IN_USE)
        self.service.wait("mounted again", lambda: self.service.is_mounted(self.node))
        holder.stdin.close()
        holder.wait()
        self.unmount(self.node)
        self.assertEqual(probe(self.node, "LABEL"), "Volume")

    def test_a_device_that_another_program_works_on(self):
        self.make_volume()
        claim = os.open(self.node, os.O_RDONLY | os.O_EXCL)
        self.addCleanup(os.close, claim)
        self.assert_refused(case.IN_USE, "is in use", "eraseVolume", "ext4", "Name", self.node)

    def test_a_device_that_a_tool_works_on_without_a_claim(self):
        """fsck.fat opens the device as any reader may, and writes at its end what it read at its beginning."""
        self.make_volume("MS-DOS FAT16", "VOLUME")
        fifo = f"{self.folder}/fifo"
        os.mkfifo(fifo)
        self.put_over(shutil.which("fsck.fat"), "#!/bin/sh\n"
                      f'for node in "$@"; do :; done\nexec 3<>"$node"\necho ready\nread -r line <"{fifo}"\n')
        for verb in ["verifyVolume", "repairVolume"]:
            with self.subTest(verb), subprocess.Popen([DISKUTIL, verb, self.node], stdout=subprocess.PIPE) as process:
                while process.stdout.readline() not in (b"ready\n", b""):
                    pass
                with self.assertRaises(OSError) as mount:
                    os.open(self.node, os.O_RDONLY | os.O_EXCL)  # as a mount does
                self.assertEqual(mount.exception.errno, errno.EBUSY)
                self.assertNotEqual(subprocess.run(["flock", "--nonblock", self.node, "true"]).returncode, 0)
                for arguments in VERBS[1:]:
                    self.assert_refused(case.IN_USE, "is in use", *arguments, self.node)
                self.assert_refused(case.IN_USE, "is in use", "eraseDisk", "ext4", "Name", self.disk.node)
                with open(fifo, "w") as go:
                    go.write("\n")
                process.communicate(timeout=LIMIT)
                self.assertEqual(process.returncode, case.SUCCESS)

    def test_a_disk_and_its_partitions_are_worked_on_one_after_the_other(self):
        """Also where the tool claims nothing. udev and others share the lock of the disk while they look at it."""
        self.make_volume()
        fifo = f"{self.folder}/fifo"
        os.mkfifo(fifo)
        self.install_witness(f"echo ready\nread -r line <{fifo}\n")
        with subprocess.Popen([DISKUTIL, "verifyVolume", self.node], stdout=subprocess.PIPE) as process:
            while process.stdout.readline() not in (b"ready\n", b""):
                pass
            for verb in ["eraseVolume", "eraseDisk"]:
                self.assert_refused(case.IN_USE, "is in use", verb, "ext4", "Name", self.disk.node)
            with open(fifo, "w") as go:
                go.write("\n")
            process.communicate(timeout=LIMIT)
            self.assertEqual(process.returncode, case.SUCCESS)
        with open(f"{RESOURCES}/work", "w") as work:
            work.write("#!/bin/sh\nexit 0\n")
        with open(self.disk.node, "rb") as disk:
            fcntl.flock(disk, fcntl.LOCK_EX)
            for arguments in VERBS[:1] + VERBS[2:]:
                self.assert_refused(case.IN_USE, "is in use", *arguments, self.node)
            fcntl.flock(disk, fcntl.LOCK_SH)
            self.assert_exit(diskutil("verifyVolume", self.node), case.SUCCESS)

    def start_and_hold(self, arguments):
        """Starts diskutil on a device that is held, so that it has looked at everything and waits."""
        self.claim = os.open(self.node, os.O_RDONLY | os.O_EXCL)
        process = subprocess.Popen([DISKUTIL, *arguments, self.node], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        self.assertTrue(process.stdout.readline().startswith(b"Started"))
        return process

    def assert_stopped_at_another_disk(self, process):
        output, errors = process.communicate(timeout=LIMIT)
        self.assertEqual(process.returncode, case.MEDIUM_CHANGED, errors)
        self.assertIn(f"{self.node} is no longer the same disk".encode(), errors)
        self.assertNotIn(b"arguments:", output)

    def test_a_node_that_another_disk_takes_after_the_look(self):
        self.make_volume()
        before = self.disk.digest()
        self.install_witness(FSFormatExecutable="work", FSRepairExecutable="work")
        for arguments in VERBS:
            with self.subTest(arguments):
                process = self.start_and_hold(arguments)
                run("mount", "--bind", self.bystander.partitions[0], self.node)
                try:
                    self.assert_stopped_at_another_disk(process)
                finally:
                    run("umount", self.node)
                    os.close(self.claim)
                self.assertEqual(self.disk.digest(), before)
                self.assert_bystander_is_untouched()

    def test_a_disk_whose_content_is_exchanged_after_the_look(self):
        """The kernel exchanges the image of a disk that is open only when nobody can write to the disk."""
        self.disk = self.make_disk(20, read_only=True)
        self.node = self.disk.partitions[0]
        shutil.copyfile(self.bystander.image, self.disk.image)
        before = self.disk.digest()
        run("udevadm", "trigger", "--settle", self.node)
        self.service.wait("the volume is known",
                          lambda: self.service.property(self.node, "Block", "IdType") == 's "ext4"')
        self.install_witness()
        process = self.start_and_hold(["verifyVolume"])
        self.exchange_image(self.bystander.image)
        try:
            os.close(self.claim)
            self.assert_stopped_at_another_disk(process)
        finally:
            self.exchange_image(self.disk.image)
        self.assertEqual(self.disk.digest(), before)

    def exchange_image(self, image):
        with open(self.disk.node, "rb") as device, open(image, "rb") as file:
            fcntl.ioctl(device, LOOP_CHANGE_FD, file.fileno())

    def test_device_paths_that_lead_elsewhere(self):
        self.make_volume()
        os.symlink(self.disk.image, f"{self.folder}/file")
        os.symlink("/dev/nothing", f"{self.folder}/nowhere")
        os.symlink(self.folder + "/loop", f"{self.folder}/loop")
        for device, status in [
            (f"{self.folder}/file", case.NO_BLOCK_DEVICE),
            ("/dev/null", case.NO_BLOCK_DEVICE),
            ("/dev/fd/0", case.NO_BLOCK_DEVICE),
            (f"{self.folder}/nowhere", case.NO_SUCH_DISK),
            (f"{self.folder}/loop", case.NO_SUCH_DISK),
            ("/dev/" + self.disk.bsd_name(self.node) + "\n", case.NO_SUCH_DISK),
            ("/dev/../" + self.disk.bsd_name(self.node), case.NO_SUCH_DISK),
            (self.disk.bsd_name(self.node) + "/..", case.NO_SUCH_DISK),
            ("--all", case.NO_SUCH_DISK),
            ("-h", case.NO_SUCH_DISK),
        ]:
            for arguments in VERBS:
                with self.subTest(arguments + [device]):
                    before = self.disk.digest()
                    self.assert_exit(diskutil(*arguments, device, stdin=subprocess.DEVNULL), status)
                    self.assertEqual(self.disk.digest(), before)

    def test_links_and_copies_of_a_node_stand_for_the_node(self):
        self.make_volume()
        self.install_witness()
        link = tempfile.mktemp(dir="/dev/shm")
        os.symlink(self.node, link)
        self.addCleanup(os.unlink, link)
        copy = f"{self.folder}/node"
        os.mknod(copy, 0o660 | 0o060000, os.stat(self.node).st_rdev)
        for device in [link, copy, f"/dev/../{self.node}", self.node]:
            with self.subTest(device):
                result = diskutil("verifyVolume", device)
                self.assert_exit(result, case.SUCCESS)
                self.assertIn(f"arguments:{self.node}\n", result.stdout)

    def test_a_link_to_the_system_is_the_system(self):
        self.make_volume()
        run("mount", self.node, "/boot")
        self.addCleanup(run, "umount", "/boot")
        os.symlink(self.node, f"{self.folder}/data")
        for arguments in VERBS:
            self.assert_exit(diskutil(*arguments, f"{self.folder}/data"), case.SYSTEM_VOLUME)

    # Names

    def test_names_are_names(self):
        names = ["-n", "--help", "-", "--", "$(id)", "`id`", "'; id '", "a'b", "a\"b", "%@ %n %s", "<b>x</b>",
                 "a;b|c&d", "* ?", "\\n", "-L x", "/dev/null", "..", "-qmljsdebugger"]
        for file_system, allowed in [
            ("ext4", names), ("ext2", ["-n", "$(id)"]), ("NTFS", ["-n", "$(id)", "'; id '"]),
            ("ExFAT", ["-n", "$(id)", "`id`"]), ("MS-DOS FAT16", ["-N", "$(ID)", "`ID`"]), ("UDF", ["-n", "$(id)"]),
        ]:
            for name in allowed:
                with self.subTest(f"{file_system} {name}"):
                    self.make_volume(file_system, name)
                    self.assertEqual(probe(self.node, "LABEL"), name)

    def test_what_a_medium_says_begins_no_line(self):
        self.disk.check_ours()
        for name in ["a\nb", "a\x1b[2Jb", "a\u202eb", "a\u2066b"]:
            with self.subTest(name):
                run("mkfs.ext4", "-q", "-F", "-L", name, self.node)
                run("udevadm", "trigger", "--settle", self.node)
                for arguments in [["list"], ["info", self.node]]:
                    shown = diskutil(*arguments).stdout
                    for character in "\x1b\u202e\u2066\x07":
                        self.assertNotIn(character, shown)
                    for line in shown.splitlines():
                        self.assertRegex(line, r"\A(disk\d|IDENTIFIER|[A-Z][a-z ]+:)")

    # What the caller leaves behind

    def test_a_tool_inherits_nothing_of_the_caller(self):
        self.make_volume()
        self.install_witness()
        environment = {"PATH": self.folder, "LD_LIBRARY_PATH": self.folder, "IFS": "/", "ENV": "/x", "BASH_ENV": "/x",
                       "PYTHONPATH": self.folder, "TMPDIR": self.folder, "MKE2FS_CONFIG": "/x", "LANG": "de_DE",
                       "HOME": self.folder}
        leak = os.open("/etc/passwd", os.O_RDONLY)
        self.addCleanup(os.close, leak)

        def prepare():
            os.umask(0)
            for number in [signal.SIGTERM, signal.SIGHUP, signal.SIGUSR1, signal.SIGCHLD, signal.SIGPIPE]:
                signal.signal(number, signal.SIG_IGN)
            signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGTERM, signal.SIGINT, signal.SIGUSR2])

        os.umask(0o022)
        result = subprocess.run([DISKUTIL, "verifyVolume", self.node], env=environment, cwd=self.folder,
                                pass_fds=[leak], preexec_fn=prepare, capture_output=True, text=True)
        self.assert_exit(result, case.SUCCESS)
        lines = result.stdout.splitlines()
        names = {line[4:].split("=")[0] for line in lines if line.startswith("env:")}
        self.assertEqual(names - {"PWD", "_", "SHLVL", "OLDPWD"}, {"PATH", "LC_ALL", "TERM"})
        self.assertIn("env:PATH=/usr/sbin:/usr/bin:/sbin:/bin", lines)
        # The shell has its script open as the tenth.
        self.assertEqual([line for line in lines if line.startswith("fd:")], ["fd:0", "fd:1", "fd:2"])
        # The locks on the device and its disk live as long as the tool.
        self.assertEqual([line for line in lines if line.startswith("held:")],
                         [f"held:{self.node}", f"held:{self.disk.node}"])
        self.assertIn("input:empty", lines)
        self.assertEqual([line for line in lines if line.startswith("Sig")],
                         ["SigBlk: 0000000000000000", "SigIgn: 0000000000000000"])
        self.assertIn("mask:0022", lines)
        self.assertIn("folder:/", lines)

    def test_an_output_that_the_caller_can_only_read(self):
        """Opened once more, with root's rights, it could be written to."""
        fifo = f"{self.folder}/fifo"
        os.mkfifo(fifo)
        reader = os.open(fifo, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        writer = os.open(fifo, os.O_WRONLY)
        self.addCleanup(os.close, writer)
        subprocess.run([DISKUTIL, "list"], stdout=reader, stderr=reader, check=False)
        with self.assertRaises(BlockingIOError):
            os.read(reader, 1)

    def test_descriptors_that_are_missing(self):
        self.make_volume()
        self.install_witness()
        before = self.disk.digest()
        for closed in ["<&-", ">&-", "2>&-", "<&- >&- 2>&-"]:
            with self.subTest(closed):
                result = subprocess.run(["sh", "-c", f'"$0" verifyVolume "$1" {closed}', DISKUTIL, self.node],
                                        capture_output=True, text=True)
                self.assert_exit(result, case.SUCCESS)
                self.assertEqual(self.disk.digest(), before)

    # Bundles

    def test_any_file_of_a_bundle_that_others_can_change(self):
        self.make_volume()
        self.install_witness(FSFormatExecutable="work")
        os.makedirs(f"{RESOURCES}/lib/deep")
        helper = f"{RESOURCES}/lib/deep/helper"
        for change, words in [
            (lambda: os.chmod(helper, 0o666), "can be written"),
            (lambda: os.chown(helper, 1000, 0), "does not belong"),
            (lambda: (os.unlink(helper), os.symlink("/bin/true", helper)), "is not what it should be"),
            (lambda: (os.unlink(helper), os.mkfifo(helper)), "is not what it should be"),
        ]:
            with open(helper, "w"):
                pass
            os.chmod(helper, 0o644)
            change()
            self.assert_refused(case.UNTRUSTED_BUNDLE, words, "eraseVolume", "Witness", "Name", self.node)
            # It does not keep another from its volumes.
            self.assertNotIn("arguments:", self.verify())
            os.unlink(helper)
        self.assertIn("arguments:", self.verify())

    def verify(self):
        result = diskutil("verifyVolume", self.node)
        self.assert_exit(result, case.SUCCESS)
        return result.stdout

    def test_a_bundle_that_is_a_link(self):
        self.make_volume()
        self.install_witness(FSFormatExecutable="work")
        shutil.move(BUNDLE, f"{self.folder}/witness.fs")
        os.symlink(f"{self.folder}/witness.fs", BUNDLE)
        self.addCleanup(os.unlink, BUNDLE)
        self.assert_refused(case.UNKNOWN_FORMAT, "no installed file system", "eraseVolume", "Witness", "Name",
                            self.node)

    def test_an_executable_outside_of_its_bundle(self):
        self.make_volume()
        for name in ["../../../../../bin/true", "..", "", ".", "/bin/true", "work/../../../../../../bin/true"]:
            with self.subTest(name):
                self.install_witness(FSVerificationExecutable=name)
                self.assert_refused(case.NOT_SUPPORTED, "no installed file system verifies", "verifyVolume", self.node)
            shutil.rmtree(BUNDLE)

    def test_a_bundle_that_changes_after_the_look(self):
        self.make_volume()
        self.install_witness("echo ran\n")
        process = self.start_and_hold(["verifyVolume"])
        os.chmod(f"{RESOURCES}/work", 0o777)
        os.close(self.claim)
        output, errors = process.communicate(timeout=LIMIT)
        self.assertEqual(process.returncode, case.UNTRUSTED_BUNDLE, errors)
        self.assertNotIn(b"ran", output)

    def test_a_bundle_that_changes_once_the_old_volume_is_gone(self):
        self.make_volume()
        self.install_witness(FSFormatExecutable="work")
        wipefs = shutil.which("wipefs")
        shutil.copy(wipefs, f"{self.folder}/wipefs")
        self.put_over(wipefs, f"#!/bin/sh\n'{self.folder}/wipefs' \"$@\" && chmod 777 '{RESOURCES}/work'\n")
        result = diskutil("eraseVolume", "Witness", "Name", self.node)
        self.assert_exit(result, case.TOOL_FAILED)
        self.assertIn("can be written", result.stderr)
        self.assertIn(f"what was on {self.disk.bsd_name(self.node)} is lost", result.stderr)
        self.assertNotIn("arguments:", result.stdout)
        self.assertEqual(probe(self.node, "TYPE"), "")

    # The log

    def test_what_was_run_is_in_the_log(self):
        self.make_volume()
        lines = []
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as log:
            log.bind(f"{self.folder}/log")
            self.mount_over(f"{self.folder}/log", self.log_socket())
            self.make_volume("ext4", "a] [b \\ 'c'")
            while select.select([log], [], [], 0)[0]:
                lines.append(log.recv(65536).decode())
        text = "\n".join(lines)
        self.assertIn("diskutil runs: [/System/Library/Filesystems/ext4.fs/Contents/Resources/format]", text)
        self.assertIn(rf"[-v] [a\] \[b \\ 'c'] [{self.node}]", text)
        self.assertIn(f"[--all] [--quiet] [{self.node}]", text)

    def log_socket(self):
        """Where the machine's log listens, or could."""
        path = os.path.realpath("/dev/log")
        if not os.path.exists(path):
            os.close(os.open(path, os.O_CREAT | os.O_EXCL))
            self.addCleanup(os.unlink, path)
        return path


if __name__ == "__main__":
    unittest.main(verbosity=2)
