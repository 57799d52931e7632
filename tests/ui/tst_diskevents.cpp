// SPDX-License-Identifier: MIT
//
// Disks that appear, disappear and change, as the tree and the selection follow them.
#include "tests/support/TestController.h"
#include "tests/support/TestSeed.h"

#include "ui/OutlineView.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

#include <vector>

using namespace Qt::Literals::StringLiterals;

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
    return line.startsWith(u"Could not find a matching ZorvexDiskManagerDisk for DADiskRef 0x"_s);
}

QString notShownLine(const ZorvexDiskManagerDiskListItem *item)
{
    return QString::asprintf("No index found for item %p (disk %p)!", static_cast<const void *>(item),
        static_cast<const void *>(item->disk.get()));
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

std::vector<MemoryDiskRef> mediaOf(const QStringList &bsdNames)
{
    std::vector<MemoryDiskRef> media;
    for (const QString &name : bsdNames) {
        const qsizetype separator = name.lastIndexOf(u's');
        media.push_back(
            separator < 5 ? makeDisk(name) : makePartition(name, name.mid(separator + 1).toLongLong()));
    }
    return media;
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
    void pressForADiskThatHasJustGoneDoesNothing_data();
    void pressForADiskThatHasJustGoneDoesNothing();
    void removalBelowTheSelectionDoesNotCallTheHandler();
    void volumeOfACollapsedDiskThatGoesIsLogged();
    void lastDiskThatGoesLeavesNoSelection();
    void unmountedVolumeLosesItsPath();
    void changeIsShownAtOnce();
    void changeThatIsRefusedKeepsWhatWas();
    void diskThatGoesBeforeItsPartitionsTakesThemAlong();
    void eventsWithoutADescriptionAreSilent();
    void placeIsNotRevisedOnAChange();
    void rowsFollowTheTree();
    void selectionInABurst_data();
    void selectionInABurst();
    void burstShowsWhatEachEventByItselfWould();
};

void TestDiskEvents::shortMemoryIsLogged_data()
{
    QTest::addColumn<bool>("record");
    QTest::addColumn<bool>("node");
    QTest::addColumn<QString>("line");
    QTest::newRow("both") << false << false
                          << u"Error while allocating new ZorvexDiskManagerDisk and "
                             "ZorvexDiskManagerDiskListItem."_s;
    QTest::newRow("node") << true << false << u"Error while allocating new ZorvexDiskManagerDiskListItem."_s;
    QTest::newRow("record") << false << true << u"Error while allocating new ZorvexDiskManagerDisk."_s;
}

void TestDiskEvents::shortMemoryIsLogged()
{
    QFETCH(const bool, record);
    QFETCH(const bool, node);
    QFETCH(const QString, line);
    TestController test;
    if (!record)
        test.platform().allocDisk = [] { return DiskRecord(); };
    if (!node)
        test.platform().allocDiskListItem = [] { return std::unique_ptr<ZorvexDiskManagerDiskListItem>(); };
    test.launch();
    test.log.clear();
    QVERIFY(!test.add(makeDisk(u"disk2"_s)));
    QCOMPARE(test.log.lines(), QStringList { line });
    QCOMPARE(test.controller().disk_list, nullptr);
}

void TestDiskEvents::efiPartitionIsNeverInTheTree()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk2"_s));
    const MemoryDiskRef efi = makePartition(u"disk2s1"_s, 1000);
    efi->description->insert(DAKey::mediaContent, u"C12A7328-F81F-11D2-BA4B-00A0C93EC93B"_s);
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
    QTest::newRow("the last, selected") << 4 << 4 << 3 << u"disk3"_s;
    QTest::newRow("above the selection") << 4 << 1 << 3 << u"disk4"_s;
    QTest::newRow("below the selection") << 2 << 4 << 2 << u"disk2"_s;
    QTest::newRow("the selected, not last") << 1 << 1 << 1 << u"disk2"_s;
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
        disks.push_back(makeDisk(u"disk%1"_s.arg(i)));
        test.add(disks.back());
    }
    test.controller().leftOutlineView->selectRow(selected);
    test.service.removeDisk(disks[static_cast<std::size_t>(removed)]);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), selectedAfter);
    QCOMPARE(test.controller().bsdNameLabel->text(), shown);
}

