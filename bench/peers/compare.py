#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures this program, its peers and the floor in turn on the same loop disks, and prints a table.

Run by bench/run, as root, with the disk service, a display with a window manager and a session bus."""

import argparse
import contextlib
import os
import pathlib
import queue
import select
import socket
import statistics
import subprocess
import sys
import threading
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "support"))

from loop_disk import DiskService, LoopDisk, run  # noqa: E402

SERVICES = ("udisksd", "dbus-daemon", "polkitd")
SYSTEM = {
    "Zorvex Disk Manager": ["/usr/bin/zorvex-disk-manager", "-elevated"],
    "GNOME Disks": ["gnome-disks"],
    "GParted": ["gpartedbin"],
    "KDE Partition Manager": ["partitionmanager"],
}
FLOOR = "smallest window"
FOLLOWS_HOTPLUG = ("Zorvex Disk Manager", "GNOME Disks")
SHOWS_PARTITIONS = ("Zorvex Disk Manager",)  # of a disk that is not selected
SCANS = ("GParted", "KDE Partition Manager")  # and show nothing for seconds while they do
LONGEST_START = 60  # seconds
PARTITION_SIZE = 8  # MiB
NETLINK_KOBJECT_UEVENT = 15
IDLE_SECONDS = 60
POOL_EXPIRY = 35  # seconds, after which idle threads of the toolkit's pool have ended


def milliseconds(nanoseconds):
    return nanoseconds / 1e6


def service_processes():
    return ",".join(run("pidof", *SERVICES).split())


class NothingDrawn(Exception):
    """A program's window does not appear, or does not stop changing."""


