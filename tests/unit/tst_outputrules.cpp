// SPDX-License-Identifier: MIT
//
// Output as lines of text, without a window.
#include "disks/OutputBuffer.h"
#include "ui/output_rules.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestOutputRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyTheEndOfALongOutputIsShown();
    void linesAreLines();
    void separatorsStartNoLine();
    void controlCharactersAreNotDrawn();
    void outputThatIsNotUtf8IsShown();
    void longLineIsShownAsSeveral();
    void characterIsNotCutInTwo_data();
    void characterIsNotCutInTwo();
    void continuationBytesAloneAreShown();
    void onlyTheLastLineChanges();
    void anyChangeGivesTheWholeText();
    void growingOutputGivesTheWholeText();
    void lineWithoutEndTakesLinearTime();
};

namespace {

// What an empty view shows of the output.
QString shownText(const QByteArray &output)
{
    return OutputRules::changeBetween({}, output).text;
}

// What a view holds after the change: the blocks before it, and its text.
QString changed(const QString &text, const OutputRules::Change &change)
{
    return QStringList(text.split(u'\n').mid(0, change.firstBlock)).join(u'\n')
        + (change.firstBlock > 0 ? u"\n"_s : QString()) + change.text;
}

QByteArray randomOutput(QRandomGenerator &random)
{
    static const QByteArrayList pieces { "a", "\n", "\r", "é", "€", "💾", "\xff", "\x80", "\xf0\x9f",
        QByteArray(1990, 'x'), QByteArray(700, 'y'), "\xe2\x80\xa9" };
    QByteArray output;
    const int count = random.bounded(12);
    for (int i = 0; i < count; ++i)
        output += pieces.at(random.bounded(static_cast<int>(pieces.size())));
    return output;
}

} // namespace

void TestOutputRules::linesAreLines()
{
    QCOMPARE(shownText({}), QString());
    QCOMPARE(shownText("one\n\ntwo"), u"one\n\ntwo"_s);
    QCOMPARE(shownText("one\n"), u"one\n"_s);
}

void TestOutputRules::separatorsStartNoLine()
{
    const QByteArray output = "a\rb" + QString(QChar(QChar::ParagraphSeparator)).toUtf8() + "c"
        + QString(QChar(QChar::LineSeparator)).toUtf8() + "d" + QByteArray(1, '\0') + "e";
    QCOMPARE(shownText(output), u"a b c d e"_s);
}

void TestOutputRules::controlCharactersAreNotDrawn()
{
    QCOMPARE(shownText("\001\002Pass 2\n"), u"Pass 2\n"_s); // e2fsck, around its progress
    QCOMPARE(shownText("\033[2Ja\bb\177c\302\233d\n"), u"[2Jabcd\n"_s);
    QCOMPARE(shownText("a\tb\n"), u"a\tb\n"_s);
    QCOMPARE(shownText("\001\n\002"), u"\n"_s);
}

void TestOutputRules::outputThatIsNotUtf8IsShown()
{
    const QString text = shownText("a\xff\n\xc3\nb");
    QCOMPARE(text.split(u'\n').size(), 3);
    QVERIFY(text.startsWith(u'a'));
    QVERIFY(text.contains(QChar(QChar::ReplacementCharacter)));
    QVERIFY(text.endsWith(u"\nb"_s));
}

void TestOutputRules::longLineIsShownAsSeveral()
{
    const QByteArray exact(OutputRules::longestShownLine, 'x');
    QCOMPARE(shownText(exact), QString::fromLatin1(exact));
    QCOMPARE(shownText(exact + '\n'), QString(QString::fromLatin1(exact) + u'\n' + u'\n'));
    QCOMPARE(shownText(exact + 'y'), QString(QString::fromLatin1(exact) + u"\ny"_s));
}

void TestOutputRules::characterIsNotCutInTwo_data()
{
    QTest::addColumn<QByteArray>("character");
    QTest::newRow("two bytes") << QByteArray("é");
    QTest::newRow("three bytes") << QByteArray("€");
    QTest::newRow("four bytes") << QByteArray("💾");
}

