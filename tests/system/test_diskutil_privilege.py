# SPDX-License-Identifier: MIT
"""diskutil of a user who is not root: it gets its rights through polkit, for one run.

Runs inside tests/support/with-private-services: polkit is the real one, with the program's own actions.
"""

import os
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from diskutil_case import DISKUTIL, INTERRUPTED, NOT_PERMITTED, SERVICE_UNAVAILABLE, TOOL_FAILED, TOOL_MISSING  # noqa: E402
from loop_disk import run  # noqa: E402
from private_user import PrivateUser  # noqa: E402

PKEXEC_REFUSES = 127


class DiskutilPrivilege(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.user = PrivateUser("zvtool", 61011)

    def join_administrators(self, number=80):
        self.user.join_administrators(number)
        self.addCleanup(self.user.leave_administrators)

    def have_session(self, *words):
        self.user.have_session(*words)
        self.addCleanup(self.user.have_session)

    def diskutil(self, *arguments, **options):
        result = self.user.run(DISKUTIL, *arguments, **options)
        return result.returncode, result.stdout, result.stderr

    def test_without_an_agent_the_rights_are_not_granted(self):
        code, out, err = self.diskutil("verifyVolume", "disk1s1")
        self.assertEqual(code, NOT_PERMITTED, err)
        self.assertEqual(out, "")
        self.assertEqual(err.splitlines()[-1], "diskutil: administrator rights were not granted")

    def test_members_at_the_machine_are_not_asked(self):
        self.join_administrators()
        self.have_session("local", "active")
        for verb in (["verifyVolume", "disk1s1"], ["repairVolume", "disk1s1"],
                     ["eraseVolume", "ext4", "a name; $(id)", "disk1s1"]):
            with self.subTest(verb[0]):
                code, out, err = self.diskutil(*verb)
                # The run as root gets as far as the disk service, which is not on this bus.
                self.assertEqual(code, SERVICE_UNAVAILABLE, err)
                self.assertIn("disk service (udisks2) cannot be reached", err)

    def test_members_elsewhere_are_asked(self):
        self.join_administrators()
        for session in ([], ["local"], ["active"]):
            with self.subTest(session):
                self.have_session(*session)
                code, out, err = self.diskutil("verifyVolume", "disk1s1")
                self.assertEqual(code, NOT_PERMITTED, err)
                self.assertEqual(out, "")

    def test_members_become_no_other_user_than_root(self):
        self.join_administrators()
        self.have_session("local", "active")
        for user, code in (("root", SERVICE_UNAVAILABLE), ("daemon", PKEXEC_REFUSES)):
            with self.subTest(user):
                result = self.user.run("pkexec", "--user", user, DISKUTIL, "list")
                self.assertEqual(result.returncode, code, result.stderr)

    def test_a_group_of_this_name_with_another_number_gives_nothing(self):
        self.join_administrators(81)
        self.have_session("local", "active")
        code, _, err = self.diskutil("verifyVolume", "disk1s1")
        self.assertEqual(code, NOT_PERMITTED, err)

    def test_the_way_to_root_is_missing(self):
        empty = "/etc/polkit-1/rules.d"
        code, _, err = self.diskutil("verifyVolume", "disk1s1", path=empty)
        self.assertEqual(code, TOOL_MISSING)
        self.assertIn("pkexec could not be started", err)

    def stand_in(self, script):
        """A folder whose pkexec is this script: what the run as root would do, without its rights."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        os.chmod(folder.name, 0o755)
        path = os.path.join(folder.name, "pkexec")
        with open(path, "w", encoding="utf-8") as program:
            program.write("#!/usr/bin/python3\n" + script)
        os.chmod(path, 0o755)
        return folder.name + ":/usr/bin:/bin"

    def test_arguments_output_and_status_are_passed_on(self):
        path = self.stand_in("import sys; print(sys.argv[1:]); sys.exit(8)")
        code, out, _ = self.diskutil("eraseVolume", "ext4", "it's; a $(name)", "disk1s1", path=path)
        self.assertEqual(code, 8)
        self.assertEqual(out, str([DISKUTIL, "--stopped-by-input", "eraseVolume", "ext4", "it's; a $(name)", "disk1s1"]) + "\n")

    def test_the_question_was_closed(self):
        code, _, err = self.diskutil("verifyVolume", "disk1s1", path=self.stand_in("raise SystemExit(126)"))
        self.assertEqual(code, NOT_PERMITTED)
        self.assertEqual(err, "diskutil: the request for administrator rights was dismissed\n")

    # Root's process does not hear the user's signals; it gets a byte, or sees that its reader goes.
    DEAF = """
import os, select, signal, sys
for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
    signal.signal(number, signal.SIG_IGN)
signal.signal(signal.SIGPIPE, signal.SIG_IGN)
try:
    while not (select.select([0], [], [], 0)[0] and os.read(0, 1)):
        os.write(1, b"working\\n")
    raise BrokenPipeError
except BrokenPipeError:
    os.write(2, b"stopped\\n")
    sys.exit(19)
"""

    def test_a_signal_stops_the_run_as_root(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number), self.user.start(DISKUTIL, "repairVolume", "disk1s1", text=True, path=self.stand_in(self.DEAF)) as process:
                self.assertEqual(process.stdout.readline(), "working\n")
                process.send_signal(number)
                _, err = process.communicate(timeout=30)
                self.assertEqual(process.returncode, INTERRUPTED)
                self.assertIn("stopped\n", err)

    def test_a_reader_that_goes_stops_the_run_as_root(self):
        with self.user.start(DISKUTIL, "repairVolume", "disk1s1", text=True, path=self.stand_in(self.DEAF)) as process:
            self.assertEqual(process.stdout.readline(), "working\n")
            process.stdout.close()
            self.assertEqual(process.wait(timeout=30), INTERRUPTED)
            self.assertIn("stopped\n", process.stderr.read())

    # Runs on whatever happens, until the FIFO is closed, and leaves what its input held then.
    PATIENT = """
import os, signal
for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGPIPE):
    signal.signal(number, signal.SIG_IGN)
