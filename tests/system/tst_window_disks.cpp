// SPDX-License-Identifier: MIT
//
// The window on the machine's own disk service and a real loop disk: what is listed, mounted, unmounted,
// ejected.
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"
#include "tests/support/RecordingApplication.h"

#include "ui/AlertSheet.h"
#include "ui/ImageAndTextCell.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"

#include <QLabel>
#include <QProcess>
#include <QTabWidget>
#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 20000; // milliseconds; what a machine under load still needs

const QList<LoopDisk::Partition> practiceDisk {
    { 40, QString::fromLatin1(LoopDisk::efiType), u"vfat"_s, u"EFI"_s },
    { 40, QString::fromLatin1(LoopDisk::dataType), u"ntfs"_s, u"DATA"_s },
    { 40, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, u"Backup"_s },
};

bool isDrawnEnabled(RealWindow &window, const DiskRecord &disk)
{
    OutlineView *view = window.controller().leftOutlineView;
    return view->preparedCell(disk)->enabled;
}

} // namespace

class TestWindowDisks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsTheDiskWithoutItsEfiPartition();
    void fillsTheInfoTab();
    void mountsAndUnmounts();
    void busyVolumeOpensTheForceDialog();
    void ejectTakesTheDiskOffTheMachine();
    void followsDisksThatComeAndGo();
    void serviceThatRestartsGivesTheSameTree();
    void mountThatIsRefusedIsReported();
    void toolAndWindowAgreeOnEveryName();
};

void TestWindowDisks::listsTheDiskWithoutItsEfiPartition()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_COMPARE_WITH_TIMEOUT(
        window.nodesOfDisk(disk.node()), (QStringList { disk.node(), disk.node(2), disk.node(3) }), limit);
    const DiskRecord data = window.recordOf(disk.node(2));
    QTRY_COMPARE_WITH_TIMEOUT(data->volumeName.value_or(QString()), u"DATA"_s, limit);
    QCOMPARE(data->mediaSize->longLongValue(), 40LL * 1024 * 1024);
    QVERIFY(!data->whole);
    QVERIFY(!data->internal);
    const DiskRecord whole = window.recordOf(disk.node());
    QVERIFY(whole->whole && !whole->leaf && whole->ejectable && whole->removable);
    QCOMPARE(*whole->content, u"GUID_partition_scheme"_s);
    QVERIFY(data->bsdName->startsWith(*whole->bsdName + u's'));
    QVERIFY(isDrawnEnabled(window, whole));
    QVERIFY(!isDrawnEnabled(window, data));
}

void TestWindowDisks::fillsTheInfoTab()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(3)), limit);
    const DiskRecord volume = window.recordOf(disk.node(3));
    QTRY_VERIFY_WITH_TIMEOUT(volume->volumeKind, limit);
    window.select(volume);
    const ZorvexDiskManagerAppDelegate &controller = window.controller();
    QCOMPARE(controller.infoNameLabel->text(), u"Backup"_s);
    QCOMPARE(controller.infoDiskSpaceLabel->text(), u"41.94 MB"_s);
    QCOMPARE(controller.bsdNameLabel->text(), *volume->bsdName);
    QCOMPARE(controller.bsdNameLabel->toolTip(), u"Device node: "_s + disk.node(3));
    QCOMPARE(controller.contentHintLabel->text(), QString::fromLatin1(LoopDisk::linuxType));
    QCOMPARE(controller.preferredBlockSizeLabel->text(), u"512 bytes"_s);
    QVERIFY(!controller.infoBigImageField->pixmap().isNull());
    QVERIFY(controller.rightTabView->indexOf(controller.formatTab) >= 0);
    QVERIFY(controller.mountUnmountButton->isEnabled());
    window.select(window.recordOf(disk.node()));
    QCOMPARE(controller.rightTabView->count(), 1);
    QVERIFY(controller.mountUnmountButton->isEnabled());
}

void TestWindowDisks::mountsAndUnmounts()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(
        window.recordOf(disk.node(3)) && window.recordOf(disk.node(3))->volumeKind, limit);
    const DiskRecord volume = window.recordOf(disk.node(3));
    window.select(volume);
    const ZorvexDiskManagerAppDelegate &controller = window.controller();

    controller.mountUnmountButton->click();
    QVERIFY(volume->operationInProgress);
    QVERIFY(!controller.mountUnmountButton->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QCOMPARE(mountPointsOf(disk.node(3)).size(), 1);
    QCOMPARE(volume->volumePath->toLocalFile(), mountPointsOf(disk.node(3)).constFirst());
    QVERIFY(isDrawnEnabled(window, volume));
    QVERIFY(controller.infoMountedPathView->toPlainText().contains(volume->volumePath->toLocalFile()));
    QVERIFY(controller.infoDiskSpaceLabel->text().contains(u" free of 41.94 MB"_s));

    controller.mountUnmountButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QCOMPARE(mountPointsOf(disk.node(3)), QStringList());
    QVERIFY(!volume->volumePath);
    QVERIFY(!isDrawnEnabled(window, volume));
    QVERIFY(window.sheets().isEmpty());
}

