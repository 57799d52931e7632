# SPDX-License-Identifier: MIT
"""The life of a volume of each file system: made, checked, damaged, found damaged, mended."""

import errno
import os
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from diskutil_case import DEVICE_UNREADABLE, ERRORS_FOUND, SUCCESS, DiskutilCase, diskutil  # noqa: E402
from loop_disk import probe, run  # noqa: E402


def crc32c(data):
    crc = 0xFFFFFFFF
    for byte in data:
        crc ^= byte
        for _ in range(8):
            crc = (crc >> 1) ^ (0x82F63B78 if crc & 1 else 0)
    return crc ^ 0xFFFFFFFF


def lose_ext_directory(disk, node):
    """Clears the inode of lost+found."""
    disk.check_ours()
    run("debugfs", "-w", "-R", "clri <11>", node)


def spoil_fat(disk, node):
    """Makes the first table differ from the second."""
    reserved = struct.unpack("<H", disk.read(node, 14, 2))[0]
    disk.write(node, reserved * 512 + 200, b"\x5a")


def spoil_exfat_root(disk, node):
    """Puts a file entry without its other entries into the root directory."""
    boot = disk.read(node, 0, 512)
    heap, _, root = struct.unpack_from("<III", boot, 88)
    sectors_per_cluster = 1 << boot[109]
    disk.write(node, (heap + (root - 2) * sectors_per_cluster) * 512 + 3 * 32, b"\x85\x02")


def lose_ntfs_mirror(disk, node):
    """Clears the copy of the first record."""
    boot = disk.read(node, 0, 512)
    sector, sectors_per_cluster = struct.unpack_from("<HB", boot, 11)
    mirror = struct.unpack_from("<Q", boot, 56)[0]
    disk.write(node, mirror * sector * sectors_per_cluster, bytes(1024))


def spoil_xfs_free_space(disk, node):
    """Miscounts the free blocks of the first allocation group."""
    sector = 512
    count = struct.unpack(">I", disk.read(node, sector + 52, 4))[0]
    disk.write(node, sector + 52, struct.pack(">I", count + 7))


def spoil_btrfs_directory(disk, node):
    """Gives the root directory a size that does not fit, with a checksum that does, in both copies."""
    tree = run("btrfs", "inspect-internal", "dump-tree", "-t", "5", node)
    leaf = next(line.split()[1] for line in tree.splitlines() if line.startswith("leaf "))
    item = int(tree.split("itemoff ")[1].split()[0])
    for line in run("btrfs-map-logical", "-l", leaf, node).splitlines():
        offset = int(line.split("physical ")[1].split()[0])
        block = bytearray(disk.read(node, offset, 16384))
        struct.pack_into("<Q", block, 101 + item + 16, 999)
        struct.pack_into("<I", block, 0, crc32c(block[32:]))
        disk.write(node, offset, bytes(block))


def spoil_f2fs_root(disk, node):
    """Miscounts the links of the root directory."""
    main = struct.unpack_from("<I", disk.read(node, 1024 + 92, 4))[0]
    disk.write(node, main * 4096 + 12, struct.pack("<I", 77))


