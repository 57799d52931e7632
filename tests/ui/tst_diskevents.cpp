// SPDX-License-Identifier: MIT
//
// Disks that appear, disappear and change, as the tree and the selection follow them.
#include "tests/support/TestController.h"

#include "ui/OutlineView.h"

#include <QLabel>
#include <QRandomGenerator>
#include <QTest>

#include <vector>

namespace {

QStringList names(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *name : list)
        result.append(QLatin1String(name));
    return result;
}

bool isNotFoundLine(const QString &line)
{
    return line.startsWith(
        QStringLiteral("Could not find a matching ZorvexDiskManagerDisk for DADiskRef 0x"));
}

// All names of a ring and below it, from the top.
QStringList namesInTree(const ZorvexDiskManagerDiskListItem *ring)
{
    QStringList result;
    for (const auto *item = ring; item; item = item->next == ring ? nullptr : item->next) {
        result.append(item->disk->description());
        result += namesInTree(item->children);
    }
    return result;
}

MemoryDiskRef takeAny(std::vector<MemoryDiskRef> &media, QRandomGenerator &random)
{
    const auto place = media.begin() + random.bounded(static_cast<int>(media.size()));
    MemoryDiskRef medium = *place;
    media.erase(place);
    return medium;
}

} // namespace

class TestDiskEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortMemoryIsLogged_data();
    void shortMemoryIsLogged();
    void efiPartitionIsNeverInTheTree();
    void selectionAfterARemoval_data();
    void selectionAfterARemoval();
    void removalBelowTheSelectionDoesNotCallTheHandler();
    void lastDiskThatGoesLeavesNoSelection();
    void unmountedVolumeLosesItsPath();
    void changeThatIsRefusedKeepsWhatWas();
    void diskThatGoesBeforeItsPartitionsTakesThemAlong();
    void eventsWithoutADescriptionAreSilent();
    void placeIsNotRevisedOnAChange();
    void rowsFollowTheTree();
};

void TestDiskEvents::shortMemoryIsLogged_data()
{
    QTest::addColumn<bool>("record");
    QTest::addColumn<bool>("node");
    QTest::addColumn<QString>("line");
    QTest::newRow("both") << false << false
                          << QStringLiteral("Error while allocating new ZorvexDiskManagerDisk and "
                                            "ZorvexDiskManagerDiskListItem.");
    QTest::newRow("node") << true << false
                          << QStringLiteral("Error while allocating new ZorvexDiskManagerDiskListItem.");
    QTest::newRow("record") << false << true
                            << QStringLiteral("Error while allocating new ZorvexDiskManagerDisk.");
}

void TestDiskEvents::shortMemoryIsLogged()
{
    QFETCH(const bool, record);
    QFETCH(const bool, node);
    QFETCH(const QString, line);
    TestController test;
    if (!record)
        test.platform().allocDisk = [] { return std::shared_ptr<ZorvexDiskManagerDisk>(); };
    if (!node)
        test.platform().allocDiskListItem = [] { return std::unique_ptr<ZorvexDiskManagerDiskListItem>(); };
    test.launch();
    test.log.clear();
    QVERIFY(!test.add(makeDisk(QStringLiteral("disk2"))));
    QCOMPARE(test.log.lines(), QStringList { line });
    QCOMPARE(test.controller().disk_list, nullptr);
}

void TestDiskEvents::efiPartitionIsNeverInTheTree()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk2")));
    const MemoryDiskRef efi = makePartition(QStringLiteral("disk2s1"), 1000);
    efi->description->insert(DAKey::mediaContent, QStringLiteral("C12A7328-F81F-11D2-BA4B-00A0C93EC93B"));
    test.log.clear();
    QVERIFY(!test.add(efi));
    QCOMPARE(test.rowNames(), names({ "disk2" }));
    QCOMPARE(test.log.lines(), QStringList());
    test.service.removeDisk(efi);
    QCOMPARE(test.log.lines().size(), 1);
    QVERIFY(isNotFoundLine(test.log.lines().constFirst()));
}

void TestDiskEvents::selectionAfterARemoval_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("selectedAfter");
    QTest::addColumn<QString>("shown");
    QTest::newRow("the last, selected") << 4 << 4 << 3 << QStringLiteral("disk3");
    QTest::newRow("above the selection") << 4 << 1 << 3 << QStringLiteral("disk4");
    QTest::newRow("below the selection") << 2 << 4 << 2 << QStringLiteral("disk2");
    QTest::newRow("the selected, not last") << 1 << 1 << 1 << QStringLiteral("disk2");
}

void TestDiskEvents::selectionAfterARemoval()
{
    QFETCH(const int, selected);
    QFETCH(const int, removed);
    QFETCH(const int, selectedAfter);
    QFETCH(const QString, shown);
    TestController test;
    test.launch();
    std::vector<MemoryDiskRef> disks;
    for (int i = 0; i < 5; ++i) {
        disks.push_back(makeDisk(QStringLiteral("disk%1").arg(i)));
        test.add(disks.back());
    }
    test.controller().leftOutlineView->selectRow(selected);
    test.service.removeDisk(disks[static_cast<std::size_t>(removed)]);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), selectedAfter);
    QCOMPARE(test.controller().bsdNameLabel->text(), shown);
}

void TestDiskEvents::removalBelowTheSelectionDoesNotCallTheHandler()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk1")));
    const MemoryDiskRef last = makeDisk(QStringLiteral("disk2"));
    test.add(last);
    test.select(QStringLiteral("disk1"));
    test.controller().infoNameLabel->setText(QStringLiteral("untouched"));
    test.service.removeDisk(last);
    QCOMPARE(test.controller().infoNameLabel->text(), QStringLiteral("untouched"));
}