void TestOutputRules::characterIsNotCutInTwo()
{
    QFETCH(QByteArray, character);
    for (qsizetype before = 1; before <= 4; ++before) {
        const QByteArray output
            = QByteArray(OutputRules::longestShownLine - before, 'x') + character + QByteArray("end");
        const QString text = shownText(output);
        QVERIFY2(!text.contains(QChar(QChar::ReplacementCharacter)), qPrintable(QString::number(before)));
        QCOMPARE(QString(text).remove(u'\n'), QString::fromUtf8(output));
    }
}

void TestOutputRules::continuationBytesAloneAreShown()
{
    const QByteArray output(3 * OutputRules::longestShownLine, '\x80');
    const QString text = shownText(output);
    QCOMPARE(QString(text).remove(u'\n').size(), output.size());
}

void TestOutputRules::onlyTheLastLineChanges()
{
    const OutputRules::Change change
        = OutputRules::changeBetween("one\ntwo\nChecking 10%", "one\ntwo\nChecking 20%");
    QCOMPARE(change.firstBlock, 2);
    QCOMPARE(change.text, u"Checking 20%"_s);
    const OutputRules::Change growth = OutputRules::changeBetween("one\n", "one\ntwo\n");
    QCOMPARE(growth.firstBlock, 1);
    QCOMPARE(growth.text, u"two\n"_s);
}

void TestOutputRules::anyChangeGivesTheWholeText()
{
    for (quint32 seed = 1; seed <= 3000; ++seed) {
        QRandomGenerator random(seed);
        const QByteArray common = randomOutput(random);
        const QByteArray shown = common + randomOutput(random);
        const QByteArray output = common + randomOutput(random);
        const QString text = changed(shownText(shown), OutputRules::changeBetween(shown, output));
        QVERIFY2(text == shownText(output), qPrintable(u"seed %1"_s.arg(seed)));
    }
}

void TestOutputRules::growingOutputGivesTheWholeText()
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        QRandomGenerator random(seed);
        OutputBuffer buffer;
        QByteArray shown;
        QString text;
        for (int i = 0; i < 20; ++i) {
            const QByteArray chunk = randomOutput(random);
            buffer.append(chunk.constData(), chunk.size());
            text = changed(text, OutputRules::changeBetween(shown, buffer.bytes()));
            shown = buffer.bytes();
            QVERIFY2(text == shownText(shown), qPrintable(u"seed %1"_s.arg(seed)));
        }
    }
}

void TestOutputRules::lineWithoutEndTakesLinearTime()
{
    const QByteArray half(1'000'000, '.');
    QElapsedTimer timer;
    timer.start();
    const OutputRules::Change change = OutputRules::changeBetween(half, half + half);
    QCOMPARE(change.firstBlock, 500 - 1);
    QCOMPARE(shownText(half + half).size(), 2'000'000 + 999);
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void TestOutputRules::onlyTheEndOfALongOutputIsShown()
{
    const QByteArray line = QByteArray(99, 'x') + '\n';
    const QByteArray whole = line.repeated(2 * OutputRules::longestShownOutput / line.size());
    QCOMPARE(OutputRules::shownPart(whole), whole);
    QByteArray longer = whole.repeated(10) + "last\n";
    const QByteArray shown = OutputRules::shownPart(longer);
    QVERIFY(shown.startsWith("\xE2\x80\xA6\nxxx"));
    QVERIFY(shown.endsWith("x\nlast\n"));
    QVERIFY(shown.size() <= 2 * OutputRules::longestShownOutput + 4);
    QVERIFY(shown.size() >= OutputRules::longestShownOutput - line.size());
    // A little more output shows as a little more text.
    longer += "more\n";
    QCOMPARE(OutputRules::shownPart(longer), QByteArray(shown + "more\n"));
    // A line without end begins anywhere.
    QVERIFY(OutputRules::shownPart(QByteArray(5 * OutputRules::longestShownOutput, 'y')).endsWith("yyy"));
}

QTEST_APPLESS_MAIN(TestOutputRules)
#include "tst_outputrules.moc"
