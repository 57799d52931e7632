# SPDX-License-Identifier: MIT
"""After a check, a repair or an erase that was abandoned, a volume is mounted as it was, or it was refused."""

import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DiskutilCase, diskutil  # noqa: E402
from loop_disk import run  # noqa: E402

VERBS = ["verifyVolume", "repairVolume"]


def mounts_of(node):
    """Place and options of each mount of the volume."""
    lines = run("findmnt", "--noheadings", "--raw", "--output", "TARGET,OPTIONS", node).splitlines()
    return [line.split(" ") for line in lines]


class Mounts(DiskutilCase):
    def setUp(self):
        super().setUp()
        self.disk = self.make_disk(20)
        self.node = self.disk.partitions[0]
        self.erase(self.disk, self.node, "ext4", "Mounted")

    def mount_with(self, options):
        run("udisksctl", "mount", "--block-device", self.node, "--options", options)
        self.service.wait("it is mounted", lambda: self.service.is_mounted(self.node))

    def mount_by_hand(self, *options):
        place = tempfile.mkdtemp(prefix="zorvex-mount.")
        self.addCleanup(os.rmdir, place)
        run("mount", *options, place)
        self.addCleanup(run, "umount", place)
        return place

    def assert_refused(self, *words):
        before = mounts_of(self.node)
        for arguments in [[VERBS[0]], [VERBS[1]], ["eraseVolume", "ext4", "New"]]:
            result = diskutil(*arguments, self.node)
            self.assert_exit(result, case.IN_USE)
            for word in words:
                self.assertIn(word, result.stderr)
            self.assertEqual(mounts_of(self.node), before)

    def test_read_only_stays_read_only(self):
        self.mount_with("ro,noload")
        before = mounts_of(self.node)
        digest = self.disk.digest()
        self.assert_exit(diskutil("verifyVolume", self.node), case.SUCCESS)
        self.assertEqual(mounts_of(self.node), before)
        self.assertEqual(self.disk.digest(), digest, "a check has written to the disk")

    def test_options_stay(self):
        self.mount_with("noexec,noatime,sync")
        before = mounts_of(self.node)
        for verb in VERBS:
            self.assert_exit(diskutil(verb, self.node), case.SUCCESS)
            self.assertEqual(mounts_of(self.node), before)

    def test_what_an_interrupted_run_unmounted_is_as_it_was(self):
        self.mount_with("ro")
        before = mounts_of(self.node)
        self.install_bundle("killed", "kill -TERM $PPID\nexec tail -f /dev/null\n", "ext4")
        self.assert_exit(diskutil("verifyVolume", self.node), case.INTERRUPTED)
        self.assertEqual(mounts_of(self.node), before)

    def test_a_mount_by_hand(self):
        place = self.mount_by_hand(self.node)
        self.assert_refused(f"mounted at {place}", "not by the disk service")

    def test_a_second_place(self):
        self.mount(self.node)
        place = mounts_of(self.node)[0][0]
        second = self.mount_by_hand("--bind", place)
        self.assert_refused(f"mounted at {place}", f"mounted at {second}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
