# SPDX-License-Identifier: MIT
"""A bundle whose executables never end by themselves, for tests that stop them. It serves ext2 volumes."""

import os
import plistlib
import select
import shutil

from loop_disk import LIMIT

BUNDLE = "/Library/Filesystems/endless.fs"

# The shell stays the parent of the program that works, as in the bundles that translate its exit status.
WORK = """#!/bin/sh
{prologue}
sh -c 'echo "working as $$"; exec tail -f /dev/null'
exit 0
"""


def install(test, prologue=""):
    """Installs the bundle until the end of the test; the prologue is shell text that runs before it hangs."""
    resources = f"{BUNDLE}/Contents/Resources"
    os.makedirs(resources)
    test.addCleanup(shutil.rmtree, BUNDLE, ignore_errors=True)
    with open(f"{BUNDLE}/Contents/Info.plist", "wb") as file:
        plistlib.dump({
            "CFBundleIdentifier": "org.zorvex.test.endless",
            "FSPersonalities": {"Endless": {"FSVerificationExecutable": "work", "FSFormatExecutable": "work"}},
            "FSLinuxTypes": ["ext2"],
            "FSProbeOrder": 1,
        }, file)
    with open(f"{resources}/work", "w") as file:
        file.write(WORK.format(prologue=prologue))
    os.chmod(f"{resources}/work", 0o755)


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
