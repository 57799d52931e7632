// SPDX-License-Identifier: MIT
//
// Disks that come, go and change.
#include "tests/soak/Steps.h"

#include "ui/ImageButton.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t mostDisks = 3;

LoopDisk::Partition anyPartition(SoakWorld &world)
{
    static const struct
    {
        const char *type;
        const char *filesystem;
    } kinds[] = {
        { LoopDisk::linuxType, "ext4" },
        { LoopDisk::linuxType, "ext4" },
        { LoopDisk::dataType, "ntfs" },
        { LoopDisk::dataType, "vfat" },
        { LoopDisk::dataType, "exfat" },
        { LoopDisk::linuxType, "" },
        { LoopDisk::efiType, "vfat" },
    };
    const auto &kind = kinds[world.below(std::size(kinds))];
    // Some file systems need more room than others.
    const int size = world.onceIn(3) ? 330 : 20 + world.below(40);
    return { size, QString::fromLatin1(kind.type), QString::fromLatin1(kind.filesystem),
        u"SOAK%1"_s.arg(++world.labelsGiven) };
}

// The disk service tells of a disk before it knows its volumes.
bool isShownWhole(const RealWindow &window, const SoakDisk &disk)
{
    for (int i = 1; i <= disk.partitions.size(); ++i) {
        const LoopDisk::Partition &partition = disk.partitions.at(i - 1);
        if (partition.filesystem.isEmpty() || partition.typeGuid == QLatin1String(LoopDisk::efiType))
            continue;
        const DiskRecord record = window.recordOf(disk.loop->node(i));
        if (!record || !record->volumeKind || record->volumeName != partition.label)
            return false;
    }
    return window.recordOf(disk.loop->node()) != nullptr;
}

} // namespace

bool attachDisk(SoakWorld &world)
{
    if (world.disks.size() >= mostDisks)
        return false;
    SoakDisk disk;
    for (int left = 1 + world.below(4); left > 0; --left)
        disk.partitions.append(anyPartition(world));
    QString contents;
    for (const LoopDisk::Partition &partition : std::as_const(disk.partitions))
        contents += u' ' + (partition.filesystem.isEmpty() ? u"empty"_s : partition.filesystem);
    world.note(u"attach a disk with"_s + contents);
    disk.loop = std::make_unique<LoopDisk>(disk.partitions);
    world.note(u"it is "_s + disk.loop->node());
    world.disks.push_back(std::move(disk));
    world.waitFor([&] { return isShownWhole(*world.standing, world.disks.back()); },
        u"the disk is not shown with all its volumes"_s);
    return true;
}

bool detachDisk(SoakWorld &world)
{
    if (world.disks.empty())
        return false;
    const auto disk = world.disks.begin() + world.below(static_cast<int>(world.disks.size()));
    world.note(u"detach "_s + disk->loop->node());
    disk->loop->detach();
    world.disks.erase(disk);
    return true;
}

bool ejectDisk(SoakWorld &world)
{
    if (world.disks.empty())
        return false;
    const auto disk = world.disks.begin() + world.below(static_cast<int>(world.disks.size()));
    RealWindow &window = world.anyWindow();
    const DiskRecord whole = window.recordOf(disk->loop->node());
    SoakWorld::require(whole != nullptr, disk->loop->node() + u" has no row");
    if (whole->leaf)
        return false;
    world.note(u"eject "_s + disk->loop->node());
    window.select(whole);
    SoakWorld::require(
        window.controller().mountUnmountButton->isEnabled(), u"the button that ejects is disabled"_s);
    window.controller().mountUnmountButton->click();
    world.waitFor([&] { return !whole->operationInProgress || !window.sheets().isEmpty(); },
        u"the eject does not end"_s);
    const QStringList texts = SoakWorld::dismissSheets(window);
    // Another program, such as udev's, may have the disk open for a while: the kernel takes it off after
    // that.
    const bool isTold = texts.size() == 1 && texts.constFirst().endsWith(u"The disk is still in use."_s);
    if (isTold)
        world.note(u"the disk was in use"_s);
    SoakWorld::require(texts.isEmpty() || isTold, u"the eject is reported as failed: "_s + texts.join(u' '));
    SoakWorld::require(isTold || !disk->loop->isAttached(), u"the disk is still attached"_s);
    world.waitFor([&] { return !disk->loop->isAttached(); }, u"the disk is not taken off"_s);
    world.disks.erase(disk);
    return true;
}

bool changeFromOutside(SoakWorld &world)
{
    const auto volumes = world.volumes([](const SoakVolume &volume) {
        return isIdleUnmounted(volume) && probed(volume.node, u"TYPE"_s) == "ext4"_L1;
    });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    const QString label = u"OUT%1"_s.arg(++world.labelsGiven);
    world.note(u"name %1 %2 from outside"_s.arg(volume.node, label));
    SoakWorld::require(runProgram(u"e2label"_s, { volume.node, label }) == 0, u"e2label cannot write"_s);
    runProgram(u"udevadm"_s, { u"settle"_s });
    runProgram(u"udevadm"_s, { u"trigger"_s, u"--settle"_s, volume.node });
    world.waitFor([&] { return volume.record->volumeName == label; }, u"the new name is not shown"_s);
    return true;
}

void detachAllDisks(SoakWorld &world)
{
    world.note(u"detach all disks"_s);
    for (const SoakDisk &disk : world.disks)
        disk.loop->detach();
    world.disks.clear();
}
