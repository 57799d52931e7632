# SPDX-License-Identifier: MIT
"""diskutil of a member of the administrators' group, from the command to the volume: polkit and pkexec give it root's
rights for one run, and what it mounts belongs to the user. Runs inside tests/support/with-private-services
--with-disk-service."""

import os
import re
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import endless_bundle  # noqa: E402
from diskutil_case import (DISKUTIL, ERRORS_FOUND, IN_USE, INTERRUPTED, NO_BLOCK_DEVICE, NO_SUCH_DISK,  # noqa: E402
                           NOT_PERMITTED, SUCCESS, DiskutilCase, diskutil)
from loop_disk import LIMIT, probe, run  # noqa: E402
from private_user import PrivateUser  # noqa: E402

NAME = "zvmember"
FOLDERS_OF_MOUNTS = ("/media", "/run/media")  # as the disk service was built

# What the disk service grants a user at the machine.
AT_THE_MACHINE = """polkit.addRule(function (action, subject) {
    if (action.id.indexOf("org.freedesktop.udisks2.filesystem-mount") === 0 && subject.user === "%s")
        return polkit.Result.YES;
    return polkit.Result.NOT_HANDLED;
});
"""


def service_mounts_for_others():
    """UDisks2 2.10 and later do; an earlier one has to be asked in the user's own name, and may refuse."""
    answer = run("busctl", "--system", "get-property", "org.freedesktop.UDisks2", "/org/freedesktop/UDisks2/Manager",
                 "org.freedesktop.UDisks2.Manager", "Version")
    major, minor = re.search(r'"(\d+)\.(\d+)', answer).groups()
    return (int(major), int(minor)) >= (2, 10)


def mount_point(node):
    return run("findmnt", "--noheadings", "--output", "TARGET", node).strip()


def run_as_root_for(number, *arguments):
    """diskutil as pkexec leaves it, at the wish of the user with this number."""
    return subprocess.run([DISKUTIL, *arguments], env={**os.environ, "PKEXEC_UID": str(number)}, capture_output=True,
                          text=True, check=False)


