// SPDX-License-Identifier: MIT
//
// Operations from one of the windows, one at a time.
#include "tests/soak/Operation.h"
#include "tests/soak/Steps.h"

#include "ui/AlertSheet.h"

#include <QProcess>
#include <QPushButton>

namespace {

// A program that keeps the volume busy while it lives.
class Holder
{
public:
    explicit Holder(const QString &folder)
    {
        m_process.setWorkingDirectory(folder);
        m_process.start(QStringLiteral("cat"), QStringList());
        SoakWorld::require(m_process.waitForStarted(), QStringLiteral("cat does not start"));
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
    world.note(QStringLiteral("mount ") + volume.node);
    startMountOrUnmount(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.size() <= 1, QStringLiteral("told more than once: ") + texts.join(u' '));
    const bool isMounted = !mountPointsOf(volume.node).isEmpty();
    SoakWorld::require(isMounted == texts.isEmpty(),
        QStringLiteral("mounted at '%1', told '%2'")
            .arg(mountPointsOf(volume.node).join(u' '), texts.join(u' ')));
    SoakWorld::require(texts.isEmpty() || mayBeUnmountable(volume, texts.constFirst()),
        QStringLiteral("refused to mount: ") + texts.join(u' '));
    return true;
}

bool unmountVolume(SoakWorld &world)
{
    const auto volumes = world.volumes(isIdleMounted);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(QStringLiteral("unmount ") + volume.node);
    startMountOrUnmount(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(
        texts.isEmpty(), QStringLiteral("the unmount is reported as failed: ") + texts.join(u' '));
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
    world.note(
        (useForce ? QStringLiteral("force the busy ") : QStringLiteral("leave the busy ")) + volume.node);
    const Holder holder(volume.record->volumePath->toLocalFile());
    startMountOrUnmount(volume);
    world.waitFor([&] { return volume.window->sheets().size() == 1; },
        QStringLiteral("nobody asks whether to use force"));
    volume.window->endSheet(AlertSheet::firstButtonReturn + (useForce ? 0 : 1));
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), QStringLiteral("force is reported as failed: ") + texts.join(u' '));
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
    world.note(QStringLiteral("check ") + volume.node);
    startCheck(volume);
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), QStringLiteral("the check finds errors: ") + texts.join(u' '));
    return true;
}

bool repairDamagedVolume(SoakWorld &world)
{
    const auto volumes = world.volumes([](const SoakVolume &volume) {
        return isIdleUnmounted(volume) && canBeChecked(volume)
            && probed(volume.node, QStringLiteral("TYPE")) == QLatin1String("ext4");
    });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(QStringLiteral("damage and repair ") + volume.node);
    SoakWorld::require(runProgram(QStringLiteral("debugfs"),
                           { QStringLiteral("-w"), QStringLiteral("-R"),
                               QStringLiteral("set_inode_field <11> links_count 9"), volume.node })
            == 0,
        QStringLiteral("debugfs cannot write"));
    startCheck(volume);
    SoakWorld::require(waitForEnd(world, volume).size() == 1, QStringLiteral("the damage is not found"));
    volume.window->select(volume.record);
    SoakWorld::require(volume.window->controller().repairButton->isEnabled(),
        QStringLiteral("the repair button is disabled"));
    volume.window->controller().repairButton->click();
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty(), QStringLiteral("the repair fails: ") + texts.join(u' '));
    return true;
}

bool formatVolume(SoakWorld &world)
{
    const auto volumes
        = world.volumes([](const SoakVolume &volume) { return !volume.record->operationInProgress; });
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    const QString label = QStringLiteral("SOAK%1").arg(++world.labelsGiven);
    const QString personality = openFormatSheet(world, volume, label);
    const bool goOn = !world.onceIn(5);
    world.note(QStringLiteral("%1 %2 as %3 named %4")
            .arg(goOn ? QStringLiteral("format") : QStringLiteral("do not format"), volume.node, personality,
                label));
    const QString before = probed(volume.node, QStringLiteral("LABEL"));
    volume.window->endSheet(AlertSheet::firstButtonReturn + (goOn ? 0 : 1));
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(texts.isEmpty() || (texts.size() == 1 && mayBeUnmountable(volume, texts.constFirst())),
        QStringLiteral("the format fails: ") + texts.join(u' '));
    const QString expected = goOn ? label : before;
    SoakWorld::require(probed(volume.node, QStringLiteral("LABEL")) == expected,
        QStringLiteral("the volume is named '%1'").arg(probed(volume.node, QStringLiteral("LABEL"))));
    return true;
}
