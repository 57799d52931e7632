// SPDX-License-Identifier: MIT
//
// A format from the button to its end, with a program of the test's own in the tool's place.
#include "platform/Localization.h"
#include "tests/support/TestController.h"
#include "tests/ui/SheetWatch.h"

#include "ui/AlertSheet.h"
#include "ui/EraseSummary.h"
#include "ui/OutlineView.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using Kind = MemoryDiskService::RequestKind;

namespace {

const QString volumeName = u"disk2s1"_s;
constexpr int goOn = AlertSheet::firstButtonReturn;
constexpr int cancel = AlertSheet::firstButtonReturn + 1;

// The window with a volume and file systems to format it as; the tool notes its arguments and ends with a
// code.
struct FormatTest : TestController
{
    explicit FormatTest(int exitCode = 0)
    {
        for (const char *name : { "msdos", "exfat", "zorvex_ntfs", "zorvex_fatplus" }) {
            writeBundle(systemDirectory(), QLatin1String(name),
                QByteArray("<key>CFBundleIdentifier</key><string>org.example</string>"
                           "<key>FSPersonalities</key><dict><key>P ")
                    + name + "</key><dict><key>FSName</key><string>" + name
                    + "</string><key>FSFormatExecutable</key><string>x</string></dict></dict>");
        }
        diskutil = filesystems.filePath(u"tool"_s);
        QFile tool(diskutil);
        if (!tool.open(QIODevice::WriteOnly))
            qFatal("cannot write the tool");
        tool.write("#!/bin/sh\nprintf '%s|' \"$@\" >" + argumentsPath().toUtf8()
            + "\necho words of the tool\nexit " + QByteArray::number(exitCode) + "\n");
        tool.close();
        tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        platform().isSystemDevice = [this](const QString &node) { return node == systemNode; };
        launch();
        record = add(volume);
        select(volumeName);
    }

    QString argumentsPath() const { return filesystems.filePath(u"arguments"_s); }
    QString toolArguments() const
    {
        QFile file(argumentsPath());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    void press(const QString &filesystem, const QString &label)
    {
        controller().formatFilesystemsPopupButton->setCurrentText(filesystem);
        controller().formatVolumeLabelField->setText(label);
        controller().formatButton->click();
    }
    void endSheet(int returnCode) { sheets().constFirst()->buttonForReturn(returnCode)->click(); }
    void run(const QString &filesystem, const QString &label)
    {
        press(filesystem, label);
        endSheet(goOn);
    }
    QString alertText() const
    {
        return sheets().isEmpty() ? QString() : sheets().constFirst()->informativeText();
    }
    bool isBusy() const { return record->operationInProgress; }

    QString systemNode;
    MemoryDiskRef volume = makePartition(volumeName, 1000, u"Old"_s);
    DiskRecord record;
};

} // namespace

class TestFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsOfTheFormatter_data();
    void labelsOfTheFormatter();
    void ownFilesystemIsRenamedUnmountedAndMounted();
    void labelTravelsAsItWasTyped_data();
    void labelTravelsAsItWasTyped();
    void confirmationNamesTheMedium();
    void confirmationSaysWhatIsThereAndWhatWillBe_data();
    void confirmationSaysWhatIsThereAndWhatWillBe();
    void mediumInUseIsRefusedBeforeTheQuestion_data();
    void mediumInUseIsRefusedBeforeTheQuestion();
    void volumeOfTheSystemIsRefusedBeforeTheQuestion();
    void onlyWhatTheQuestionShowedIsErased_data();
    void onlyWhatTheQuestionShowedIsErased();
    void mountWhileTheQuestionIsOpenIsNoChange();
    void cancelSetsNoFlag();
    void keysOnTheConfirmation_data();
    void keysOnTheConfirmation();
    void openMenuIsNotDisturbed();
    void openMenuFollowsTheBundles();
    void tabsAndControlsWhileItRuns();
    void nothingSelected();
    void refusedLabelStopsBeforeTheConfirmation();
    void ruleOfTheBundleStopsBeforeTheConfirmation_data();
    void ruleOfTheBundleStopsBeforeTheConfirmation();
    void eraseThatFailsIsReportedAndTheChainGoesOn();
    void eachRefusalOfTheChainIsReported_data();
    void eachRefusalOfTheChainIsReported();
    void severalFailuresShowTheFirst();
    void quoteInALabelReachesTheShellAsItStands();
    void mediumThatVanishesMeanwhile();
};

