# SPDX-License-Identifier: MIT
"""The power goes while a tool writes: after the next start, the tree is true and the volume can be formatted and mended."""
import media

BEGINS_AT = "window"
FAST, SLOW = 1 << 30, 100000  # bytes a second


def _slow_stick(stage):
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "SLOW"), slow=FAST)
    machine.plug_stick("stick")
    window.select("SLOW")


def _lose_power(stage):
    """Until the window is open again on the user's desktop."""
    machine = stage.machine
    machine.reset()
    machine.set_speed("stick", 0)
    stage.log_in()
    stage.window.open()


def during_format(stage):
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.page("Format")
    window.choose("ext4")
    window.press("Format…")
    machine.set_speed("stick", SLOW)
    window.press("Erase and Format")
    machine.until("pgrep mke2fs || pgrep mkfs")
    _lose_power(stage)
    node = machine.until("readlink -e /dev/disk/by-id/usb-*STICK*-part1").strip()
    label = machine.run(f"lsblk --noheadings --output LABEL {node}").strip()
    name = label or window.wait("tree item", name="disk[0-9]+s1, .*")["name"].split(",")[0]
    window.format(name, "ext4", "AGAIN")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=AGAIN | grep -x /media/ada/AGAIN")


def during_repair(stage):
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    # A wrong count of free blocks and inodes, and a bitmap of zeros: much to write.
    machine.run("dd if=/dev/zero of=/dev/disk/by-label/SLOW bs=1024 seek=260 count=64 conv=notrunc status=none; udevadm settle")
    machine.set_speed("stick", SLOW)
    window.page("Maintenance")
    window.press("Repair")
    machine.until("pgrep e2fsck")
    _lose_power(stage)
    window.select("SLOW")
    window.page("Maintenance")
    window.press("Repair")
    window.operation_ends("Repair")
    window.press("Check")
    window.wait("label", name="SLOW: no errors found")
