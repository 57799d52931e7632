# SPDX-License-Identifier: MIT
"""A user's desktop: who may do without a password, and what becomes of a check or a repair when its user logs out."""
import media
from qemu import MachineError
from window import PROGRAM

BEGINS_AT = "desktop"
THE_PROGRAM = f"[{PROGRAM[0]}]{PROGRAM[1:]}"  # as a pattern, which does not match the command that looks for it
NOTHING_IS_LEFT = f"! pgrep --full {THE_PROGRAM} && ! pgrep diskutil"


def _stick(stage):
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "STICK"))
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


def member(stage):
    """A member of the group is asked for no password, and the window is the member's own."""
    machine, window = stage.machine, stage.window
    stage.log_out()
    machine.run("usermod --append --groups zorvex-admin ada")
    stage.log_in()
    window.start()
    window.wait("tree")
    machine.run(f"pgrep --uid ada --full {THE_PROGRAM} && ! pgrep --uid root --full {THE_PROGRAM}")
    _stick(stage)
    window.press("Unmount")
    window.wait("button", name="Mount")
    window.format("STICK", "ext4", "MINE")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=MINE | grep -x /media/ada/MINE")
    machine.run("echo mine > /media/ada/MINE/file", user="ada")
    window.page("Maintenance")
    window.press("Check")
    window.wait("label", name="MINE: no errors found")
    machine.until("grep -q mine /media/ada/MINE/file", user="ada")
    _second_start_raises_the_window(stage)
    _quit(stage)


def _slow_check_or_repair(stage, button):
    machine, window = stage.machine, stage.window
    window.open()
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "SLOW"), slow=1 << 30)
    machine.plug_stick("stick")
    window.select("SLOW")
    machine.run("dd if=/dev/zero of=/dev/disk/by-label/SLOW bs=1024 seek=260 count=64 conv=notrunc status=none; udevadm settle")
    machine.set_speed("stick", 50000)
    window.page("Maintenance")
    window.press(button)
    machine.until("pgrep e2fsck")


def log_out_during_check(stage):
    """The check ends with its user's session."""
    machine = stage.machine
    _slow_check_or_repair(stage, "Check")
    stage.log_out()
    machine.until(f"! pgrep e2fsck && {NOTHING_IS_LEFT}")


def log_out_during_repair(stage):
    """A repair runs on to its end, whatever happens to its user's session."""
    machine = stage.machine
    _slow_check_or_repair(stage, "Repair")
    stage.log_out()
    machine.set_speed("stick", 0)
    machine.until(f"! pgrep e2fsck && {NOTHING_IS_LEFT}")
    machine.run("e2fsck -fn /dev/disk/by-label/SLOW")
