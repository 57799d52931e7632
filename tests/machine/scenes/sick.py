# SPDX-License-Identifier: MIT
"""Disks that fail or are slow: the device mapper's targets error, flakey and delay, in the place of a part of the disk.

The volume is the same each time: two groups of 128 MiB. The part that is sick lies in the second one, behind its bitmaps:
it holds inodes, which a check reads and a format writes, and a mount does not look at.
"""
BEGINS_AT = "window"
ROOTS_WINDOW = ["error", "delay"]
SECTORS = 1 << 19  # of the volume
START = 2048  # of the volume on the disk; what lies before it makes the disk itself one without content
SICK, SICK_SECTORS = (1 << 18) + 512, 4096
ALL = f"0 {SECTORS} linear /dev/sda {START}"


def _table(sick):
    return "\n".join([f"0 {SICK} linear /dev/sda {START}",
                      f"{SICK} {SICK_SECTORS} " + sick.format(place=f"/dev/sda {START + SICK}"),
                      f"{SICK + SICK_SECTORS} {SECTORS - SICK - SICK_SECTORS} linear /dev/sda {START + SICK + SICK_SECTORS}"])


def _volume(stage, table):
    """Makes the volume "SICK", as the table has it from then on, and selects it."""
    machine, window = stage.machine, stage.window
    machine.run("dmsetup create sick", stdin=ALL)
    machine.run("mke2fs -q -t ext4 -b 4096 -L SICK -O ^flex_bg,^uninit_bg,^metadata_csum -E lazy_itable_init=0"
                " /dev/mapper/sick && dmsetup remove --retry sick")
    window.row("ZV-SATA")
    machine.run("dmsetup create sick", stdin=table)
    window.select("SICK")


def _change(stage, table):
    stage.machine.run("dmsetup suspend sick && dmsetup load sick && dmsetup resume sick && udevadm settle", stdin=table)


def _heal(stage):
    _change(stage, ALL)
    # Whoever writes next is told of writes that were lost before.
    stage.machine.status("sync /dev/mapper/sick")


def _name(window):
    """Of the row, whatever it is after a format that failed."""
    return window.wait("tree item", name="(?!SYSTEM|ZV-SATA).*")["name"].split(",")[0]


def _format_fails_until_it_is_healed(stage):
    window = stage.window
    window.page("Format")
    window.choose("ext4")
    window.press("Format…")
    window.press("Erase and Format")
    window.press("OK")
    _heal(stage)
    window.format(_name(window), "ext4", "SICK")


def _works(stage):
    """The row can be used again."""
    window = stage.window
    window.select("SICK")
    window.page("Maintenance")
    window.press("Check")
    window.wait("label", name="SICK: no errors found")


def error(stage):
    """What cannot be read is no verdict: the user is told that the disk is sick, by check and repair alike."""
    machine, window = stage.machine, stage.window
    _volume(stage, _table("error"))
    window.press("Mount")
    machine.until("findmnt --source LABEL=SICK")
    window.press("Unmount")
    window.wait("button", name="Mount")
    window.page("Maintenance")
    window.press("Check")
    window.answer("cannot be read to its end", "OK")
    window.press("Repair")
    window.answer("cannot be read to its end", "OK")
    _change(stage, f"0 {SICK} linear /dev/sda {START}\n{SICK} {SECTORS - SICK} error")
    _format_fails_until_it_is_healed(stage)
    machine.until("findmnt --source LABEL=SICK")
    _works(stage)


def flakey(stage):
    """Writes fail, reads do not: a check is clean, a format is not called done."""
    window = stage.window
    _volume(stage, _table("flakey {place} 0 600 1 error_writes"))
    window.page("Maintenance")
    window.press("Check")
    window.wait("label", name="SICK: no errors found")
    _format_fails_until_it_is_healed(stage)
    _works(stage)


def delay(stage):
    """A disk that answers late holds up nothing but itself."""
    machine, window = stage.machine, stage.window
    _volume(stage, f"0 {SECTORS} delay /dev/sda {START} 100")
    window.press("Mount")
    machine.until("findmnt --source LABEL=SICK")
    machine.run("dd if=/dev/urandom of=/media/ada/SICK/file bs=64k count=64 status=none")
    window.press("Unmount")
    window.wait("label", name="Unmounting.*")
    window.wait("button", name="Mount")
    window.page("Maintenance")
    window.press("Check")
    window.wait("progress bar")
    window.select("ZV-SATA")
    window.select("SICK")
    window.wait("label", name="SICK: no errors found")
