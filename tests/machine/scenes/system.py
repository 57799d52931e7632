# SPDX-License-Identifier: MIT
"""The disks that the machine lives on: the one that it runs from, and volumes of fstab, mounted or not."""
from qemu import MachineError

BEGINS_AT = "window"
ROOTS_WINDOW = ["running"]
ESP = "C12A7328-F81F-11D2-BA4B-00A0C93EC93B"


def _is_refused(machine, command, reason):
    status, output = machine.status(command)
    if status == 0 or reason not in output:
        raise MachineError(f"{command} ends with {status}, and says not why: {output}")


def _window_refuses(window, name):
    window.select(name)
    window.page("Format")
    window.choose("ext4")
    window.press("Format…")
    window.answer("belongs to the running system", "OK")
    window.page("Info")


def running(stage):
    """The disk that the machine runs from can be looked at, and nothing else."""
    machine, window = stage.machine, stage.window
    window.select("SYSTEM")
    window.wait_gone("button", name="Eject")
    _window_refuses(window, "SYSTEM")
    for command in ("eraseVolume ext4 GONE /dev/vda", "eraseDisk ext4 GONE /dev/vda", "repairVolume /dev/vda"):
        _is_refused(machine, f"diskutil {command}", "system")
    window.page("Info")
    window.press("Unmount")
    window.press("OK|Cancel")
    machine.run("findmnt /dev/vda && touch /still-here && rm /still-here")


def _system_volumes(machine):
    """An ESP that is mounted when it is needed, a /boot and a /home that are not mounted, on the SATA disk."""
    machine.run(f"""sfdisk -q --wipe always /dev/sda <<'TABLE'
label: gpt
size=100M, type={ESP}, name=esp
size=200M, type=linux, name=boot
size=200M, type=linux, name=home
size=200M, type=linux, name=other
TABLE
udevadm settle
mkfs.fat -F 32 -n ESP /dev/sda1 && mke2fs -q -t ext4 -L BOOT /dev/sda2 && mke2fs -q -t ext4 -L HOME /dev/sda3
mke2fs -q -t ext4 -L OTHER /dev/sda4
udevadm settle
mkdir -p /efi /elsewhere
echo "UUID=$(blkid -o value -s UUID /dev/sda1) /efi vfat noauto,x-systemd.automount,x-systemd.idle-timeout=1 0 0" >>/etc/fstab
echo "LABEL=BOOT /boot ext4 noauto 0 2" >>/etc/fstab
echo "PARTUUID=$(blkid -o value -s PARTUUID /dev/sda3) /home ext4 noauto 0 2" >>/etc/fstab
systemctl daemon-reload && systemctl start efi.automount""")


def fstab(stage):
    """What fstab names is the system's, mounted or not; its neighbour on the same disk is not."""
    machine, window = stage.machine, stage.window
    _system_volumes(machine)
    for name in ("BOOT", "HOME"):
        _window_refuses(window, name)
    for number in (1, 2, 3):
        for command in (f"eraseVolume ext4 GONE /dev/sda{number}", f"repairVolume /dev/sda{number}"):
            _is_refused(machine, f"diskutil {command}", "system")
    _is_refused(machine, "diskutil eraseDisk ext4 GONE /dev/sda", "system")
    # Whoever looks into the folder has it mounted; that changes nothing.
    machine.run("ls /efi && findmnt /efi --types vfat")
    _is_refused(machine, "diskutil eraseVolume ext4 GONE /dev/sda1", "system")
    assert machine.run("lsblk --noheadings --output LABEL /dev/sda").split() == ["ESP", "BOOT", "HOME", "OTHER"]
    window.format("OTHER", "ext4", "MINE")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=MINE | grep -x /media/ada/MINE")