void TestFormat::labelsOfTheFormatter_data()
{
    QTest::addColumn<QString>("filesystem");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("label");
    QTest::newRow("FAT, empty") << u"msdos"_s << QString() << u"UNTITLED"_s;
    QTest::newRow("other, empty") << u"exfat"_s << QString() << u"Untitled"_s;
    QTest::newRow("other, typed") << u"exfat"_s << u"My Data"_s << u"My Data"_s;
    QTest::newRow("own FAT, empty") << u"zorvex_fatplus"_s << QString() << u"UNTITLED"_s;
    QTest::newRow("own, empty") << u"zorvex_ntfs"_s << QString() << u"Untitled"_s;
}

void TestFormat::labelsOfTheFormatter()
{
    QFETCH(const QString, filesystem);
    QFETCH(const QString, typed);
    QFETCH(const QString, label);
    FormatTest test;
    test.run(filesystem, typed);
    QTRY_VERIFY(!test.isBusy());
    QCOMPARE(test.toolArguments(), u"eraseVolume|P %1|%2|/dev/disk2s1|"_s.arg(filesystem, label));
    QVERIFY(test.service.requests().empty());
    QVERIFY(test.sheets().isEmpty());
}

void TestFormat::ownFilesystemIsRenamedUnmountedAndMounted()
{
    FormatTest test;
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.toolArguments(), u"eraseVolume|P zorvex_ntfs|UNTITLED|/dev/disk2s1|"_s);
    QCOMPARE(test.service.requests().front().kind, Kind::Rename);
    QCOMPARE(test.service.requests().front().name, u"Data"_s);
    test.service.completeRequest();
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(test.service.requests().front().options, 0U);
    test.service.completeRequest();
    QCOMPARE(test.service.requests().front().kind, Kind::Mount);
    QVERIFY(test.isBusy());
    test.service.completeRequest();
    QVERIFY(!test.isBusy() && !test.record->operationInProgressShowFormatTab);
    QVERIFY(test.sheets().isEmpty());
}

void TestFormat::labelTravelsAsItWasTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("decomposed") << QString(u"Cafe"_s + QChar(0x301));
    QTest::newRow("composed") << QString(u"Caf"_s + QChar(0xE9));
    QTest::newRow("outer blanks") << u"  My Data "_s;
    QTest::newRow("mixed case") << u"mUSIC"_s;
}

void TestFormat::labelTravelsAsItWasTyped()
{
    QFETCH(const QString, typed);
    FormatTest test;
    test.run(u"exfat"_s, typed);
    QTRY_VERIFY(!test.isBusy());
    QCOMPARE(test.toolArguments(), u"eraseVolume|P exfat|%1|/dev/disk2s1|"_s.arg(typed));
    test.run(u"zorvex_ntfs"_s, typed);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().name, typed);
}

