// SPDX-License-Identifier: MIT
#include "tests/soak/Operation.h"

#include "tests/soak/Steps.h"
#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

void press(QAbstractButton *button, const SoakVolume &volume)
{
    // A press right after the selection has moved by itself is meant for another disk, and ignored.
    SoakWorld::require(QTest::qWaitFor([&] { return !volume.window->controller().hasSelectionJustMoved(); }),
        u"the selection does not rest"_s);
    SoakWorld::require(button->isEnabled(), u"a button is disabled for "_s + volume.node);
    button->click();
}

// What a user does in the windows while something runs.
void doThisAndThat(SoakWorld &world)
{
    for (int left = world.below(4); left > 0; --left) {
        if (world.onceIn(2))
            selectRow(world);
        else if (world.onceIn(2))
            switchPage(world);
        else
            resizeWindow(world);
    }
}

} // namespace

void startMountOrUnmount(const SoakVolume &volume)
{
    volume.window->select(volume.record);
    press(volume.window->controller().mountUnmountButton, volume);
    SoakWorld::require(volume.record->operationInProgress, volume.node + u" is not busy");
}

void startCheck(const SoakVolume &volume)
{
    volume.window->select(volume.record);
    press(volume.window->controller().checkButton, volume);
    SoakWorld::require(volume.record->operationInProgress, volume.node + u" is not busy");
}

QString chooseFormat(SoakWorld &world, const SoakVolume &volume)
{
    volume.window->select(volume.record);
    QComboBox *const menu = volume.window->controller().formatFilesystemsPopupButton;
    std::vector<int> fitting;
    for (int i = 0; i < menu->count(); ++i) {
        if (menu->model()->index(i, 0).flags().testFlag(Qt::ItemIsEnabled))
            fitting.push_back(i);
    }
    SoakWorld::require(!fitting.empty(), u"no file system fits "_s + volume.node);
    menu->setCurrentIndex(world.oneOf(fitting));
    return menu->currentText();
}

QString openFormatSheet(SoakWorld &world, const SoakVolume &volume, const QString &label)
{
    const QString personality = chooseFormat(world, volume);
    volume.window->controller().formatVolumeLabelField->setText(label);
    press(volume.window->controller().formatButton, volume);
    SoakWorld::require(volume.window->sheets().size() == 1, u"nobody asks before the format"_s);
    return personality;
}

void startAnything(SoakWorld &world, const SoakVolume &volume)
{
    if (canBeChecked(volume) && world.onceIn(2)) {
        world.note(u"  check "_s + volume.node);
        startCheck(volume);
    } else if (world.onceIn(2)) {
        const QString label = u"SOAK%1"_s.arg(++world.labelsGiven);
        const QString personality = openFormatSheet(world, volume, label);
        world.note(u"  format %1 as %2 named %3"_s.arg(volume.node, personality, label));
        volume.window->endSheet(AlertSheet::firstButtonReturn);
    } else {
        world.note(u"  mount or unmount "_s + volume.node);
        startMountOrUnmount(volume);
    }
}

std::vector<SoakVolume> idleVolumes(SoakWorld &world)
{
    return world.volumes([](const SoakVolume &volume) { return !volume.record->operationInProgress; });
}

QStringList waitForEnd(SoakWorld &world, const SoakVolume &volume)
{
    doThisAndThat(world);
    QStringList texts;
    const auto hasEnded = [&] { return !volume.record->operationInProgress; };
    while (!hasEnded()) {
        world.waitFor([&] { return hasEnded() || !volume.window->sheets().isEmpty(); },
            u"the operation on %1 does not end"_s.arg(volume.node));
        texts += SoakWorld::dismissSheets(*volume.window);
    }
    return texts + SoakWorld::dismissSheets(*volume.window);
}

bool canBeChecked(const SoakVolume &volume)
{
    if (volume.record->operationInProgress)
        return false;
    volume.window->select(volume.record);
    return volume.window->controller().checkButton->isEnabled();
}

bool isMountableEverywhere(const QString &node)
{
    static const QStringList mountedEverywhere { u"ext2"_s, u"ext3"_s, u"ext4"_s, u"xfs"_s, u"btrfs"_s,
        u"ntfs"_s };
    return mountedEverywhere.contains(probed(node, u"TYPE"_s));
}

bool mayBeUnmountable(const SoakVolume &volume, const QString &text)
{
    const bool isOfFormat = text.startsWith(u"diskutil returned error code: 20\n"_s);
    const QString reason = text.trimmed();
    return (isOfFormat || text.startsWith(u"Error while mounting"_s))
        && (reason.endsWith(u"not configured in kernel."_s)
            || reason.endsWith(u"No supported file system found."_s))
        && !isMountableEverywhere(volume.node);
}
