// SPDX-License-Identifier: MIT
//
// Which volume labels a file system can hold, without a window.
#include "operations/label_rules.h"
#include "platform/SystemLog.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using LabelRules::RuleSet;

Q_DECLARE_METATYPE(LabelRules::RuleSet)

class TestLabelRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ruleSetOfABundle_data();
    void ruleSetOfABundle();
    void label_data();
    void label();
    void forbiddenCharacters();
    void refusalIsNotLogged();
};

namespace {

const QString composedE = QString(QChar(0xE9));
const QString decomposedE = u"e"_s + QString(QChar(0x301));
const QString pair = QString(QChar(0xD83D)) + QString(QChar(0xDCBE)); // one character of two units
const QString halfPair = QString(QChar(0xD83D));

} // namespace

void TestLabelRules::ruleSetOfABundle_data()
{
    QTest::addColumn<QString>("bundleName");
    QTest::addColumn<RuleSet>("ruleSet");
    QTest::newRow("fusefs_qvontfs") << u"fusefs_qvontfs"_s << RuleSet::Ntfs;
    QTest::newRow("zorvex_ntfs") << u"zorvex_ntfs"_s << RuleSet::Ntfs;
    QTest::newRow("msdos") << u"msdos"_s << RuleSet::Fat;
    QTest::newRow("zorvex_fatplus") << u"zorvex_fatplus"_s << RuleSet::Fat;
    QTest::newRow("exfat") << u"exfat"_s << RuleSet::ExFat;
    QTest::newRow("zorvex_exfat") << u"zorvex_exfat"_s << RuleSet::ExFat;
    QTest::newRow("another") << u"ext4"_s << RuleSet::Other;
    QTest::newRow("case counts") << u"MSDOS"_s << RuleSet::Other;
    QTest::newRow("whole names count") << u"zorvex_ntfs2"_s << RuleSet::Other;
    QTest::newRow("fusefs_qvoother") << u"fusefs_qvoother"_s << RuleSet::Other;
    QTest::newRow("none") << QString() << RuleSet::Other;
}

void TestLabelRules::ruleSetOfABundle()
{
    QFETCH(QString, bundleName);
    QTEST(LabelRules::ruleSetOf(bundleName), "ruleSet");
}