void TestFormat::confirmationNamesTheMedium()
{
    FormatTest test;
    test.press(u"exfat"_s, QString());
    AlertSheet *const sheet = test.sheets().constFirst();
    QCOMPARE(sheet->icon(), QMessageBox::Warning);
    for (const char *text : { "Old", "100 MB", "disk2s1", "/dev/disk2s1" })
        QVERIFY2(sheet->accessoryText().contains(QLatin1String(text)), text);
    QCOMPARE(sheet->windowTitle(), u"Zorvex Disk Manager"_s);
    // In a frame of its own between the texts and the buttons, names in bold.
    auto *summary = sheet->findChild<EraseSummary *>();
    QVERIFY(summary && summary->isVisible() && summary->frameShape() != QFrame::NoFrame);
    QCOMPARE(sheet->informativeText(), localizedString("CONFIRM_FORMAT_DIALOG_BODY"));
    QVERIFY(summary->geometry().bottom() < sheet->defaultButton()->mapTo(sheet, QPoint()).y());
    QVERIFY(summary->viewport()->height() >= summary->widget()->height()); // no need to scroll
    QStringList bold;
    for (const QLabel *value : summary->findChildren<QLabel *>(u"summaryValue"_s)) {
        if (value->font().bold())
            bold.append(value->text());
    }
    QCOMPARE(bold, QStringList({ u"Old"_s, u"exfat"_s, u"Untitled"_s }));
    QCOMPARE(sheet->defaultButton(), sheet->buttonForReturn(cancel));
    QVERIFY(!test.isBusy());
    QVERIFY(!test.controller().alertInProgress);
    QTest::keyClick(sheet, Qt::Key_Escape);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.isBusy());
    QVERIFY(test.toolArguments().isEmpty());
}

void TestFormat::confirmationSaysWhatIsThereAndWhatWillBe_data()
{
    using Found = ProbedContent::Kind;
    QTest::addColumn<ProbedContent>("content");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("label");
    const auto row
        = [](const char *name, const ProbedContent &content, const QString &typed, const QString &words,
              const QString &label) { QTest::newRow(name) << content << typed << words << label; };
    row("nothing", {}, QString(), u"not recognized"_s, u"Untitled"_s);
    row("file system", { Found::Filesystem, u"vfat"_s }, u"My Data"_s, u"fat three"_s, u"My Data"_s);
    row("encrypted", { Found::Encrypted, u"crypto_LUKS"_s }, u"a"_s, u"encrypted"_s, u"a"_s);
    row("LVM", { Found::LvmMember, u"LVM2_member"_s }, u"a"_s, u"LVM member"_s, u"a"_s);
    row("RAID", { Found::RaidMember, u"linux_raid_member"_s }, u"a"_s, u"RAID member"_s, u"a"_s);
    row("swap", { Found::Swap, u"swap"_s }, u"a"_s, u"swap space"_s, u"a"_s);
}

void TestFormat::confirmationSaysWhatIsThereAndWhatWillBe()
{
    QFETCH(const ProbedContent, content);
    QFETCH(const QString, typed);
    QFETCH(const QString, words);
    QFETCH(const QString, label);
    FormatTest test;
    writeWholeBundle(
        test.localDirectory(), u"variants"_s, u"fat three"_s, "<key>FSSubType</key><integer>3</integer>");
    test.controller().refreshFilesystems();
    test.volume->content = content;
    test.volume->subtype = 3; // known of a volume that is not mounted, too
    if (content.kind == ProbedContent::Kind::Filesystem)
        test.volume->description->insert(DAKey::volumeKind, u"variants"_s);
    test.service.changeDisk(test.volume);
    test.press(u"zorvex_ntfs"_s, typed);
    const QString text = test.sheets().constFirst()->accessoryText();
    QVERIFY2(text.contains(u"Current file system: "_s + words + u'\n'), qPrintable(text));
    QVERIFY2(text.endsWith(u"New file system: zorvex_ntfs\nNew label: "_s + label), qPrintable(text));
}

