// SPDX-License-Identifier: MIT
//
// Check, repair and format from the window, on a real loop disk, with the installed tool and bundles.
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"
#include "tests/support/RecordingApplication.h"

#include "ui/AlertSheet.h"
#include "ui/EraseDiskSheet.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 60000; // milliseconds; what a tool on a machine under load still needs

QList<LoopDisk::Partition> oneVolume(int sizeMiB, const QString &filesystem)
{
    return { { sizeMiB, QString::fromLatin1(LoopDisk::linuxType), filesystem, u"Backup"_s } };
}

// The record of the disk's first volume, selected, once the service has told all of it.
DiskRecord selectedVolume(RealWindow &window, const LoopDisk &disk)
{
    const bool isThere = QTest::qWaitFor(
        [&] {
            const DiskRecord volume = window.recordOf(disk.node(1));
            return volume && volume->volumeKind && volume->mountable;
        },
        limit);
    if (!isThere)
        return nullptr;
    const DiskRecord volume = window.recordOf(disk.node(1));
    window.select(volume);
    return volume;
}

// What a probe of the device calls the file system that a personality makes.
QString probedType(const ZorvexDiskManagerFSBundle &bundle)
{
    static const QHash<QString, QString> types {
        { u"msdos"_s, u"vfat"_s },
        { u"zorvex_fatplus"_s, u"vfat"_s },
        { u"zorvex_exfat"_s, u"exfat"_s },
        { u"zorvex_ntfs"_s, u"ntfs"_s },
        { u"fusefs_qvontfs"_s, u"ntfs"_s },
    };
    if (bundle.bundleName == "ext4"_L1)
        return bundle.fsPersonality;
    return types.value(bundle.bundleName, bundle.bundleName);
}

// A format whose volume this machine has no driver to mount says so at its end.
bool isMountFailure(const AlertSheet *sheet)
{
    const QString text = sheet->informativeText();
    const bool isOfFormat = text.startsWith(u"diskutil returned error code: 20\nOutput:\n"_s);
    return (isOfFormat || text.startsWith(u"Error while mounting"_s))
        && text.trimmed().endsWith(u"not configured in kernel."_s);
}

} // namespace

class TestWindowOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkRepairAndCheckAgain();
    void fatIsNamedByItsVariant();
    void blankPartitionIsFormatted();
    void volumeNamedRecoveryIsListed();
    void formatsAsEveryFilesystem_data();
    void formatsAsEveryFilesystem();
    void diskIsErasedToOneVolume();

private:
    void runToItsEnd(RealWindow &window, const DiskRecord &volume, QPushButton *button);
};

void TestWindowOperations::runToItsEnd(RealWindow &window, const DiskRecord &volume, QPushButton *button)
{
    QVERIFY(button->isEnabled());
    button->click();
    QVERIFY(volume->operationInProgress);
    QVERIFY(!window.controller().checkButton->isEnabled());
    QVERIFY(window.controller().rightTabView->indexOf(window.controller().maintenanceTab) >= 0);
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QVERIFY(!volume->operationInProgressShowFormatTab && !volume->operationInProgressShowMaintenanceTab);
    QVERIFY(window.controller().checkButton->isEnabled());
}

void TestWindowOperations::checkRepairAndCheckAgain()
{
    const LoopDisk disk(oneVolume(40, u"ext4"_s));
    RealWindow window;
    const DiskRecord volume = selectedVolume(window, disk);
    QVERIFY(volume);
    const ZorvexDiskManagerAppDelegate &controller = window.controller();

    runToItsEnd(window, volume, controller.checkButton);
    QVERIFY(window.sheets().isEmpty());
    QVERIFY(controller.checkRepairOutputView->toPlainText().contains(*volume->bsdName));

    // A count of links that is wrong: found by a check, mended by a repair.
    QCOMPARE(
        runProgram(u"debugfs"_s, { u"-w"_s, u"-R"_s, u"set_inode_field <11> links_count 9"_s, disk.node(1) }),
        0);
    const QByteArray damaged = disk.imageHash();
    runToItsEnd(window, volume, controller.checkButton);
    QCOMPARE(window.sheets().size(), 1);
    QCOMPARE(window.sheets().constFirst()->text(), u"Error"_s);
    QCOMPARE(window.sheets().constFirst()->informativeText(),
        u"Encountered errors when checking the volume.\nFilesystem needs to be repaired."_s);
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY(window.sheets().isEmpty());
    QCOMPARE(disk.imageHash(), damaged);

    runToItsEnd(window, volume, controller.repairButton);
    QVERIFY(window.sheets().isEmpty());
    runToItsEnd(window, volume, controller.checkButton);
    QVERIFY(window.sheets().isEmpty());
}