void TestLabelRules::label_data()
{
    QTest::addColumn<RuleSet>("ruleSet");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("isValid");
    const auto row = [](const char *name, RuleSet ruleSet, const QString &label, bool isValid) {
        QTest::newRow(name) << ruleSet << label << isValid;
    };
    const QString a = u"a"_s;

    row("FAT: upper case", RuleSet::Fat, u"UNTITLED"_s, true);
    row("FAT: lower case", RuleSet::Fat, u"Untitled"_s, false);
    row("FAT: eleven", RuleSet::Fat, u"AB 12 CD 34"_s, true);
    row("FAT: twelve", RuleSet::Fat, u"AB 12 CD 345"_s, false);
    row("FAT: empty", RuleSet::Fat, QString(), true);
    row("FAT: colon", RuleSet::Fat, u"A:B"_s, false);
    row("FAT: colon at the end", RuleSet::Fat, u"AB:"_s, false);
    row("FAT: diaeresis", RuleSet::Fat, QString(QChar(0xC4)), false);
    row("FAT: control character", RuleSet::Fat, u"A\tB"_s, false);
    row("FAT: last control character", RuleSet::Fat, QString(QChar(0x1F)), false);
    row("FAT: zero", RuleSet::Fat, QString(QChar(0)), false);
    row("FAT: delete", RuleSet::Fat, QString(QChar(0x7F)), true);
    row("FAT: half a pair", RuleSet::Fat, halfPair, false);
    row("FAT: quote and tilde", RuleSet::Fat, u"IT'S~OK"_s, true);

    row("exFAT: eleven of mixed case", RuleSet::ExFat, u"Mixed Case1"_s, true);
    row("exFAT: twelve", RuleSet::ExFat, u"Mixed Case12"_s, false);
    row("exFAT: bar", RuleSet::ExFat, u"a|b"_s, false);
    row("exFAT: bar at the start", RuleSet::ExFat, u"|"_s, false);
    row("exFAT: accents", RuleSet::ExFat, composedE.repeated(11), true);
    row("exFAT: decomposed accents are measured composed", RuleSet::ExFat, decomposedE.repeated(11), true);
    row("exFAT: twelve decomposed accents", RuleSet::ExFat, decomposedE.repeated(12), false);
    row("exFAT: a pair counts twice", RuleSet::ExFat, pair.repeated(5) + a, true);
    row("exFAT: six pairs", RuleSet::ExFat, pair.repeated(6), false);
    row("exFAT: empty", RuleSet::ExFat, QString(), true);
    row("exFAT: control character", RuleSet::ExFat, u"a\nb"_s, false);
    row("exFAT: half a pair", RuleSet::ExFat, a + halfPair, false);
    row("exFAT: unit with a forbidden low byte", RuleSet::ExFat, QString(QChar(0x043A)), true);

    row("NTFS: 128", RuleSet::Ntfs, a.repeated(128), true);
    row("NTFS: 129", RuleSet::Ntfs, a.repeated(129), false);
    row("NTFS: 128 decomposed accents", RuleSet::Ntfs, decomposedE.repeated(128), true);
    row("NTFS: 129 decomposed accents", RuleSet::Ntfs, decomposedE.repeated(129), false);
    row("NTFS: 64 pairs", RuleSet::Ntfs, pair.repeated(64), true);
    row("NTFS: 65 pairs", RuleSet::Ntfs, pair.repeated(65), false);
    row("NTFS: nothing is forbidden", RuleSet::Ntfs, u"\"*/:<>?\\|\t"_s, true);
    row("NTFS: half a pair", RuleSet::Ntfs, halfPair + a, false);
    row("NTFS: halves in the wrong order", RuleSet::Ntfs, QString(QChar(0xDCBE)) + halfPair, false);
    row("NTFS: empty", RuleSet::Ntfs, QString(), true);

    row("other: 255 bytes", RuleSet::Other, a.repeated(255), true);
    row("other: 256 bytes", RuleSet::Other, a.repeated(256), false);
    row("other: 255 bytes of two each and one", RuleSet::Other, composedE.repeated(127) + a, true);
    row("other: 256 bytes of two each", RuleSet::Other, composedE.repeated(128), false);
    row("other: decomposed accents are measured composed", RuleSet::Other, decomposedE.repeated(127), true);
    row("other: anything in it", RuleSet::Other, u"\"*/:<>?\\|\t"_s, true);
    row("other: half a pair", RuleSet::Other, halfPair, false);
    row("other: a pair", RuleSet::Other, pair, true);
}

void TestLabelRules::label()
{
    QFETCH(RuleSet, ruleSet);
    QFETCH(QString, label);
    QTEST(LabelRules::isValidLabel(label, ruleSet), "isValid");
}

void TestLabelRules::forbiddenCharacters()
{
    for (const char c : QByteArray("\"*/:<>?\\|")) {
        const QString label(QLatin1Char { c });
        QVERIFY2(!LabelRules::isValidLabel(label, RuleSet::Fat), qPrintable(label));
        QVERIFY2(!LabelRules::isValidLabel(label, RuleSet::ExFat), qPrintable(label));
    }
    for (const char c : QByteArray(" !#$%&'()+,-.;=@[]^_`{}~0123456789ABCXYZ")) {
        const QString label(QLatin1Char { c });
        QVERIFY2(LabelRules::isValidLabel(label, RuleSet::Fat), qPrintable(label));
        QVERIFY2(LabelRules::isValidLabel(label, RuleSet::ExFat), qPrintable(label));
    }
}

void TestLabelRules::refusalIsNotLogged()
{
    QStringList lines;
    const SystemLogRedirection redirection([&lines](const QString &line) { lines.append(line); });
    for (const RuleSet ruleSet : { RuleSet::Ntfs, RuleSet::Fat, RuleSet::ExFat, RuleSet::Other })
        QVERIFY(!LabelRules::isValidLabel(u"a"_s.repeated(300), ruleSet));
    QCOMPARE(lines, QStringList());
}

QTEST_APPLESS_MAIN(TestLabelRules)
#include "tst_labelrules.moc"