void TestFormat::mediumInUseIsRefusedBeforeTheQuestion_data()
{
    QTest::addColumn<DeviceUse>("use");
    QTest::addColumn<ProbedContent>("content");
    QTest::addColumn<QString>("reason");
    using Found = ProbedContent::Kind;
    const DeviceUse held { {}, { u"dm-0"_s }, false };
    QTest::newRow("swap") << DeviceUse { {}, {}, true } << ProbedContent { Found::Swap, u"swap"_s }
                          << u"swap space"_s;
    QTest::newRow("LVM") << held << ProbedContent { Found::LvmMember, u"LVM2_member"_s }
                         << u"LVM volume group"_s;
    QTest::newRow("RAID") << held << ProbedContent { Found::RaidMember, u"linux_raid_member"_s }
                          << u"RAID array"_s;
    QTest::newRow("unlocked") << held << ProbedContent { Found::Encrypted, u"crypto_LUKS"_s }
                              << u"unlocked"_s;
    QTest::newRow("other") << held << ProbedContent {} << u"Another device"_s;
}

void TestFormat::mediumInUseIsRefusedBeforeTheQuestion()
{
    QFETCH(const DeviceUse, use);
    QFETCH(const ProbedContent, content);
    QFETCH(const QString, reason);
    FormatTest test;
    test.volume->content = content;
    test.deviceUses.insert(u"/dev/disk2s1"_s, use);
    test.press(u"exfat"_s, QString());
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"The disk or volume cannot be formatted"_s);
    const QString text = test.alertText();
    QVERIFY2(text.contains(u"“Old”"_s) && text.contains(reason), qPrintable(text));
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.isBusy() && test.toolArguments().isEmpty());
}

void TestFormat::volumeOfTheSystemIsRefusedBeforeTheQuestion()
{
    FormatTest test;
    test.systemNode = u"/dev/disk2s1"_s;
    test.press(u"exfat"_s, QString());
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"The disk or volume cannot be formatted"_s);
    QVERIFY2(
        test.alertText().startsWith(u"“Old” belongs to the running system."_s), qPrintable(test.alertText()));
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.isBusy() && test.toolArguments().isEmpty());
}

void TestFormat::onlyWhatTheQuestionShowedIsErased_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : { "size", "start", "label", "kind", "variant", "content", "device", "medium" })
        QTest::newRow(what) << QString::fromLatin1(what);
}

void TestFormat::onlyWhatTheQuestionShowedIsErased()
{
    QFETCH(const QString, what);
    FormatTest test;
    test.press(u"exfat"_s, QString());
    MemoryDisk &volume = *test.volume;
    if (what == "size"_L1)
        volume.description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 50000000 }));
    else if (what == "start"_L1)
        volume.mediaProperties->insert(IOMediaKey::base, PropertyNumber(qint64 { 2000 }));
    else if (what == "label"_L1)
        volume.description->insert(DAKey::volumeName, u"Other"_s);
    else if (what == "kind"_L1)
        volume.description->insert(DAKey::volumeKind, u"exfat"_s);
    else if (what == "variant"_L1)
        volume.subtype = 2;
    else if (what == "content"_L1)
        volume.content = { ProbedContent::Kind::Encrypted, u"crypto_LUKS"_s };
    else if (what == "device"_L1)
        test.deviceIdentities.insert(u"/dev/disk2s1"_s, DeviceIdentity { 1, 2, 3, 4 });
    if (what == "medium"_L1)
        test.service.removeDisk(test.volume);
    else
        test.service.changeDisk(test.volume);
    test.endSheet(goOn);
    QTRY_COMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"Nothing was erased"_s);
    QVERIFY(!test.isBusy());
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(test.toolArguments().isEmpty());
}

void TestFormat::mountWhileTheQuestionIsOpenIsNoChange()
{
    FormatTest test;
    test.press(u"exfat"_s, QString());
    setMounted(test.volume, u"/media/Old"_s);
    test.service.changeDisk(test.volume);
    test.endSheet(goOn);
    QTRY_VERIFY(!test.toolArguments().isEmpty());
    QTRY_VERIFY(!test.isBusy());
}

