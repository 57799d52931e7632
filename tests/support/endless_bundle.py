# SPDX-License-Identifier: MIT
"""A bundle whose executables never end by themselves, for tests that stop them. It serves ext2 volumes."""

import os
import select

from loop_disk import LIMIT

# The shell stays the parent of the program that works, as in the bundles that translate its exit status.
WORK = """{prologue}
sh -c 'echo "working as $$"; exec tail -f /dev/null'
exit 0
"""


def install(test, prologue=""):
    """Installs the bundle until the end of the test; the prologue is shell text that runs first. Returns its folder."""
    return test.install_bundle("endless", WORK.format(prologue=prologue), "ext2", FSFormatExecutable="work")


def worker_of(test, process):
    """A descriptor of the process that works for a diskutil, whose output is a pipe of bytes; it has begun then."""
    for line in process.stdout:
        if line.startswith(b"working as "):
            worker = os.pidfd_open(int(line.split()[-1]))
            test.addCleanup(os.close, worker)
            return worker
    return test.fail(f"the executable was not started: {process.stderr.read()}")


def assert_ended(test, worker):
    """A descriptor of a process can be read once the process has ended."""
    test.assertTrue(select.select([worker], [], [], LIMIT)[0], "the executable is still at work")
