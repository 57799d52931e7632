#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Looks at the windows of the session as assistive technologies do, and presses what they show.

A line of JSON each way. An element is looked for by its role and a regular expression that its whole name matches;
what is not there yet is looked for again until it is.

On an emulated processor each question takes its time. So the bus is asked itself, many questions at a time, and only
those whose answers can matter; and no program is asked to tell of what changes, which is most of what it would do then.
"""
import json
import re
import sys
import time

from gi.repository import Gio, GLib

PATIENCE = 20000  # milliseconds for an answer of a program, which may have just started
NAME_LENGTH = 15  # of a program, as the kernel keeps it
REST = 0.3  # seconds between two looks, at least
REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"
ACCESSIBLE, ACTION, COMPONENT, EDITABLE_TEXT, TEXT = (
    f"org.a11y.atspi.{name}" for name in ("Accessible", "Action", "Component", "EditableText", "Text"))
SCREEN = 0  # places are asked for in coordinates of the screen
STATES = {"active": 1, "enabled": 8, "focused": 12, "selected": 23, "showing": 25}  # the bits of AT-SPI's states
# AT-SPI's numbers of the roles that matter. What the releases of Qt give different ones has one name.
ROLES = {7: "check box", 10: "column header", 11: "combo box", 16: "dialog", 23: "frame", 27: "image", 29: "label",
         31: "list", 32: "list item", 33: "menu item", 34: "menu bar", 35: "menu item", 37: "page tab",
         38: "page tab list", 39: "panel", 40: "password text", 42: "progress bar", 43: "button", 48: "scroll bar",
         50: "separator", 56: "tree item", 57: "column header", 61: "text", 65: "tree", 66: "tree", 91: "tree item"}
# What has nothing below it, or only such elements as are named here.
HOLDS = {"button": (), "check box": (), "column header": (), "combo box": ("list item",), "image": (), "label": (),
         "list item": (), "menu bar": ("menu item",), "menu item": ("menu item",), "page tab": (), "password text": (),
         "progress bar": (), "scroll bar": (), "separator": (), "text": (), "tree": ("tree item",), "tree item": ()}


class Bus:
    """The bus of assistive technologies."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                     Gio.DBusCallFlags.NONE, PATIENCE).unpack()
        flags = Gio.DBusConnectionFlags
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION)
        self.programs = {}  # by the name of the connection

    def ask(self, questions):
        """The answers to questions of name, path, interface, method and arguments; None for one that was refused, or
        whose element has gone meanwhile."""
        answers = [None] * len(questions)
        left = len(questions)

        def take(connection, result, index):
            nonlocal left
            left -= 1
            try:
                answers[index] = connection.call_finish(result).unpack()
            except GLib.Error:
                pass

        for index, (name, path, interface, method, arguments) in enumerate(questions):
            self.connection.call(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, PATIENCE, None,
                                 take, index)
        while left > 0:
            GLib.MainContext.default().iteration(True)
        return answers

    def ask_children(self, elements):
        answers = self.ask([(*element.address, ACCESSIBLE, "GetChildren", None) for element in elements])
        for element, answer in zip(elements, answers):
            element.children = [Element(child) for child in (answer[0] if answer else [])]

    def ask_roles(self, elements):
        """What has gone meanwhile has no role."""
        answers = self.ask([(*element.address, ACCESSIBLE, "GetRole", None) for element in elements])
        for element, answer in zip(elements, answers):
            element.role = ROLES.get(answer[0], "other") if answer else ""

    def ask_states(self, elements):
        answers = self.ask([(*element.address, ACCESSIBLE, "GetState", None) for element in elements])
        for element, answer in zip(elements, answers):
            element.states = sum(word << 32 * place for place, word in enumerate(answer[0])) if answer else 0

    def property(self, element, name):
        answer, = self.ask([(*element.address, "org.freedesktop.DBus.Properties", "Get",
                             GLib.Variant("(ss)", (ACCESSIBLE, name)))])
        return answer[0] if answer else ""

    def text(self, element):
        answer, = self.ask([(*element.address, TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))])
        return answer[0] if answer else ""

    def program_of(self, name):
        """The name of the program behind a connection. The bus and the kernel tell it: a program that hangs cannot hold
        this up."""
        if name not in self.programs:
            answer, = self.ask([("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                 "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))])
            try:
                with open(f"/proc/{answer[0]}/comm") as comm:
                    self.programs[name] = comm.read().strip()
            except (TypeError, OSError):  # it has gone meanwhile
                return ""
        return self.programs[name]

    def windows(self, program):
        """The elements that stand for a program, which hold its windows."""
        root = Element((REGISTRY, ROOT))
        self.ask_children([root])
        return [element for element in root.children if self.program_of(element.address[0]) == program[:NAME_LENGTH]]


