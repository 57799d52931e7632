// SPDX-License-Identifier: MIT
//
// The partitions that the kernel has of a disk, whatever the table on it says. Needs the administrator's
// rights. Any thread.
#pragma once

#include <QString>

// Whether the kernel has partitions of a disk of this kind at all. It has none of what the device mapper
// makes.
bool takesPartitions(const QString &diskNode);

// Whether the kernel has, of this disk, just one partition, numbered 1, in this place (bytes). If not, has it
// remove those that it has and add that one, as far as they are not in use for a moment: call it again then.
bool makeOnlyPartition(const QString &diskNode, qint64 start, qint64 size);
