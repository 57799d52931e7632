# SPDX-License-Identifier: MIT
"""Encrypted sticks."""
from qemu import MachineError

BEGINS_AT = "window"
MIB = 1 << 20


def _encrypted_stick(stage, kind):
    """Plugs a stick with a volume of LUKS, made inside, with an ext4 volume "Vault" in it."""
    machine = stage.machine
    machine.add_medium("stick", size=96 * MIB)
    machine.plug_stick("stick")
    node = machine.until("readlink -e /dev/disk/by-id/usb-*STICK*").strip()
    machine.run(f"cryptsetup luksFormat --batch-mode --type {kind} --pbkdf pbkdf2 --pbkdf-force-iterations 1000"
                f" --key-file - {node}", stdin="open sesame")
    machine.run(f"cryptsetup open --key-file - {node} vault", stdin="open sesame")
    machine.run("mke2fs -q -t ext4 -L Vault -E root_owner=1000:1000 /dev/mapper/vault && cryptsetup close vault")
    machine.run("udevadm settle")
    return node


def luks2(stage):
    machine, window = stage.machine, stage.window
    node = _encrypted_stick(stage, "luks2")
    window.select("QEMU HARDDISK")
    window.press("Mount")
    window.type_into("password text", "Passphrase", "wrong")
    window.press("Unlock")
    window.wait("label", name="That was not the passphrase.*")
    window.type_into("password text", "Passphrase", "open sesame")
    window.press("Unlock")
    window.row("Vault")
    machine.until("findmnt --noheadings --output TARGET --source LABEL=Vault | grep -x /media/ada/Vault")
    machine.run("echo precious > /media/ada/Vault/file", user="ada")
    assert "open sesame" not in machine.run("journalctl --boot; ps -ef; cat /proc/*/environ 2>/dev/null | tr '\\0' '\\n'")

    # Unmounting locks it again.
    window.select("Vault")
    window.press("Unmount")
    window.wait_row_gone("Vault")
    machine.until("test -z \"$(lsblk --noheadings --output NAME --list --inverse /dev/mapper/luks-* 2>/dev/null)\"")

    # Cancel leaves all as it was.
    window.select("QEMU HARDDISK")
    window.press("Mount")
    window.wait("password text")
    window.press("Cancel")
    window.wait_gone("password text")
    window.wait_gone("label", name="Error")

    # Pulled while it is open.
    window.press("Mount")
    window.type_into("password text", "Passphrase", "open sesame")
    window.press("Unlock")
    window.row("Vault")
    machine.until("grep -q precious /media/ada/Vault/file", user="ada")
    machine.pull("stick")
    window.wait_row_gone("Vault")
    window.wait_row_gone("QEMU HARDDISK")
    machine.until(f"! test -e {node}")


def tool(stage):
    machine = stage.machine
    node = _encrypted_stick(stage, "luks1")
    status, output = machine.status(f"diskutil unlockVolume {node}", user="ada", stdin="wrong\n")
    if status != 22:
        raise MachineError(f"a wrong passphrase ends with {status}: {output}")
    machine.run(f"diskutil unlockVolume {node}", user="ada", stdin="open sesame\n")
    machine.until("test -e /dev/disk/by-label/Vault")
    machine.run(f"diskutil lockVolume {node}", user="ada")
    machine.until("! test -e /dev/disk/by-label/Vault")
    # An erase takes the header, and leaves no mapping.
    machine.run(f"diskutil eraseVolume ext4 Plain {node}", limit=120)
    machine.run(f"test $(lsblk --noheadings --output FSTYPE {node}) = ext4 && ! ls /dev/mapper/luks-*")
