# SPDX-License-Identifier: MIT
"""A user's desktop: who asks for the password, what the window looks like, who may do without, and how it all ends."""
import time

import media
from qemu import MachineError
from window import AGENT, LIMIT, PROGRAM

BEGINS_AT = "desktop"
ROOTS_WINDOW = ["password", "second_user"]
THE_PROGRAM = f"[{PROGRAM[0]}]{PROGRAM[1:]}"  # as a pattern, which does not match the command that looks for it
FAST = 1 << 30  # bytes a second, of a stick that becomes slow later
DAMAGE = "dd if=/dev/zero of=/dev/disk/by-label/{label} bs=1024 seek=260 count=64 conv=notrunc status=none; udevadm settle"
NOTHING_IS_LEFT = f"! pgrep --full {THE_PROGRAM} && ! pgrep diskutil"


def _stick(stage, slow=None):
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "STICK"), slow=slow)
    machine.plug_stick("stick")
    window.select("STICK")
    window.press("Mount")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=STICK | grep -x /media/ada/STICK")


def _second_start_raises_the_window(stage):
    """Without another question for the password."""
    machine, window = stage.machine, stage.window
    processes = f"pgrep --full ^/usr/bin/{THE_PROGRAM}"
    before = machine.run(processes)
    machine.run(PROGRAM, user="ada")
    window.wait("frame", states=["active"])
    if machine.run(processes) != before:
        raise MachineError("a second start leaves another process")


def _quit(stage):
    stage.window.choose_in_menu("File", "Quit")
    stage.machine.until(NOTHING_IS_LEFT)


def _becomes_light(stage):
    end = time.monotonic() + LIMIT
    while stage.lightness() < 30:
        if time.monotonic() > end:
            raise MachineError("the window stays dark on a desktop that has become light")


def password(stage):
    """A wrong one is asked for again; Cancel ends the program; the right one opens the window, in front, in the desktop's looks."""
    machine, window = stage.machine, stage.window
    machine.run("xfconf-query -c xsettings -p /Net/ThemeName -n -t string -s Adwaita-dark &&"
                " xfconf-query -c xsettings -p /Gtk/FontName -n -t string -s 'DejaVu Serif 13'", user="ada")
    window.start()
    window.answer_password("wrong")
    window.wait("label", application=AGENT, name=".*attempt was unsuccessful.*")
    # It takes no answer before it has asked again.
    window.wait("password text", application=AGENT, states=["focused", "enabled"])
    stage.picture("wrong-password")
    window.press("Cancel", application=AGENT)
    machine.until(NOTHING_IS_LEFT)
    window.open()
    window.wait("frame", states=["active"])
    _stick(stage)
    stage.picture("dark")
    if stage.lightness() > 30:
        raise MachineError("the window is light on a dark desktop")
    machine.run("xfconf-query -c xsettings -p /Net/ThemeName -s Adwaita", user="ada")
    _becomes_light(stage)
    stage.picture("light")
    _second_start_raises_the_window(stage)
    window.press_link("/media/ada/STICK")
    machine.until("pgrep --uid ada --ignore-case thunar")
    stage.picture("file-manager")
    _quit(stage)


def member(stage):
    """A member of the group is asked for no password, and the window is the member's own."""
    machine, window = stage.machine, stage.window
    stage.log_out()
    machine.run("usermod --append --groups zorvex-admin ada")
    stage.log_in()
    window.start()
    window.wait("tree")
    machine.run(f"pgrep --uid ada --full {THE_PROGRAM} && ! pgrep --uid root --full {THE_PROGRAM}")
    _stick(stage, FAST)
    window.press("Unmount")
    window.wait("button", name="Mount")
    window.format("STICK", "ext4", "MINE")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=MINE | grep -x /media/ada/MINE")
    machine.until("echo mine > /media/ada/MINE/file", user="ada")
    window.page("Maintenance")
    window.press("Check")
    window.wait("label", name="MINE: no errors found")
    machine.until("grep -q mine /media/ada/MINE/file", user="ada")
    _second_start_raises_the_window(stage)

    # A repair runs on to its end without its user's session.
    window.page("Info")
    window.press("Unmount")
    window.wait("button", name="Mount")
    _begin_slowly(stage, "MINE", "Repair", DAMAGE)
    _repair_outlives_the_session(stage, "MINE")


def _on_wayland(stage, desktop):
    machine, window = stage.machine, stage.window
    stage.log_out()
    stage.log_in(desktop)
    window.open()
    _stick(stage)
    stage.picture("window")
    _second_start_raises_the_window(stage)
    window.press_link("/media/ada/STICK")
    machine.until("pgrep --uid ada --ignore-case thunar")
    window.page("Maintenance")
    window.press("Check")
    window.wait("label", name="STICK: no errors found")
    _quit(stage)


def wayland(stage):
    _on_wayland(stage, "sway-alone")


def wayland_with_x11(stage):
    _on_wayland(stage, "sway")


def second_user(stage):
    """Two users at one machine have a window each; neither is in the other's way."""
    machine, window = stage.machine, stage.window
    window.open()
    other = stage.window_of("bea")
    machine.press_keys("ctrl", "alt", "f2")
    machine.until("pgrep --exact agetty --terminal tty2")
    machine.type_line("bea")
    # What is typed before the question stands there is thrown away.
    machine.until("pgrep --exact login --terminal tty2 && stty --file=/dev/tty2 --all | grep --word-regexp -e -echo")
    machine.type_line("secret")
    machine.until("pgrep --uid bea --exact bash")
    machine.type_line("startx -- -nolisten tcp vt2")
    machine.until("pgrep --uid bea --exact xfwm4 && session=$(loginctl show-user bea --property Display --value) &&"
                  " journalctl --boot --quiet --unit polkit --grep \"Registered Authentication Agent for unix-session:$session \"",
                  limit=240)
    other.open()
    machine.run(f"test $(pgrep --uid root --full ^/usr/bin/{THE_PROGRAM} --count) = 2")
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "STICK"))
    machine.plug_stick("stick")
    other.select("STICK")
    other.press("Mount")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=STICK | grep -x /media/bea/STICK")
    stage.picture("bea")
    other.choose_in_menu("File", "Quit")
    window.row("STICK")


def _begin_slowly(stage, label, button, damage=None):
    """Begins a check or a repair of the stick's volume, and keeps it from its end."""
    machine, window = stage.machine, stage.window
    window.select(label)
    if damage:
        machine.run(damage.format(label=label))
    machine.set_speed("stick", 50000)
    window.page("Maintenance")
    window.press(button)
    machine.until("pgrep e2fsck")


def _repair_outlives_the_session(stage, label):
    machine = stage.machine
    stage.log_out()
    machine.run("pgrep e2fsck")
    machine.set_speed("stick", 0)
    machine.until(f"! pgrep e2fsck && {NOTHING_IS_LEFT}")
    machine.run(f"e2fsck -fn /dev/disk/by-label/{label}")


def _slow_stick(stage):
    stage.window.open()
    stage.machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "SLOW"), slow=FAST)
    stage.machine.plug_stick("stick")


def log_out_during_check(stage):
    """The check ends with its user's session."""
    _slow_stick(stage)
    _begin_slowly(stage, "SLOW", "Check")
    stage.log_out()
    stage.machine.until(f"! pgrep e2fsck && {NOTHING_IS_LEFT}")


def log_out_during_repair(stage):
    """A repair runs on to its end, whatever happens to its user's session."""
    _slow_stick(stage)
    _begin_slowly(stage, "SLOW", "Repair", DAMAGE)
    _repair_outlives_the_session(stage, "SLOW")