class Volumes(DiskutilCase):
    def life_of_volume(self, file_system, size, wanted, damage):
        """wanted: type, version ("" for any) and name as blkid reads them."""
        kind, version, name = wanted
        disk = self.make_disk(size)
        node = disk.partitions[0]
        device = "/dev/" + disk.bsd_name(node)

        erased = self.erase(disk, node, file_system, name)
        self.assertEqual(erased.stdout.splitlines()[0], f"Started erase on {disk.bsd_name(node)}")
        if erased.returncode == SUCCESS:
            self.assertEqual(erased.stdout.splitlines()[-1], f"Finished erase on {disk.bsd_name(node)}")
        self.assertEqual(probe(node, "TYPE"), kind)
        self.assertEqual(probe(node, "LABEL"), name)
        if version:
            self.assertEqual(probe(node, "VERSION"), version)

        before = disk.digest()
        verified = diskutil("verifyVolume", device)
        self.assert_exit(verified, SUCCESS)
        self.assertNotRegex(verified.stdout, "[\\x00-\\x07\\x0b\\x0c\\x0e-\\x1f\\x7f]")
        self.assertEqual(disk.digest(), before, "a verification wrote to a sound volume")

        damage(disk, node)
        damaged = disk.digest()
        self.assertNotEqual(damaged, before)
        self.assert_exit(diskutil("verifyVolume", device), ERRORS_FOUND)
        self.assertEqual(disk.digest(), damaged, "a verification wrote to a damaged volume")

        self.assert_exit(diskutil("repairVolume", device), SUCCESS)
        self.assert_exit(diskutil("verifyVolume", device), SUCCESS)

    def test_ext4(self):
        self.life_of_volume("ext4", 100, ("ext4", "", "My Disk"), lose_ext_directory)

    def test_ext3(self):
        self.life_of_volume("ext3", 100, ("ext3", "", "Older"), lose_ext_directory)

    def test_ext2(self):
        self.life_of_volume("ext2", 100, ("ext2", "", "Oldest"), lose_ext_directory)

    def test_fat12(self):
        self.life_of_volume("MS-DOS FAT12", 20, ("vfat", "FAT12", "TWELVE"), spoil_fat)

    def test_fat16(self):
        self.life_of_volume("MS-DOS FAT16", 20, ("vfat", "FAT16", "SIXTEEN"), spoil_fat)

    def test_fat32(self):
        self.life_of_volume("MS-DOS FAT32", 100, ("vfat", "FAT32", "THIRTY TWO"), spoil_fat)

    def test_exfat(self):
        self.life_of_volume("ExFAT", 64, ("exfat", "", "Größe 1"), spoil_exfat_root)

    def test_ntfs(self):
        self.life_of_volume("NTFS", 64, ("ntfs", "", "Größe 2"), lose_ntfs_mirror)

    def test_a_full_ntfs_volume_is_sound(self):
        disk = self.make_disk(16)
        node = disk.partitions[0]
        self.erase(disk, node, "NTFS", "Full")
        self.mount(node)
        folder = run("findmnt", "--noheadings", "--output", "TARGET", node).strip()
        with open(os.path.join(folder, "fill"), "wb", buffering=0) as file:
            try:
                while file.write(bytes(1 << 20)):
                    pass
            except OSError as error:
                self.assertEqual(error.errno, errno.ENOSPC)
        self.assertEqual(os.statvfs(folder).f_bfree, 0)
        self.unmount(node)
        self.assert_exit(diskutil("verifyVolume", node), SUCCESS)

    def test_xfs(self):
        self.life_of_volume("XFS", 320, ("xfs", "", "Rows"), spoil_xfs_free_space)

    def test_btrfs(self):
        self.life_of_volume("Btrfs", 256, ("btrfs", "", "Trees"), spoil_btrfs_directory)

    def test_f2fs(self):
        self.life_of_volume("F2FS", 100, ("f2fs", "", "Flash"), spoil_f2fs_root)

    def test_udf(self):
        disk = self.make_disk(64)
        self.erase(disk, disk.partitions[0], "UDF", "Disc")
        self.assertEqual(probe(disk.partitions[0], "TYPE"), "udf")
        self.assertEqual(probe(disk.partitions[0], "LABEL"), "Disc")

    def test_a_device_that_cannot_be_read_gets_no_verdict(self):
        disk = self.make_disk(340)
        node = disk.partitions[0]
        for file_system in ["MS-DOS FAT32", "XFS", "ext4"]:
            with self.subTest(file_system):
                self.erase(disk, node, file_system, "UNSEEN")
                size = os.stat(disk.image).st_size
                os.truncate(disk.image, 3 << 20)  # what is behind it cannot be read any more
                run("blockdev", "--flushbufs", node)
                result = diskutil("verifyVolume", node)
                os.truncate(disk.image, size)
                self.assert_exit(result, DEVICE_UNREADABLE)
                self.assertIn(f"{disk.bsd_name(node)} cannot be read to its end", result.stderr)
                self.assertNotIn("The volume on", result.stdout)

    def test_every_file_system_at_its_smallest_size_and_without_a_name(self):
        for file_system, size, kind in [
            ("MS-DOS FAT32", 34, "vfat"),
            ("MS-DOS FAT16", 9, "vfat"),
            ("MS-DOS", 1, "vfat"),
            ("ExFAT", 4, "exfat"),
            ("ext4", 2, "ext4"),
            ("ext3", 2, "ext3"),
            ("NTFS", 2, "ntfs"),
            ("UDF", 4, "udf"),
            ("F2FS", 52, "f2fs"),
            ("Btrfs", 109, "btrfs"),
            ("XFS", 300, "xfs"),
        ]:
            with self.subTest(file_system):
                disk = self.make_disk(size)
                self.erase(disk, disk.partitions[0], file_system, "")
                self.assertEqual(probe(disk.partitions[0], "TYPE"), kind)
                self.assertEqual(probe(disk.partitions[0], "LABEL"), "")

    def test_a_name_may_begin_with_a_dash(self):
        for file_system, size in [("MS-DOS FAT16", 20), ("ExFAT", 20), ("ext4", 20), ("NTFS", 20),
                                  ("UDF", 20), ("F2FS", 60), ("Btrfs", 120), ("XFS", 320)]:
            with self.subTest(file_system):
                disk = self.make_disk(size)
                self.erase(disk, disk.partitions[0], file_system, "-F")
                self.assertEqual(probe(disk.partitions[0], "LABEL"), "-F")

    def test_nothing_of_a_former_file_system_is_left(self):
        disk = self.make_disk(320)
        for file_system, kind in [("Btrfs", "btrfs"), ("NTFS", "ntfs"), ("XFS", "xfs"), ("MS-DOS FAT32", "vfat"),
                                  ("ExFAT", "exfat"), ("UDF", "udf")]:
            self.erase(disk, disk.partitions[0], file_system, "SAME")
            self.assertEqual(probe(disk.partitions[0], "TYPE"), kind)

    def test_a_whole_disk_becomes_one_volume(self):
        disk = self.make_disk(50, 50)
        for file_system, kind in [("ext4", "ext4"), ("UDF", "udf")]:
            with self.subTest(file_system):
                self.erase(disk, disk.node, file_system, "Whole")
                self.assertEqual(probe(disk.node, "TYPE"), kind)
                # What the kernel reads here are partitions, which would lie over the volume.
                self.assertEqual(disk.read(disk.node, 446, 64), bytes(64))

    def test_a_volume_that_was_mounted_is_mounted_afterwards(self):
        disk = self.make_disk(100)
        node = disk.partitions[0]
        self.erase(disk, node, "ext4", "Mounted")
        for verb in ["verifyVolume", "repairVolume"]:
            self.mount(node)
            self.assert_exit(diskutil(verb, disk.bsd_name(node)), SUCCESS)
            self.assertTrue(self.service.is_mounted(node), verb)
            self.unmount(node)
        self.assert_exit(diskutil("verifyVolume", disk.bsd_name(node)), SUCCESS)
        self.assertFalse(self.service.is_mounted(node))

    def test_a_new_volume_is_mounted_under_its_name(self):
        disk = self.make_disk(120)
        node = disk.partitions[0]
        for file_system, name in [("ext4", "First"), ("ext2", "Second"), ("Btrfs", "Second"), ("ext4", "Third")]:
            disk.check_ours()
            self.assert_exit(diskutil("eraseVolume", file_system, name, node), SUCCESS)
            self.assertEqual(probe(node, "TYPE"), file_system.lower())
            self.assertRegex(diskutil("info", node).stdout, rf"Mount point: +/.*/{name}\n")

    def test_a_device_has_several_names(self):
        disk = self.make_disk(20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext2", "Names")
        link = os.path.join(disk.folder.name, "link")
        os.symlink(node, link)
        bsd_name = disk.bsd_name(node)
        for device in [node, link, bsd_name, "/dev/" + bsd_name]:
            result = diskutil("info", device)
            self.assert_exit(result, SUCCESS)
            self.assertRegex(result.stdout, rf"Identifier: +{bsd_name}\n")

    def test_the_list_has_a_new_volume(self):
        disk = self.make_disk(20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext2", "Names")
        self.assertRegex(diskutil("list").stdout, rf"(?m)^{disk.bsd_name(node)} +{node} +21.0 MB +ext4 +Names$")

    def test_progress_is_rewritten_in_its_line(self):
        disk = self.make_disk(100)
        self.erase(disk, disk.partitions[0], "ext4", "Bar")
        result = subprocess.run(
            ["/usr/sbin/diskutil", "verifyVolume", disk.partitions[0]], capture_output=True
        )
        self.assertRegex(result.stdout, rb"100\.0%[ ]*\r")
        self.assertNotIn(b"\r\n", result.stdout)


if __name__ == "__main__":
    unittest.main(verbosity=2)
