// SPDX-License-Identifier: MIT
//
// Several things at a time: two operations, the service that ends under one, the window that is closed under
// one.
#include "tests/soak/Operation.h"
#include "tests/soak/Steps.h"

#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"

#include <csignal>

namespace {

std::vector<SoakVolume> idleVolumes(SoakWorld &world)
{
    return world.volumes([](const SoakVolume &volume) { return !volume.record->operationInProgress; });
}

// Starts what is possible with the volume.
void startAnything(SoakWorld &world, const SoakVolume &volume)
{
    if (canBeChecked(volume) && world.onceIn(2)) {
        world.note(QStringLiteral("  check ") + volume.node);
        startCheck(volume);
    } else if (world.onceIn(2)) {
        const QString label = QStringLiteral("SOAK%1").arg(++world.labelsGiven);
        const QString personality = openFormatSheet(world, volume, label);
        world.note(QStringLiteral("  format %1 as %2 named %3").arg(volume.node, personality, label));
        volume.window->endSheet(AlertSheet::firstButtonReturn);
    } else {
        world.note(QStringLiteral("  mount or unmount ") + volume.node);
        startMountOrUnmount(volume);
    }
}

void endService(SoakWorld &world)
{
    const auto process = static_cast<pid_t>(world.service.serviceProcess());
    SoakWorld::require(process > 0, QStringLiteral("the disk service does not run"));
    const bool isKilled = world.onceIn(2);
    world.note(isKilled ? QStringLiteral("  kill the service") : QStringLiteral("  end the service"));
    kill(process, isKilled ? SIGKILL : SIGTERM);
    world.waitFor([&] { return static_cast<pid_t>(world.service.serviceProcess()) != process; },
        QStringLiteral("the disk service does not end"));
}

} // namespace

bool twoOperations(SoakWorld &world)
{
    const std::vector<SoakVolume> first = idleVolumes(world);
    const std::vector<SoakVolume> second = idleVolumes(world);
    if (first.size() < 2)
        return false;
    const SoakVolume &one = world.oneOf(first);
    const SoakVolume &two = world.oneOf(second);
    if (one.node == two.node)
        return false;
    world.note(QStringLiteral("two operations at a time"));
    startAnything(world, one);
    startAnything(world, two);
    waitForEnd(world, one);
    waitForEnd(world, two);
    // The sheet of one may have been open when the other ended.
    SoakWorld::dismissSheets(*one.window);
    return true;
}

bool restartService(SoakWorld &world)
{
    world.note(QStringLiteral("restart the service"));
    endService(world);
    world.waitFor(
        [&] {
            return world.standing->controller().leftOutlineView->numberOfRows() == 0
                && world.changing->controller().leftOutlineView->numberOfRows() == 0;
        },
        QStringLiteral("disks are shown without a service"));
    return true; // it is started again by the question for its disks
}

bool restartServiceDuringOperation(SoakWorld &world)
{
    const std::vector<SoakVolume> volumes = idleVolumes(world);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(QStringLiteral("restart the service under an operation"));
    startAnything(world, volume);
    endService(world);
    world.service.lines(); // starts it again
    waitForEnd(world, volume);
    return true;
}

bool closeWindowDuringCheck(SoakWorld &world)
{
    const auto volumes = world.volumes([&](const SoakVolume &volume) {
        return volume.window == world.changing.get() && canBeChecked(volume);
    });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(QStringLiteral("close the window while it checks ") + volume.node);
    startCheck(volume);
    world.changing.reset();
    world.changing = std::make_unique<RealWindow>(world.oneOf(bundleLocalizations()));
    return true;
}