void TestDiskEvents::pressForADiskThatHasJustGoneDoesNothing_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : { "repair, mouse", "repair, key", "repair, menu", "format, mouse", "format, key" })
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestDiskEvents::pressForADiskThatHasJustGoneDoesNothing()
{
    QFETCH(const QString, way);
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.setDiskutilScript("read go <&3\n");
    test.launch();
    std::vector<MemoryDiskRef> volumes;
    for (int i = 1; i <= 3; ++i) {
        volumes.push_back(makePartition(u"disk%1s1"_s.arg(i), 1024));
        volumes.back()->description->insert(DAKey::volumeKind, u"msdos"_s);
        test.add(volumes.back());
    }
    auto &controller = test.controller();
    QPushButton *const button
        = way.startsWith(u"repair"_s) ? controller.repairButton : controller.formatButton;
    const auto pressIt = [&] {
        controller.rightTabView->setCurrentWidget(
            button == controller.repairButton ? controller.maintenanceTab : controller.formatTab);
        button->setFocus();
        if (way.endsWith(u"mouse"_s))
            QTest::mouseClick(button, Qt::LeftButton);
        else if (way.endsWith(u"key"_s))
            QTest::keyClick(button, Qt::Key_Space);
        else
            test.action(u"actionRepair"_s)->trigger();
    };
    const auto hasBegun = [&] {
        const DiskRecord selected = test.recordOf(controller.bsdNameLabel->text());
        return selected->operationInProgress || !test.sheets().isEmpty();
    };
    test.select(u"disk2s1"_s);
    test.service.removeDisk(volumes[1]);
    QCOMPARE(controller.bsdNameLabel->text(), u"disk3s1"_s);
    QVERIFY(button->isEnabled());
    pressIt();
    QVERIFY(!hasBegun());
    // What the user selects is meant, and so is the other one after a moment.
    if (way.endsWith(u"key"_s)) {
        test.select(u"disk1s1"_s);
        pressIt();
        QVERIFY(hasBegun());
        return;
    }
    const auto pressAndLook = [&] {
        pressIt();
        return hasBegun();
    };
    QTRY_VERIFY(pressAndLook());
}

void TestDiskEvents::removalBelowTheSelectionDoesNotCallTheHandler()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk1"_s));
    const MemoryDiskRef last = makeDisk(u"disk2"_s);
    test.add(last);
    test.select(u"disk1"_s);
    test.controller().infoNameLabel->setText(u"untouched"_s);
    test.service.removeDisk(last);
    QCOMPARE(test.controller().infoNameLabel->text(), u"untouched"_s);
}

void TestDiskEvents::volumeOfACollapsedDiskThatGoesIsLogged()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1000);
    test.add(makeDisk(u"disk2"_s));
    test.add(volume);
    test.add(makeDisk(u"disk3"_s));
    OutlineView *const view = test.controller().leftOutlineView;
    view->collapse(view->model()->index(0, 0));
    test.select(u"disk3"_s);
    test.controller().infoNameLabel->setText(u"untouched"_s);
    test.log.clear();
    const QString line = notShownLine(test.controller().disk_list->children);
    test.service.removeDisk(volume);
    QCOMPARE(test.log.lines(), QStringList { line });
    QCOMPARE(test.controller().disk_list->children, nullptr);
    QCOMPARE(view->selectedRow(), 1);
    QCOMPARE(test.controller().infoNameLabel->text(), u"untouched"_s);
}

void TestDiskEvents::lastDiskThatGoesLeavesNoSelection()
{
    TestController test;
    test.launch();
    const MemoryDiskRef only = makeDisk(u"disk1"_s);
    test.add(only);
    test.select(u"disk1"_s);
    test.service.removeDisk(only);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), -1);
    QCOMPARE(test.controller().disk_list, nullptr);
    QCOMPARE(test.controller().bsdNameLabel->text(), QString());
}

