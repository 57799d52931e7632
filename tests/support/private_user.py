# SPDX-License-Identifier: MIT
"""A user of the test's own, in the private lists of tests/support/with-private-services."""

import os
import subprocess

PATH = "/usr/bin:/bin:/usr/sbin:/sbin"
RULES = "/etc/polkit-1/rules.d"

# In the place of logind: what polkit knows of the user's session. Rules are asked in the order of their names, and this
# one changes what the later ones are told. It reads a file because polkit takes a while to notice another rule.
SESSION_RULE = """polkit.addRule(function (action, subject) {
    if (subject.user === "%(name)s") {
        var words = polkit.spawn(["cat", "%(state)s"]).trim().split(" ");
        subject.local = words.indexOf("local") !== -1;
        subject.active = words.indexOf("active") !== -1;
    }
    return polkit.Result.NOT_HANDLED;
});
"""


class PrivateUser:
    def __init__(self, name, number):
        """Enters the user in the list of users."""
        if "ZORVEX_PRIVATE_SERVICES" not in os.environ:
            raise RuntimeError("not run inside tests/support/with-private-services")
        self.name = name
        self.number = number
        with open("/etc/passwd", "a", encoding="utf-8") as users:
            users.write(f"{name}:x:{number}:{number}::/nonexistent:/bin/sh\n")
        self.state = f"{RULES}/{name}.session"
        self.have_session()
        with open(f"{RULES}/00-{name}.rules", "w", encoding="utf-8") as rule:
            rule.write(SESSION_RULE % {"name": name, "state": self.state})

    def have_session(self, *words):
        """Gives the user a session that is "local", "active" or both; without a word they have none."""
        with open(self.state, "w", encoding="utf-8") as file:
            file.write(" ".join(words) + "\n")

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
