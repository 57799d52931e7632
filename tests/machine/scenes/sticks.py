# SPDX-License-Identifier: MIT
"""The life of a stick: plugged, mounted, written to, checked, mended, formatted, pulled, plugged again."""
import media
from qemu import MachineError

BEGINS_AT = "window"
FAST, SLOW = 1 << 30, 20000  # bytes a second


def _life(stage, kind, driver, menu_name, damage):
    machine, window = stage.machine, stage.window
    image = media.stick(stage.folder, kind, "STICK")
    machine.add_medium("stick", source=image)
    machine.plug_stick("stick")
    window.row("STICK")
    window.select("STICK")
    window.press("Mount")
    machine.until(f"findmnt --noheadings --output FSTYPE,TARGET --source LABEL=STICK | grep -x '{driver} *//*media/ada/STICK'")
    machine.run("echo mine > /media/ada/STICK/file", user="ada")

    # After a check it is where it was.
    window.page("Maintenance")
    window.press("Check")
    window.operation_ends("Check")
    machine.until("grep -q mine /media/ada/STICK/file", user="ada")

    # Damage is found and mended.
    window.page("Info")
    window.press("Unmount")
    machine.until("! findmnt --source LABEL=STICK")
    machine.run(damage.format(node="/dev/disk/by-label/STICK"))
    window.page("Maintenance")
    window.press("Check")
    window.answer("Filesystem needs to be repaired.", "OK")
    window.press("Repair")
    window.operation_ends("Repair")
    window.press("Check")
    window.operation_ends("Check")

    window.format("STICK", menu_name, "FRESH")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=FRESH | grep -x /media/ada/FRESH")
    machine.run("echo mine > /media/ada/FRESH/file && sync /media/ada/FRESH/file", user="ada")

    # Pulled while it is mounted: no alert, no mount is left.
    machine.pull("stick")
    window.wait_row_gone("FRESH")
    machine.until("! findmnt --source LABEL=FRESH && ! test -e /media/ada/FRESH")
    machine.plug_stick("stick")
    window.row("FRESH")
    if "label: 'Error'" in window.listed():
        raise MachineError(window.listed())


def fat32(stage):
    _life(stage, "fat32", "vfat", "MS-DOS (FAT32)", "printf Z | dd of={node} bs=1 seek=16600 conv=notrunc")


def exfat(stage):
    # A file in the root directory without the entry that tells where its contents are.
    damage = """python3 -c 'import struct
with open("{node}", "r+b") as volume:
    boot = volume.read(512)
    heap, _, root = struct.unpack_from("<III", boot, 88)
    volume.seek((heap + (root - 2) * (1 << boot[109])) * 512 + 4 * 32)
    volume.write(b"\\x40")'"""
    _life(stage, "exfat", "exfat", "exFAT", damage)


def ntfs(stage):
    # The copy of the first records.
    damage = """python3 -c 'import struct
with open("{node}", "r+b") as volume:
    boot = volume.read(512)
    sector, sectors = struct.unpack_from("<HB", boot, 11)
    volume.seek(struct.unpack_from("<Q", boot, 56)[0] * sector * sectors)
    volume.write(bytes(1024))'"""
    _life(stage, "ntfs", stage.ntfs_driver, "NTFS", damage)


def write_protected(stage):
    """It can be mounted and checked; it is neither formatted nor repaired."""
    machine, window = stage.machine, stage.window
    image = media.stick(stage.folder, "fat32", "LOCKED")
    machine.add_medium("stick", source=image, read_only=True)
    machine.plug_stick("stick")
    window.row("LOCKED")
    window.select("LOCKED")
    window.press("Mount")
    machine.until("findmnt --noheadings --output OPTIONS --source LABEL=LOCKED | grep -w ro")
    window.wait_gone("page tab", name="Format")
    status, output = machine.status("diskutil eraseVolume exFAT X /dev/disk/by-label/LOCKED")
    if status == 0 or "write" not in output and "read-only" not in output:
        raise MachineError(f"the erase of a write-protected stick ends with {status}: {output}")


def _slow_stick(stage):
    """A stick whose volume is selected, and which has become slow by then."""
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "SLOW"), slow=FAST)
    machine.plug_stick("stick")
    window.select("SLOW")
    machine.set_speed("stick", SLOW)


def pulled_during_check(stage):
    """No verdict: the user is told that the disk is gone, and finds nothing in the way of the next one."""
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.page("Maintenance")
    window.press("Check")
    window.wait("progress bar")
    machine.until("pgrep e2fsck")
    machine.pull("stick")
    window.answer("is no longer there", "OK")
    window.wait_row_gone("SLOW")
    machine.until("! pgrep diskutil")


def stopped_check(stage):
    """Stop ends the tool; nothing is claimed of the volume, and it can be checked again."""
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.page("Maintenance")
    window.press("Check")
    window.press("Stop")
    window.wait("label", name="SLOW: not finished, nothing is known")
    machine.until("! pgrep diskutil && ! pgrep e2fsck")
    machine.set_speed("stick", 0)
    window.press("Check")
    window.wait("label", name="SLOW: no errors found")


def pulled_during_format(stage):
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.page("Format")
    window.choose("ext4")
    window.press("Format…")
    window.press("Erase and Format")
    window.wait("progress bar")
    machine.pull("stick")
    window.press("OK")
    window.wait_row_gone("SLOW")
    machine.until("! pgrep diskutil")


def pulled_while_idle_or_asked_about(stage):
    """A stick that comes back while the question stands there is not the one that was asked about."""
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "ext4", "STICK"))
    machine.plug_stick("stick")
    window.select("STICK")
    machine.pull("stick")
    window.wait_row_gone("STICK")
    machine.plug_stick("stick")
    window.select("STICK")
    window.page("Format")
    window.choose("ext4")
    window.press("Format…")
    window.wait("button", name="Erase and Format")
    machine.pull("stick")
    window.wait_row_gone("STICK")
    machine.plug_stick("stick")
    window.row("STICK")
    window.press("Erase and Format")
    window.answer("Nothing was erased", "OK")
    machine.run("e2fsck -fn /dev/disk/by-label/STICK")


def pulled_while_written_to(stage):
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.press("Mount")
    machine.until("findmnt --source LABEL=SLOW")
    machine.set_speed("stick", SLOW)
    writer = machine.begin("dd if=/dev/zero of=/media/ada/SLOW/file bs=64k count=400 conv=fsync")
    machine.until("test -s /media/ada/SLOW/file")
    machine.pull("stick")
    window.wait_row_gone("SLOW")
    assert writer.result()[0] != 0
    machine.until("! findmnt /media/ada/SLOW")
    machine.set_speed("stick", 0)
    machine.plug_stick("stick")
    window.select("SLOW")
    if "label: 'Error'" in window.listed():
        raise MachineError(window.listed())


def pulled_during_repair(stage):
    """The user is told; the stick can be mended once it is back."""
    machine, window = stage.machine, stage.window
    _slow_stick(stage)
    window.page("Maintenance")
    window.press("Repair")
    window.wait("progress bar")
    machine.until("pgrep e2fsck")
    machine.pull("stick")
    window.answer("is no longer there", "OK")
    window.wait_row_gone("SLOW")
    machine.until("! pgrep diskutil")
    machine.set_speed("stick", 0)
    machine.plug_stick("stick")
    window.select("SLOW")
    window.page("Maintenance")
    window.press("Repair")
    window.operation_ends("Repair")
    window.press("Check")
    window.wait("label", name="SLOW: no errors found")
