# SPDX-License-Identifier: MIT
"""Sticks on a USB port, on the user's desktop."""
import media

BEGINS_AT = "window"


def fat32(stage):
    machine, window = stage.machine, stage.window
    machine.add_medium("stick", source=media.stick(stage.folder, "fat32", "STICK"))
    machine.plug_stick("stick")
    window.row("STICK")
    print(window.listed())
    machine.picture("/tmp/screen.png")