class Program:
    """A program on the display, and the times at which it has drawn."""

    def __init__(self, tools, command, quiet=1.5):
        self.quiet = quiet
        self.watcher = subprocess.Popen([tools / "bench_watch", service_processes(), "--", *command],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.buffer = b""
        self.frames = []
        try:
            self.settle()
        except NothingDrawn:
            self.__exit__()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.watcher.stdin.close()
        self.watcher.wait()

    def settle(self):
        """Records what is drawn, until something has been drawn and then nothing for the quiet time."""
        known = len(self.frames)
        output = self.watcher.stdout
        deadline = time.monotonic() + LONGEST_START
        while True:
            readable, _, _ = select.select([output], [], [], self.quiet)
            if not readable and len(self.frames) > max(known, 1):
                return
            if time.monotonic() > deadline:
                raise NothingDrawn
            if not readable:
                continue
            self.buffer += os.read(output.fileno(), 65536)
            *lines, self.buffer = self.buffer.split(b"\n")
            for line in lines:
                kind, *numbers = line.split()
                if kind == b"start":
                    self.start, self.pid = map(int, numbers)
                else:
                    self.frames.append(tuple(map(int, numbers)))

    def show_all_rows(self):
        """Makes the window as high as the display."""
        window = run("xdotool", "search", "--onlyvisible", "--pid", str(self.pid)).split()[-1]
        run("xdotool", "windowmove", window, "0", "0")
        run("xdotool", "windowsize", window, "1000", "100%")
        self.settle()

    def filled(self):
        """Returns the milliseconds to the window with all its rows: of time, and of processor time with the services'."""
        when, own, services = self.frames[-1]
        return milliseconds(when - self.start), milliseconds(own + services - self.frames[0][2])

    def processes(self):
        members = [self.pid]
        for process in members:
            for children in pathlib.Path(f"/proc/{process}/task").glob("*/children"):
                members += map(int, children.read_text().split())
        return members

    def memory(self):
        """Returns the memory in MiB, with a part of each shared page."""
        total = 0
        for process in self.processes():
            for line in pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines():
                if line.startswith("Pss:"):
                    total += int(line.split()[1])
        return total / 1024

    def activity(self):
        """Returns how often a thread was woken up, and the nanoseconds of processor time, so far."""
        wakes, ran = 0, 0
        for process in self.processes():
            for thread in pathlib.Path(f"/proc/{process}/task").iterdir():
                for line in (thread / "status").read_text().splitlines():
                    if line.startswith("voluntary_ctxt_switches:"):
                        wakes += int(line.split()[1])
                ran += int((thread / "schedstat").read_text().split()[0])
        return wakes, ran


class Listener:
    """The bare listener on the disk service."""

    def __init__(self, tools):
        self.process = subprocess.Popen([tools / "bare_listener"], stdout=subprocess.PIPE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def heard(self):
        """Returns the signals since the last call: time and object."""
        lines = b""
        while select.select([self.process.stdout], [], [], 0)[0]:
            lines += os.read(self.process.stdout.fileno(), 65536)
        return [(int(line.split()[0]), line.split()[1].decode()) for line in lines.splitlines()]


class KernelEvents(threading.Thread):
    """The kernel's events of block devices, recorded as they come."""

    def __init__(self):
        super().__init__(daemon=True)
        self.socket = socket.socket(socket.AF_NETLINK, socket.SOCK_DGRAM, NETLINK_KOBJECT_UEVENT)
        self.socket.bind((0, 1))
        self.events = queue.SimpleQueue()

    def run(self):
        while True:
            event = self.socket.recv(65536)
            self.events.put((time.monotonic_ns(), event.split(b"\0", 1)[0].decode()))

    def forget(self):
        """Drops the events so far."""
        while not self.events.empty():
            self.events.get()

    def wait_for(self, action, name):
        """Returns the time of the next such event."""
        while True:
            when, header = self.events.get()
            if header.startswith(action + "@") and header.endswith("/" + name):
                return when


def start_figures(tools, programs, runs):
    """Medians of time, processor time and memory of each program. Leaves out one that draws nothing, with a message."""
    taken = {name: [] for name in programs}
    for _ in range(runs):
        for name in list(taken):
            try:
                with Program(tools, programs[name], 6 if name in SCANS else 1.5) as program:
                    taken[name].append((*program.filled(), program.memory()))
            except NothingDrawn:
                print(f"{name} draws nothing, or does not stop, and is left out", file=sys.stderr)
                del taken[name]
    return {name: [statistics.median(figure) for figure in zip(*values)] for name, values in taken.items()}


def hotplug_figures(tools, service, command, runs, shows_partitions):
    """Medians in milliseconds, from the kernel's event on: the disk's row, and when the listener heard of the disk; then
    the same of its fourth partition."""
    taken = []
    events = KernelEvents()
    events.start()
    with Listener(tools) as listener, Program(tools, command) as program:
        program.show_all_rows()
        for _ in range(runs):
            listener.heard()
            events.forget()
            known = len(program.frames)
            disk = LoopDisk(service, [PARTITION_SIZE] * 4, with_partitions=False)
            loop = os.path.basename(disk.node)
            attached = events.wait_for("change", loop)
            program.settle()
            row = next(frame[0] for frame in program.frames[known:] if frame[0] > attached)
            heard = next(when for when, path in listener.heard() if when > attached and path.endswith("/" + loop))
            figures = [row - attached, heard - attached]
            if shows_partitions:
                disk.add_partitions()
                added = events.wait_for("add", loop + "p4")
                program.settle()
                told = next(when for when, path in listener.heard() if path.endswith("/" + loop + "p4"))
                figures += [program.frames[-1][0] - added, told - added]
            taken.append([milliseconds(figure) for figure in figures])
            disk.close()
            program.settle()
    return [statistics.median(figure) for figure in zip(*taken)]


def idle_figures(tools, command):
    """Wake-ups and milliseconds of processor time while nothing happens, and the service's signals meanwhile."""
    with Listener(tools) as listener, Program(tools, command) as program:
        time.sleep(POOL_EXPIRY)
        listener.heard()
        wakes, ran = program.activity()
        time.sleep(IDLE_SECONDS)
        wakes_later, ran_later = program.activity()
        return wakes_later - wakes, milliseconds(ran_later - ran), len(listener.heard())


def print_start(title, figures):
    own = figures["Zorvex Disk Manager"]
    print(f"\n### {title}\n")
    print("| program | window with all rows, ms | processor time with the services', ms | memory (PSS), MiB |")
    print("|---|---|---|---|")
    for name, values in figures.items():
        cells = [f"{value:.0f} ({mine / value:.2f})" for value, mine in zip(values, own)]
        print(f"| {name} | {' | '.join(cells)} |")
    sys.stdout.flush()


def measure_followers(tools, service, programs, runs):
    print("\n### A disk attached, 20 present\n")
    print("| program | row of the disk, ms | the listener heard, ms | fourth partition, ms | heard, ms |")
    print("|---|---|---|---|---|")
    for name in FOLLOWS_HOTPLUG:
        if name in programs:
            figures = hotplug_figures(tools, service, programs[name], runs, name in SHOWS_PARTITIONS)
            cells = [f"{figure:.0f}" for figure in figures] + ["", ""][: 4 - len(figures)]
            print(f"| {name} | {' | '.join(cells)} |")
    wakes, ran, signals = idle_figures(tools, programs["Zorvex Disk Manager"])
    print(f"\n{IDLE_SECONDS} s idle with 20 disks: {wakes} wake-ups, {ran:.1f} ms of processor time, "
          f"{signals} signals of the service")
    sys.stdout.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("tools", type=pathlib.Path, help="where the benchmark's programs are")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--sizes", default="1,20,100")
    parser.add_argument("--without", default="", help="peers to leave out, with commas in between")
    options = parser.parse_args()
    peers = {name: command for name, command in SYSTEM.items() if name not in options.without.split(",")}
    programs = {**peers, FLOOR: [options.tools / "smallest_window"]}

    print("In brackets: this program's figure, as a multiple of the row's.")
    service = DiskService()
    with contextlib.ExitStack() as disks:
        disks.callback(service.close)
        present = 0
        for size in map(int, options.sizes.split(",")):
            for _ in range(present, size):
                partitions = 3 if size == 1 else 4
                disks.enter_context(contextlib.closing(LoopDisk(service, [PARTITION_SIZE] * partitions)))
            present = size
            run("udevadm", "settle", "--timeout=120")
            print_start(f"{size} loop disk{'s' if size > 1 else ''}", start_figures(options.tools, programs, options.runs))
            if size == 20:
                measure_followers(options.tools, service, peers, options.runs)
    figures = run(str(options.tools / "bench_verify"), env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
    print(f"\nverifyVolume of 1 GB of ext4 with 50,000 files, seconds: {figures}")


if __name__ == "__main__":
    main()
