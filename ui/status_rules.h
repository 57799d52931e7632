// SPDX-License-Identifier: MIT
//
// What the Info page says of a medium in one sentence, and the quiet words beside its values. Functions of
// values, any thread.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"

#include <optional>

namespace StatusRules {

// The first sentence that is true of the medium.
enum class Status {
    Partitions, // a whole disk with partitions
    Usage, // mounted, and how full it is
    AlmostFull,
    SpaceUnknown,
    Locked,
    Unlocked, // encrypted, with what can be read of it on a medium of its own
    Swap,
    LvmMember,
    RaidMember,
    NotRecognized,
    OtherContent,
    NotMounted,
};

// What is known of the medium beside its record.
struct Facts
{
    ProbedContent::Kind content = ProbedContent::Kind::Nothing;
    bool isUnlocked = false;
    std::optional<qint64> freeSpace; // bytes; of a mounted volume that tells
};
Status statusOf(const ZorvexDiskManagerDisk &disk, const Facts &facts);

// The string key of the sentence; for Partitions, Usage and AlmostFull that of its format.
const char *statusKey(Status status);

// Whether a sentence has to be added that the medium cannot be written.
bool tellsReadOnly(const ZorvexDiskManagerDisk &disk, Status status);

// The share of a volume that is used, 0 to 100. 100 only when nothing is free.
int usedPercentage(qint64 size, qint64 freeSpace);

// The kinds of media that the window tells apart.
enum class Medium { Internal, External, Removable, Card, Disc, Image, Unlocked };
Medium mediumOf(const ZorvexDiskManagerDisk &wholeDisk);
const char *mediumKey(Medium medium);
QString mediumGlyph(Medium medium); // the name of its image

// What the type of a partition means: a string key; null for one that speaks for itself or is not known.
const char *contentMeaningKey(const QString &content);

// The short name of a partition table's type; empty for anything else. It is the same in every language.
QString partitionTableName(const QString &content);

} // namespace StatusRules
