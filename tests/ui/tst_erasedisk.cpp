// SPDX-License-Identifier: MIT
//
// The erase of a whole disk from the menu to its end, with a program of the test's own in the tool's place.
#include "tests/support/TestController.h"

#include "operations/erase_disk_rules.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/ElidingLabel.h"
#include "ui/EraseDiskSheet.h"
#include "ui/OutlineView.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int goOn = AlertSheet::firstButtonReturn;
constexpr int cancel = AlertSheet::firstButtonReturn + 1;

// The window with a stick that has two volumes; the tool notes its arguments.
struct EraseTest : TestController
{
    explicit EraseTest(const QByteArray &endOfTool = "exit 0\n")
    {
        for (const char *name : { "exfat", "ext4" })
            writeWholeBundle(systemDirectory(), QLatin1String(name), QLatin1String(name));
        platform().isSystemDevice = [this](const QString &node) { return node == systemNode; };
        platform().partitionNodes = [this](const QString &) { return partitionNodes; };
        setDiskutilScript("printf '%s|' \"$@\" >\"$dir/arguments\"\n" + endOfTool);
        launch();
        stick->description->insert(DAKey::mediaLeaf, false);
        stick->description->insert(DAKey::mediaRemovable, true);
        record = add(stick);
        add(first);
        add(second);
        select(u"disk2"_s);
    }

    QAction *item() const { return action(u"actionEraseDisk"_s); }
    EraseDiskSheet *sheet() { return window().findChild<EraseDiskSheet *>(); }
    QString toolArguments() const { return QString::fromUtf8(fileFromScript(u"arguments"_s)); }

    // Goes on to the question.
    void choose(const QString &filesystem, const QString &label)
    {
        item()->trigger();
        sheet()->filesystemPopupButton->setCurrentText(filesystem);
        sheet()->labelField->setText(label);
        sheet()->accept();
    }

    QString systemNode;
    QStringList partitionNodes { u"/dev/disk2s1"_s, u"/dev/disk2s2"_s }; // as the kernel has them
    MemoryDiskRef stick = makeDisk(u"disk2"_s);
    MemoryDiskRef first = makePartition(u"disk2s1"_s, 1000, u"PHOTOS"_s);
    MemoryDiskRef second = makePartition(u"disk2s2"_s, 2000, u"MUSIC"_s);
    DiskRecord record;
};

} // namespace

class TestEraseDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemIsForWholeDisksThatCanBeErased();
    void sheetOffersWhatFits();
    void remarkFollowsTheFilesystem();
    void nameStandsBelowTheHeading_data();
    void nameStandsBelowTheHeading();
    void wholeCourse();
    void labelThatIsLeftEmpty();
    void cancelRunsNothing();
    void mediumInUseIsRefusedBeforeTheQuestion_data();
    void mediumInUseIsRefusedBeforeTheQuestion();
    void onlyWhatTheQuestionShowedIsErased_data();
    void onlyWhatTheQuestionShowedIsErased();
    void refusedLabelKeepsTheSheetOpen_data();
    void refusedLabelKeepsTheSheetOpen();
    void refusalIsToldAndTheDiskStaysSelected();
    void selectionThatHasGoneElsewhereStays();
};

void TestEraseDisk::itemIsForWholeDisksThatCanBeErased()
{
    EraseTest test;
    const auto reason = [&test] { return test.item()->toolTip(); };
    QVERIFY(test.item()->isEnabled());
    test.select(u"disk2s1"_s);
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(reason(), u"Select the whole disk."_s);
    test.select(u"disk2"_s);
    test.record->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(reason(), u"Another task is running on this disk."_s);
    test.record->operationInProgress = false;
    const DiskRecord part = test.recordOf(u"disk2s2"_s);
    part->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(reason(), u"Another task is running on this disk."_s);
    part->operationInProgress = false;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(test.item()->isEnabled());
    test.systemNode = u"/dev/disk2"_s;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(reason(), u"The running system uses this disk."_s);
    test.systemNode.clear();
    test.stick->description->insert(DAKey::mediaWritable, false);
    test.service.changeDisk(test.stick);
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(reason(), u"It can only be read."_s);
}