class DiskutilOfUser(DiskutilCase):
    @classmethod
    def setUpClass(cls):
        cls.user = PrivateUser(NAME, 61012)
        cls.user.join_administrators()
        cls.user.have_session("local", "active")

    def setUp(self):
        super().setUp()
        self.disk = self.make_disk(64)
        self.node = self.disk.partitions[0]

    def sit_at_the_machine(self, name=NAME):
        rule = f"/etc/polkit-1/rules.d/10-at-the-machine-{name}.rules"
        with open(rule, "w", encoding="utf-8") as file:
            file.write(AT_THE_MACHINE % name)
        self.addCleanup(os.unlink, rule)

    def erase_as_user(self, file_system, name):
        self.disk.check_ours()
        self.assert_exit(self.user.run(DISKUTIL, "eraseVolume", file_system, name, self.node), SUCCESS)

    def assert_users_own(self, name):
        """The volume is mounted where its user may enter, and the user can write to it."""
        point = mount_point(self.node)
        self.assertIn(point, [f"{folder}/{NAME}/{name}" for folder in FOLDERS_OF_MOUNTS])
        self.assert_exit(self.user.run("sh", "-c", f"echo mine >'{point}/file' && cat '{point}/file'"), SUCCESS)

    def test_a_new_volume_is_the_users(self):
        self.sit_at_the_machine()
        for file_system, name in (("ext4", "With Owners"), ("NTFS", "Without")):
            with self.subTest(file_system):
                self.erase_as_user(file_system, name)
                self.assertEqual(probe(self.node, "LABEL"), name)
                self.assert_users_own(name)
                self.unmount(self.node)

    def test_a_volume_that_was_mounted_is_mounted_for_the_user_again(self):
        self.sit_at_the_machine()
        self.erase_as_user("ext4", "Again")
        for verb in ("verifyVolume", "repairVolume"):
            with self.subTest(verb):
                self.assert_exit(self.user.run(DISKUTIL, verb, self.node), SUCCESS)
                self.assert_users_own("Again")

    def test_a_volume_that_has_an_owner_keeps_them(self):
        self.sit_at_the_machine()
        self.erase_as_user("ext4", "Kept")
        os.chown(mount_point(self.node), 0, 0)
        self.assert_exit(self.user.run(DISKUTIL, "verifyVolume", self.node), SUCCESS)
        self.assertEqual(os.stat(mount_point(self.node)).st_uid, 0)

    def test_another_users_volume_stays_theirs(self):
        other = PrivateUser("zvother", 61013)
        self.sit_at_the_machine(other.name)
        self.disk.check_ours()
        run("mkfs.ext4", "-q", "-F", "-L", "Others", self.node)
        run("udevadm", "trigger", "--settle", self.node)
        self.service.wait("the volume is known",
                          lambda: self.service.property(self.node, "Block", "IdLabel") == 's "Others"')
        self.assert_exit(other.run("udisksctl", "mount", "--block-device", self.node), SUCCESS)
        point = mount_point(self.node)
        for verb in ("verifyVolume", "repairVolume"):
            result = self.user.run(DISKUTIL, verb, self.node)
            self.assert_exit(result, IN_USE)
            self.assertIn(f"it is mounted at {point} for the user {other.name}", result.stderr)
            self.assertEqual(mount_point(self.node), point)
        # Root alone checks it, and mounts it for its user again.
        self.assert_exit(diskutil("verifyVolume", self.node), SUCCESS)
        self.assertEqual(mount_point(self.node), point)

    def test_a_signal_stops_a_repair_of_root(self):
        self.erase_as_user("ext2", "Stopped")
        self.unmount(self.node)
        self.install_bundle("endless", endless_bundle.WORK.format(prologue=""), "ext2", FSRepairExecutable="work")
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number), self.user.start(DISKUTIL, "repairVolume", self.node) as process:
                worker = endless_bundle.worker_of(self, process)
                process.send_signal(number)
                self.assertEqual(process.wait(LIMIT), INTERRUPTED)
                endless_bundle.assert_ended(self, worker)

    def test_whom_the_service_would_ask_for_a_password(self):
        self.erase_as_user("ext4", "Asked")
        if service_mounts_for_others():
            self.assert_users_own("Asked")
        else:
            self.assertIn(mount_point(self.node), [f"{folder}/root/Asked" for folder in FOLDERS_OF_MOUNTS])

    def test_a_volume_that_fstab_names_stays_the_administrators(self):
        self.sit_at_the_machine()
        for folder in ("/tmp", "/media"):
            with self.subTest(folder), tempfile.TemporaryDirectory(dir=folder) as place:
                with open("/etc/fstab", "w", encoding="utf-8") as table:
                    table.write(f"LABEL=Trusted {place} ext4 noauto 0 0\n")
                self.erase_as_user("ext4", "Trusted")
                self.assertEqual(mount_point(self.node), place)
                self.assertEqual(os.stat(place).st_uid, 0)
                self.unmount(self.node)

    def test_a_volume_that_its_user_mounted_by_fstab_stays_theirs(self):
        """Only who has mounted such a volume may unmount it."""
        self.sit_at_the_machine()
        self.erase_as_user("ext4", "Theirs")
        self.unmount(self.node)
        self.addCleanup(self.unmount, self.node)
        for option in "user", "users":
            with self.subTest(option), tempfile.TemporaryDirectory(dir="/media") as place:
                with open("/etc/fstab", "w", encoding="utf-8") as table:
                    table.write(f"LABEL=Theirs {place} ext4 noauto,{option} 0 0\n")
                for diskutil_of in self.user.run, lambda *arguments: run_as_root_for(0, *arguments[1:]):
                    self.assert_exit(self.user.run("mount", place), SUCCESS)
                    self.service.wait("it is mounted", lambda: self.service.is_mounted(self.node))
                    self.assert_exit(diskutil_of(DISKUTIL, "verifyVolume", self.node), SUCCESS)
                    self.assertEqual(mount_point(self.node), place)
                    self.assert_exit(self.user.run("umount", place), SUCCESS)
                    self.service.wait("it is unmounted", lambda: not self.service.is_mounted(self.node))

    def test_root_tells_nothing_of_paths_that_are_closed_to_the_user(self):
        with tempfile.TemporaryDirectory() as folder:  # 0700
            there = os.path.join(folder, "there")
            with open(there, "w", encoding="utf-8"):
                pass
            os.symlink(self.node, os.path.join(folder, "disk"))
            for name in ("there", "missing", "disk"):
                path = os.path.join(folder, name)
                with self.subTest(name):
                    result = self.user.run(DISKUTIL, "verifyVolume", path)
                    self.assert_exit(result, NO_SUCH_DISK)
                    self.assertEqual(result.stderr, f"diskutil: there is no disk {path}\n")
            os.chmod(folder, 0o755)
            self.assert_exit(self.user.run(DISKUTIL, "verifyVolume", there), NO_BLOCK_DEVICE)
            self.erase_as_user("ext4", "Linked")
            self.assert_exit(self.user.run(DISKUTIL, "verifyVolume", os.path.join(folder, "disk")), SUCCESS)

    def test_a_user_who_cannot_be_looked_up(self):
        result = run_as_root_for(61999, "verifyVolume", self.node)
        self.assert_exit(result, NOT_PERMITTED)
        self.assertIn("the user 61999 cannot be looked up", result.stderr)

    def test_errors_are_told(self):
        self.erase_as_user("ext4", "Errors")
        self.unmount(self.node)
        run("debugfs", "-w", "-R", "clri <11>", self.node)
        self.assert_exit(self.user.run(DISKUTIL, "verifyVolume", self.node), ERRORS_FOUND)

    def test_nothing_of_root_goes_on_when_the_user_stops_it(self):
        self.erase_as_user("ext2", "Stopped")
        self.unmount(self.node)
        endless_bundle.install(self)
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGKILL):
            with self.subTest(number), self.user.start(DISKUTIL, "verifyVolume", self.node) as process:
                worker = endless_bundle.worker_of(self, process)
                process.send_signal(number)
                self.assertEqual(process.wait(LIMIT), -number if number == signal.SIGKILL else INTERRUPTED)
                endless_bundle.assert_ended(self, worker)


if __name__ == "__main__":
    unittest.main(verbosity=2)