class Element:
    def __init__(self, address):
        self.address = tuple(address)
        self.children = []
        self.role = ""
        self.states = 0

    def has(self, state):
        return bool(self.states >> STATES[state] & 1)

    def and_below(self, depth=0):
        yield self, depth
        for child in self.children:
            yield from child.and_below(depth + 1)


def can_hold(holder, role):
    """Whether an element of the role can be below the holder."""
    return role in HOLDS.get(holder.role, (role,))


def learn(bus, roots, role=None, showing=False):
    """Learns of what is below these elements, a level at a time: of all, or of those that are of the role, and maybe only
    of what is to be seen."""
    level = roots
    while level:
        bus.ask_children(level)
        level = [child for element in level for child in element.children]
        bus.ask_roles(level)
        level = [element for element in level if element.role and (role in (None, element.role) or can_hold(element, role))]
        bus.ask_states(level if showing or role is None else [element for element in level if element.role == role])
        level = [element for element in level
                 if (role is None or can_hold(element, role)) and (not showing or element.has("showing"))]


def matches(bus, element, query):
    return (element.role == query["role"]
            and all(element.has(state) for state in query.get("states", []))
            and not any(element.has(state) for state in query.get("without", []))
            and re.fullmatch(query.get("name", ".*"), bus.property(element, "Name"), re.DOTALL)
            and ("text" not in query or re.search(query["text"], bus.text(element), re.DOTALL)))


def find(bus, query):
    windows = bus.windows(query["application"])
    role = query["role"]
    # A row may be scrolled out of sight, but not what holds it.
    learn(bus, windows, role, showing=role == "tree item" or "showing" in query.get("states", []))
    return next((element for window in windows for element, _ in window.and_below() if matches(bus, element, query)), None)


def listed(bus, program):
    windows = bus.windows(program)
    learn(bus, windows)
    lines = []
    for window in windows:
        for element, depth in window.and_below():
            marks = "".join(letter if element.has(state) else "-" for letter, state in
                            [("s", "showing"), ("e", "enabled"), ("f", "focused"), ("S", "selected")])
            lines.append(f"{'  ' * depth}{marks} {element.role}: {bus.property(element, 'Name')!r} {bus.text(element)!r}")
    return "\n".join(lines)


def wait(query, holds):
    """What holds() returns, once that is true; None when it did not become true in time."""
    deadline = time.monotonic() + query["limit"]
    while True:
        began = time.monotonic()
        result = holds()
        ended = time.monotonic()
        if result or ended >= deadline:
            return result
        # The looks leave half of the time to what is waited for.
        time.sleep(max(REST, ended - began))


def describe(bus, element):
    place, = bus.ask([(*element.address, COMPONENT, "GetExtents", GLib.Variant("(u)", (SCREEN,)))])
    return {"name": bus.property(element, "Name"), "text": bus.text(element), "place": place and place[0]}


def press(bus, element):
    actions, = bus.ask([(*element.address, ACTION, "GetActions", None)])
    names = [name.lower() for name, *_ in (actions[0] if actions else [])]
    # Some have an action before it that only takes the keyboard there.
    wanted = next((index for index, name in enumerate(names) if "press" in name or "click" in name), 0)
    if bus.ask([(*element.address, ACTION, "DoAction", GLib.Variant("(i)", (wanted,)))]) != [(True,)]:
        raise RuntimeError(f"{bus.property(element, 'Name')!r} cannot be pressed, only {names}")


def type_text(bus, element, text):
    if bus.ask([(*element.address, EDITABLE_TEXT, "SetTextContents", GLib.Variant("(s)", (text,)))]) != [(True,)]:
        raise RuntimeError(f"{bus.property(element, 'Name')!r} takes no text")


def answer(bus, query):
    kind, program = query["kind"], query["application"]
    if kind == "list":
        return {"status": 0, "output": listed(bus, program)}
    if kind == "gone":
        gone = wait(query, lambda: find(bus, query) is None)
        return {"status": 0 if gone else 1, "output": "" if gone else listed(bus, program)}
    element = wait(query, lambda: find(bus, query))
    if element is None:
        return {"status": 1, "output": listed(bus, program)}
    if kind == "press":
        press(bus, element)
    elif kind == "type":
        type_text(bus, element, query["typed"])
    else:
        return {"status": 0, "output": json.dumps(describe(bus, element))}
    return {"status": 0, "output": ""}


def main():
    bus = Bus()
    for line in sys.stdin:
        try:
            result = answer(bus, json.loads(line))
        except Exception as error:  # the test is told, whatever it is
            result = {"status": -1, "output": f"{type(error).__name__}: {error}"}
        print(json.dumps(result), flush=True)


if __name__ == "__main__":
    main()