void TestWindowOperations::fatIsNamedByItsVariant()
{
    struct Volume
    {
        QString bits;
        QString name;
    };
    const QList<Volume> volumes { { u"12"_s, u"FAT Plus (FAT12)"_s }, { u"16"_s, u"FAT Plus (FAT16)"_s },
        { u"32"_s, u"FAT Plus (FAT32)"_s } };
    const QString dataType = QString::fromLatin1(LoopDisk::dataType);
    const LoopDisk disk(
        { { 8, dataType, {}, u"A"_s }, { 20, dataType, {}, u"B"_s }, { 40, dataType, {}, u"C"_s } });
    RealWindow window;
    const auto shown = [&window] { return window.controller().filesystemLabel->text(); };
    for (int i = 0; i < volumes.size(); ++i) {
        const QString node = disk.node(i + 1);
        QCOMPARE(runProgram(u"mkfs.fat"_s, { u"-F"_s, volumes.at(i).bits, node }), 0);
        const auto isTold = [&] {
            const DiskRecord record = window.recordOf(node);
            return record && record->volumeKind == u"zorvex_fatplus"_s && record->daDisk->filesystemSubtype();
        };
        QTRY_VERIFY_WITH_TIMEOUT(isTold(), limit);
        const DiskRecord record = window.recordOf(node);
        QVERIFY(!record->volumePath);
        window.select(record);
        QCOMPARE(shown(), u"FAT Plus (FAT)"_s); // its variant is asked for when it is mounted
        record->subtype = *record->daDisk->filesystemSubtype();
        window.controller().outlineViewSelectionDidChange();
        QCOMPARE(shown(), volumes.at(i).name);
    }
}

void TestWindowOperations::blankPartitionIsFormatted()
{
    const LoopDisk disk({ { 40, QString::fromLatin1(LoopDisk::linuxType), QString(), u"Empty"_s } });
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(1)), limit);
    const DiskRecord volume = window.recordOf(disk.node(1));
    window.select(volume);
    const ZorvexDiskManagerAppDelegate &controller = window.controller();
    QCOMPARE(controller.rightTabView->indexOf(controller.formatTab), 1);
    QCOMPARE(controller.filesystemLabel->text(), QString());
    const auto askToFormat = [&controller] {
        controller.formatFilesystemsPopupButton->setCurrentText(u"ext4"_s);
        controller.formatVolumeLabelField->setText(u"Fresh"_s);
        controller.formatButton->click();
    };
    askToFormat();
    QCOMPARE(window.sheets().size(), 1);
    const QString question = window.sheets().constFirst()->accessoryText();
    for (const QString &words : { u"not recognized"_s, u"New file system: ext4"_s, u"New label: Fresh"_s })
        QVERIFY2(question.contains(words), qPrintable(question));

    // While the question is open, somebody else makes use of the partition.
    QCOMPARE(runProgram(u"mkswap"_s, { disk.node(1) }), 0);
    QTRY_COMPARE_WITH_TIMEOUT(controller.filesystemLabel->text(), u"swap space"_s, limit);
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_COMPARE(window.sheets().size(), 1);
    QCOMPARE(window.sheets().constFirst()->text(), u"Nothing was erased"_s);
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY(window.sheets().isEmpty());
    QCOMPARE(probed(disk.node(1), u"TYPE"_s), u"swap"_s);

    askToFormat();
    QVERIFY(window.sheets().constFirst()->accessoryText().contains(u"swap space"_s));
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QVERIFY(window.sheets().isEmpty());
    QCOMPARE(probed(disk.node(1), u"LABEL"_s), u"Fresh"_s);
    QTRY_VERIFY_WITH_TIMEOUT(volume->volumePath, limit);
    QCOMPARE(mountPointsOf(disk.node(1)), QStringList { volume->volumePath->toLocalFile() });
    QCOMPARE(controller.rightTabView->indexOf(controller.formatTab), 1);
}

// The service's own rules ignore volumes of that name.
void TestWindowOperations::volumeNamedRecoveryIsListed()
{
    const LoopDisk disk({ { 40, QString::fromLatin1(LoopDisk::dataType), u"vfat"_s, u"RECOVERY"_s } });
    RealWindow window;
    const auto isNamed = [&] {
        const DiskRecord record = window.recordOf(disk.node(1));
        return record && record->volumeName == u"RECOVERY"_s && record->volumeKind;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isNamed(), limit);
}

void TestWindowOperations::formatsAsEveryFilesystem_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("empty label") << QString();
    QTest::newRow("typed label") << u"MUSIC 1"_s;
}