void TestDiskEvents::unmountedVolumeLosesItsPath()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1000);
    setMounted(volume, u"/media/A"_s);
    const DiskRecord record = test.add(volume);
    QVERIFY(record->volumePath);
    setMounted(volume, {});
    test.service.changeDisk(volume, { DAKey::volumePath });
    QVERIFY(!record->volumePath);
}

void TestDiskEvents::changeIsShownAtOnce()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1000, u"Old"_s);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const QSignalSpy reloads(test.controller().leftOutlineView->model(), &QAbstractItemModel::dataChanged);
    volume->description->insert(DAKey::volumeName, u"New"_s);
    test.service.changeDisk(volume);
    QCOMPARE(reloads.size(), 1);
    QCOMPARE(test.controller().infoNameLabel->text(), u"New"_s);
    // A change that is refused is not.
    volume->description->insert(DAKey::mediaContent, u"Apple_partition_map"_s);
    test.controller().infoNameLabel->setText(u"untouched"_s);
    test.service.changeDisk(volume);
    QCOMPARE(reloads.size(), 1);
    QCOMPARE(test.controller().infoNameLabel->text(), u"untouched"_s);
}

void TestDiskEvents::changeThatIsRefusedKeepsWhatWas()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1000, u"Old"_s);
    const DiskRecord record = test.add(volume);
    test.log.clear();
    volume->description->insert(DAKey::mediaContent, u"Apple_partition_map"_s);
    volume->description->insert(DAKey::volumeName, u"New"_s);
    test.service.changeDisk(volume);
    QCOMPARE(*record->volumeName, u"Old"_s);
    QCOMPARE(test.rowNames(), names({ "disk2s1" }));
    QCOMPARE(test.log.lines(), QStringList { u"Error while updating disk description from DADisk..."_s });
}

void TestDiskEvents::diskThatGoesBeforeItsPartitionsTakesThemAlong()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    const MemoryDiskRef partition = makePartition(u"disk2s1"_s, 1000);
    test.add(disk);
    const DiskRecord record = test.add(partition);
    test.service.removeDisk(disk);
    QCOMPARE(test.rowNames(), QStringList());
    QCOMPARE(record->description(), u"disk2s1"_s); // the record stays valid
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
    const MemoryDiskRef unknown = makeDisk(u"disk7"_s);
    test.service.changeDisk(unknown);
    QCOMPARE(test.log.lines().size(), 1);
    QVERIFY(isNotFoundLine(test.log.lines().constFirst()));
}

void TestDiskEvents::placeIsNotRevisedOnAChange()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk2"_s));
    const MemoryDiskRef first = makePartition(u"disk2s1"_s, 1000);
    test.add(first);
    test.add(makePartition(u"disk2s2"_s, 2000));
    first->mediaProperties->insert(IOMediaKey::base, PropertyNumber(qint64 { 3000 }));
    test.service.changeDisk(first);
    QCOMPARE(test.rowNames(), names({ "disk2", "disk2s1", "disk2s2" }));
}

