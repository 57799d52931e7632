// SPDX-License-Identifier: MIT
//
// Operations from one of the windows, one at a time.
#include "tests/soak/Operation.h"
#include "tests/soak/Steps.h"

#include "ui/AlertSheet.h"

#include <QProcess>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// A program that keeps the volume busy while it lives.
class Holder
{
public:
    explicit Holder(const QString &folder)
    {
        m_process.setWorkingDirectory(folder);
        m_process.start(u"cat"_s, QStringList());
        SoakWorld::require(m_process.waitForStarted(), u"cat does not start"_s);
    }
    ~Holder()
    {
        m_process.kill();
        m_process.waitForFinished(-1);
    }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

private:
    QProcess m_process;
};

} // namespace

bool mountVolume(SoakWorld &world)
{
    const auto volumes = world.volumes(isIdleUnmounted);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"mount "_s + volume.node);
    startMountOrUnmount(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.size() <= 1, u"told more than once: "_s + texts.join(u' '));
    const bool isMounted = !mountPointsOf(volume.node).isEmpty();
    SoakWorld::require(isMounted == texts.isEmpty(),
        u"mounted at '%1', told '%2'"_s.arg(mountPointsOf(volume.node).join(u' '), texts.join(u' ')));
    SoakWorld::require(texts.isEmpty() || mayBeUnmountable(volume, texts.constFirst()),
        u"refused to mount: "_s + texts.join(u' '));
    return true;
}

bool unmountVolume(SoakWorld &world)
{
    const auto volumes = world.volumes(isIdleMounted);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"unmount "_s + volume.node);
    startMountOrUnmount(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), u"the unmount is reported as failed: "_s + texts.join(u' '));
    SoakWorld::require(mountPointsOf(volume.node).isEmpty(), volume.node + u" is still mounted");
    return true;
}

bool unmountBusyVolume(SoakWorld &world)
{
    const auto volumes = world.volumes(isIdleMounted);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    const bool useForce = world.onceIn(2);
    world.note((useForce ? u"force the busy "_s : u"leave the busy "_s) + volume.node);
    const Holder holder(volume.record->volumePath->toLocalFile());
    startMountOrUnmount(volume);
    world.waitFor([&] { return volume.window->sheets().size() == 1; }, u"nobody asks whether to use force"_s);
    volume.window->endSheet(AlertSheet::firstButtonReturn + (useForce ? 0 : 1));
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), u"force is reported as failed: "_s + texts.join(u' '));
    SoakWorld::require(mountPointsOf(volume.node).isEmpty() == useForce,
        volume.node + (useForce ? u" is still mounted" : u" is no longer mounted"));
    return true;
}

bool checkVolume(SoakWorld &world)
{
    const auto volumes = world.volumes(canBeChecked);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"check "_s + volume.node);
    startCheck(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), u"the check finds errors: "_s + texts.join(u' '));
    return true;
}

bool repairDamagedVolume(SoakWorld &world)
{
    const auto volumes = world.volumes([](const SoakVolume &volume) {
        return isIdleUnmounted(volume) && canBeChecked(volume) && probed(volume.node, u"TYPE"_s) == "ext4"_L1;
    });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"damage and repair "_s + volume.node);
    SoakWorld::require(
        runProgram(u"debugfs"_s, { u"-w"_s, u"-R"_s, u"set_inode_field <11> links_count 9"_s, volume.node })
            == 0,
        u"debugfs cannot write"_s);
    startCheck(volume);
    SoakWorld::require(waitForEnd(world, volume).size() == 1, u"the damage is not found"_s);
    volume.window->select(volume.record);
    SoakWorld::require(
        volume.window->controller().repairButton->isEnabled(), u"the repair button is disabled"_s);
    volume.window->controller().repairButton->click();
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), u"the repair fails: "_s + texts.join(u' '));
    return true;
}

bool formatVolume(SoakWorld &world)
{
    const auto volumes
        = world.volumes([](const SoakVolume &volume) { return !volume.record->operationInProgress; });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    const QString label = u"SOAK%1"_s.arg(++world.labelsGiven);
    const QString personality = openFormatSheet(world, volume, label);
    const bool goOn = !world.onceIn(5);
    world.note(u"%1 %2 as %3 named %4"_s.arg(
        goOn ? u"format"_s : u"do not format"_s, volume.node, personality, label));
    const QString before = probed(volume.node, u"LABEL"_s);
    volume.window->endSheet(AlertSheet::firstButtonReturn + (goOn ? 0 : 1));
    const QStringList texts = waitForEnd(world, volume);
    // The maker's own file systems are mounted once more, under their new name.
    const bool isOnlyUnmountable = std::all_of(texts.begin(), texts.end(),
        [&volume](const QString &text) { return mayBeUnmountable(volume, text); });
    SoakWorld::require(texts.size() <= 2 && isOnlyUnmountable, u"the format fails: "_s + texts.join(u' '));
    const QString expected = goOn ? label : before;
    SoakWorld::require(probed(volume.node, u"LABEL"_s) == expected,
        u"the volume is named '%1'"_s.arg(probed(volume.node, u"LABEL"_s)));
    return true;
}
