// SPDX-License-Identifier: MIT
//
// Names, paths and texts that an attacker has written on a disk or into a bundle. They are shown as plain
// text everywhere, cut where they must be, and they neither hold up the window nor change anything else.
#include "tests/support/TestController.h"
#include "tests/support/WindowTime.h"

#include "platform/DisturbingCharacters.h"
#include "ui/AlertSheet.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

class TestHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLabelIsPlainText();
    void textsAreShownAsTheyAre_data();
    void textsAreShownAsTheyAre();
    void textsOfABundle_data();
    void textsOfABundle();
    void bundleThatCannotBeRead_data();
    void bundleThatCannotBeRead();
    void bundleThatIsALink();
};

namespace {

const QString megabyte(1024 * 1024, u'x');
constexpr int answerLimit = 3000; // milliseconds

void addTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << u"<b>a</b><img src='/etc/passwd'><a href='file:///'>&amp;&lt;"_s;
    QTest::newRow("placeholders") << u"%@ %n %s %1 %L2 %%"_s;
    QTest::newRow("quotes") << u"'\"`$(id)`;|&\\"_s;
    QTest::newRow("mnemonics") << u"&File && Save"_s;
    QTest::newRow("digits of others") << u"١٢٣ أبج"_s;
}

// Labels whose text would be taken for markup, if it looked like it. What the window calls its fields are the
// program's own words.
QStringList labelsOfOtherFormats(const QWidget &window)
{
    QStringList names;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        const bool isOwn = label->pixmap().isNull() && label->objectName().endsWith(u"Caption"_s);
        if (label->textFormat() != Qt::PlainText && !isOwn && !label->text().isEmpty())
            names.append(label->objectName() + u": "_s + label->text());
    }
    return names;
}

} // namespace

void TestHostile::everyLabelIsPlainText()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"<b>x</b>"_s);
    volume->description->insert(DAKey::volumeKind, u"msdos"_s);
    test.add(volume);
    test.select(u"disk2s1"_s);
    QCOMPARE(labelsOfOtherFormats(test.window()), QStringList());
    test.controller().errorMessage(u"<b>x</b>"_s);
    QCOMPARE(labelsOfOtherFormats(*test.sheets().constFirst()), QStringList());
    press(test.sheets().constFirst(), AlertSheet::firstButtonReturn);
    test.controller().formatFilesystemsPopupButton->setCurrentIndex(0);
    test.controller().formatButton->click();
    QCOMPARE(labelsOfOtherFormats(*test.sheets().constFirst()), QStringList());
}

void TestHostile::textsAreShownAsTheyAre_data()
{
    addTexts();
}

void TestHostile::textsAreShownAsTheyAre()
{
    QFETCH(const QString, text);
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, text);
    volume->description->insert(DAKey::volumeKind, text);
    volume->description->insert(DAKey::mediaContent, text);
    setMounted(volume, u"/media/"_s + text);
    const DiskRecord record = test.add(volume);
    test.select(u"disk2s1"_s);
    ZorvexDiskManagerAppDelegate &controller = test.controller();
    QVERIFY(controller.infoNameLabel->text().contains(text));
    QCOMPARE(controller.filesystemLabel->text(), text);
    QCOMPARE(controller.contentHintLabel->text(), text);
    QCOMPARE(controller.formatVolumeLabelField->text(), text);
    // The path stands between the two characters that set it apart, and its tool tip is no markup either.
    QCOMPARE(controller.infoMountedPathView->toPlainText(),
        QString(QChar(0x202A) + u"/media/"_s + text + QChar(0x202C)));
    QVERIFY(!controller.infoMountedPathView->toolTip().contains(u"<b>"_s));
    controller.errorMessage(text);
    QCOMPARE(test.sheets().constFirst()->informativeText(), text);
    press(test.sheets().constFirst(), AlertSheet::firstButtonReturn);
    QCOMPARE(record->description(), u"disk2s1"_s);
}

