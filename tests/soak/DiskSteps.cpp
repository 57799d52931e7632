// SPDX-License-Identifier: MIT
//
// Disks that come, go and change.
#include "tests/soak/Steps.h"

#include "ui/ImageButton.h"

namespace {

constexpr std::size_t mostDisks = 3;

LoopDisk::Partition anyPartition(SoakWorld &world)
{
    static const struct
    {
        const char *type;
        const char *fileSystem;
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
    return { size, QString::fromLatin1(kind.type), QString::fromLatin1(kind.fileSystem),
        QStringLiteral("SOAK%1").arg(++world.labelsGiven) };
}

// The disk service tells of a disk before it knows its volumes.
bool isShownWhole(const RealWindow &window, const SoakDisk &disk)
{
    for (int i = 1; i <= disk.partitions.size(); ++i) {
        const LoopDisk::Partition &partition = disk.partitions.at(i - 1);
        if (partition.fileSystem.isEmpty() || partition.typeGuid == QLatin1String(LoopDisk::efiType))
            continue;
        const OutlineItem record = window.recordOf(disk.loop->node(i));
        if (!record || !record->mountable || record->volumeName != partition.label)
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
        contents += u' ' + (partition.fileSystem.isEmpty() ? QStringLiteral("empty") : partition.fileSystem);
    world.note(QStringLiteral("attach a disk with") + contents);
    disk.loop = std::make_unique<LoopDisk>(disk.partitions);
    world.note(QStringLiteral("it is ") + disk.loop->node());
    world.disks.push_back(std::move(disk));
    world.waitFor([&] { return isShownWhole(*world.standing, world.disks.back()); },
        QStringLiteral("the disk is not shown with all its volumes"));
    return true;
}

bool detachDisk(SoakWorld &world)
{
    if (world.disks.empty())
        return false;
    const auto disk = world.disks.begin() + world.below(static_cast<int>(world.disks.size()));
    world.note(QStringLiteral("detach ") + disk->loop->node());
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
    const OutlineItem whole = window.recordOf(disk->loop->node());
    SoakWorld::require(whole != nullptr, disk->loop->node() + u" has no row");
    if (whole->leaf)
        return false;
    world.note(QStringLiteral("eject ") + disk->loop->node());
    window.select(whole);
    SoakWorld::require(window.controller().mountUnmountButton->isEnabled(),
        QStringLiteral("the button that ejects is disabled"));
    window.controller().mountUnmountButton->click();
    world.waitFor([&] { return !whole->operationInProgress || !window.sheets().isEmpty(); },
        QStringLiteral("the eject does not end"));
    const QStringList texts = SoakWorld::dismissSheets(window);
    // Another program, such as udev's, may have the disk open for a while: the kernel takes it off after
    // that.
    const bool isTold
        = texts.size() == 1 && texts.constFirst().endsWith(QStringLiteral("The disk is still in use."));
    if (isTold)
        world.note(QStringLiteral("the disk was in use"));
    SoakWorld::require(
        texts.isEmpty() || isTold, QStringLiteral("the eject is reported as failed: ") + texts.join(u' '));
    SoakWorld::require(isTold || !disk->loop->isAttached(), QStringLiteral("the disk is still attached"));
    world.waitFor([&] { return !disk->loop->isAttached(); }, QStringLiteral("the disk is not taken off"));
    world.disks.erase(disk);
    return true;
}

bool changeFromOutside(SoakWorld &world)
{
    const auto volumes = world.volumes([](const SoakVolume &volume) {
        return isIdleUnmounted(volume)
            && probed(volume.node, QStringLiteral("TYPE")) == QLatin1String("ext4");
    });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    const QString label = QStringLiteral("OUT%1").arg(++world.labelsGiven);
    world.note(QStringLiteral("name %1 %2 from outside").arg(volume.node, label));
    SoakWorld::require(runProgram(QStringLiteral("e2label"), { volume.node, label }) == 0,
        QStringLiteral("e2label cannot write"));
    runProgram(QStringLiteral("udevadm"), { QStringLiteral("settle") });
    runProgram(
        QStringLiteral("udevadm"), { QStringLiteral("trigger"), QStringLiteral("--settle"), volume.node });
    world.waitFor(
        [&] { return volume.record->volumeName == label; }, QStringLiteral("the new name is not shown"));
    return true;
}

void detachAllDisks(SoakWorld &world)
{
    world.note(QStringLiteral("detach all disks"));
    for (const SoakDisk &disk : world.disks)
        disk.loop->detach();
    world.disks.clear();
}
