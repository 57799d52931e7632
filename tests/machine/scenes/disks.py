# SPDX-License-Identifier: MIT
"""Disks as they come from a shop, and sticks that carry a system's installer."""
import subprocess

import media

BEGINS_AT = "window"
MIB = 1 << 20

# What the menu calls it; a label that it takes; and how the kernel mounts it.
FILESYSTEMS = [("ext4", "Four", "ext4"), ("ext3", "Three", "ext3"), ("ext2", "Two", "ext2"), ("XFS", "Ex", "xfs"),
               ("Btrfs", "Butter", "btrfs"), ("F2FS", "Flash", "f2fs"), ("Universal Disk Format (UDF)", "Disc", "udf"),
               ("exFAT", "Extended", "exfat"), ("MS-DOS (FAT16)", "SIXTEEN", "vfat"), ("MS-DOS (FAT32)", "FATTY", "vfat"),
               ("NTFS", "Windows", None)]


def blank_nvme(stage):
    """A disk without anything on it is formatted as each file system."""
    machine, window = stage.machine, stage.window
    machine.add_medium("blank", size=512 * MIB)
    machine.plug("blank-device", "nvme", bus="slot1", drive="blank", serial="BLANK")
    name = "QEMU NVMe Ctrl"
    window.row(name)
    for filesystem, label, driver in FILESYSTEMS:
        window.format(name, filesystem, label)
        name = label
        machine.until(f"findmnt --noheadings --output FSTYPE --source LABEL={label} | grep -x {driver or stage.ntfs_driver}")
        # A moment after the mount, it becomes its user's.
        machine.until(f"echo mine > /media/ada/{label}/file", user="ada")
        assert machine.run(f"lsblk --noheadings --output LABEL /dev/nvme0n1").strip() == label
    window.page("Info")
    window.wait_gone("button", name="Eject")


def installer_stick(stage):
    """A stick with a hybrid image becomes one exFAT volume, which the kernel's own driver reads."""
    machine, window = stage.machine, stage.window
    image = media.installer(stage.folder, "INSTALLER")
    subprocess.run(["truncate", "--size", str(256 * MIB), str(image)], check=True)
    machine.add_medium("stick", source=image)
    machine.plug_stick("stick")
    window.select("INSTALLER, iso9660, disk")
    window.choose_in_menu("Disk", "Erase Disk…")
    window.choose("exFAT")
    window.type_into("text", "Volume label:", "Photos")
    window.press("Erase…")
    window.press("Erase and Format")
    window.row("Photos")
    machine.until("findmnt --noheadings --output FSTYPE,TARGET --source LABEL=Photos | grep -x 'exfat *//*media/ada/Photos'")
    machine.run("echo mine > /media/ada/Photos/file && sync /media/ada/Photos/file", user="ada")
    assert machine.run("lsblk --noheadings --output PTTYPE /dev/disk/by-id/usb-*STICK*-0:0 | sort -u").strip() == "dos"
    assert "INSTALLER" not in machine.run("wipefs --noheadings /dev/disk/by-id/usb-*STICK*-0:0")
    window.wait("tree item", name="Photos.*", states=["selected"])