void TestFormat::cancelSetsNoFlag()
{
    FormatTest test;
    test.press(u"exfat"_s, QString());
    test.endSheet(cancel);
    QVERIFY(!test.isBusy() && !test.record->operationInProgressShowFormatTab);
    QVERIFY(test.controller().formatButton->isEnabled());
    QVERIFY(test.toolArguments().isEmpty());
}

void TestFormat::keysOnTheConfirmation_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifier>("modifier");
    QTest::addColumn<bool>("formats");
    QTest::newRow("Escape") << Qt::Key_Escape << Qt::NoModifier << false;
    QTest::newRow("Return") << Qt::Key_Return << Qt::NoModifier << false;
    QTest::newRow("Enter") << Qt::Key_Enter << Qt::KeypadModifier << false;
    QTest::newRow("space bar") << Qt::Key_Space << Qt::NoModifier << false;
    QTest::newRow("letter of Cancel") << Qt::Key_C << Qt::AltModifier << false;
    QTest::newRow("letter of Erase") << Qt::Key_E << Qt::AltModifier << true;
}

void TestFormat::keysOnTheConfirmation()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifier, modifier);
    QFETCH(const bool, formats);
    FormatTest test;
    test.press(u"exfat"_s, QString());
    AlertSheet *const sheet = test.sheets().constFirst();
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    QTest::keyClick(sheet->windowHandle(), key, modifier);
    QTRY_VERIFY(test.sheets().isEmpty());
    QTRY_VERIFY(!test.isBusy());
    QCOMPARE(!test.toolArguments().isEmpty(), formats);
}

void TestFormat::openMenuIsNotDisturbed()
{
    FormatTest test;
    QComboBox *const menu = test.controller().formatFilesystemsPopupButton;
    menu->setCurrentIndex(0);
    test.controller().rightTabView->setCurrentWidget(test.controller().formatTab);
    menu->showPopup();
    QTest::keyClick(menu->view(), Qt::Key_Down);
    const QString chosen = menu->view()->currentIndex().data().toString();
    QVERIFY(!chosen.isEmpty() && chosen != menu->currentText());
    // What a check prints, a disk that comes and one that goes each rebuild the panel.
    test.controller().outlineViewSelectionDidChange();
    const MemoryDiskRef other = makeDisk(u"disk7"_s);
    test.add(other);
    test.service.removeDisk(other);
    QVERIFY(menu->view()->isVisible());
    QCOMPARE(menu->view()->currentIndex().data().toString(), chosen);
    QTest::keyClick(menu->view(), Qt::Key_Return);
    QCOMPARE(menu->currentText(), chosen);
}

void TestFormat::openMenuFollowsTheBundles()
{
    FormatTest test;
    QComboBox *const menu = test.controller().formatFilesystemsPopupButton;
    const int count = menu->count();
    test.controller().rightTabView->setCurrentWidget(test.controller().formatTab);
    menu->showPopup();
    writeWholeBundle(test.localDirectory(), u"added"_s, u"Added"_s);
    test.controller().refreshFilesystems();
    QCOMPARE(menu->count(), count + 1);
    QVERIFY(menu->findText(u"Added"_s) >= 0);
    QCOMPARE(menu->view()->model()->rowCount(), count + 1);
}

void TestFormat::tabsAndControlsWhileItRuns()
{
    FormatTest test;
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    QVERIFY(test.isBusy() && test.record->operationInProgressShowFormatTab);
    QVERIFY(test.record->operationInProgressShowMaintenanceTab);
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    QVERIFY(!controller.formatButton->isEnabled() && !controller.formatVolumeLabelField->isEnabled());
    QVERIFY(controller.rightTabView->indexOf(controller.formatTab) == 1);
    QCOMPARE(controller.formatVolumeLabelField->text(), u"Data"_s);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    for (int i = 0; i < 3; ++i)
        test.service.completeRequest();
    QVERIFY(controller.formatButton->isEnabled());
    QCOMPARE(controller.formatVolumeLabelField->text(), u"Old"_s);
}

