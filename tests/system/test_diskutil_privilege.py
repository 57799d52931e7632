# SPDX-License-Identifier: MIT
"""diskutil of a user who is not root: it gets its rights through polkit, for one run.

Runs inside tests/support/with-private-services: polkit is the real one, with the program's own actions.
"""

import os
import subprocess
import unittest

DISKUTIL = "/usr/sbin/diskutil"
USER = 61011

NO_SUCH_DISK_SERVICE = 15
NOT_PERMITTED = 14
TOOL_MISSING = 11


def as_user(*command, **options):
    return subprocess.Popen(command, user=USER, group=USER, extra_groups=[], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, start_new_session=True, text=True,
                            env={"PATH": options.pop("path", "/usr/bin:/bin:/usr/sbin:/sbin")}, **options)


def run(*arguments, **options):
    process = as_user(DISKUTIL, *arguments, **options)
    out, err = process.communicate(timeout=30)
    return process.returncode, out, err


class DiskutilPrivilege(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if "ZORVEX_PRIVATE_SERVICES" not in os.environ:
            raise RuntimeError("not run inside tests/support/with-private-services")
        with open("/etc/passwd", "a", encoding="utf-8") as users:
            users.write(f"zvtool:x:{USER}:{USER}::/nonexistent:/bin/sh\n")

    def join_administrators(self):
        """Makes the user a member of the group that needs no password."""
        with open("/etc/group", "a", encoding="utf-8") as groups:
            groups.write("zorvex-admin:x:80:zvtool\n")
        self.addCleanup(self.leave_administrators)

    @staticmethod
    def leave_administrators():
        with open("/etc/group", encoding="utf-8") as groups:
            lines = [line for line in groups if not line.startswith("zorvex-admin:")]
        with open("/etc/group", "w", encoding="utf-8") as groups:
            groups.writelines(lines)

    def test_without_an_agent_the_rights_are_not_granted(self):
        code, out, err = run("verifyVolume", "disk1s1")
        self.assertEqual(code, NOT_PERMITTED, err)
        self.assertEqual(out, "")
        self.assertEqual(err.splitlines()[-1], "diskutil: administrator rights were not granted")

    def test_members_of_the_group_are_not_asked(self):
        self.join_administrators()
        for verb in (["verifyVolume", "disk1s1"], ["repairVolume", "disk1s1"],
                     ["eraseVolume", "ext4", "a name; $(id)", "disk1s1"]):
            with self.subTest(verb[0]):
                code, out, err = run(*verb)
                # The run as root gets as far as the disk service, which is not on this bus.
                self.assertEqual(code, NO_SUCH_DISK_SERVICE, err)
                self.assertIn("disk service (udisks2) cannot be reached", err)

    def test_the_way_to_root_is_missing(self):
        empty = "/etc/polkit-1/rules.d"
        code, _, err = run("verifyVolume", "disk1s1", path=empty)
        self.assertEqual(code, TOOL_MISSING)
        self.assertIn("pkexec could not be started", err)

    def test_reading_verbs_ask_nobody(self):
        for verb in (["list"], ["info", "disk1"]):
            code, _, err = run(*verb)
            self.assertEqual(code, NO_SUCH_DISK_SERVICE, err)

    def test_arguments_without_sense_ask_nobody(self):
        code, _, err = run("verifyVolume")
        self.assertEqual(code, 2)
        self.assertNotIn("administrator", err)


if __name__ == "__main__":
    unittest.main(verbosity=2)