// An arrival expands all rows again, after any events and any row that the user has collapsed.
void TestDiskEvents::rowsFollowTheTree()
{
    QRandomGenerator random(testSeed());
    TestController test;
    test.launch();
    OutlineView *const view = test.controller().leftOutlineView;
    std::vector<MemoryDiskRef> absent;
    for (int disk = 0; disk < 12; ++disk) {
        const QString name = u"disk%1"_s.arg(disk);
        absent.push_back(makeDisk(name));
        for (int i = 1; i <= 4; ++i)
            absent.push_back(makePartition(name + u"s%1"_s.arg(i), i));
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

void TestDiskEvents::selectionInABurst_data()
{
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QStringList>("burst");
    QTest::addColumn<int>("row"); // that is selected then
    QTest::addColumn<bool>("isToldOnce"); // or not at all
    QTest::newRow("all below") << names({ "disk1", "disk1s1" }) << u"disk1s1"_s
                               << names({ "disk2", "disk2s1", "disk3" }) << 1 << false;
    QTest::newRow("all above") << names({ "disk7", "disk7s1" }) << u"disk7s1"_s
                               << names({ "disk2", "disk2s1", "disk3" }) << 4 << true;
    QTest::newRow("around it") << names({ "disk5" }) << u"disk5"_s << names({ "disk9", "disk2", "disk5s1" })
                               << 1 << true;
    QTest::newRow("its disk") << names({ "disk5s1" }) << u"disk5s1"_s << names({ "disk6", "disk5" }) << 1
                              << true;
    QTest::newRow("a disk that takes one from above")
        << names({ "disk3", "disk1s1", "disk9" }) << u"disk3"_s << names({ "disk4", "disk1" }) << 2 << true;
    QTest::newRow("nothing selected")
        << names({ "disk5" }) << QString() << names({ "disk1", "disk2" }) << -1 << false;
    QTest::newRow("without sense") << names({ "disk4", "disk4s1" }) << u"disk4s1"_s
                                   << names({ "disk2s2", "disk9s1", "disk2", "disk4s2", "disk9", "disk2s1" })
                                   << 4 << true;
}

void TestDiskEvents::selectionInABurst()
{
    QFETCH(const QStringList, present);
    QFETCH(const QString, selected);
    QFETCH(const QStringList, burst);
    QFETCH(const int, row);
    QFETCH(const bool, isToldOnce);
    TestController test;
    test.launch();
    test.service.addDisks(mediaOf(present));
    if (!selected.isEmpty())
        test.select(selected);
    const QSignalSpy told(&test.controller(), &ZorvexDiskManagerAppDelegate::panelDidChange);
    test.service.addDisks(mediaOf(burst));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), row);
    QCOMPARE(test.controller().bsdNameLabel->text(), selected);
    QCOMPARE(told.size(), isToldOnce ? 1 : 0);
}

// Rows, selection and panel of a window that is told in bursts and of one that is told one by one.
void TestDiskEvents::burstShowsWhatEachEventByItselfWould()
{
    QRandomGenerator random(testSeed());
    TestController together;
    TestController single;
    together.launch();
    single.launch();
    std::vector<MemoryDiskRef> absent;
    for (int disk = 0; disk < 8; ++disk) {
        const QString name = u"disk%1"_s.arg(disk);
        absent.push_back(makeDisk(name));
        for (int i = 1; i <= 3; ++i)
            absent.push_back(makePartition(name + u"s%1"_s.arg(i), i));
    }
    std::vector<MemoryDiskRef> present;
    const auto row = [](TestController &test) { return test.controller().leftOutlineView->selectedRow(); };
    for (int step = 0; step < 200; ++step) {
        std::vector<MemoryDiskRef> changed;
        std::vector<MemoryDiskRef> come;
        if (!present.empty() && random.bounded(2)) {
            changed.push_back(
                present[static_cast<std::size_t>(random.bounded(static_cast<int>(present.size())))]);
            changed[0]->description->insert(DAKey::volumeName, u"Name %1"_s.arg(step));
            if (changed[0]->mediaProperties && random.bounded(4) == 0)
                changed[0]->mediaProperties->insert(
                    IOMediaKey::base, PropertyNumber(qint64 { random.bounded(5) }));
        }
        for (int count = random.bounded(7); count > 0 && !absent.empty(); --count)
            come.push_back(takeAny(absent, random));
        together.service.addDisks(come, changed);
        for (const MemoryDiskRef &disk : changed)
            single.service.changeDisk(disk);
        for (const MemoryDiskRef &disk : come)
            single.service.addDisk(disk);
        present.insert(present.end(), come.begin(), come.end());
        for (int count = random.bounded(6); count > 0 && !present.empty(); --count) {
            absent.push_back(takeAny(present, random));
            together.service.removeDisk(absent.back());
            single.service.removeDisk(absent.back());
        }
        QCOMPARE(together.rowNames(), single.rowNames());
        QCOMPARE(row(together), row(single));
        QCOMPARE(together.controller().infoNameLabel->text(), single.controller().infoNameLabel->text());
        QCOMPARE(together.controller().bsdNameLabel->text(), single.controller().bsdNameLabel->text());
        const int next = random.bounded(together.controller().leftOutlineView->numberOfRows() + 1);
        together.controller().leftOutlineView->selectRow(next);
        single.controller().leftOutlineView->selectRow(next);
    }
}

QTEST_MAIN(TestDiskEvents)
#include "tst_diskevents.moc"
