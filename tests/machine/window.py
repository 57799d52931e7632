# SPDX-License-Identifier: MIT
"""The program's window on a user's desktop, as a person meets it: rows, pages, buttons, sheets."""
import json
import re

from qemu import MachineError

PROGRAM = "zorvex-disk-manager"
AGENT = "polkit-mate-authentication-agent-1"
LIMIT = 180  # seconds; the machine is slow, and others may use the computer
CLICKS, CLICK_LIMIT = 5, 20  # how often a row is clicked, and the seconds that it has to be selected


class Window:
    """The window that is on the screen of the user."""

    def __init__(self, machine, user="ada", asks=True):
        """Asks: whether the user is asked for a password at the start."""
        self.machine = machine
        self.user = user
        self.asks = asks

    # Start and end

    def start(self):
        """As the desktop's menu does."""
        self.machine.run(f"systemd-run --user --quiet --collect --property=ExitType=cgroup {PROGRAM}", user=self.user)

    def open(self):
        """Starts the program, and gives the password."""
        self.start()
        if self.asks:
            self.answer_password("secret")
        self.wait("tree")

    def answer_password(self, password, limit=LIMIT):
        self._look("find", application=AGENT, role="password text", states=["showing"], limit=limit)
        self._look("type", application=AGENT, role="password text", states=["showing"], typed=password)
        self._look("press", application=AGENT, role="button", name="Authenticate")

    def close(self):
        self.machine.run(f"pkill --signal TERM --full {PROGRAM}")

    # What it shows

    def _ask(self, kind, **query):
        query.setdefault("application", PROGRAM)
        query.setdefault("limit", LIMIT)
        return self.machine.look(self.user, kind=kind, **query)

    def _shows(self, **query):
        return self._ask("find", **query)[0] == 0

    def _look(self, kind, **query):
        status, output = self._ask(kind, **query)
        if status != 0:
            raise MachineError(f"the window does not show this: {kind} {query}\n{output}")
        return output

    def _click(self, element):
        left, top, width, height = element["place"]
        self.machine.click(left + width // 2, top + height // 2)

    def wait(self, role, name=".*", **query):
        """Waits for an element; returns its name, its text and its place."""
        query.setdefault("states", ["showing"])
        return json.loads(self._look("find", role=role, name=name, **query))

    def wait_gone(self, role, name=".*", **query):
        query.setdefault("states", ["showing"])
        self._look("gone", role=role, name=name, **query)

    def listed(self):
        return self._look("list")

    def row(self, name):
        """Waits for the row of a disk: the start of what it is called."""
        return self.wait("tree item", name=f"{re.escape(name)}.*", states=[])

    def wait_row_gone(self, name):
        self.wait_gone("tree item", name=f"{re.escape(name)}.*", states=[])

    def select(self, name):
        row = {"role": "tree item", "name": f"{re.escape(name)}.*"}
        # A window that has just come may be put elsewhere between the look and the click.
        for _ in range(CLICKS):
            self._click(self.wait(**row))
            if self._shows(**row, states=["selected"], limit=CLICK_LIMIT):
                return
        self.wait(**row, states=["selected"])

    def page(self, name):
        self._look("press", role="page tab", name=name, states=["showing"])
        # Which has the name of the page that it shows. Qt of Debian 12 does not call a tab selected.
        self.wait("page tab list", name=name)

    # What a user does

    def press(self, name, **query):
        """Presses a button once it can be pressed."""
        self._look("press", role="button", name=name, states=["showing", "enabled"], **query)

    def press_link(self, text):
        """Clicks the link that the text field shows."""
        left, top, _, height = self.wait("text", text=re.escape(text))["place"]
        self.machine.click(left + height, top + height // 2)

    def type_into(self, role, name, text):
        self._look("type", role=role, name=name, states=["showing", "enabled"], typed=text)

    def choose(self, entry):
        """Chooses in the pop-up menu that is to be seen. Its name is what is chosen in it."""
        self._click(self.wait("combo box", states=["showing", "enabled"]))
        self._click(self.wait("list item", name=entry))
        self.wait_gone("list item", name=entry)
        self.wait("combo box", name=entry)

    def choose_in_menu(self, menu, item):
        self._look("press", role="menu item", name=menu)
        self._look("press", role="menu item", name=item, states=["enabled"])

    # What takes several of these

    def answer(self, text, button):
        """Waits for the sheet that says the text, and presses its button."""
        self.wait("label", name=f".*{re.escape(text)}.*")
        self.press(button)
        self.wait_gone("label", name=f".*{re.escape(text)}.*")

    def operation_ends(self, button):
        """Waits until the operation has ended that the button has begun."""
        self.wait_gone("progress bar", limit=120)
        self.wait("button", name=button, states=["showing", "enabled"])

    def format(self, name, filesystem, label):
        """Formats the volume whose row has the name, up to the row of the new volume."""
        self.select(name)
        self.page("Format")
        self.choose(re.escape(filesystem))
        self.type_into("text", "Volume label:", label)
        self.press("Format…")
        self.press("Erase and Format")
        self.row(label)
