# SPDX-License-Identifier: MIT
"""A disk service that does not answer any more keeps no run that is to end. To be run inside
tests/support/with-private-services --with-disk-service: the service is stopped."""

import fcntl
import os
import select
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import diskutil_case as case  # noqa: E402
from diskutil_case import DISKUTIL, DiskutilCase  # noqa: E402
from loop_disk import LIMIT, SERVICE, run  # noqa: E402


class SilentService(DiskutilCase):
    def setUp(self):
        super().setUp()
        self.assertIn("ZORVEX_PRIVATE_BUS", os.environ, "not run inside tests/support/with-private-services")
        self.disk = self.make_disk(20)
        self.node = self.disk.partitions[0]
        self.erase(self.disk, self.node, "ext2", "Silent")
        self.mount(self.node)
        status = run("busctl", "call", "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                     "GetConnectionUnixProcessID", "s", SERVICE)
        self.service_process = int(status.split()[-1])
        self.addCleanup(os.kill, self.service_process, signal.SIGCONT)

    def start(self):
        """Starts diskutil on an output that holds one line: it waits until the one before has been read."""
        self.output, end = os.pipe2(os.O_DIRECT | os.O_CLOEXEC)
        self.addCleanup(os.close, self.output)
        fcntl.fcntl(end, fcntl.F_SETPIPE_SZ, 4096)
        process = subprocess.Popen([DISKUTIL, "verifyVolume", self.node], stdout=end, stderr=subprocess.PIPE)
        os.close(end)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.kill)
        return process

    def read_up_to(self, start):
        """Reads lines up to the one that begins so, or to the end."""
        line = None
        while line != b"" and (start is None or line is None or not line.startswith(start)):
            self.assertTrue(select.select([self.output], [], [], LIMIT)[0], f"after {line}: nothing comes")
            line = os.read(self.output, 4096)
        self.assertTrue(line or start is None, f"the output ends before {start}")

    def stop_service(self):
        os.kill(self.service_process, signal.SIGSTOP)

    def assert_interrupted(self, process):
        process.terminate()
        self.read_up_to(None)
        self.assertEqual(process.wait(LIMIT), case.INTERRUPTED)
        self.assertRegex(process.stderr.read(), rb"interrupted.*\n(.*\n)?.*has not answered\n")
        os.kill(self.service_process, signal.SIGCONT)

    def test_silent_at_the_unmount(self):
        process = self.start()
        self.assertTrue(select.select([self.output], [], [], LIMIT)[0], "nothing comes")  # it has the list of disks
        self.stop_service()
        self.read_up_to(b"Unmounting")
        self.assert_interrupted(process)

    def test_silent_at_the_mount(self):
        self.install_bundle("stopper", f"kill -STOP {self.service_process}\n", "ext2")
        process = self.start()
        self.read_up_to(b"Mounting")
        self.assert_interrupted(process)

    def test_silent_after_the_signal(self):
        script = f"trap 'kill -STOP {self.service_process}; exit 0' TERM; sh -c 'echo works; exec tail -f /dev/null'\n"
        self.install_bundle("stopper", script, "ext2")
        process = self.start()
        self.read_up_to(b"works")
        self.assert_interrupted(process)


if __name__ == "__main__":
    unittest.main(verbosity=2)