void TestEraseDisk::sheetOffersWhatFits()
{
    EraseTest test;
    writeWholeBundle(test.systemDirectory(), u"small"_s, u"small"_s,
        "<key>FSFormatMaximumSize</key><integer>1000</integer>");
    test.controller().outlineViewSelectionDidChange();
    test.item()->trigger();
    const QComboBox *const menu = test.sheet()->filesystemPopupButton;
    QCOMPARE(menu->count(), 3);
    QVERIFY(menu->currentText() != u"small"_s);
    QVERIFY(!menu->model()->index(menu->findText(u"small"_s), 0).flags().testFlag(Qt::ItemIsEnabled));
    QCOMPARE(test.sheet()->choice().scheme, PartitionScheme::Mbr);
    test.sheet()->reject();

    test.stick->description->insert(DAKey::mediaRemovable, false);
    test.service.changeDisk(test.stick);
    QCOMPARE(EraseDiskRules::firstScheme(*test.record), PartitionScheme::Gpt);
}

void TestEraseDisk::remarkFollowsTheFilesystem()
{
    EraseTest test;
    test.item()->trigger();
    test.sheet()->filesystemPopupButton->setCurrentText(u"exfat"_s);
    const QString limit = localizedString("INVALID_EXFAT_VOLUME_NAME_TEXT");
    QCOMPARE(test.sheet()->remarkLabel->text(), limit);
    QCOMPARE(test.sheet()->labelField->accessibleDescription(), limit);
    test.sheet()->filesystemPopupButton->setCurrentText(u"ext4"_s);
    QCOMPARE(test.sheet()->remarkLabel->text(), QString());
    QCOMPARE(test.sheet()->labelField->accessibleDescription(), QString());
}

void TestEraseDisk::nameStandsBelowTheHeading_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

// At the side where the lines of the language begin.
void TestEraseDisk::nameStandsBelowTheHeading()
{
    QFETCH(const Qt::LayoutDirection, direction);
    loadLocalization(u"en"_s);
    QApplication::setLayoutDirection(direction);
    const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
    EraseDiskSheet sheet(u"Stick (disk2)"_s, {}, PartitionScheme::Gpt);
    sheet.resize(500, 300);
    const auto *const name = sheet.findChild<QLabel *>(u"diskName"_s);
    const QImage image = const_cast<QLabel *>(name)->grab().toImage();
    const auto isEmpty = [&image](int from, int to) {
        for (int x = from; x < to; ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y) != image.pixelColor(image.width() / 2, 0))
                    return false;
            }
        }
        return true;
    };
    QCOMPARE(isEmpty(0, 150), direction == Qt::RightToLeft);
    QCOMPARE(isEmpty(image.width() - 150, image.width()), direction == Qt::LeftToRight);
}

void TestEraseDisk::wholeCourse()
{
    EraseTest test("read -r line <&3\nexit 0\n");
    test.choose(u"exfat"_s, u"FRESH"_s);
    const AlertSheet *const question = test.sheets().constFirst();
    QCOMPARE(question->windowTitle(), u"Zorvex Disk Manager"_s);
    QCOMPARE(question->informativeText(), localizedString("CONFIRM_FORMAT_DIALOG_BODY"));
    for (const char *text : { "disk2", "/dev/disk2", "500", "PHOTOS", "MUSIC" })
        QVERIFY2(question->accessoryText().contains(QLatin1String(text)), text);
    const QString newVolume
        = u"New file system: exfat\nNew label: FRESH\nNew partition scheme: Master Boot Record (MBR)"_s;
    QVERIFY2(question->accessoryText().endsWith(newVolume), qPrintable(question->accessoryText()));
    QCOMPARE(question->defaultButton(), question->buttonForReturn(cancel));
    QVERIFY(!test.record->operationInProgress);
    press(question, goOn);
    QVERIFY(test.record->operationInProgress);
    QVERIFY(!test.item()->isEnabled());
    QCOMPARE(test.controller().rightTabView->currentWidget(), test.controller().formatTab);
    QTRY_COMPARE(test.toolArguments(), u"eraseDisk|exfat|FRESH|MBR|/dev/disk2|"_s);
    test.service.removeDisk(test.second);
    test.first->description->insert(DAKey::volumeName, u"FRESH"_s);
    test.service.changeDisk(test.first);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QVERIFY(test.sheets().isEmpty());
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 1);
    QVERIFY(test.controller().leftOutlineView->itemAtRow(1) == test.recordOf(u"disk2s1"_s));
}