void TestWindowOperations::formatsAsEveryFilesystem()
{
    QFETCH(const QString, label);
    const LoopDisk disk(oneVolume(400, u"ext4"_s));
    RealWindow window;
    const DiskRecord volume = selectedVolume(window, disk);
    QVERIFY(volume);
    QComboBox *const menu = window.controller().formatFilesystemsPopupButton;
    int formatted = 0;
    for (int i = 0; i < menu->count(); ++i) {
        if (!menu->model()->index(i, 0).flags().testFlag(Qt::ItemIsEnabled))
            continue;
        menu->setCurrentIndex(i);
        const auto bundle = menu->currentData().value<FilesystemBundleRef>();
        window.controller().formatVolumeLabelField->setText(label);
        window.controller().formatButton->click();
        QCOMPARE(window.sheets().size(), 1);
        QVERIFY(window.sheets().constFirst()->accessoryText().contains(disk.node(1)));
        window.endSheet(AlertSheet::firstButtonReturn);
        QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
        for (const AlertSheet *sheet : window.sheets()) {
            QVERIFY2(
                isMountFailure(sheet), qPrintable(bundle->bundleName + u": " + sheet->informativeText()));
            window.endSheet(AlertSheet::firstButtonReturn);
        }
        QTRY_VERIFY(window.sheets().isEmpty());
        const bool isFat = probedType(*bundle) == "vfat"_L1;
        const QString expected = !label.isEmpty() ? label : (isFat ? u"UNTITLED"_s : u"Untitled"_s);
        QCOMPARE(QString(bundle->bundleName + u' ' + probed(disk.node(1), u"TYPE"_s)),
            QString(bundle->bundleName + u' ' + probedType(*bundle)));
        QCOMPARE(probed(disk.node(1), u"LABEL"_s), expected);
        QTRY_COMPARE_WITH_TIMEOUT(volume->volumeName.value_or(QString()), expected, limit);
        QVERIFY(!volume->operationInProgressShowFormatTab && !volume->operationInProgressShowMaintenanceTab);
        ++formatted;
    }
    QVERIFY(formatted >= 12);
}

void TestWindowOperations::diskIsErasedToOneVolume()
{
    const QString type = QString::fromLatin1(LoopDisk::linuxType);
    const LoopDisk disk({ { 40, type, u"ext4"_s, u"Photos"_s }, { 40, type, u"ext4"_s, u"Music"_s } });
    RealWindow window;
    const DiskRecord first = selectedVolume(window, disk);
    QVERIFY(first);
    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(2)), limit);
    window.controller().clickMountUnmountButton(nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(!mountPointsOf(disk.node(1)).isEmpty() && !first->operationInProgress, limit);

    const DiskRecord whole = window.recordOf(disk.node());
    window.select(whole);
    window.window().findChild<QAction *>(u"actionEraseDisk"_s)->trigger();
    auto *const sheet = window.window().findChild<EraseDiskSheet *>();
    QVERIFY(sheet);
    sheet->filesystemPopupButton->setCurrentText(u"ext4"_s);
    sheet->schemePopupButton->setCurrentIndex(
        sheet->schemePopupButton->findData(static_cast<int>(PartitionScheme::Gpt)));
    sheet->labelField->setText(u"Fresh"_s);
    sheet->accept();
    QCOMPARE(window.sheets().size(), 1);
    const QString question = window.sheets().constFirst()->accessoryText();
    for (const QString &words : { disk.node(), u"Photos"_s, u"Music"_s, u"New label: Fresh"_s, u"(GPT)"_s })
        QVERIFY2(question.contains(words), qPrintable(question));
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY_WITH_TIMEOUT(!whole->operationInProgress, limit);
    const AlertSheet *const alert = window.sheets().value(0);
    QVERIFY2(!alert, qPrintable(alert ? alert->informativeText() : QString()));

    QCOMPARE(window.nodesOfDisk(disk.node()), (QStringList { disk.node(), disk.node(1) }));
    QCOMPARE(probed(disk.node(), u"PTTYPE"_s), u"gpt"_s);
    QCOMPARE(probed(disk.node(1), u"LABEL"_s), u"Fresh"_s);
    const DiskRecord volume = window.recordOf(disk.node(1));
    const OutlineView *const view = window.controller().leftOutlineView;
    QVERIFY(view->itemAtRow(view->selectedRow()) == volume);
    QCOMPARE(volume->volumeName.value_or(QString()), u"Fresh"_s);
    QVERIFY(volume->volumePath);
    QCOMPARE(mountPointsOf(disk.node(1)), QStringList { volume->volumePath->toLocalFile() });
}

int main(int argc, char **argv)
{
    return runRecorded<TestWindowOperations>(argc, argv);
}

#include "tst_window_operations.moc"
