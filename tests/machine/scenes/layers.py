# SPDX-License-Identifier: MIT
"""What the kernel puts on top of partitions, and partitions in every kind of table, read by the kernel itself."""
from qemu import MachineError

BEGINS_AT = "window"


def _table(machine):
    """Divides the SATA disk: LUKS, LVM, RAID, swap, and an ext4 volume."""
    machine.run("""sfdisk -q --wipe always /dev/sda <<'TABLE'
label: gpt
size=200M, type=linux, name=one
size=200M, type=linux, name=two
size=200M, type=linux, name=three
size=200M, type=swap, name=four
size=200M, type=linux, name=five
TABLE
udevadm settle""")


def used(stage):
    """Each is shown as what it is; what is in use is refused, by the window before the question and by diskutil."""
    machine, window = stage.machine, stage.window
    _table(machine)
    machine.run("cryptsetup luksFormat --batch-mode --pbkdf pbkdf2 --pbkdf-force-iterations 1000 --key-file - /dev/sda1",
                stdin="secret")
    machine.run("cryptsetup open --key-file - /dev/sda1 opened && mke2fs -q -t ext4 -L OPENED /dev/mapper/opened",
                stdin="secret")
    machine.run("pvcreate -q /dev/sda2 && vgcreate -q group /dev/sda2 && lvcreate -q -n logical -l 100%FREE --zero n group"
                " && mke2fs -q -t ext4 -L LOGICAL /dev/group/logical")
    machine.run("mdadm --create /dev/md0 --run --level=1 --raid-devices=2 /dev/sda3 missing && mke2fs -q -t ext4 -L ARRAY /dev/md0")
    machine.run("mkswap -q -L SWAPPY /dev/sda4 && swapon /dev/sda4")
    machine.run("mke2fs -q -t ext4 -L PLAIN /dev/sda5")
    for name in ("OPENED", "LOGICAL", "ARRAY", "PLAIN"):
        window.row(name)
    for row, shown, reason in (("one", "encrypted", "encrypted and unlocked"), ("two", "LVM member", "volume group that is in use"),
                               ("machine:0", "RAID member", "RAID array that is in use"),
                               ("SWAPPY", "swap space", "in use as swap space")):
        window.select(row)
        window.wait("label", name=f".*{shown}.*")
        window.page("Format")
        window.choose("ext4")
        window.press("Format…")
        window.answer(reason, "OK")
        window.page("Info")
    for number in (1, 2, 3, 4):
        status, output = machine.status(f"diskutil eraseVolume ext4 GONE /dev/sda{number}")
        if status == 0:
            raise MachineError(f"/dev/sda{number} was erased while it was in use: {output}")
    status, output = machine.status("diskutil eraseDisk ext4 GONE /dev/sda")
    if status == 0:
        raise MachineError(f"the disk was erased while it was in use: {output}")
    for label in ("OPENED", "LOGICAL", "ARRAY", "PLAIN"):
        machine.run(f"e2fsck -fn /dev/disk/by-label/{label}")
    window.format("LOGICAL", "ext4", "RENEWED")


def logical_partitions(stage):
    """The extended partition has no row; the logical ones have."""
    machine, window = stage.machine, stage.window
    machine.run("""sfdisk -q --wipe always /dev/sda <<'TABLE'
label: dos
size=400M, type=83
type=5
size=400M, type=83
size=400M, type=83
TABLE
udevadm settle""")
    machine.run("for n in 1 5 6; do mke2fs -q -t ext4 -L PART$n /dev/sda$n; done")
    for name in ("PART1", "PART5", "PART6"):
        window.row(name)
    listed = machine.run("diskutil list")
    if "sda2" in listed:
        raise MachineError(f"the extended partition is listed:\n{listed}")
    window.format("PART5", "XFS", "Inside")
    machine.until("findmnt --noheadings --output FSTYPE --source LABEL=Inside | grep -x xfs")