void TestFormat::nothingSelected()
{
    FormatTest test;
    test.controller().clickFormatButton(nullptr);
    QCOMPARE(test.alertText(), u"No file system selected."_s);
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    test.controller().leftOutlineView->selectRow(-1);
    test.controller().clickFormatButton(nullptr);
    QCOMPARE(test.alertText(), u"No file system and no disk selected."_s);
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    test.controller().formatFilesystemsPopupButton->setCurrentText(u"exfat"_s);
    test.controller().clickFormatButton(nullptr);
    QCOMPARE(test.alertText(), u"No disk selected."_s);
}

void TestFormat::refusedLabelStopsBeforeTheConfirmation()
{
    FormatTest test;
    test.press(u"msdos"_s, u"lower case"_s);
    QCOMPARE(test.sheets().size(), 1);
    QVERIFY(test.controller().alertInProgress);
    test.endSheet(goOn);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.isBusy());
    QCOMPARE(test.controller().formatVolumeLabelField->text(), u"lower case"_s);
}

void TestFormat::ruleOfTheBundleStopsBeforeTheConfirmation_data()
{
    QTest::addColumn<QByteArray>("keysXml");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("text"); // empty when the label is allowed
    const auto limit = [](int number, const char *unit) {
        return QByteArray("<key>FSLabelLimit</key><integer>" + QByteArray::number(number)
            + "</integer><key>FSLabelUnit</key><string>" + unit + "</string>");
    };
    const QByteArray signs = "<key>FSLabelForbiddenCharacters</key><string>.,</string>"
                             "<key>FSLabelForbiddenFirstCharacters</key><string> -</string>";
    QTest::newRow("16 bytes") << limit(16, "bytes") << u"Family Photos 24"_s << QString();
    QTest::newRow("17 bytes") << limit(16, "bytes") << u"Family Photos 202"_s
                              << u"A volume label for Own can be at most 16 bytes long. Accented letters and "
                                 "characters of many scripts take two or more."_s;
    QTest::newRow("12 characters") << limit(11, "utf16") << u"a"_s.repeated(12)
                                   << u"A volume label for Own can be at most 11 characters long. Some "
                                      "characters, such as emoji, count as two."_s;
    QTest::newRow("half as many") << limit(126, "osta") << u"日"_s.repeated(64)
                                  << u"A volume label for Own can be at most 63 characters long. Some "
                                     "characters, such as emoji, count as two."_s;
    QTest::newRow("no ASCII") << limit(11, "ascii") << u"Ä"_s
                              << u"A volume label for Own can only contain letters without accents, digits, "
                                 "spaces and symbols of ASCII."_s;
    QTest::newRow("forbidden sign")
        << signs << u"A.B"_s << u"A volume label for Own must not contain any of these characters: . ,"_s;
    QTest::newRow("leading space") << signs << u" A"_s
                                   << u"A volume label for Own must not begin with a space."_s;
    QTest::newRow("leading sign") << signs << u"-A"_s << u"A volume label for Own must not begin with “-”."_s;
    QTest::newRow("lost character") << QByteArray() << u"a\ufffd"_s
                                    << u"A volume label for Own must not contain control characters or the "
                                       "replacement character (U+FFFD)."_s;
    QTest::newRow("no rule") << QByteArray() << u"a"_s.repeated(200) << QString();
}

void TestFormat::ruleOfTheBundleStopsBeforeTheConfirmation()
{
    QFETCH(const QByteArray, keysXml);
    QFETCH(const QString, label);
    QFETCH(const QString, text);
    FormatTest test;
    // One of the program's own: its label comes by a rename after the erase.
    writeBundle(test.localDirectory(), u"zorvex_own"_s,
        "<key>CFBundleIdentifier</key><string>i</string>" + keysXml
            + "<key>FSPersonalities</key><dict><key>Own</key><dict><key>FSName</key><string>Own</string>"
              "<key>FSFormatExecutable</key><string>x</string></dict></dict>");
    test.controller().refreshFilesystems();
    test.press(u"Own"_s, label);
    QCOMPARE(test.sheets().size(), 1);
    const QString title = test.sheets().constFirst()->text();
    QCOMPARE(title == u"The volume label is not valid"_s, !text.isEmpty());
    if (!text.isEmpty())
        QCOMPARE(test.alertText(), text);
    QCOMPARE(test.controller().formatVolumeLabelField->text(), label);
    QVERIFY(test.toolArguments().isEmpty());
}

