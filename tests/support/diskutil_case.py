# SPDX-License-Identifier: MIT
"""What the tests of diskutil have in common. They run inside tests/support/in-staged-root, or use what is installed in the
root folder that ZORVEX_ROOT names."""

import os
import plistlib
import shutil
import subprocess
import unittest

from loop_disk import DiskService, LoopDisk, run

ROOT = os.environ.get("ZORVEX_ROOT", "/")
DISKUTIL = "/usr/sbin/diskutil"

# Exit statuses, as the manual lists them.
SUCCESS = 0
ERRORS_FOUND = 1
USAGE = 2
NO_SUCH_DISK = 3
NO_BLOCK_DEVICE = 4
SYSTEM_VOLUME = 5
IN_USE = 6
UNKNOWN_FORMAT = 7
NOT_SUPPORTED = 8
NAME_REFUSED = 9
SIZE_OUT_OF_RANGE = 10
TOOL_MISSING = 11
READ_ONLY = 12
UNTRUSTED_BUNDLE = 13
NOT_PERMITTED = 14
SERVICE_UNAVAILABLE = 15
UNMOUNT_REFUSED = 16
MEDIUM_CHANGED = 17
TOOL_FAILED = 18
INTERRUPTED = 19
MOUNT_REFUSED = 20
NOT_WHOLE_DISK = 21
DEVICE_GONE = 23
DEVICE_UNREADABLE = 24


def diskutil(*arguments, **options):
    return subprocess.run(["chroot", ROOT, DISKUTIL, *arguments], capture_output=True, text=True, **options)


class DiskutilCase(unittest.TestCase):
    def setUp(self):
        if not os.path.isdir(os.path.join(ROOT, "System/Library/Filesystems/msdos.fs")):
            self.fail("diskutil is not installed: not run inside tests/support/in-staged-root")
        self.service = DiskService()
        self.addCleanup(self.service.close)

    def make_disk(self, *partition_sizes, **options):
        disk = LoopDisk(self.service, partition_sizes, **options)
        self.addCleanup(disk.close)
        return disk

    def assert_exit(self, result, status):
        self.assertEqual(result.returncode, status, f"{result.stdout}\n{result.stderr}")

    def install_bundle(self, name, script, kind, **personality):
        """Has a bundle with an executable "work" serve the volumes of a kind, before all others; returns its folder."""
        bundle = f"/Library/Filesystems/{name}.fs"
        resources = f"{bundle}/Contents/Resources"
        os.makedirs(resources)
        self.addCleanup(shutil.rmtree, bundle, ignore_errors=True)
        with open(f"{bundle}/Contents/Info.plist", "wb") as file:
            plistlib.dump({
                "CFBundleIdentifier": f"org.example.{name}",
                "FSPersonalities": {name.capitalize(): {"FSVerificationExecutable": "work", **personality}},
                "FSLinuxTypes": [kind],
                "FSProbeOrder": 1,
            }, file)
        with open(f"{resources}/work", "w") as file:
            file.write(f"#!/bin/sh\n{script}")
        os.chmod(f"{resources}/work", 0o755)
        return bundle

    def erase(self, disk, node, file_system, name):
        """Makes a volume, and leaves it unmounted."""
        disk.check_ours()
        result = diskutil("eraseVolume", file_system, name, "/dev/" + disk.bsd_name(node))
        # Not every kernel has a driver for every file system.
        is_mounted = self.service.is_mounted(node)
        self.assert_exit(result, SUCCESS if is_mounted else MOUNT_REFUSED)
        self.assertEqual("could not be mounted: " in result.stderr, not is_mounted)
        self.unmount(node)
        return result

    def unmount(self, node):
        if self.service.is_mounted(node):
            run("udisksctl", "unmount", "--block-device", node)
        self.service.wait(f"{node} is unmounted", lambda: not self.service.is_mounted(node))

    def mount(self, node):
        run("udisksctl", "mount", "--block-device", node)
        self.service.wait(f"{node} is mounted", lambda: self.service.is_mounted(node))
