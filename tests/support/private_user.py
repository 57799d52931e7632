# SPDX-License-Identifier: MIT
"""A user of the test's own, in the private lists of tests/support/with-private-services."""

import os
import subprocess

PATH = "/usr/bin:/bin:/usr/sbin:/sbin"


class PrivateUser:
    def __init__(self, name, number):
        """Enters the user in the list of users."""
        if "ZORVEX_PRIVATE_SERVICES" not in os.environ:
            raise RuntimeError("not run inside tests/support/with-private-services")
        self.name = name
        self.number = number
        with open("/etc/passwd", "a", encoding="utf-8") as users:
            users.write(f"{name}:x:{number}:{number}::/nonexistent:/bin/sh\n")

    def join_administrators(self, number=80):
        """Makes them the only member of a group of the administrators' name; its number need not be theirs."""
        with open("/etc/group", "a", encoding="utf-8") as groups:
            groups.write(f"zorvex-admin:x:{number}:{self.name}\n")

    @staticmethod
    def leave_administrators():
        with open("/etc/group", encoding="utf-8") as groups:
            lines = [line for line in groups if not line.startswith("zorvex-admin:")]
        with open("/etc/group", "w", encoding="utf-8") as groups:
            groups.writelines(lines)

    def start(self, *command, path=PATH, **options):
        """Starts a command as the user, in a session of its own, with pipes for what it prints."""
        return subprocess.Popen(command, user=self.number, group=self.number, extra_groups=[], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, start_new_session=True, env={"PATH": path}, **options)

    def run(self, *command, **options):
        """Runs a command as the user to its end."""
        with self.start(*command, text=True, **options) as process:
            out, err = process.communicate(timeout=60)
        return subprocess.CompletedProcess(command, process.returncode, out, err)
