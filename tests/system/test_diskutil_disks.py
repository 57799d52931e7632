# SPDX-License-Identifier: MIT
"""A whole disk is made one new volume: the table, what is left of the old, the refusals."""

import json
import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DiskutilCase, diskutil  # noqa: E402
from loop_disk import probe, run, settle_udev  # noqa: E402

LINUX = "0FC63DAF-8483-4772-8E79-3D69D8477DE4"
BASIC_DATA = "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"


class Disks(DiskutilCase):
    def table(self, disk):
        return json.loads(run("sfdisk", "--json", disk.node))["partitiontable"]

    def erase_disk(self, disk, *arguments):
        disk.check_ours()
        return diskutil("eraseDisk", *arguments, "/dev/" + disk.bsd_name(disk.node))

    def assert_erased(self, disk, result, kind, label):
        """One partition with one new volume, mounted where the kernel can."""
        node = disk.partitions[0]
        self.assert_exit(result, case.SUCCESS if self.service.is_mounted(node) else case.MOUNT_REFUSED)
        name = os.path.basename(disk.node)
        self.assertEqual([entry for entry in os.listdir(f"/sys/block/{name}") if entry.startswith(name)],
                         [os.path.basename(node)])
        self.assertEqual([partition["start"] for partition in self.table(disk)["partitions"]], [2048])
        recognised = {signature["type"] for signature in json.loads(run("wipefs", "--json", disk.node))["signatures"]}
        self.assertEqual(recognised - {"PMBR"}, {self.table(disk)["label"]})
        self.unmount(node)
        self.assertEqual((probe(node, "TYPE"), probe(node, "LABEL")), (kind, label))

    def test_each_file_system_gets_its_type_of_partition(self):
        disk = self.make_disk(400)
        for file_system, kind, gpt, mbr in [
            ("ext4", "ext4", LINUX, "83"),
            ("MS-DOS FAT32", "vfat", BASIC_DATA, "c"),
            ("MS-DOS FAT16", "vfat", BASIC_DATA, "e"),
            ("exFAT", "exfat", BASIC_DATA, "7"),
            ("NTFS", "ntfs", BASIC_DATA, "7"),
            ("Btrfs", "btrfs", LINUX, "83"),
        ]:
            for scheme, label, partition_type in [("GPT", "gpt", gpt), ("mbr", "dos", mbr)]:
                with self.subTest(f"{file_system} {scheme}"):
                    result = self.erase_disk(disk, file_system, "FRESH", scheme)
                    self.assert_erased(disk, result, kind, "FRESH")
                    self.assertEqual(self.table(disk)["label"], label)
                    self.assertEqual(self.table(disk)["partitions"][0]["type"], partition_type)

    def test_the_course_is_told(self):
        disk = self.make_disk(30, 30)
        self.erase(disk, disk.partitions[1], "ext2", "Old")
        self.mount(disk.partitions[1])
        name = disk.bsd_name(disk.node)
        result = self.erase_disk(disk, "ext4", "Fresh")
        self.assertTrue(self.service.is_mounted(disk.partitions[0]), result)
        self.assertEqual(result.stdout.splitlines(),
                         [f"Started erase on {name}", f"Unmounting {name}s2", "Creating the partition map",
                          f"Waiting for {name}s1", f"Formatting {name}s1 as ext4", f"Mounting {name}s1",
                          f"Finished erase on {name}"])
        self.assertEqual(result.stderr, "")
        self.assert_erased(disk, result, "ext4", "Fresh")
        self.assertEqual(self.table(disk)["label"], "dos", "a loop disk counts as removable")

    def test_a_disk_without_a_table(self):
        disk = self.make_disk(60, with_partitions=False)
        for prepare in [["wipefs", "--all", "--quiet"], ["mke2fs", "-q", "-F"], ["mkswap"]]:
            with self.subTest(prepare):
                disk.check_ours()
                disk.delete_partitions()
                run("wipefs", "--all", "--quiet", disk.node)
                run(*prepare, disk.node)
                settle_udev()
                self.assert_erased(disk, self.erase_disk(disk, "ext4", "Fresh"), "ext4", "Fresh")
                self.assertEqual(probe(disk.node, "TYPE"), "")

    def test_an_installer_image_leaves_nothing(self):
        """An image of both kinds: the file system of a disc over the whole, and a table with partitions in it."""
        disk = self.make_disk(43, 20)  # the second is not where the new volume keeps a copy of its mark
        descriptor = b"\x01CD001\x01\x00" + b" " * 32 + b"INSTALLER".ljust(32)
        disk.write(disk.node, 32768, descriptor.ljust(2048, b"\0") + b"\xffCD001\x01".ljust(2048, b"\0"))
        old = disk.partitions[1]
        self.erase(disk, old, "ext4", "Persistence")
        self.assertIn("iso9660", run("wipefs", disk.node))
        with open(f"/sys/class/block/{os.path.basename(old)}/start") as file:
            mark = int(file.read()) * 512 + 1024 + 56
        self.assertEqual(disk.read(disk.node, mark, 2), b"\x53\xef")
        self.assert_erased(disk, self.erase_disk(disk, "ext2", "Fresh", "GPT"), "ext2", "Fresh")
        run("blockdev", "--flushbufs", disk.node)
        self.assertNotEqual(disk.read(disk.node, mark, 2), b"\x53\xef", "the mark of the old volume is left")

    def test_it_can_be_done_again_and_with_the_other_scheme(self):
        disk = self.make_disk(60)
        for scheme in ["GPT", "MBR", "MBR", "GPT"]:
            self.assert_erased(disk, self.erase_disk(disk, "ext4", scheme, scheme), "ext4", scheme)
        self.assertIn("No errors", run("sfdisk", "--verify", disk.node))

    def test_refusals(self):
        disk = self.make_disk(30, 30)
        digest = disk.digest()
        name = disk.bsd_name(disk.node)
        for arguments, status, words in [
            (["ext4", "Name", "APM", disk.node], case.USAGE, "no partition scheme"),
            (["ext4", "Name", disk.partitions[0]], case.NOT_WHOLE_DISK, f"{name}s1 is a partition, not a whole disk"),
            (["nonsense", "Name", disk.node], case.UNKNOWN_FORMAT, "the names are"),
            (["ext4", "x" * 17, disk.node], case.NAME_REFUSED, "longer than 16 bytes"),
            (["XFS", "Name", disk.node], case.SIZE_OUT_OF_RANGE, "too small"),
            (["ext4", "Name", "/nonexistent"], case.NO_SUCH_DISK, "there is no disk"),
        ]:
            with self.subTest(arguments):
                result = diskutil("eraseDisk", *arguments)
                self.assert_exit(result, status)
                self.assertIn(words, result.stderr)
                self.assertEqual(disk.digest(), digest)

    def test_what_is_busy_is_refused_and_all_is_mounted_again(self):
        disk = self.make_disk(30, 30)
        for node, name in zip(disk.partitions, ["First", "Second"]):
            self.erase(disk, node, "ext4", name)
            self.mount(node)
        folder = run("findmnt", "--noheadings", "--output", "TARGET", disk.partitions[1]).strip()
        with open(os.path.join(folder, "open"), "w"):
            result = self.erase_disk(disk, "ext4", "Fresh")
        self.assert_exit(result, case.UNMOUNT_REFUSED)
        self.assertIn(f"{disk.bsd_name(disk.partitions[1])} could not be unmounted: ", result.stderr)
        for node in disk.partitions:
            self.assertTrue(self.service.is_mounted(node), node)
        self.assertEqual(probe(disk.partitions[0], "LABEL"), "First")

    def test_each_part_that_is_in_use_is_named(self):
        disk = self.make_disk(30, 30, 30)
        for node in disk.partitions[1:]:
            disk.check_ours()
            run("mkswap", node)
            run("swapon", node)
            self.addCleanup(subprocess.run, ["swapoff", node], capture_output=True)

        def untouched():
            # The kernel may swap to the others meanwhile; their first page stays.
            return [disk.read(disk.node, 0, 1 << 20), disk.read(disk.partitions[0], 0, 30 << 20),
                    *(disk.read(node, 0, 4096) for node in disk.partitions[1:])]

        before = untouched()
        result = self.erase_disk(disk, "ext4", "Fresh")
        self.assert_exit(result, case.SYSTEM_VOLUME)
        for node in disk.partitions[1:]:
            run("swapoff", node)
        self.assertEqual(result.stderr.splitlines(),
                         [f"diskutil: {disk.bsd_name(node)} belongs to the running system"
                          for node in disk.partitions[1:]])
        self.assertTrue(untouched() == before, "the refused erase has written")

    def test_a_formatter_that_fails_leaves_a_table_and_a_row(self):
        self.install_bundle("broken", "exit 1", "nothing", FSFormatExecutable="work")
        disk = self.make_disk(30, 30)
        result = self.erase_disk(disk, "Broken", "Fresh")
        self.assert_exit(result, case.TOOL_FAILED)
        name = disk.bsd_name(disk.node)
        self.assertIn(f"what was on {name} is lost; {name}s1 is there, and has no volume yet", result.stderr)
        self.assertEqual(len(self.table(disk)["partitions"]), 1)
        self.assertRegex(diskutil("list").stdout, rf"(?m)^{name}s1 ")
        self.assert_exit(diskutil("eraseVolume", "ext4", "Then", f"{name}s1"), case.SUCCESS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
