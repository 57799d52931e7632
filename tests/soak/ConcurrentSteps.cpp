// SPDX-License-Identifier: MIT
//
// Several things at a time: two operations, the service that ends under one, the window that is closed under
// one.
#include "tests/soak/Operation.h"
#include "tests/soak/Steps.h"

#include "platform/Localization.h"
#include "ui/OutlineView.h"

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

void endService(SoakWorld &world)
{
    const auto process = static_cast<pid_t>(world.service.serviceProcess());
    SoakWorld::require(process > 0, u"the disk service does not run"_s);
    const bool isKilled = world.onceIn(2);
    world.note(isKilled ? u"  kill the service"_s : u"  end the service"_s);
    kill(process, isKilled ? SIGKILL : SIGTERM);
    world.waitFor([&] { return static_cast<pid_t>(world.service.serviceProcess()) != process; },
        u"the disk service does not end"_s);
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
    world.note(u"two operations at a time"_s);
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
    world.note(u"restart the service"_s);
    endService(world);
    world.waitFor(
        [&] {
            return world.standing->controller().leftOutlineView->numberOfRows() == 0
                && world.changing->controller().leftOutlineView->numberOfRows() == 0;
        },
        u"disks are shown without a service"_s);
    return true; // it is started again by the question for its disks
}

bool restartServiceDuringOperation(SoakWorld &world)
{
    const std::vector<SoakVolume> volumes = idleVolumes(world);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"restart the service under an operation"_s);
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
    world.note(u"close the window while it checks "_s + volume.node);
    startCheck(volume);
    world.changing.reset();
    world.changing = std::make_unique<RealWindow>(world.oneOf(bundleLocalizations()));
    return true;
}
