// SPDX-License-Identifier: MIT
//
// What the window says of a disk beside its values: the map of its volumes, what runs, how it ended, and what
// stands in the place of disks while there are none.
#include "platform/Localization.h"
#include "tests/support/TestController.h"
#include "ui/DiskMap.h"
#include "ui/ElidingLabel.h"
#include "ui/FormatMenuDelegate.h"
#include "ui/GlyphLabel.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/StatusRow.h"
#include "ui/UsageBar.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

MemoryDiskRef makeVolume(const QString &name)
{
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, name);
    volume->description->insert(DAKey::volumeKind, u"msdos"_s);
    return volume;
}

} // namespace

class TestStatus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyTreeFollowsTheService();
    void serviceThatIsNotThereAtTheStart();
    void partitionsWithoutARowAreNoFreeSpace();
    void spaceOfNoVolumeIsShownWhereItIs();
    void mapKeepsItsCurrentPart();
    void mapOpensACollapsedDisk();
    void barGoesOnWhenThePageIsRebuilt();
    void barHasWhatTheSentenceLeaves();
    void verdictIsTold();
    void placeholderNamesWhatRuns();
    void shareIsWrittenAsTheLanguageDoes_data();
    void shareIsWrittenAsTheLanguageDoes();
    void mediumThatCanBeTakenOutHasAGlyph();
    void reasonStandsAtTheEndOfItsItem_data();
    void reasonStandsAtTheEndOfItsItem();
};

void TestStatus::emptyTreeFollowsTheService()
{
    QApplication::setStyle(u"Fusion"_s);
    TestController test;
    test.launch();
    const auto &panel = test.controller();
    const OutlineView *const tree = panel.leftOutlineView;
    const QLineEdit *const command = panel.serviceCommandField;
    const auto told = [tree] {
        return QAccessible::queryAccessibleInterface(const_cast<OutlineView *>(tree))
            ->text(QAccessible::Description);
    };
    const QString noDisks = u"No disks\nA disk that you connect appears here."_s;
    QCOMPARE(told(), noDisks);
    const QImage withService = tree->viewport()->grab().toImage();
    QVERIFY(command->isHidden());

    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    QCOMPARE(told(), QString());
    test.service.setAvailable(false);
    QVERIFY(test.rowNames().isEmpty());
    QCOMPARE(told(), u"No disk service\nThe disk service (udisks2) is not running."_s);
    QVERIFY(tree->viewport()->grab().toImage() != withService);
    QVERIFY(command->isVisible() && command->isReadOnly());
    QCOMPARE(command->text(), u"systemctl start udisks2"_s);
    QCOMPARE(panel.infoNameLabel->text(), u"Select a disk or volume"_s);
    QVERIFY(!panel.infoPlaceLabel->text().isEmpty());
    QCOMPARE(command->accessibleName(), panel.infoPlaceLabel->text());

    test.service.setAvailable(true);
    QCOMPARE(told(), noDisks);
    QVERIFY(command->isHidden());
    QVERIFY(tree->viewport()->grab().toImage() == withService);
}

void TestStatus::serviceThatIsNotThereAtTheStart()
{
    TestController test;
    test.service.setAvailable(false);
    test.launch();
    QVERIFY(test.controller().leftOutlineView->accessibleDescription().startsWith(u"No disk service\n"_s));
    QVERIFY(test.controller().serviceCommandField->isVisible());
}

// They hold what starts the computer, or belong to LVM: they are neither volumes nor free.
void TestStatus::partitionsWithoutARowAreNoFreeSpace()
{
    TestController test;
    test.platform().partitionNodes
        = [](const QString &) { return QStringList({ u"/dev/sdx1"_s, u"/dev/sdx2"_s }); };
    test.platform().readDeviceIdentity = [](const QString &node) -> std::optional<DeviceIdentity> {
        return node == "/dev/sdx1"_L1 ? std::optional(DeviceIdentity { 1, 1, 1, 1'000'000 }) : std::nullopt;
    };
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 612'000'000 }));
    test.add(disk);
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 512'000'512, u"DATA"_s);
    volume->node = u"/dev/sdx2"_s;
    test.mount(volume, u"/media/A"_s, 40'000'000);
    test.add(volume);
    test.select(u"disk2"_s);
    using Kind = DiskMap::Part::Kind;
    const std::vector<DiskMap::Part> &parts = test.controller().infoDiskMap->parts();
    QCOMPARE(parts.size(), std::size_t { 2 });
    QVERIFY(parts[0].kind == Kind::NotListed && parts[0].id.isEmpty()); // where it begins
    QCOMPARE(parts[0].toolTip, u"Partition that is not listed, 512 MB"_s);
    QVERIFY(parts[1].kind == Kind::Volume);
    QCOMPARE(parts[1].used, std::optional(60));
    QVERIFY(parts[1].toolTip.endsWith(u", 60 MB used (60%)"_s));
    QCOMPARE(test.controller().infoStatusLabel->text(),
        u"Volumes: 1, mounted: 1. Partitions that are not listed, such as those that start the computer: 512 MB."_s);
}

