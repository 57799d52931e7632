# SPDX-License-Identifier: MIT
"""A run that is stopped leaves nothing working on the medium. The file system is a test bundle whose checker never
ends by itself."""

import os
import select
import shutil
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DISKUTIL, DiskutilCase, diskutil  # noqa: E402
from loop_disk import LIMIT  # noqa: E402

# The shell stays the parent of the program that works, as in the bundles that translate its exit status.
CHECKER = """{prologue}
sh -c 'echo "working as $$"; exec tail -f /dev/null'
exit 0
"""


class Interruption(DiskutilCase):
    def setUp(self):
        super().setUp()
        self.disk = self.make_disk(20)
        self.node = self.disk.partitions[0]
        self.erase(self.disk, self.node, "ext2", "Endless")

    def install_endless(self, prologue=""):
        return self.install_bundle("endless", CHECKER.format(prologue=prologue), "ext2", FSFormatExecutable="work")

    def start(self, *arguments):
        """Starts diskutil, and returns it with a descriptor of the process that works for it."""
        process = subprocess.Popen([DISKUTIL, *arguments, self.node], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        for line in process.stdout:
            if line.startswith(b"working as "):
                worker = os.pidfd_open(int(line.split()[-1]))
                self.addCleanup(os.close, worker)
                return process, worker
        self.fail(f"the checker was not started: {process.stderr.read()}")

    def assert_ended(self, worker):
        """A descriptor of a process can be read once the process has ended."""
        self.assertTrue(select.select([worker], [], [], LIMIT)[0], "the checker is still at work")

    def test_signals(self):
        self.install_endless()
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]:
            with self.subTest(number):
                process, worker = self.start("verifyVolume")
                process.send_signal(number)
                self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
                self.assert_ended(worker)
                self.assertRegex(process.stderr.read(), rb"interrupted.*\n.*was stopped\n")

    def test_an_erase_is_stopped_as_well(self):
        self.install_endless()
        process, worker = self.start("eraseVolume", "Endless", "Name")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        self.assert_ended(worker)
        self.assertRegex(process.stderr.read(), rb"was stopped; what was on disk\d+s1 is lost\n")

    def test_a_reader_that_goes(self):
        self.install_endless()
        process, worker = self.start("verifyVolume")
        process.stdout.close()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        self.assert_ended(worker)

    def test_a_checker_that_does_not_listen_is_killed(self):
        self.install_endless("trap '' TERM")
        process, worker = self.start("verifyVolume")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        self.assert_ended(worker)

    def test_nothing_survives_a_diskutil_that_is_killed(self):
        self.install_endless()
        for arguments in [["verifyVolume"], ["eraseVolume", "Endless", "Name"]]:
            with self.subTest(arguments):
                process, worker = self.start(*arguments)
                process.kill()
                process.wait(LIMIT)
                self.assert_ended(worker)

    def test_a_mounted_volume_is_mounted_again(self):
        self.install_endless()
        self.mount(self.node)
        process, worker = self.start("verifyVolume")
        self.assertFalse(self.service.is_mounted(self.node))
        process.terminate()
        process.wait(LIMIT)
        self.assert_ended(worker)
        self.assertTrue(self.service.is_mounted(self.node))

    def test_exit_statuses_of_a_bundle(self):
        for status, wanted in [(0, case.SUCCESS), (8, case.ERRORS_FOUND), (1, case.TOOL_FAILED), (2, case.TOOL_FAILED)]:
            with self.subTest(status):
                bundle = self.install_endless(f"exit {status}")
                self.assert_exit(diskutil("verifyVolume", self.node), wanted)
                shutil.rmtree(bundle)


if __name__ == "__main__":
    unittest.main(verbosity=2)
