// SPDX-License-Identifier: MIT
//
// What an erase, a verification or a repair will do, decided before anything is unmounted or written.
#pragma once

#include "tools/diskutil/Machine.h"
#include "tools/diskutil/MediaList.h"
#include "tools/diskutil/ToolRunner.h"

#include <deque>
#include <variant>

struct JobPlan
{
    Operation operation = Operation::Verify;
    Medium medium; // as it was at the first look
    DADiskRef disk;
    std::optional<VolumeMount> formerMount; // if that can be made again
    std::optional<DeviceIdentity> identity; // of that medium
    std::vector<FilesystemBundle> bundles;
    FilesystemBundle bundle; // one of them, which does the work
    BundleTool tool; // its executable
    std::deque<ToolCommand> commands;

    // Of the volume that an erase makes.
    QString newName;
    std::optional<qint64> newSubtype;
    PartitionTypes partitionTypes; // where a partition is made for it
};

// Looks at everything that the operation needs.
std::variant<JobPlan, Refusal> planJob(
    Operation operation, const CommandLine &line, const MediaList &list, const Machine &machine);

// Finds the bundle and lists the commands for the operation on the plan's medium. Returns why that cannot be
// done.
std::optional<Refusal> planTools(JobPlan &plan, const CommandLine &line, const Machine &machine);

// Why there is nothing to be done with an argument that names no medium.
Refusal refusalOfUnknownDevice(const QString &device);

// The mount of the device that the disk service can make again. Returns std::nullopt when there is none, or
// more than one.
std::optional<VolumeMount> formerMount(const std::vector<VolumeMount> &mounts);

// Whether the device that is held is the medium with this identity, and the node still leads to it.
bool isSameMedium(const std::optional<DeviceIdentity> &identity, const QString &deviceNode,
    const HeldDevice &device, const Machine &machine);

// Why the medium, which is held, is not the one that the job has looked at.
std::optional<Refusal> refusalOfExchange(
    const JobPlan &plan, const HeldDevice &device, const Machine &machine);

// Why the medium, which is held, cannot be handed to the next command. Since the first look it may have been
// pulled and its node given to another, it may have been mounted, and the bundle may have been changed.
std::optional<Refusal> refusalOfHandOver(
    const JobPlan &plan, const HeldDevice &device, const std::vector<Medium> &media, const Machine &machine);

// Why nothing can be said of the volume that a tool has looked at or mended: its device has gone, or cannot
// be read. Some tools take a read that fails for an error of the volume.
std::optional<Refusal> refusalOfVerdict(
    const JobPlan &plan, const HeldDevice &device, const Machine &machine, const ToolEnd &end);

// Whether the disk service describes the volume that the erase has made, no longer the former one.
bool isNewVolume(const JobPlan &plan, const Medium &medium);