void TestEraseDisk::labelThatIsLeftEmpty()
{
    EraseTest test;
    test.choose(u"ext4"_s, QString());
    QVERIFY(test.sheets().constFirst()->accessoryText().contains(u"\nNew label: Untitled\n"_s));
    press(test.sheets().constFirst(), goOn);
    QTRY_COMPARE(test.toolArguments(), u"eraseDisk|ext4|Untitled|MBR|/dev/disk2|"_s);
    QTRY_VERIFY(!test.record->operationInProgress);
}

void TestEraseDisk::cancelRunsNothing()
{
    EraseTest test;
    test.item()->trigger();
    test.sheet()->reject();
    QVERIFY(test.sheets().isEmpty());
    test.choose(u"ext4"_s, QString());
    press(test.sheets().constFirst(), cancel);
    QVERIFY(!test.record->operationInProgress);
    QVERIFY(test.toolArguments().isEmpty());
}

void TestEraseDisk::mediumInUseIsRefusedBeforeTheQuestion_data()
{
    using Found = ProbedContent::Kind;
    QTest::addColumn<QString>("node");
    QTest::addColumn<DeviceUse>("use");
    QTest::addColumn<ProbedContent>("content");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const DeviceUse held { {}, { u"dm-0"_s }, false };
    QTest::newRow("swap on a volume")
        << u"/dev/disk2s2"_s << DeviceUse { {}, {}, true } << ProbedContent { Found::Swap, u"swap"_s }
        << u"“MUSIC”"_s << u"swap space"_s;
    QTest::newRow("LVM on the disk") << u"/dev/disk2"_s << held
                                     << ProbedContent { Found::LvmMember, u"LVM2_member"_s } << u"“disk2”"_s
                                     << u"LVM volume group"_s;
    QTest::newRow("RAID") << u"/dev/disk2s1"_s << held
                          << ProbedContent { Found::RaidMember, u"linux_raid_member"_s } << u"“PHOTOS”"_s
                          << u"RAID array"_s;
    QTest::newRow("unlocked") << u"/dev/disk2s1"_s << held
                              << ProbedContent { Found::Encrypted, u"crypto_LUKS"_s } << u"“PHOTOS”"_s
                              << u"unlocked"_s;
    QTest::newRow("partition without a row")
        << u"/dev/disk2s3"_s << held << ProbedContent {} << u"“/dev/disk2s3”"_s << u"Another device"_s;
}

void TestEraseDisk::mediumInUseIsRefusedBeforeTheQuestion()
{
    QFETCH(const QString, node);
    QFETCH(const DeviceUse, use);
    QFETCH(const ProbedContent, content);
    QFETCH(const QString, name);
    QFETCH(const QString, reason);
    EraseTest test;
    test.partitionNodes.append(u"/dev/disk2s3"_s);
    for (const MemoryDiskRef &medium : { test.stick, test.first, test.second })
        medium->content = content;
    test.deviceUses.insert(node, use);
    test.choose(u"ext4"_s, QString());
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"The disk or volume cannot be formatted"_s);
    const QString text = test.sheets().constFirst()->informativeText();
    QVERIFY2(text.contains(name) && text.contains(reason), qPrintable(text));
    press(test.sheets().constFirst(), goOn);
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(!test.record->operationInProgress && test.toolArguments().isEmpty());
}

void TestEraseDisk::onlyWhatTheQuestionShowedIsErased_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what :
        { "volume that came", "volume that went", "label", "content", "size of the disk", "device", "disk" })
        QTest::newRow(what) << QString::fromLatin1(what);
}