void TestDiskEvents::lastDiskThatGoesLeavesNoSelection()
{
    TestController test;
    test.launch();
    const MemoryDiskRef only = makeDisk(QStringLiteral("disk1"));
    test.add(only);
    test.select(QStringLiteral("disk1"));
    test.service.removeDisk(only);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), -1);
    QCOMPARE(test.controller().disk_list, nullptr);
    QCOMPARE(test.controller().bsdNameLabel->text(), QString());
}

void TestDiskEvents::unmountedVolumeLosesItsPath()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(QStringLiteral("disk2s1"), 1000);
    setMounted(volume, QStringLiteral("/media/A"));
    const OutlineItem record = test.add(volume);
    QVERIFY(record->volumePath);
    setMounted(volume, {});
    test.service.changeDisk(volume, { DAKey::volumePath });
    QVERIFY(!record->volumePath);
}

void TestDiskEvents::changeThatIsRefusedKeepsWhatWas()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(QStringLiteral("disk2s1"), 1000, QStringLiteral("Old"));
    const OutlineItem record = test.add(volume);
    test.log.clear();
    volume->description->insert(DAKey::mediaContent, QStringLiteral("Apple_partition_map"));
    volume->description->insert(DAKey::volumeName, QStringLiteral("New"));
    test.service.changeDisk(volume);
    QCOMPARE(*record->volumeName, QStringLiteral("Old"));
    QCOMPARE(test.rowNames(), names({ "disk2s1" }));
    QCOMPARE(test.log.lines(),
        QStringList { QStringLiteral("Error while updating disk description from DADisk...") });
}

void TestDiskEvents::diskThatGoesBeforeItsPartitionsTakesThemAlong()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(QStringLiteral("disk2"));
    const MemoryDiskRef partition = makePartition(QStringLiteral("disk2s1"), 1000);
    test.add(disk);
    const OutlineItem record = test.add(partition);
    test.service.removeDisk(disk);
    QCOMPARE(test.rowNames(), QStringList());
    QCOMPARE(record->description(), QStringLiteral("disk2s1")); // the record stays valid
    test.log.clear();
    test.service.removeDisk(partition);
    QCOMPARE(test.log.lines().size(), 1);
    QVERIFY(isNotFoundLine(test.log.lines().constFirst()));
}

void TestDiskEvents::eventsWithoutADescriptionAreSilent()
{
    TestController test;
    test.launch();
    test.log.clear();
    const auto nameless = std::make_shared<MemoryDisk>();
    test.service.removeDisk(nameless);
    test.service.changeDisk(nameless);
    nameless->description = PropertyDictionary { { DAKey::mediaBSDName, true } };
    test.service.removeDisk(nameless);
    QCOMPARE(test.log.lines(), QStringList());
    const MemoryDiskRef unknown = makeDisk(QStringLiteral("disk7"));
    test.service.changeDisk(unknown);
    QCOMPARE(test.log.lines().size(), 1);
    QVERIFY(isNotFoundLine(test.log.lines().constFirst()));
}

void TestDiskEvents::placeIsNotRevisedOnAChange()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk2")));
    const MemoryDiskRef first = makePartition(QStringLiteral("disk2s1"), 1000);
    test.add(first);
    test.add(makePartition(QStringLiteral("disk2s2"), 2000));
    first->mediaProperties->insert(IOMediaKey::base, PropertyNumber(qint64 { 3000 }));
    test.service.changeDisk(first);
    QCOMPARE(test.rowNames(), names({ "disk2", "disk2s1", "disk2s2" }));
}

// Whatever comes and goes, and whatever the user collapses in between: an arrival opens all again.
void TestDiskEvents::rowsFollowTheTree()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    TestController test;
    test.launch();
    OutlineView *const view = test.controller().leftOutlineView;
    std::vector<MemoryDiskRef> absent;
    for (int disk = 0; disk < 12; ++disk) {
        const QString name = QStringLiteral("disk%1").arg(disk);
        absent.push_back(makeDisk(name));
        for (int i = 1; i <= 4; ++i)
            absent.push_back(makePartition(name + QStringLiteral("s%1").arg(i), i));
    }
    std::vector<MemoryDiskRef> present;
    bool isCollapsed = false;
    for (int step = 0; step < 400; ++step) {
        if (!absent.empty() && (present.empty() || random.bounded(3) > 0)) {
            present.push_back(takeAny(absent, random));
            test.service.addDisk(present.back());
            QCOMPARE(test.rowNames(), namesInTree(test.controller().disk_list));
            isCollapsed = false;
        } else {
            absent.push_back(takeAny(present, random));
            test.service.removeDisk(absent.back());
            if (!isCollapsed)
                QCOMPARE(test.rowNames(), namesInTree(test.controller().disk_list));
        }
        for (int row = 0; row < view->numberOfRows(); ++row)
            QCOMPARE(view->rowForItem(view->itemAtRow(row)), row);
        QCOMPARE(view->itemAtRow(view->numberOfRows()), nullptr);
        view->selectRow(random.bounded(view->numberOfRows() + 1));
        if (random.bounded(4) == 0 && view->numberOfRows() > 0) {
            const int shown = view->numberOfRows();
            const QModelIndex disk = view->model()->index(random.bounded(view->model()->rowCount()), 0);
            view->collapse(disk);
            QCOMPARE(view->numberOfRows(),
                isCollapsed ? view->numberOfRows() : shown - view->model()->rowCount(disk));
            isCollapsed = isCollapsed || view->numberOfRows() < shown;
        }
    }
}

QTEST_MAIN(TestDiskEvents)
#include "tst_diskevents.moc"
