// SPDX-License-Identifier: MIT
//
// Starting operations from a window, and waiting for their end.
#pragma once

#include "tests/soak/SoakWorld.h"

// Selects the volume and presses a button; the record is busy afterwards.
void startMountOrUnmount(const SoakVolume &volume);
void startCheck(const SoakVolume &volume);

// Selects the volume and a file system that fits it; its name.
QString chooseFormat(SoakWorld &world, const SoakVolume &volume);

// The same, types the label and presses Format. A sheet asks whether to go on.
QString openFormatSheet(SoakWorld &world, const SoakVolume &volume, const QString &label);

// Starts what is possible with the volume.
void startAnything(SoakWorld &world, const SoakVolume &volume);

// The volumes without an operation, as a window chosen at random has them.
std::vector<SoakVolume> idleVolumes(SoakWorld &world);

// Waits until the volume's operation has ended, while a user does this and that in the windows. What the user
// was told at its end.
QStringList waitForEnd(SoakWorld &world, const SoakVolume &volume);

// Whether the window offers to check the volume.
bool canBeChecked(const SoakVolume &volume);

// Whether the volume holds a file system that every machine can mount.
bool isMountableEverywhere(const QString &node);

// Whether the text says that the machine cannot mount the volume, and it holds nothing that every machine
// can.
bool mayBeUnmountable(const SoakVolume &volume, const QString &text);
