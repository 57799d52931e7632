// SPDX-License-Identifier: MIT
//
// What the erase of a whole disk will do, decided before anything is unmounted or written.
#pragma once

#include "tools/diskutil/JobPlan.h"

#include <variant>
#include <vector>

struct DiskPlan
{
    Medium disk; // as it was at the first look
    std::optional<DeviceIdentity> identity; // of that disk
    DiskLayout layout;
    QString volumeBsdName; // of the partition that will be made
    std::vector<Medium> mounted; // on the disk, the disk itself included
    QStringList formerNodes; // of the partitions that the kernel has now

    // They wipe what is on the disk, and write the new table.
    std::deque<ToolCommand> commands;
};

// Looks at everything that the erase needs. There is a refusal for each part of the disk that forbids it.
std::variant<DiskPlan, std::vector<Refusal>> planDisk(
    const CommandLine &line, const MediaList &list, const Machine &machine);

// Why the disk, which is held and on which nothing is mounted any more, cannot be handed to the next command.
std::optional<Refusal> refusalOfDiskHandOver(
    const DiskPlan &plan, const HeldDevice &device, const std::vector<Medium> &media, const Machine &machine);

// Whether the disk service describes the new partition in its place.
bool isNewPartition(const DiskPlan &plan, const std::vector<Medium> &media, const Machine &machine);
