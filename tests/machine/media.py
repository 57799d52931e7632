# SPDX-License-Identifier: MIT
"""What the devices hold."""
import pathlib
import subprocess


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