void TestEraseDisk::onlyWhatTheQuestionShowedIsErased()
{
    QFETCH(const QString, what);
    EraseTest test;
    test.choose(u"ext4"_s, QString());
    if (what == "label"_L1)
        test.second->description->insert(DAKey::volumeName, u"THESIS"_s);
    else if (what == "content"_L1)
        test.first->content = { ProbedContent::Kind::Encrypted, u"crypto_LUKS"_s };
    else if (what == "size of the disk"_L1)
        test.stick->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 50000000 }));
    else if (what == "device"_L1)
        test.deviceIdentities.insert(u"/dev/disk2"_s, DeviceIdentity { 1, 2, 3, 4 });
    for (const MemoryDiskRef &medium : { test.stick, test.first, test.second })
        test.service.changeDisk(medium);
    if (what == "volume that came"_L1)
        test.add(makePartition(u"disk2s3"_s, 3000, u"THESIS"_s));
    else if (what == "volume that went"_L1)
        test.service.removeDisk(test.second);
    else if (what == "disk"_L1)
        test.service.removeDisk(test.stick);
    press(test.sheets().constFirst(), goOn);
    QTRY_COMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"Nothing was erased"_s);
    QVERIFY(!test.record->operationInProgress);
    press(test.sheets().constFirst(), goOn);
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(test.toolArguments().isEmpty());
}

void TestEraseDisk::refusedLabelKeepsTheSheetOpen_data()
{
    QTest::addColumn<QString>("filesystem");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("rule of the application") << u"exfat"_s << u"a*b"_s << u"An exFAT"_s;
    QTest::newRow("rule of the bundle") << u"Own"_s << u"Photos"_s
                                        << u"A volume label for Own can be at most 4 bytes long. Accented "
                                           "letters and characters of many scripts take two or more."_s;
}

void TestEraseDisk::refusedLabelKeepsTheSheetOpen()
{
    QFETCH(const QString, filesystem);
    QFETCH(const QString, label);
    QFETCH(const QString, sentence);
    EraseTest test;
    writeBundle(test.localDirectory(), u"own"_s,
        "<key>CFBundleIdentifier</key><string>i</string><key>FSLabelLimit</key><integer>4</integer>"
        "<key>FSLabelUnit</key><string>bytes</string>"
        "<key>FSPersonalities</key><dict><key>Own</key><dict><key>FSName</key><string>Own</string>"
        "<key>FSFormatExecutable</key><string>x</string></dict></dict>");
    test.controller().refreshFilesystems();
    test.choose(filesystem, label);
    QCOMPARE(test.sheets().size(), 1);
    const AlertSheet *const objection = test.sheets().constFirst();
    QCOMPARE(objection->text(), u"The volume label is not valid"_s);
    QVERIFY2(objection->informativeText().startsWith(sentence), qPrintable(objection->informativeText()));
    press(objection, goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(test.sheet()->isVisible());
    QCOMPARE(test.sheet()->labelField->text(), label);
    QVERIFY(test.toolArguments().isEmpty());

    test.sheet()->labelField->setText(u"Good"_s);
    test.sheet()->accept();
    QCOMPARE(test.sheets().size(), 1);
    QVERIFY(test.sheets().constFirst()->accessoryText().contains(u"\nNew label: Good\n"_s));
}

void TestEraseDisk::refusalIsToldAndTheDiskStaysSelected()
{
    EraseTest test("echo 'diskutil: disk2s1 is in use: dm-0 uses it' >&2\nexit 6\n");
    test.choose(u"ext4"_s, QString());
    press(test.sheets().constFirst(), goOn);
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(),
        u"diskutil returned error code: 6\nOutput:\ndiskutil: disk2s1 is in use: dm-0 uses it\n"_s);
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), 0);
    QVERIFY(test.item()->isEnabled());
}

void TestEraseDisk::selectionThatHasGoneElsewhereStays()
{
    EraseTest test("read -r line <&3\nexit 0\n");
    test.add(makePartition(u"disk3s1"_s, 1000));
    test.choose(u"ext4"_s, QString());
    press(test.sheets().constFirst(), goOn);
    test.select(u"disk3s1"_s);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    OutlineView *const view = test.controller().leftOutlineView;
    QVERIFY(view->itemAtRow(view->selectedRow()) == test.recordOf(u"disk3s1"_s));
}

QTEST_MAIN(TestEraseDisk)
#include "tst_erasedisk.moc"
