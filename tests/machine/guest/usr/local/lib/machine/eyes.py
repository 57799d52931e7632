#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Looks at the windows of the session as assistive technologies do, and presses what they show.

A line of JSON each way. An element is looked for by its role and a regular expression that its whole name matches;
what is not there yet is waited for: each event of a window is a reason to look again.
"""
import json
import re
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = (10000, 20000)  # milliseconds: for an answer of a program, and of one that has just started
NAME_LENGTH = 15  # of a program, as the kernel keeps it
LOOK_AGAIN = 500  # milliseconds, where no event says that something has changed
REST = 0.2  # seconds between two looks, at least


def program_of(application):
    """The name of its program. The bus and the kernel tell it: a program that hangs cannot hold this up."""
    try:
        with open(f"/proc/{application.get_process_id()}/comm") as name:
            return name.read().strip()
    except (GLib.Error, OSError):  # it has gone meanwhile
        return ""


def applications(wanted):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and program_of(application) == wanted[:NAME_LENGTH]:
            application.clear_cache()  # what has no event of its own would stay as it was
            yield application


def descend(element, enters, depth=0):
    """The element and all below it, each with its role; of those that enters() refuses, nothing that is below them. Each
    question takes its time: none is asked twice, and of most elements only what tells that they are not the one."""
    try:
        role = role_of(element)
        yield element, role, depth
        count = element.get_child_count()
        if count == 0 or depth > 0 and not enters(element, role):
            return
        children = [element.get_child_at_index(index) for index in range(count)]
    except GLib.Error:  # it has gone meanwhile
        return
    for child in children:
        if child is not None:
            yield from descend(child, enters, depth + 1)


def elements(wanted_application, enters=lambda element, role: True):
    for application in applications(wanted_application):
        yield from descend(application, enters)


def can_hold(query):
    """Tells of an element whether what is looked for can be below it."""
    showing = "showing" in query.get("states", [])
    in_menus = query["role"] == "menu item"

    def enters(element, role):
        if role == "menu bar":
            return in_menus
        return not showing or element.get_state_set().contains(Atspi.StateType.SHOWING)

    return enters


def text_of(element):
    if element.get_text_iface() is None:
        return ""
    return Atspi.Text.get_text(element, 0, -1)


# What the releases of AT-SPI and Qt call the same thing.
ROLES = {"push button": "button", "table cell": "tree item", "menu": "menu item"}


def role_of(element):
    role = element.get_role_name()
    return ROLES.get(role, role)


def matches(element, query):
    """Whether an element of the role is the one."""
    if not re.fullmatch(query.get("name", ".*"), element.get_name() or "", re.DOTALL):
        return False
    states = element.get_state_set()
    return (re.search(query.get("text", ""), text_of(element) if "text" in query else "", re.DOTALL)
            and all(states.contains(getattr(Atspi.StateType, state.upper())) for state in query.get("states", []))
            and not any(states.contains(getattr(Atspi.StateType, state.upper())) for state in query.get("without", [])))


def find(query):
    for element, role, _ in elements(query["application"], can_hold(query)):
        try:
            if role == query["role"] and matches(element, query):
                return element
        except GLib.Error:
            continue
    return None


def listed(wanted_application):
    lines = []
    for element, role, depth in elements(wanted_application):
        try:
            states = element.get_state_set()
            marks = "".join(letter if states.contains(state) else "-" for letter, state in
                            [("s", Atspi.StateType.SHOWING), ("e", Atspi.StateType.ENABLED),
                             ("f", Atspi.StateType.FOCUSED), ("S", Atspi.StateType.SELECTED)])
            lines.append(f"{'  ' * depth}{marks} {role}: {element.get_name()!r} {text_of(element)!r}")
        except GLib.Error:
            continue
    return "\n".join(lines)


def wait(query, holds):
    """What holds() returns, once that is true; None when it did not become true in time."""
    deadline = time.monotonic() + query["limit"]
    context = GLib.MainContext.default()
    while True:
        result = holds()
        if result or time.monotonic() >= deadline:
            return result
        alarm = GLib.timeout_add(LOOK_AGAIN, lambda: True)
        context.iteration(True)
        GLib.source_remove(alarm)
        # Events come many at a time, and a look at each would keep the processor from what is waited for.
        time.sleep(REST)
        while context.pending():
            context.iteration(False)


def describe(element):
    place = element.get_extents(Atspi.CoordType.SCREEN) if element.get_component_iface() else None
    return {"name": element.get_name(), "text": text_of(element),
            "place": [place.x, place.y, place.width, place.height] if place else None}


def press(element):
    names = [element.get_action_name(index).lower() for index in range(element.get_n_actions())]
    # Some have an action before it that only takes the keyboard there.
    wanted = next((index for index, name in enumerate(names) if "press" in name or "click" in name), 0)
    if not element.do_action(wanted):
        raise RuntimeError(f"{element.get_name()!r} cannot be pressed, only {names}")


def type_text(element, text):
    if not element.set_text_contents(text):
        raise RuntimeError(f"{element.get_name()!r} takes no text")


def answer(query):
    kind = query["kind"]
    if kind == "list":
        return {"status": 0, "output": listed(query["application"])}
    if kind == "gone":
        gone = wait(query, lambda: find(query) is None)
        return {"status": 0 if gone else 1, "output": listed(query["application"]) if not gone else ""}
    element = wait(query, lambda: find(query))
    if element is None:
        return {"status": 1, "output": listed(query["application"])}
    actions = {"press": press, "type": lambda found: type_text(found, query["typed"])}
    if kind in actions:
        actions[kind](element)
        return {"status": 0, "output": ""}
    return {"status": 0, "output": json.dumps(describe(element))}


def main():
    Atspi.init()
    Atspi.set_timeout(*PATIENCE)
    listener = Atspi.EventListener.new(lambda event: None)
    for event in ("object:state-changed", "object:children-changed", "object:text-changed", "window"):
        listener.register(event)
    for line in sys.stdin:
        try:
            result = answer(json.loads(line))
        except Exception as error:  # the test is told, whatever it is
            result = {"status": -1, "output": f"{type(error).__name__}: {error}"}
        print(json.dumps(result), flush=True)


if __name__ == "__main__":
    main()
