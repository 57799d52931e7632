// SPDX-License-Identifier: MIT
//
// Decisions of the erase of a whole disk, without a window. Pure functions, any thread.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "filesystems/disk_layout_rules.h"

#include <QString>
#include <QStringList>

namespace EraseDiskRules {

// The string key of the reason why the medium cannot be erased as a disk; null for a whole medium that can be
// written and that nothing is at work on.
const char *reasonKey(const ZorvexDiskManagerDisk &disk);

// The scheme that is offered first.
PartitionScheme firstScheme(const ZorvexDiskManagerDisk &disk);

// What is on a disk: its volumes, each on a line, or what the disk is without any.
QString contentText(const QStringList &volumes, const QString &withoutVolumes);

// The arguments of diskutil, each in single quotes. Nothing is escaped.
QString eraseDiskArguments(
    const QString &personality, const QString &label, PartitionScheme scheme, const QString &bsdName);

// The BSD name of the one volume that the erase makes.
QString newVolumeOf(const QString &bsdName);

} // namespace EraseDiskRules
