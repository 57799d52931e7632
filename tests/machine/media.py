# SPDX-License-Identifier: MIT
"""What the devices hold: images with partition tables and file systems, made by the same tools as everywhere."""
import pathlib
import subprocess

MIB = 1 << 20

MAKERS = {
    "fat32": ["mkfs.fat", "-F", "32", "-n"],
    "exfat": ["mkfs.exfat", "-L"],
    "ntfs": ["mkntfs", "-q", "-Q", "-F", "-L"],
    "ext4": ["mke2fs", "-q", "-F", "-t", "ext4", "-L"],
}
MBR_TYPES = {"fat32": "c", "exfat": "7", "ntfs": "7", "ext4": "83"}


def volume(folder, kind, label, size=64 * MIB):
    """An image of a file system."""
    file = pathlib.Path(folder) / f"{label}.volume"
    with open(file, "wb") as empty:
        empty.truncate(size)
    subprocess.run([*MAKERS[kind], label, str(file)], check=True, capture_output=True)
    return file


def stick(folder, kind, label, size=64 * MIB):
    """An image of a disk as from a shop: an MBR with one partition."""
    file = pathlib.Path(folder) / f"{label}.disk"
    with open(file, "wb") as empty:
        empty.truncate(size + 2 * MIB)
    table = f"label: dos\nstart=2048, size={size // 512}, type={MBR_TYPES[kind]}\n"
    subprocess.run(["sfdisk", "-q", str(file)], input=table, text=True, check=True)
    contents = volume(folder, kind, label, size)
    subprocess.run(["dd", f"if={contents}", f"of={file}", "bs=1M", "seek=1", "conv=notrunc,sparse", "status=none"], check=True)
    contents.unlink()
    return file


def disc(folder, label, files):
    """An image of a data disc with the files: names and what they hold."""
    tree = pathlib.Path(folder) / f"{label}.tree"
    tree.mkdir()
    for name, contents in files.items():
        (tree / name).write_text(contents)
    file = pathlib.Path(folder) / f"{label}.iso"
    subprocess.run(["xorriso", "-as", "mkisofs", "-quiet", "-V", label, "-J", "-R", "-o", str(file), str(tree)],
                   check=True, capture_output=True)
    return file


def installer(folder, label):
    """An image as a system's installer has it: a data disc that is a disk with partitions as well."""
    tree = pathlib.Path(folder) / f"{label}.tree"
    tree.mkdir()
    (tree / "README").write_text("an installer\n")
    efi = volume(folder, "fat32", "EFI", 40 * MIB)
    file = pathlib.Path(folder) / f"{label}.iso"
    subprocess.run(["xorriso", "-as", "mkisofs", "-quiet", "-V", label, "-J", "-R", "-partition_offset", "16",
                    "-append_partition", "2", "0xef", str(efi), "-o", str(file), str(tree)],
                   check=True, capture_output=True)
    return file
