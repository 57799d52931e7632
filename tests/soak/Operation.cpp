// SPDX-License-Identifier: MIT
#include "tests/soak/Operation.h"

#include "tests/soak/Steps.h"
#include "ui/ImageButton.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace {

void press(QAbstractButton *button, const SoakVolume &volume)
{
    SoakWorld::require(button->isEnabled(), QStringLiteral("a button is disabled for ") + volume.node);
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

QString openFormatSheet(SoakWorld &world, const SoakVolume &volume, const QString &label)
{
    volume.window->select(volume.record);
    const ZorvexDiskManagerAppDelegate &controller = volume.window->controller();
    QComboBox *const menu = controller.formatFilesystemsPopupButton;
    std::vector<int> fitting;
    for (int i = 0; i < menu->count(); ++i) {
        if (menu->model()->index(i, 0).flags().testFlag(Qt::ItemIsEnabled))
            fitting.push_back(i);
    }
    SoakWorld::require(!fitting.empty(), QStringLiteral("no file system fits ") + volume.node);
    menu->setCurrentIndex(world.oneOf(fitting));
    controller.formatVolumeLabelField->setText(label);
    press(controller.formatButton, volume);
    SoakWorld::require(volume.window->sheets().size() == 1, QStringLiteral("nobody asks before the format"));
    return menu->currentText();
}

QStringList waitForEnd(SoakWorld &world, const SoakVolume &volume)
{
    doThisAndThat(world);
    QStringList texts;
    const auto hasEnded = [&] { return !volume.record->operationInProgress; };
    while (!hasEnded()) {
        world.waitFor([&] { return hasEnded() || !volume.window->sheets().isEmpty(); },
            QStringLiteral("the operation on %1 does not end").arg(volume.node));
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

bool mayBeUnmountable(const SoakVolume &volume, const QString &text)
{
    static const QStringList mountedEverywhere { QStringLiteral("ext2"), QStringLiteral("ext3"),
        QStringLiteral("ext4"), QStringLiteral("xfs"), QStringLiteral("btrfs"), QStringLiteral("ntfs") };
    return text.startsWith(QStringLiteral("Error while mounting"))
        && (text.endsWith(QStringLiteral("not configured in kernel."))
            || text.endsWith(QStringLiteral("No supported file system found.")))
        && !mountedEverywhere.contains(probed(volume.node, QStringLiteral("TYPE")));
}
