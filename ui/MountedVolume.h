// SPDX-License-Identifier: MIT
//
// Finding a volume among the mounted file systems, and a path that leads to it. Asks the mount table it is
// given; takes as long as that takes.
#pragma once

#include "platform/MountTable.h"

#include <optional>

namespace VolumeRules {

// The mounted file system of the medium; null when there is none in the list.
const MountedFilesystem *findVolume(const std::vector<MountedFilesystem> &mounted, const QString &bsdName);

// A path through which the volume can be asked: its mount point. If that leads to another file system by now,
// it is a neighbour with a name that begins like it and that leads to this one.
QByteArray pathToVolume(const MountTable &table, const MountedFilesystem &volume);

} // namespace VolumeRules
