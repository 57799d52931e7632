# SPDX-License-Identifier: MIT
"""A run that is stopped leaves nothing working on the medium. The file system is a test bundle whose checker never
ends by itself."""

import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
import endless_bundle  # noqa: E402
from diskutil_case import DISKUTIL, DiskutilCase, diskutil  # noqa: E402
from loop_disk import LIMIT  # noqa: E402


class Interruption(DiskutilCase):
    def setUp(self):
        super().setUp()
        self.disk = self.make_disk(20)
        self.node = self.disk.partitions[0]
        self.erase(self.disk, self.node, "ext2", "Endless")

    def start(self, *arguments):
        """Starts diskutil, and returns it with a descriptor of the process that works for it."""
        process = subprocess.Popen([DISKUTIL, *arguments, self.node], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        return process, endless_bundle.worker_of(self, process)

    def test_signals(self):
        endless_bundle.install(self)
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]:
            with self.subTest(number):
                process, worker = self.start("verifyVolume")
                process.send_signal(number)
                self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
                endless_bundle.assert_ended(self, worker)
                self.assertRegex(process.stderr.read(), rb"interrupted.*\n.*was stopped\n")

    def test_an_erase_is_stopped_as_well(self):
        endless_bundle.install(self)
        process, worker = self.start("eraseVolume", "Endless", "Name")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        endless_bundle.assert_ended(self, worker)
        self.assertRegex(process.stderr.read(), rb"was stopped; what was on disk\d+s1 is lost\n")

    def test_a_reader_that_goes(self):
        endless_bundle.install(self)
        process, worker = self.start("verifyVolume")
        process.stdout.close()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        endless_bundle.assert_ended(self, worker)

    def start_repair(self):
        """A repair that waits for a line in a pipe, prints more than any pipe holds, and leaves a file at its end."""
        folder = tempfile.mkdtemp(prefix="zorvex-repair.")
        self.addCleanup(shutil.rmtree, folder)
        os.mkfifo(f"{folder}/go")
        self.install_bundle("slow", f"echo ready\nread -r line <'{folder}/go'\nseq 100000\n: >'{folder}/end'\n", "ext2",
                            FSRepairExecutable="work")
        process = subprocess.Popen([DISKUTIL, "repairVolume", self.node], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        while process.stdout.readline() not in (b"ready\n", b""):
            pass
        return process, folder

    def assert_repair_ends(self, process, folder):
        with open(f"{folder}/go", "w") as go:
            go.write("\n")
        errors = process.communicate(timeout=LIMIT)[1]
        self.assertEqual(process.returncode, case.SUCCESS, errors)
        self.assertTrue(os.path.exists(f"{folder}/end"), "the repair was stopped")
        self.assertEqual(errors, b"")

    def test_a_repair_runs_on_without_a_reader(self):
        process, folder = self.start_repair()
        process.stdout.close()
        process.stdout = None
        self.assert_repair_ends(process, folder)

    def test_a_repair_runs_on_when_the_terminal_hangs_up(self):
        process, folder = self.start_repair()
        process.send_signal(signal.SIGHUP)
        self.assert_repair_ends(process, folder)

    def test_a_signal_stops_a_repair(self):
        process, folder = self.start_repair()
        process.terminate()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        self.assertFalse(os.path.exists(f"{folder}/end"))

    def test_a_signal_is_heard_while_the_reader_takes_nothing(self):
        self.install_bundle("talker", "exec yes\n", "ext2")
        for errors in [subprocess.PIPE, subprocess.STDOUT]:
            with self.subTest(errors):
                reader, writer = os.pipe()
                self.addCleanup(os.close, reader)
                process = subprocess.Popen([DISKUTIL, "verifyVolume", self.node], stdout=writer, stderr=errors)
                self.addCleanup(process.kill)
                deadline = time.monotonic() + LIMIT
                while select.select([], [writer], [], 0)[1]:
                    self.assertLess(time.monotonic(), deadline, "the pipe is never full")
                    os.sched_yield()
                os.close(writer)
                process.terminate()
                self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
                if process.stderr:
                    process.stderr.close()

    def test_a_checker_that_does_not_listen_is_killed(self):
        endless_bundle.install(self, "trap '' TERM")
        process, worker = self.start("verifyVolume")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        endless_bundle.assert_ended(self, worker)

    def test_nothing_survives_a_diskutil_that_is_killed(self):
        endless_bundle.install(self)
        for arguments in [["verifyVolume"], ["eraseVolume", "Endless", "Name"]]:
            with self.subTest(arguments):
                process, worker = self.start(*arguments)
                process.kill()
                process.wait(LIMIT)
                endless_bundle.assert_ended(self, worker)

    def test_a_mounted_volume_is_mounted_again(self):
        endless_bundle.install(self)
        self.mount(self.node)
        process, worker = self.start("verifyVolume")
        self.assertFalse(self.service.is_mounted(self.node))
        process.terminate()
        process.wait(LIMIT)
        endless_bundle.assert_ended(self, worker)
        self.assertTrue(self.service.is_mounted(self.node))

    def test_exit_statuses_of_a_bundle(self):
        for status, wanted in [(0, case.SUCCESS), (8, case.ERRORS_FOUND), (1, case.TOOL_FAILED), (2, case.TOOL_FAILED)]:
            with self.subTest(status):
                bundle = endless_bundle.install(self, f"exit {status}")
                self.assert_exit(diskutil("verifyVolume", self.node), wanted)
                shutil.rmtree(bundle)


if __name__ == "__main__":
    unittest.main(verbosity=2)
