# SPDX-License-Identifier: MIT
"""The optional file systems of the maker: once installed, they serve the volumes of their kind."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from diskutil_case import SUCCESS, DiskutilCase, diskutil  # noqa: E402
from loop_disk import probe  # noqa: E402


class ExtraFileSystems(DiskutilCase):
    def test_volumes_are_made_and_served_by_the_extra_bundles(self):
        for file_system, kind, served_by in [
            ("Zorvex ExFAT", "exfat", "zorvex_exfat"),
            ("ExFAT", "exfat", "zorvex_exfat"),
            ("FAT Plus FAT32", "vfat", "zorvex_fatplus"),
            ("FAT Plus", "vfat", "zorvex_fatplus"),
            ("MS-DOS FAT16", "vfat", "zorvex_fatplus"),
            ("NTFS (FUSE)", "ntfs", "zorvex_ntfs"),
        ]:
            with self.subTest(file_system):
                disk = self.make_disk(64)
                node = disk.partitions[0]
                self.erase(disk, node, file_system, "UNTITLED")
                self.assertEqual(probe(node, "TYPE"), kind)
                self.assertEqual(probe(node, "LABEL"), "UNTITLED")
                self.assertRegex(diskutil("info", node).stdout, rf"File system: +{served_by}\n")
                for verb in ["verifyVolume", "repairVolume"]:
                    self.assert_exit(diskutil(verb, node), SUCCESS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