void TestStatus::spaceOfNoVolumeIsShownWhereItIs()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 1'000'000'000 }));
    test.add(disk);
    test.add(makePartition(u"disk2s1"_s, 300'000'000, u"DATA"_s));
    test.add(makePartition(u"disk2s2"_s, 400'000'000, u"MORE"_s));
    test.select(u"disk2"_s);
    QList<qint64> sizes;
    for (const DiskMap::Part &part : test.controller().infoDiskMap->parts())
        sizes.append(part.kind == DiskMap::Part::Kind::Unused ? part.bytes : 0);
    QCOMPARE(sizes, QList<qint64>({ 300'000'000, 0, 0, 500'000'000 }));
}

void TestStatus::mapKeepsItsCurrentPart()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    test.add(makeVolume(u"DATA"_s));
    const MemoryDiskRef more = makePartition(u"disk2s2"_s, 2048, u"MORE"_s);
    test.add(more);
    test.select(u"disk2"_s);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    const auto partNamed = [&test](const QString &name) {
        const QList<DiskMapPart *> parts = test.controller().infoDiskMap->findChildren<DiskMapPart *>();
        const auto found = std::find_if(parts.begin(), parts.end(),
            [&name](const DiskMapPart *part) { return part->part().name == name; });
        return found == parts.end() ? nullptr : *found;
    };
    partNamed(u"DATA"_s)->setFocus();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Right);
    QVERIFY(partNamed(u"MORE"_s)->hasFocus());
    more->description->insert(DAKey::volumeName, u"RENAMED"_s);
    test.service.changeDisk(more);
    QVERIFY(!partNamed(u"MORE"_s) && partNamed(u"RENAMED"_s)->hasFocus());
    // Without the focus, Tab still leads to it.
    test.controller().leftOutlineView->setFocus();
    more->description->insert(DAKey::volumeName, u"AGAIN"_s);
    test.service.changeDisk(more);
    QVERIFY(!partNamed(u"AGAIN"_s)->hasFocus());
    QCOMPARE(partNamed(u"AGAIN"_s)->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(partNamed(u"DATA"_s)->focusPolicy(), Qt::NoFocus);
}

void TestStatus::mapOpensACollapsedDisk()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2"_s);
    OutlineView *const tree = test.controller().leftOutlineView;
    tree->collapse(tree->currentIndex());
    QCOMPARE(tree->numberOfRows(), 1);
    QTest::mouseClick(test.controller().infoDiskMap->findChildren<DiskMapPart *>()[0], Qt::LeftButton);
    QCOMPARE(tree->numberOfRows(), 2);
    QCOMPARE(test.controller().infoNameLabel->text(), u"DATA"_s);
}

// What moves does not begin again when the page is built again meanwhile.
void TestStatus::barGoesOnWhenThePageIsRebuilt()
{
    QApplication::setStyle(u"Fusion"_s);
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    const DiskRecord disk = test.recordOf(u"disk2s1"_s);
    test.controller().beginOperation(disk, RunningOperation::Mount);
    disk->operationBegan -= std::chrono::seconds(1);
    test.controller().outlineViewSelectionDidChange();
    UsageBar *const bar = test.controller().infoUsageBar;
    const QImage first = bar->grab().toImage();
    QTRY_VERIFY(bar->grab().toImage() != first);
    const QImage reached = bar->grab().toImage();
    for (int i = 0; i < 3; ++i)
        test.controller().outlineViewSelectionDidChange();
    QVERIFY(bar->grab().toImage() == reached);
    QVERIFY(bar->isVisible());
    test.controller().finishOperation(disk);
}

void TestStatus::barHasWhatTheSentenceLeaves()
{
    StatusRow row;
    row.resize(600, 30);
    row.setVisible(true);
    row.showOperation(u"Checking DATA…"_s, 62, std::chrono::seconds(1), true);
    auto *const text = row.findChild<ElidingLabel *>();
    const auto *const bar = row.findChild<UsageBar *>();
    QTRY_COMPARE(text->width(), text->sizeHint().width());
    QVERIFY(bar->width() > text->width());
    row.showOperation(QString(200, u'x'), 62, std::chrono::seconds(1), true);
    QTRY_COMPARE(bar->width(), bar->minimumSizeHint().width());
    QVERIFY(text->isCut());
    row.showVerdict(u"DATA: no errors found"_s, {}, u"9:00"_s);
    QTRY_VERIFY(text->width() > 400);
}

