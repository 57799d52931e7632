// SPDX-License-Identifier: MIT
//
// The disk tree in the real outline view.
#include "tests/support/TestController.h"

#include "ui/OutlineModel.h"
#include "ui/OutlineView.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QTest>

class TestDiskOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partitionMovesUnderItsDisk();
    void selectionStaysOnTheMedium();
    void unmountedVolumeIsDrawnDisabled();
};

void TestDiskOutline::partitionMovesUnderItsDisk()
{
    TestController test;
    test.launch();
    const QAbstractItemModelTester tester(test.controller().leftOutlineView->model());
    test.add(makePartition(QStringLiteral("disk2s1"), 1024));
    QCOMPARE(test.rowNames(), QStringList { QStringLiteral("disk2s1") });
    test.add(makeDisk(QStringLiteral("disk2")));
    QCOMPARE(test.rowNames(), (QStringList { QStringLiteral("disk2"), QStringLiteral("disk2s1") }));
    const OutlineView *view = test.controller().leftOutlineView;
    QCOMPARE(view->model()->rowCount(), 1);
    QCOMPARE(view->model()->rowCount(view->model()->index(0, 0)), 1);
}

void TestDiskOutline::selectionStaysOnTheMedium()
{
    TestController test;
    test.launch();
    for (const int number : { 1, 3, 4, 5 })
        test.add(makeDisk(QStringLiteral("disk%1").arg(number)));
    test.select(QStringLiteral("disk5"));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 3);
    test.add(makeDisk(QStringLiteral("disk2")));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 4);
    QCOMPARE(test.controller().bsdNameLabel->text(), QStringLiteral("disk5"));
    test.add(makeDisk(QStringLiteral("disk9")));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 4);
}

void TestDiskOutline::unmountedVolumeIsDrawnDisabled()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk2")));
    const MemoryDiskRef volume = makePartition(QStringLiteral("disk2s1"), 1024);
    setMounted(volume, QStringLiteral("/media/A"));
    test.add(volume);
    const OutlineView *view = test.controller().leftOutlineView;
    const QModelIndex index = view->model()->index(0, 0, view->model()->index(0, 0));
    QCOMPARE(index.data(OutlineModel::CellEnabledRole), QVariant(true));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(index.data(OutlineModel::CellEnabledRole), QVariant(false));
    QVERIFY(index.flags().testFlag(Qt::ItemIsSelectable));
}

QTEST_MAIN(TestDiskOutline)
#include "tst_diskoutline.moc"