os.write(1, b"working\\n")
with open({fifo!r}) as fifo:
    fifo.read()
with open({left!r}, "wb") as left:
    left.write(os.read(0, 1) or b"no byte")
"""

    def test_the_end_of_a_session_does_not_stop_the_run_as_root(self):
        manager = self.service_manager()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        os.chmod(folder.name, 0o777)
        paths = [os.path.join(folder.name, name) for name in ("fifo", "left")]
        for path in paths:
            os.mkfifo(path)
            os.chmod(path, 0o666)
        fifo, left = (os.open(path, os.O_RDWR) for path in paths)
        self.addCleanup(os.close, left)
        patient = self.PATIENT.format(fifo=paths[0], left=paths[1])
        with self.user.start(DISKUTIL, "repairVolume", "disk1s1", text=True, path=self.stand_in(patient)) as process:
            try:
                self.assertEqual(process.stdout.readline(), "working\n")
                manager.stdin.write(f"kill -TERM {process.pid}\n")
                manager.stdin.flush()
                self.assertEqual(process.wait(timeout=30), INTERRUPTED)
            finally:
                os.close(fifo)
        self.assertEqual(os.read(left, 16), b"no byte")

    def service_manager(self):
        """A shell in the control group that the service manager of a user has."""
        groups = run("findmnt", "--noheadings", "--output", "TARGET", "--types", "cgroup2").split()
        if not groups:
            self.skipTest("no control groups")
        scope = os.path.join(groups[0], f"zorvex-test-{os.getpid()}", "user@61011.service", "init.scope")
        os.makedirs(scope)
        self.addCleanup(self.remove_groups, scope)
        shell = subprocess.Popen(["sh"], stdin=subprocess.PIPE, text=True)
        self.addCleanup(self.end, shell)
        with open(os.path.join(scope, "cgroup.procs"), "w", encoding="utf-8") as members:
            members.write(str(shell.pid))
        return shell

    @staticmethod
    def end(shell):
        shell.stdin.close()
        shell.wait()

    @staticmethod
    def remove_groups(scope):
        for _ in range(3):
            os.rmdir(scope)
            scope = os.path.dirname(scope)

    def test_only_the_signal_of_a_stop_is_one(self):
        for number, code in (signal.SIGTERM, INTERRUPTED), (signal.SIGSEGV, TOOL_FAILED), (signal.SIGKILL, TOOL_FAILED):
            killed = self.DEAF.replace("sys.exit(19)", f"signal.signal({number}, signal.SIG_DFL) if {number} != 9 else 0\n"
                                       f"    os.kill(os.getpid(), {number})")
            with self.subTest(number), self.user.start(DISKUTIL, "repairVolume", "disk1s1", text=True,
                                                       path=self.stand_in(killed)) as process:
                self.assertEqual(process.stdout.readline(), "working\n")
                process.send_signal(signal.SIGTERM)
                _, err = process.communicate(timeout=30)
                self.assertEqual(process.returncode, code, err)
                self.assertEqual(f"was killed by signal {int(number)}" in err, code == TOOL_FAILED, err)

    def test_reading_verbs_ask_nobody(self):
        for verb in (["list"], ["info", "disk1"]):
            code, _, err = self.diskutil(*verb)
            self.assertEqual(code, SERVICE_UNAVAILABLE, err)

    def test_arguments_without_sense_ask_nobody(self):
        code, _, err = self.diskutil("verifyVolume")
        self.assertEqual(code, 2)
        self.assertNotIn("administrator", err)


if __name__ == "__main__":
    unittest.main(verbosity=2)
