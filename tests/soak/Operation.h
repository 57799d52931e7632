// SPDX-License-Identifier: MIT
//
// Starting operations from a window, and waiting for their end.
#pragma once

#include "tests/soak/SoakWorld.h"

// Selects the volume and presses a button; the record is busy afterwards.
void startMountOrUnmount(const SoakVolume &volume);
void startCheck(const SoakVolume &volume);

// Selects the volume, chooses a file system that fits it, types the label and presses Format; the name of the
// file system. A sheet asks whether to go on.
QString openFormatSheet(SoakWorld &world, const SoakVolume &volume, const QString &label);

// Waits until the volume's operation has ended, while a user does this and that in the windows. What the user
// was told at its end.
QStringList waitForEnd(SoakWorld &world, const SoakVolume &volume);

// Whether the window offers to check the volume.
bool canBeChecked(const SoakVolume &volume);

// Whether the text says that the machine cannot mount the volume, and it holds nothing that every machine
// can.
bool mayBeUnmountable(const SoakVolume &volume, const QString &text);
