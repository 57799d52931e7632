// SPDX-License-Identifier: MIT
//
// Decisions of a format, without a window.
#include "operations/format_rules.h"
#include "operations/FormatTarget.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestFormatRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labels_data();
    void labels();
    void reasonsNotToFormat_data();
    void reasonsNotToFormat();
    void nothingSelected();
    void argumentsAreQuotedButNotEscaped();
};

void TestFormatRules::labels_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("bundleName");
    QTest::addColumn<QString>("volumeLabel");
    QTest::addColumn<QString>("postFormatLabel"); // null for none
    const auto row
        = [](const char *name, const QString &typed, const QString &bundle, const QString &label,
              const QString &rename) { QTest::newRow(name) << typed << bundle << label << rename; };
    row("FAT without a label", {}, u"msdos"_s, u"UNTITLED"_s, {});
    row("own FAT without a label", {}, u"zorvex_fatplus"_s, u"UNTITLED"_s, {});
    row("exFAT without a label", {}, u"exfat"_s, u"Untitled"_s, {});
    row("own NTFS without a label", {}, u"zorvex_ntfs"_s, u"Untitled"_s, {});
    row("FAT with a label", u"DATA"_s, u"msdos"_s, u"DATA"_s, {});
    row("exFAT with a label", u"Data"_s, u"exfat"_s, u"Data"_s, {});
    row("own NTFS with a label", u"Data"_s, u"zorvex_ntfs"_s, u"UNTITLED"_s, u"Data"_s);
    row("own exFAT with a label", u"Data"_s, u"zorvex_exfat"_s, u"UNTITLED"_s, u"Data"_s);
    row("FUSE file system with a label", u"Data"_s, u"fusefs_qvoext"_s, u"UNTITLED"_s, u"Data"_s);
    row("own FAT with the default label typed", u"UNTITLED"_s, u"zorvex_fatplus"_s, u"UNTITLED"_s,
        u"UNTITLED"_s);
    row("own NTFS with the default label typed", u"Untitled"_s, u"zorvex_ntfs"_s, u"UNTITLED"_s,
        u"Untitled"_s);
}

void TestFormatRules::labels()
{
    QFETCH(QString, typed);
    QFETCH(QString, bundleName);
    QFETCH(QString, postFormatLabel);
    const FormatRules::Labels labels = FormatRules::labelsFor(typed, bundleName);
    QTEST(labels.volumeLabel, "volumeLabel");
    QCOMPARE(labels.postFormatLabel.has_value(), !postFormatLabel.isNull());
    QCOMPARE(labels.postFormatLabel.value_or(QString()), postFormatLabel);
}

void TestFormatRules::reasonsNotToFormat_data()
{
    using Kind = ProbedContent::Kind;
    QTest::addColumn<QStringList>("holders");
    QTest::addColumn<bool>("isSwap");
    QTest::addColumn<bool>("isOfSystem");
    QTest::addColumn<Kind>("content");
    QTest::addColumn<QByteArray>("key"); // empty for no reason
    const QStringList none;
    const QStringList one { u"dm-0"_s };
    QTest::newRow("unused") << none << false << false << Kind::Filesystem << QByteArray();
    QTest::newRow("swap that is off") << none << false << false << Kind::Swap << QByteArray();
    QTest::newRow("swap that is on") << none << true << false << Kind::Swap
                                     << QByteArray("FORMAT_REFUSED_SWAP_FMT");
    QTest::newRow("LVM") << one << false << false << Kind::LvmMember << QByteArray("FORMAT_REFUSED_LVM_FMT");
    QTest::newRow("LVM that is not in use") << none << false << false << Kind::LvmMember << QByteArray();
    QTest::newRow("RAID") << one << false << false << Kind::RaidMember
                          << QByteArray("FORMAT_REFUSED_RAID_FMT");
    QTest::newRow("unlocked") << one << false << false << Kind::Encrypted
                              << QByteArray("FORMAT_REFUSED_UNLOCKED_FMT");
    QTest::newRow("locked") << none << false << false << Kind::Encrypted << QByteArray();
    QTest::newRow("another holder") << one << false << false << Kind::Other
                                    << QByteArray("FORMAT_REFUSED_IN_USE_FMT");
    const QByteArray system("FORMAT_REFUSED_SYSTEM_FMT");
    QTest::newRow("the system's") << none << false << true << Kind::Filesystem << system;
    QTest::newRow("LVM that the system stands on") << one << false << true << Kind::LvmMember << system;
    QTest::newRow("the system's swap that is on")
        << none << true << true << Kind::Swap << QByteArray("FORMAT_REFUSED_SWAP_FMT");
}

void TestFormatRules::reasonsNotToFormat()
{
    QFETCH(const QStringList, holders);
    QFETCH(const bool, isSwap);
    QFETCH(const bool, isOfSystem);
    QFETCH(const ProbedContent::Kind, content);
    const char *const key = formatRefusalKey({ { u"/media/A"_s }, holders, isSwap }, isOfSystem, content);
    QTEST(QByteArray(key), "key");
}

void TestFormatRules::nothingSelected()
{
    QCOMPARE(FormatRules::nothingSelectedText(false, true), u"No file system selected."_s);
    QCOMPARE(FormatRules::nothingSelectedText(true, false), u"No disk selected."_s);
    QCOMPARE(FormatRules::nothingSelectedText(false, false), u"No file system and no disk selected."_s);
}

void TestFormatRules::argumentsAreQuotedButNotEscaped()
{
    QCOMPARE(FormatRules::eraseArguments(u"MS-DOS FAT32"_s, u"DATA"_s, u"disk2s1"_s),
        u"'MS-DOS FAT32' 'DATA' '/dev/disk2s1'"_s);
    QCOMPARE(FormatRules::eraseArguments(u"ExFAT"_s, u"It's %1 %2"_s, u"disk2s1"_s),
        u"'ExFAT' 'It's %1 %2' '/dev/disk2s1'"_s);
}

QTEST_APPLESS_MAIN(TestFormatRules)
#include "tst_formatrules.moc"