void TestHostile::textsOfABundle_data()
{
    addTexts();
    QTest::newRow("reordering, and lines of its own") << u"\u202Ea\u2066\nName: Backup\u2028\tb"_s;
    QTest::newRow("1 MB") << megabyte;
}

void TestHostile::textsOfABundle()
{
    QFETCH(const QString, text);
    TestController test;
    const QByteArray escaped = text.toHtmlEscaped().toUtf8();
    writeBundle(test.localDirectory(), u"hostile"_s,
        "<key>CFBundleIdentifier</key><string>" + escaped
            + "</string><key>FSPersonalities</key><dict><key>P</key><dict><key>FSName</key><string>" + escaped
            + "</string><key>FSFormatExecutable</key><string>f</string></dict></dict>");
    const WindowTime time;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024);
    volume->description->insert(DAKey::volumeKind, u"hostile"_s);
    test.add(volume);
    test.select(u"disk2s1"_s);
    // On one line, in the order of its letters, and no longer than a name.
    const QString shown = nameToShow(text);
    QVERIFY(shown.size() <= longestShownName);
    QVERIFY(std::none_of(shown.begin(), shown.end(), disturbsLine));
    QCOMPARE(shown.left(3) == text.left(3), !disturbsLine(text.at(0)));
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    QCOMPARE(controller.formatFilesystemsPopupButton->count(), 1);
    QCOMPARE(controller.formatFilesystemsPopupButton->itemText(0), shown);
    QCOMPARE(controller.filesystemLabel->text(), shown);
    for (const int page : { 0, 1 }) {
        controller.rightTabView->setCurrentIndex(page);
        QVERIFY(!test.window().grab().isNull());
    }
    QVERIFY(time.milliseconds() < answerLimit);

    // The sheet that asks whether to erase tells the disk in a few lines, whatever a bundle calls itself.
    controller.formatFilesystemsPopupButton->setCurrentIndex(0);
    controller.formatButton->click();
    const QString asked = test.sheets().constFirst()->accessoryText();
    QCOMPARE(asked.count(u'\n'), 5);
}

void TestHostile::bundleThatCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("dictionary");
    QTest::newRow("deep nesting") << QByteArray("<key>a</key>" + QByteArray("<array>").repeated(100000));
    QTest::newRow("no end") << QByteArray("<key>CFBundleIdentifier</key><string>");
    QTest::newRow("zero bytes") << QByteArray(1000, '\0');
    QTest::newRow("entities") << QByteArray(
        "<!DOCTYPE x [<!ENTITY a SYSTEM 'file:///etc/passwd'>]><string>&a;</string>");
    QTest::newRow("many keys") << QByteArray("<key>a</key><string>b</string>").repeated(20000);
}

void TestHostile::bundleThatCannotBeRead()
{
    QFETCH(const QByteArray, dictionary);
    TestController test;
    writeBundle(test.localDirectory(), u"bad"_s, dictionary);
    writeWholeBundle(test.localDirectory(), u"good"_s, u"Good"_s);
    const WindowTime time;
    test.launch();
    QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), 1);
    QVERIFY(time.milliseconds() < answerLimit);
}

// A directory of bundles may hold a link to itself: nothing is followed, nothing is read twice.
void TestHostile::bundleThatIsALink()
{
    TestController test;
    writeWholeBundle(test.filesystems.path(), u"elsewhere"_s, u"Elsewhere"_s);
    writeWholeBundle(test.localDirectory(), u"good"_s, u"Good"_s);
    QVERIFY(QFile::link(test.filesystems.filePath(u"elsewhere.fs"_s), test.localDirectory() + u"/link.fs"_s));
    QVERIFY(QFile::link(test.localDirectory(), test.localDirectory() + u"/circle.fs"_s));
    QVERIFY(QFile::link(
        test.localDirectory() + u"/good.fs"_s, test.localDirectory() + u"/good.fs/Contents/circle"_s));
    test.launch();
    QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), 1);
    QCOMPARE(test.controller().formatFilesystemsPopupButton->itemText(0), u"Good"_s);
}

QTEST_MAIN(TestHostile)
#include "tst_hostile.moc"