// The row is called after it, which a screen reader is told of.
void TestStatus::verdictIsTold()
{
    StatusRow row;
    row.showHint(u"hint"_s, {});
    QCOMPARE(row.accessibleName(), QString());
    row.showVerdict(u"DATA: no errors found"_s, {}, u"9:00"_s);
    QCOMPARE(row.accessibleName(), u"DATA: no errors found, 9:00"_s);
    row.showOperation(u"Checking"_s, 5, std::chrono::seconds(1), true);
    QCOMPARE(row.accessibleName(), QString());
}

void TestStatus::placeholderNamesWhatRuns()
{
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    const auto placeholder = [&test] { return test.controller().checkRepairOutputView->placeholderText(); };
    QCOMPARE(placeholder(), u"What the check prints appears here."_s);
    const DiskRecord disk = test.recordOf(u"disk2s1"_s);
    test.controller().beginOperation(disk, RunningOperation::Repair);
    QCOMPARE(placeholder(), u"What the repair prints appears here."_s);
    test.controller().finishOperation(disk);
    QCOMPARE(placeholder(), u"What the check prints appears here."_s);
}

void TestStatus::shareIsWrittenAsTheLanguageDoes_data()
{
    QTest::addColumn<QString>("share");
    QTest::newRow("en") << u"62%"_s;
    QTest::newRow("de") << u"62\u00a0%"_s;
    QTest::newRow("fr") << u"62\u202f%"_s;
    QTest::newRow("ar") << u"62%"_s;
}

void TestStatus::shareIsWrittenAsTheLanguageDoes()
{
    loadLocalization(QString::fromLatin1(QTest::currentDataTag()));
    const auto restore = qScopeGuard([] { loadLocalization(u"en"_s); });
    StatusRow row;
    row.showOperation(u"text"_s, 62, std::chrono::seconds(1), false);
    QStringList texts;
    for (const QLabel *label : row.findChildren<QLabel *>())
        texts.append(label->text());
    QFETCH(const QString, share);
    QVERIFY2(texts.contains(share), qPrintable(texts.join(u'|')));
}

// In the tree, and on the page in words: a card in a reader is no stick.
void TestStatus::mediumThatCanBeTakenOutHasAGlyph()
{
    QApplication::setStyle(u"Fusion"_s);
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->node = u"/dev/sdx"_s;
    disk->description->insert(DAKey::mediaName, u"Disk"_s);
    test.add(disk);
    OutlineView *const tree = test.controller().leftOutlineView;
    const auto end = [tree] {
        const QImage row = tree->viewport()->grab(tree->visualRect(tree->model()->index(0, 0))).toImage();
        return row.copy(row.width() - 30, 0, 30, row.height());
    };
    const QImage without = end();
    disk->description->insert(DAKey::mediaRemovable, true);
    test.service.changeDisk(disk);
    QVERIFY(end() != without);
    test.select(u"disk2"_s);
    QCOMPARE(test.controller().infoPlaceLabel->text(), u"Removable disk"_s);
    test.controller().leftOutlineView->selectRow(-1);
    // A name that needs the room has it.
    disk->description->insert(DAKey::mediaName, QString(60, u'M'));
    test.service.changeDisk(disk);
    const QImage longName = end();
    disk->description->insert(DAKey::mediaRemovable, false);
    test.service.changeDisk(disk);
    QVERIFY(end() == longName);
}

void TestStatus::reasonStandsAtTheEndOfItsItem_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void TestStatus::reasonStandsAtTheEndOfItsItem()
{
    QFETCH(const Qt::LayoutDirection, direction);
    QApplication::setStyle(u"Fusion"_s);
    QComboBox menu;
    menu.addItem(u" "_s);
    FormatMenuDelegate::install(&menu);
    FormatMenuDelegate::enableItem(menu, 0, u"reason"_s);
    QStyleOptionViewItem option;
    option.direction = direction;
    option.rect = QRect(0, 0, 400, 30);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setLayoutDirection(direction);
    menu.itemDelegate()->paint(&painter, option, menu.model()->index(0, 0));
    painter.end();
    QImage empty(200, 30, QImage::Format_RGB32);
    empty.fill(Qt::white);
    QCOMPARE(image.copy(0, 0, 200, 30) == empty, direction == Qt::LeftToRight);
    QCOMPARE(image.copy(200, 0, 200, 30) == empty, direction == Qt::RightToLeft);
}

QTEST_MAIN(TestStatus)
#include "tst_status.moc"