void TestWindowDisks::busyVolumeOpensTheForceDialog()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(
        window.recordOf(disk.node(3)) && window.recordOf(disk.node(3))->volumeKind, limit);
    const DiskRecord volume = window.recordOf(disk.node(3));
    window.select(volume);
    window.controller().mountUnmountButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress && volume->volumePath, limit);

    QProcess holder;
    holder.setWorkingDirectory(volume->volumePath->toLocalFile());
    holder.start(u"cat"_s, QStringList());
    QVERIFY(holder.waitForStarted());

    window.controller().mountUnmountButton->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.sheets().size(), 1, limit);
    QVERIFY(window.sheets().constFirst()->informativeText().contains(*volume->bsdName));
    window.endSheet(AlertSheet::firstButtonReturn + 1);
    QVERIFY(!volume->operationInProgress);
    QCOMPARE(mountPointsOf(disk.node(3)).size(), 1);

    QTRY_VERIFY(window.sheets().isEmpty());
    window.controller().mountUnmountButton->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.sheets().size(), 1, limit);
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QCOMPARE(mountPointsOf(disk.node(3)), QStringList());
    QTRY_VERIFY(window.sheets().isEmpty());
    holder.kill();
    holder.waitForFinished();
}

void TestWindowDisks::ejectTakesTheDiskOffTheMachine()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(
        window.recordOf(disk.node(3)) && window.recordOf(disk.node(3))->volumeKind, limit);
    const DiskRecord volume = window.recordOf(disk.node(3));
    window.select(volume);
    window.controller().mountUnmountButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress && volume->volumePath, limit);

    window.select(window.recordOf(disk.node()));
    window.controller().mountUnmountButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(window.nodesOfDisk(disk.node()).isEmpty(), limit);
    QVERIFY(!disk.isAttached());
    QVERIFY(window.sheets().isEmpty());
}

void TestWindowDisks::followsDisksThatComeAndGo()
{
    const LoopDisk first(practiceDisk);
    RealWindow window;
    QTRY_COMPARE_WITH_TIMEOUT(window.nodesOfDisk(first.node()).size(), 3, limit);
    const DiskRecord selected = window.recordOf(first.node(3));
    window.select(selected);
    {
        LoopDisk second(practiceDisk);
        QTRY_COMPARE_WITH_TIMEOUT(window.nodesOfDisk(second.node()).size(), 3, limit);
        const OutlineView *view = window.controller().leftOutlineView;
        QCOMPARE(view->itemAtRow(view->selectedRow()), selected);
        second.detach();
        QTRY_VERIFY_WITH_TIMEOUT(window.nodesOfDisk(second.node()).isEmpty(), limit);
        QCOMPARE(view->itemAtRow(view->selectedRow()), selected);
        QCOMPARE(window.controller().bsdNameLabel->text(), *selected->bsdName);
    }
}

void TestWindowDisks::serviceThatRestartsGivesTheSameTree()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_COMPARE_WITH_TIMEOUT(window.nodesOfDisk(disk.node()).size(), 3, limit);
    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(3))->volumeKind, limit);
    const QStringList before = window.nodesOfDisk(disk.node());

    const pid_t service = diskServicePid();
    QVERIFY(service > 0); // any other number stands for more than one process
    QCOMPARE(kill(service, SIGTERM), 0);
    QTRY_COMPARE_WITH_TIMEOUT(window.controller().leftOutlineView->numberOfRows(), 0, limit);
    QCOMPARE(runProgram(u"udisksctl"_s, { u"status"_s }), 0); // starts it again
    QTRY_COMPARE_WITH_TIMEOUT(window.nodesOfDisk(disk.node()), before, limit);
    const QStringList names = window.rowNames();
    QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
}

void TestWindowDisks::mountThatIsRefusedIsReported()
{
    LoopDisk disk({ { 20, QString::fromLatin1(LoopDisk::linuxType), QString(), u"Empty"_s } });
    RealWindow window;
    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(1)), limit);
    const DiskRecord empty = window.recordOf(disk.node(1));
    window.select(empty);
    window.controller().mountUnmountButton->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.sheets().size(), 1, limit);
    QCOMPARE(window.sheets().constFirst()->text(), u"Error"_s);
    QCOMPARE(window.sheets().constFirst()->informativeText(),
        u"Error while mounting %1: No supported file system found."_s.arg(*empty->bsdName));
    QVERIFY(!empty->operationInProgress);
    window.endSheet(AlertSheet::firstButtonReturn);
}

void TestWindowDisks::toolAndWindowAgreeOnEveryName()
{
    const LoopDisk disk(practiceDisk);
    RealWindow window;
    QTRY_COMPARE_WITH_TIMEOUT(window.nodesOfDisk(disk.node()).size(), 3, limit);
    QByteArray output;
    QCOMPARE(runProgram(u"/usr/sbin/diskutil"_s, { u"list"_s }, &output), 0);
    QStringList listed; // BSD name and device node of each line
    for (const QString &line : QString::fromUtf8(output).split(u'\n'))
        listed.append(line.simplified().section(u' ', 0, 1));
    for (const QString &node : window.nodesOfDisk(disk.node())) {
        const QString row = window.recordOf(node)->description() + u' ' + node;
        QVERIFY2(listed.contains(row), qPrintable(row + u" is not in: " + QString::fromUtf8(output)));
    }
}

int main(int argc, char **argv)
{
    return runRecorded<TestWindowDisks>(argc, argv);
}

#include "tst_window_disks.moc"
