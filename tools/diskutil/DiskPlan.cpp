// SPDX-License-Identifier: MIT
#include "tools/diskutil/DiskPlan.h"

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 sectorSize = 512; // the unit of a device's identity

bool isOnDisk(const Medium &medium, const Medium &disk)
{
    return medium.bsdName == disk.bsdName || medium.bsdName.startsWith(disk.bsdName + u's');
}

std::vector<Refusal> refusalsOfMounts(const std::vector<PartSituation> &parts, const Machine &machine)
{
    std::vector<Refusal> refusals;
    for (const PartSituation &part : parts) {
        if (auto refusal = PreflightRules::refusalOfMounts(
                part.medium, machine.readVolumeMounts(part.medium.deviceNode), machine.invokingUser()))
            refusals.push_back(*std::move(refusal));
    }
    return refusals;
}

// The disk's own refusal only repeats those of its partitions.
std::vector<Refusal> refusalsOfParts(const std::vector<PartSituation> &parts, const QString &diskNode)
{
    std::vector<Refusal> refusals;
    for (const PartSituation &part : parts) {
        if (part.medium.deviceNode == diskNode && !refusals.empty())
            continue;
        if (auto refusal = PreflightRules::refusalOfDevice(Operation::Erase, part.medium, part.situation))
            refusals.push_back(*std::move(refusal));
    }
    return refusals;
}

std::optional<Refusal> layOut(DiskPlan &plan, const CommandLine &line)
{
    const PartitionScheme scheme
        = line.scheme.value_or(DiskLayoutRules::usualScheme(plan.disk.isRemovable, plan.disk.size));
    const auto layout = DiskLayoutRules::layoutOfDisk(scheme, plan.disk.size);
    if (!layout)
        return Refusal { ExitCode::SizeOutOfRange,
            u"%1 has %2 bytes, for which a partition table of this scheme cannot be made"_s
                .arg(plan.disk.bsdName)
                .arg(plan.disk.size) };
    plan.layout = *layout;
    plan.volumeBsdName = plan.disk.bsdName + u"s1"_s;
    return std::nullopt;
}

// sfdisk writes the table, not the disk service: the service's CreatePartition waits until the kernel has
// read the table by itself, and that never happens for a loop disk on a kernel that has no parser for it.
// sfdisk needs no such kernel. It tells the kernel nothing either, because a disk in use for a moment would
// make it fail: the kernel is handed the one partition afterwards, as partx does it, again and again until it
// has taken it.
std::optional<Refusal> listTableCommands(DiskPlan &plan, const PartitionTypes &types, const Machine &machine)
{
    const QString wipe = machine.findTool(u"wipefs"_s);
    if (wipe.isEmpty())
        return Refusal { ExitCode::ToolMissing,
            u"wipefs is not installed; install the package util-linux"_s };
    const QString table = machine.findTool(u"sfdisk"_s);
    if (table.isEmpty())
        return Refusal { ExitCode::ToolMissing, u"sfdisk is not installed; install the package fdisk"_s };
    // sfdisk wipes what is recognised on the disk as a whole, and where the new partition begins. What a
    // former partition began with would be found again by those who make one in the same place.
    if (!plan.formerNodes.isEmpty())
        plan.commands.push_back({ wipe, QStringList { u"--all"_s, u"--quiet"_s } + plan.formerNodes });
    plan.commands.push_back({ table,
        { u"--quiet"_s, u"--no-reread"_s, u"--no-tell-kernel"_s, u"--wipe=always"_s,
            u"--wipe-partitions=always"_s, plan.disk.deviceNode },
        ToolCommand::Output::Pipe, DiskLayoutRules::sfdiskScript(plan.layout, types) });
    return std::nullopt;
}

} // namespace

std::variant<DiskPlan, std::vector<Refusal>> planDisk(
    const CommandLine &line, const MediaList &list, const Machine &machine)
{
    const std::vector<Medium> media = list.media();
    const auto disk = findMedium(media, line.device);
    if (!disk)
        return std::vector { refusalOfUnknownDevice(line.device) };
    if (!disk->isWhole)
        return std::vector { Refusal {
            ExitCode::NotWholeDisk, u"%1 is a partition, not a whole disk"_s.arg(disk->bsdName) } };
    if (!machine.takesPartitions(disk->deviceNode))
        return std::vector { Refusal { ExitCode::NotSupported,
            u"%1 is made from other devices and takes no partitions; eraseVolume makes it a volume"_s.arg(
                disk->bsdName) } };
    DiskPlan plan;
    plan.disk = *disk;
    plan.identity = machine.readDeviceIdentity(disk->deviceNode);
    const std::vector<PartSituation> parts = machine.readDiskSituation(*disk, media);
    std::vector<Refusal> refusals = refusalsOfParts(parts, disk->deviceNode);
    if (refusals.empty())
        refusals = refusalsOfMounts(parts, machine);
    if (!refusals.empty())
        return refusals;
    if (const auto refusal = layOut(plan, line))
        return std::vector { *refusal };

    JobPlan volume;
    volume.operation = Operation::Erase;
    volume.medium = plan.disk;
    volume.medium.size = plan.layout.size;
    if (const auto refusal = planTools(volume, line, machine))
        return std::vector { *refusal };
    for (const PartSituation &part : parts) {
        if (part.medium.deviceNode != disk->deviceNode)
            plan.formerNodes.append(part.medium.deviceNode);
    }
    if (const auto refusal = listTableCommands(plan, volume.partitionTypes, machine))
        return std::vector { *refusal };
    std::copy_if(media.begin(), media.end(), std::back_inserter(plan.mounted),
        [&](const Medium &medium) { return isOnDisk(medium, *disk) && !medium.mountPoint.isEmpty(); });
    sortMedia(plan.mounted);
    return plan;
}

std::optional<Refusal> refusalOfDiskHandOver(
    const DiskPlan &plan, const HeldDevice &device, const std::vector<Medium> &media, const Machine &machine)
{
    if (device.openError != 0)
        return PreflightRules::refusalOfTaking(plan.disk, device.openError);
    if (!isSameMedium(plan.identity, plan.disk.deviceNode, device, machine))
        return Refusal { ExitCode::MediumChanged,
            u"%1 is no longer the same disk"_s.arg(plan.disk.deviceNode) };
    const std::vector<PartSituation> parts = machine.readDiskSituation(plan.disk, media);
    const std::vector<Refusal> refusals = refusalsOfParts(parts, plan.disk.deviceNode);
    if (!refusals.empty())
        return refusals.front();
    for (const PartSituation &part : parts) {
        if (!part.medium.mountPoint.isEmpty())
            return Refusal { ExitCode::InUse,
                u"%1 has been mounted again at %2"_s.arg(part.medium.bsdName, part.medium.mountPoint) };
    }
    return std::nullopt;
}

bool isNewPartition(const DiskPlan &plan, const std::vector<Medium> &media, const Machine &machine)
{
    const auto found = std::find_if(media.begin(), media.end(),
        [&](const Medium &medium) { return medium.bsdName == plan.volumeBsdName; });
    if (found == media.end() || found->size != plan.layout.size)
        return false;
    const auto identity = machine.readDeviceIdentity(found->deviceNode);
    return identity && plan.identity && identity->diskSequence == plan.identity->diskSequence
        && identity->start == static_cast<quint64>(plan.layout.start / sectorSize);
}
