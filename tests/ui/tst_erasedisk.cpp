// SPDX-License-Identifier: MIT
//
// The erase of a whole disk from the menu to its end, with a program of the test's own in the tool's place.
#include "tests/support/TestController.h"

#include "operations/erase_disk_rules.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/EraseDiskSheet.h"
#include "ui/OutlineView.h"

#include <QComboBox>
#include <QLineEdit>
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
    void wholeCourse();
    void labelThatIsLeftEmpty();
    void cancelRunsNothing();
    void questionIsAskedAgainWhenTheContentHasChanged();
    void refusedLabelStopsBeforeTheQuestion();
    void refusalIsToldAndTheDiskStaysSelected();
    void selectionThatHasGoneElsewhereStays();
};

void TestEraseDisk::itemIsForWholeDisksThatCanBeErased()
{
    EraseTest test;
    QVERIFY(test.item()->isEnabled());
    test.select(u"disk2s1"_s);
    QVERIFY(!test.item()->isEnabled());
    test.select(u"disk2"_s);
    test.record->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(!test.item()->isEnabled());
    test.record->operationInProgress = false;
    test.systemNode = u"/dev/disk2"_s;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(!test.item()->isEnabled());
    test.systemNode.clear();
    test.stick->description->insert(DAKey::mediaWritable, false);
    test.service.changeDisk(test.stick);
    QVERIFY(!test.item()->isEnabled());
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

void TestEraseDisk::wholeCourse()
{
    EraseTest test("read -r line <\"$dir/go\"\nexit 0\n");
    test.choose(u"exfat"_s, u"FRESH"_s);
    const AlertSheet *const question = test.sheets().constFirst();
    for (const char *text : { "disk2", "/dev/disk2", "500", "PHOTOS", "MUSIC" })
        QVERIFY2(question->informativeText().contains(QLatin1String(text)), text);
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

void TestEraseDisk::questionIsAskedAgainWhenTheContentHasChanged()
{
    EraseTest test;
    test.choose(u"ext4"_s, QString());
    test.add(makePartition(u"disk2s3"_s, 3000, u"THESIS"_s));
    press(test.sheets().constFirst(), goOn);
    QVERIFY(!test.record->operationInProgress);
    QTRY_COMPARE(test.sheets().size(), 1);
    QVERIFY(test.sheets().constFirst()->informativeText().contains(u"THESIS"_s));
    press(test.sheets().constFirst(), goOn);
    QVERIFY(test.record->operationInProgress);
    QTRY_VERIFY(!test.record->operationInProgress);
}

void TestEraseDisk::refusedLabelStopsBeforeTheQuestion()
{
    EraseTest test;
    test.choose(u"exfat"_s, u"a*b"_s);
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), localizedString("INVALID_VOLUME_LABEL_TEXT"));
    press(test.sheets().constFirst(), goOn);
    QVERIFY(test.toolArguments().isEmpty());
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
    EraseTest test("read -r line <\"$dir/go\"\nexit 0\n");
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
