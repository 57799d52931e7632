# SPDX-License-Identifier: MIT
"""Volumes of internal disks and discs: mounted where their user can go, ejected when they can be."""
import media
from qemu import MachineError

BEGINS_AT = "window"
ROOTS_WINDOW = ["internal"]


def internal(stage):
    """What the window mounts after the password, its user can open, see the free space of, and unmount."""
    machine, window = stage.machine, stage.window
    machine.run("mke2fs -q -F -t ext4 -L HOMEVOL -E root_owner=1000:1000 /dev/sda && udevadm settle")
    window.row("HOMEVOL")
    window.select("HOMEVOL")
    window.press("Mount")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=HOMEVOL | grep -x /media/ada/HOMEVOL")
    machine.run("ls /media/ada/HOMEVOL && echo mine > /media/ada/HOMEVOL/file && df /media/ada/HOMEVOL", user="ada")
    window.wait("label", name=".* free .*")
    machine.run("udisksctl unmount --no-user-interaction --block-device /dev/sda", user="ada")
    window.wait("button", name="Mount")
    window.wait_gone("button", name="Eject")


def disc(stage):
    machine, window = stage.machine, stage.window
    first, second = (media.disc(stage.folder, label, {"file": label}) for label in ("FIRST", "SECOND"))
    machine.insert("optical", first)
    window.row("FIRST")
    window.select("FIRST")
    window.press("Mount")
    machine.until("grep -q FIRST /media/ada/FIRST/file", user="ada")
    window.choose_in_menu("Disk", "Eject")
    window.wait_row_gone("FIRST")
    if not machine.is_tray_open("optical"):
        raise MachineError("the tray is closed")
    machine.insert("optical", second)
    window.row("SECOND")
    window.select("SECOND")
    window.press("Mount")
    machine.until("grep -q SECOND /media/ada/SECOND/file", user="ada")


def member(stage):
    """What diskutil formats for a member of the group is theirs, without a password."""
    machine = stage.machine
    machine.run("usermod --append --groups zorvex-admin ada")
    machine.run("diskutil eraseVolume ext4 MINE /dev/sda", user="ada", limit=180)
    machine.until("findmnt --noheadings --output TARGET --source LABEL=MINE | grep -x /media/ada/MINE")
    machine.run("echo mine > /media/ada/MINE/file && df /media/ada/MINE", user="ada")
    machine.run("udisksctl unmount --no-user-interaction --block-device /dev/sda", user="ada")


def card_reader(stage):
    """Of a reader with two slots, one is ejected; the other one lives on."""
    machine, window = stage.machine, stage.window
    for name in ("LEFT", "RIGHT"):
        machine.add_medium(name, source=media.volume(stage.folder, "ext4", name))
    machine.plug_card_reader("LEFT", "RIGHT")
    for name in ("LEFT", "RIGHT"):
        window.select(name)
        window.press("Mount")
        machine.until(f"findmnt --noheadings --output TARGET --source LABEL={name} | grep -x /media/ada/{name}")
    window.select("LEFT")
    window.choose_in_menu("Disk", "Eject")
    machine.until("! findmnt --source LABEL=LEFT")
    window.wait_row_gone("LEFT")
    machine.run("echo mine >/media/ada/RIGHT/file && sync /media/ada/RIGHT/file")
    window.select("RIGHT")
    window.press("Unmount")
    window.wait("button", name="Mount")