void TestFormat::eraseThatFailsIsReportedAndTheChainGoesOn()
{
    FormatTest test(1);
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    QTRY_COMPARE(test.sheets().size(), 1);
    QCOMPARE(test.alertText(), u"diskutil returned error code: 1\nOutput:\nwords of the tool\n"_s);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().kind, Kind::Rename);
    for (int i = 0; i < 3; ++i)
        test.service.completeRequest();
    QVERIFY(!test.isBusy());
}

void TestFormat::eachRefusalOfTheChainIsReported_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<DAReturn>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("rename") << 0 << DAReturn::Busy << u"Error while renaming disk2s1: kDAReturnBusy"_s;
    QTest::newRow("unmount") << 1 << DAReturn::Busy << u"Error while unmounting disk2s1: kDAReturnBusy"_s;
    QTest::newRow("mount") << 2 << DAReturn::Busy << u"Error while mounting disk2s1: kDAReturnBusy"_s;
    // The text for a file system that is not supported is that of the button alone.
    QTest::newRow("mount of what is not supported")
        << 2 << DAReturn::Unsupported << u"Error while mounting disk2s1: kDAReturnUnsupported"_s;
}

void TestFormat::eachRefusalOfTheChainIsReported()
{
    QFETCH(const int, step);
    QFETCH(const DAReturn, status);
    QFETCH(const QString, text);
    FormatTest test;
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    const SheetWatch watch(test.record);
    for (int i = 0; i < 3; ++i)
        test.service.completeRequest(i == step ? makeDissenter(status) : nullptr);
    QCOMPARE(test.alertText(), text);
    QCOMPARE(watch.wasBusy, QList { true });
    QVERIFY(!test.isBusy());
}

void TestFormat::severalFailuresShowTheFirst()
{
    FormatTest test;
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    test.log.clear();
    for (int i = 0; i < 3; ++i)
        test.service.completeRequest(makeDissenter(DAReturn::Busy));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.alertText(), u"Error while renaming disk2s1: kDAReturnBusy"_s);
    QCOMPARE(test.log.lines().size(), 2);
    QVERIFY(test.log.lines().constLast().startsWith(u"Warning: Silently dropping cascading alert"_s));
    QVERIFY(!test.isBusy());
}

void TestFormat::quoteInALabelReachesTheShellAsItStands()
{
    FormatTest test;
    // Two quotes end the argument and begin it again: the tool sees the label without them.
    test.run(u"exfat"_s, u"a''b"_s);
    QTRY_VERIFY(!test.isBusy());
    QCOMPARE(test.toolArguments(), u"eraseVolume|P exfat|ab|/dev/disk2s1|"_s);
    QVERIFY(test.sheets().isEmpty());
}

void TestFormat::mediumThatVanishesMeanwhile()
{
    FormatTest test;
    test.run(u"zorvex_ntfs"_s, u"Data"_s);
    test.service.removeDisk(test.volume);
    QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    for (int i = 0; i < 3; ++i)
        test.service.completeRequest(makeDissenter(DAReturn::NotFound));
    QVERIFY(!test.isBusy());
    QCOMPARE(test.alertText(), u"Error while renaming disk2s1: kDAReturnNotFound"_s);
    QVERIFY(test.rowNames().isEmpty());
}

QTEST_MAIN(TestFormat)
#include "tst_format.moc"
