# SPDX-License-Identifier: MIT
"""What diskutil refuses: with one clear line and its own exit status, before anything is unmounted or written."""

import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DiskutilCase, diskutil  # noqa: E402
from loop_disk import SERVICE, probe, run  # noqa: E402


class Refusals(DiskutilCase):
    def assert_refused(self, status, words, *arguments, disk=None, **options):
        before = disk.digest() if disk else None
        result = diskutil(*arguments, **options)
        self.assert_exit(result, status)
        self.assertEqual(result.stdout, "")
        self.assertRegex(result.stderr, r"\Adiskutil: [^\n]+\n\Z")
        self.assertIn(words, result.stderr)
        if disk:
            self.assertEqual(disk.digest(), before, "a refused operation wrote to the disk")

    def cover(self, path):
        """Hides a file of the installation in this mount namespace."""
        run("mount", "--bind", "/dev/null", path)
        self.addCleanup(run, "umount", path)

    def private_fstab(self):
        """Makes /etc/fstab an empty file of this mount namespace."""
        file = tempfile.NamedTemporaryFile()
        self.addCleanup(file.close)
        run("mount", "--bind", file.name, "/etc/fstab")
        self.addCleanup(run, "umount", "/etc/fstab")

    @staticmethod
    def write_fstab(line):
        with open("/etc/fstab", "w", encoding="utf-8") as table:
            table.write(line + "\n")

    def test_arguments_that_make_no_sense(self):
        for arguments in [[], ["eraseDisk"], ["eraseVolume", "ext4", "Name"], ["verifyVolume"], ["info"],
                          ["list", "disk1"]]:
            with self.subTest(arguments):
                self.assert_refused(case.USAGE, "--help", *arguments)

    def test_a_disk_that_is_not_there(self):
        for device in ["disk999999", "/dev/disk999999s1", "/dev/nothing", "", "disk"]:
            for arguments in [["verifyVolume"], ["repairVolume"], ["eraseVolume", "ext4", "Name"], ["info"]]:
                with self.subTest(arguments + [device]):
                    self.assert_refused(case.NO_SUCH_DISK, "there is no disk", *arguments, device)

    def test_a_file_is_no_block_device(self):
        disk = self.make_disk(20)
        self.assert_refused(case.NO_BLOCK_DEVICE, "is not a block device", "eraseVolume", "ext4", "Name", disk.image,
                            disk=disk)

    def test_a_volume_that_the_system_stands_on(self):
        disk = self.make_disk(20, 20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext4", "System")
        run("mount", node, "/boot")
        self.addCleanup(run, "umount", "/boot")
        for device in [node, disk.node]:
            for arguments in [["verifyVolume"], ["repairVolume"], ["eraseVolume", "ext4", "Name"]]:
                with self.subTest(arguments + [device]):
                    self.assert_refused(case.SYSTEM_VOLUME, "belongs to the running system", *arguments, device,
                                        disk=disk)
        self.assertIn(node, run("cat", "/proc/self/mounts"))

    def test_a_volume_that_fstab_names_for_the_system(self):
        disk = self.make_disk(20, 20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext4", "System Boot")
        self.private_fstab()
        for source in [node, "LABEL=System\\040Boot", f"UUID={probe(node, 'UUID')}",
                       f"PARTUUID={probe(node, 'PART_ENTRY_UUID')}"]:
            self.write_fstab(f"{source} /boot ext4 noauto 0 2")
            for arguments in [["repairVolume", node], ["eraseVolume", "ext4", "Name", node],
                              ["eraseVolume", "ext4", "Name", disk.node], ["eraseDisk", "ext4", "Name", disk.node]]:
                with self.subTest([source] + arguments):
                    self.assert_refused(case.SYSTEM_VOLUME, "belongs to the running system", *arguments, disk=disk)
            self.assert_exit(diskutil("verifyVolume", node), case.SUCCESS)
        self.write_fstab("UUID=00000000-0000-0000-0000-000000000000 /boot ext4 noauto 0 2")
        self.assert_exit(diskutil("repairVolume", node), case.SUCCESS)

    def test_the_boot_partition_of_a_disk_of_the_system(self):
        disk = self.make_disk(40, 20, with_partitions=False)
        disk.check_ours()
        run("sfdisk", "--quiet", "--no-reread", "--no-tell-kernel", "--part-type", disk.node, "1", "U")
        disk.add_partitions()
        boot, other = disk.partitions
        run("mkfs.fat", boot)
        self.service.wait(f"{boot} has a volume", lambda: "vfat" in self.service.property(boot, "Block", "IdType"))
        self.erase(disk, other, "ext4", "Other")
        run("mount", other, "/boot")
        self.addCleanup(run, "umount", "/boot")
        self.assert_refused(case.SYSTEM_VOLUME, "belongs to the running system", "eraseVolume", "ext4", "Name", boot,
                            disk=disk)

    def test_swap_space_in_use(self):
        disk = self.make_disk(20)
        node = disk.partitions[0]
        disk.check_ours()
        run("mkswap", node)
        run("swapon", node)
        self.addCleanup(run, "swapoff", node)
        self.assert_refused(case.SYSTEM_VOLUME, "belongs to the running system", "eraseVolume", "ext4", "Name", node)

    def test_a_loop_device_on_a_partition(self):
        disk = self.make_disk(20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext4", "Below")
        loop = run("losetup", "--find", "--show", "--read-only", node).strip()
        self.addCleanup(run, "losetup", "--detach", loop)
        for arguments in [["verifyVolume"], ["repairVolume"], ["eraseVolume", "ext4", "Name"]]:
            self.assert_refused(case.IN_USE, f"{os.path.basename(loop)} uses it", *arguments, node, disk=disk)

    def test_a_disk_with_a_mounted_partition(self):
        disk = self.make_disk(20, 20)
        node = disk.partitions[1]
        self.erase(disk, node, "ext4", "Held")
        self.mount(node)
        self.assert_refused(case.IN_USE, f"{node} is mounted at", "eraseVolume", "ext4", "Name", disk.node)
        self.assertTrue(self.service.is_mounted(node))

    def test_a_file_system_that_nobody_has(self):
        disk = self.make_disk(20)
        for name in ["ReiserFS", "", "ext4 ", "../ext4"]:
            with self.subTest(name):
                self.assert_refused(case.UNKNOWN_FORMAT, "no installed file system", "eraseVolume", name, "Name",
                                    disk.partitions[0], disk=disk)

    def test_the_names_of_the_file_systems_are_listed(self):
        disk = self.make_disk(20)
        result = diskutil("eraseVolume", "ReiserFS", "Name", disk.partitions[0])
        for name in ["exFAT", "ext4", "MS-DOS (FAT32)", "NTFS"]:
            self.assertIn(name, result.stderr)

    def test_every_user_finds_the_program(self):
        self.assertEqual(os.readlink(os.path.join(case.ROOT, "usr/bin/diskutil")), "../sbin/diskutil")

    def test_names_that_a_file_system_does_not_take(self):
        disk = self.make_disk(330)
        for file_system, name, words in [
            ("ext4", "x" * 17, "longer than 16 bytes"),
            ("ext4", "é" * 9, "longer than 16 bytes"),
            ("XFS", "x" * 13, "longer than 12 bytes"),
            ("Btrfs", "x" * 256, "longer than 255 bytes"),
            ("F2FS", "日" * 171, "longer than 512 bytes"),
            ("ExFAT", "x" * 12, "longer than 11 UTF-16"),
            ("NTFS", "x" * 129, "longer than 128 UTF-16"),
            ("UDF", "x" * 127, "longer than 126 characters"),
            ("UDF", "日" * 64, "longer than 63 characters"),
            ("MS-DOS FAT32", "X" * 12, "longer than 11 characters"),
            ("MS-DOS FAT32", "A:B", "has the character :"),
            ("MS-DOS FAT32", "Ä", "not one of ASCII"),
            ("MS-DOS FAT32", " A", "begins with"),
            ("ext4", "a\nb", "control character"),
            ("ext4", b"a\xffb", "no valid text"),
        ]:
            with self.subTest(f"{file_system} {name}"):
                self.assert_refused(case.NAME_REFUSED, words, "eraseVolume", file_system, name,
                                    disk.partitions[0], disk=disk)

    def test_a_partition_of_the_wrong_size(self):
        disk = self.make_disk(20, 300)
        for file_system, node, words in [
            ("XFS", disk.partitions[0], "too small"),
            ("Btrfs", disk.partitions[0], "too small"),
            ("F2FS", disk.partitions[0], "too small"),
            ("MS-DOS FAT32", disk.partitions[0], "too small"),
            ("MS-DOS FAT12", disk.partitions[1], "too large"),
        ]:
            with self.subTest(file_system):
                self.assert_refused(case.SIZE_OUT_OF_RANGE, words, "eraseVolume", file_system, "NAME", node,
                                    disk=disk)

    def test_a_tool_that_is_not_installed(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "ext4", "Tools")
        self.mount(disk.partitions[0])
        self.cover("/usr/sbin/e2fsck")
        for arguments in [["verifyVolume"], ["repairVolume"], ["eraseVolume", "ext4", "Name"]]:
            self.assert_refused(case.TOOL_MISSING, "e2fsck is not installed; install the package e2fsprogs", *arguments,
                                disk.partitions[0])
        self.assertTrue(self.service.is_mounted(disk.partitions[0]), "unmounted for nothing")

    def test_a_read_only_medium(self):
        disk = self.make_disk(20, read_only=True)
        self.assert_refused(case.READ_ONLY, "is read-only", "eraseVolume", "ext4", "Name", disk.partitions[0],
                            disk=disk)

    def test_a_file_system_without_a_checker(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "UDF", "Disc")
        for verb, words in [("verifyVolume", "verifies udf"), ("repairVolume", "repairs udf")]:
            self.assert_refused(case.NOT_SUPPORTED, words, verb, disk.partitions[0], disk=disk)

    def test_a_device_without_a_file_system(self):
        disk = self.make_disk(20)
        self.assert_refused(case.NOT_SUPPORTED, "no known file system", "verifyVolume",
                            disk.partitions[0], disk=disk)

    def test_a_bundle_that_others_can_change(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "ext4", "Trust")
        bundle = "/System/Library/Filesystems/ext4.fs"
        for path, mode in [
            (f"{bundle}/Contents/Resources/verify", 0o777),
            (f"{bundle}/Contents/Resources", 0o777),
            (f"{bundle}/Contents/Info.plist", 0o664),
            (bundle, 0o775),
            ("/System", 0o757),
        ]:
            with self.subTest(path):
                was = os.stat(path).st_mode & 0o777
                os.chmod(path, mode)
                self.addCleanup(os.chmod, path, was)
                self.assert_refused(case.UNTRUSTED_BUNDLE, path + " can be written", "verifyVolume",
                                    disk.partitions[0], disk=disk)
                os.chmod(path, was)

    def test_a_bundle_of_somebody_else(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "ext4", "Trust")
        path = "/System/Library/Filesystems/ext4.fs/Contents/Resources/verify"
        os.chown(path, 1000, 0)
        self.addCleanup(os.chown, path, 0, 0)
        self.assert_refused(case.UNTRUSTED_BUNDLE, "does not belong", "verifyVolume", disk.partitions[0], disk=disk)

    def test_an_executable_that_leads_elsewhere(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "ext4", "Trust")
        path = "/System/Library/Filesystems/ext4.fs/Contents/Resources/verify"
        os.rename(path, path + ".kept")
        self.addCleanup(os.rename, path + ".kept", path)
        os.symlink("/bin/true", path)
        self.addCleanup(os.unlink, path)
        self.assert_refused(case.UNTRUSTED_BUNDLE, "is not what it should be", "verifyVolume",
                            disk.partitions[0], disk=disk)

    def test_a_user_without_rights(self):
        disk = self.make_disk(20)
        self.erase(disk, disk.partitions[0], "ext4", "Rights")
        result = subprocess.run(
            ["setpriv", "--reuid=65534", "--clear-groups", "/usr/sbin/diskutil", "verifyVolume",
             disk.partitions[0]], capture_output=True, text=True,
            start_new_session=True)  # no terminal on which polkit would ask
        self.assert_exit(result, case.NOT_PERMITTED)

    def test_a_volume_in_use_is_not_unmounted_by_force(self):
        disk = self.make_disk(20)
        node = disk.partitions[0]
        self.erase(disk, node, "ext4", "Busy")
        self.mount(node)
        # The disk service mounts in its own namespace, which need not be ours.
        owner = run("busctl", "call", "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                    "GetConnectionUnixProcessID", "s", SERVICE).split()[1]
        where = diskutil("info", node).stdout.split("Mount point:")[1].strip()
        holder = subprocess.Popen(
            ["nsenter", f"--mount=/proc/{owner}/ns/mnt", "sh", "-c", f"cd '{where}' && echo held && exec cat"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(holder.stdout.readline(), b"held\n")
        for arguments in [["verifyVolume"], ["eraseVolume", "ext4", "Name"]]:
            result = diskutil(*arguments, node)
            self.assert_exit(result, case.UNMOUNT_REFUSED)
            self.assertIn("could not be unmounted", result.stderr)
            self.assertTrue(self.service.is_mounted(node))
        holder.communicate()
        self.unmount(node)
        self.assert_exit(diskutil("verifyVolume", node), case.SUCCESS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
