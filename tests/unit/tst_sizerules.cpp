// SPDX-License-Identifier: MIT
//
// Sizes as texts, without a window.
#include "ui/size_rules.h"

#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

class TestSizeRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortSize_data();
    void shortSize();
    void pointIsTheSameInEveryLocale();
    void groupedNumber_data();
    void groupedNumber();
};

void TestSizeRules::shortSize_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QByteArray>("unitKey");
    const auto row = [](const char *name, qint64 bytes, const QString &number, const char *key) {
        QTest::newRow(name) << bytes << number << QByteArray(key);
    };
    row("nothing", 0, u"0"_s, "BYTES_SHORT_TEXT");
    row("one less than a kilobyte", 999, u"999"_s, "BYTES_SHORT_TEXT");
    row("a kilobyte", 1000, u"1"_s, "KILOBYTES_SHORT_TEXT");
    row("kilobytes are truncated", 1999, u"1"_s, "KILOBYTES_SHORT_TEXT");
    row("one less than a megabyte", 999'999, u"999"_s, "KILOBYTES_SHORT_TEXT");
    row("a megabyte", 1'000'000, u"1"_s, "MEGABYTES_SHORT_TEXT");
    row("under half a hundredth", 1'004'999, u"1"_s, "MEGABYTES_SHORT_TEXT");
    row("half a hundredth", 1'005'000, u"1.01"_s, "MEGABYTES_SHORT_TEXT");
    row("trailing zero is kept", 1'500'000, u"1.50"_s, "MEGABYTES_SHORT_TEXT");
    row("under a rounded whole", 1'994'999, u"1.99"_s, "MEGABYTES_SHORT_TEXT");
    row("a rounded whole has no decimals", 1'995'000, u"2"_s, "MEGABYTES_SHORT_TEXT");
    row("the unit is not changed by rounding", 999'999'999, u"1000"_s, "MEGABYTES_SHORT_TEXT");
    row("a disk", 500'107'862'016, u"500.11"_s, "GIGABYTES_SHORT_TEXT");
    row("a terabyte", 1'000'000'000'000, u"1"_s, "TERABYTES_SHORT_TEXT");
    row("one less than a terabyte", 999'999'999'999, u"1000"_s, "GIGABYTES_SHORT_TEXT");
    row("a petabyte and a half", 1'500'000'000'000'000, u"1.50"_s, "PETABYTES_SHORT_TEXT");
    row("one less than an exabyte", 999'999'999'999'999'999, u"1000"_s, "PETABYTES_SHORT_TEXT");
    row("an exabyte", 1'000'000'000'000'000'000, u"1"_s, "EXABYTES_SHORT_TEXT");
    row("the largest size", std::numeric_limits<qint64>::max(), u"9.22"_s, "EXABYTES_SHORT_TEXT");
    row("a negative size", -5'000'000, u"-5000000"_s, "BYTES_SHORT_TEXT");
    row("the smallest size", std::numeric_limits<qint64>::min(), u"-9223372036854775808"_s,
        "BYTES_SHORT_TEXT");
}

void TestSizeRules::shortSize()
{
    QFETCH(qint64, bytes);
    const SizeRules::ShortSize size = SizeRules::shortSize(bytes);
    QTEST(size.number, "number");
    QTEST(QByteArray(size.unitKey), "unitKey");
}

void TestSizeRules::pointIsTheSameInEveryLocale()
{
    const QLocale before;
    for (const QLocale &locale : { QLocale(QLocale::German), QLocale(QLocale::Arabic, QLocale::Egypt) }) {
        QLocale::setDefault(locale);
        QCOMPARE(SizeRules::shortSize(1'500'000).number, u"1.50"_s);
        QCOMPARE(SizeRules::groupedNumber(1'234'567), u"1 234 567"_s);
    }
    QLocale::setDefault(before);
}

void TestSizeRules::groupedNumber_data()
{
    QTest::addColumn<qint64>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << qint64 { 0 } << u"0"_s;
    QTest::newRow("three digits") << qint64 { 999 } << u"999"_s;
    QTest::newRow("four digits") << qint64 { 1000 } << u"1 000"_s;
    QTest::newRow("six digits") << qint64 { 999'999 } << u"999 999"_s;
    QTest::newRow("seven digits") << qint64 { 1'234'567 } << u"1 234 567"_s;
    QTest::newRow("a disk") << qint64 { 500'107'862'016 } << u"500 107 862 016"_s;
    QTest::newRow("the sign counts as a digit") << qint64 { -123 } << u"- 123"_s;
    QTest::newRow("a sign that completes a group") << qint64 { -12 } << u"-12"_s;
    QTest::newRow("a sign within a group") << qint64 { -12'345 } << u"-12 345"_s;
    QTest::newRow("the largest") << std::numeric_limits<qint64>::max() << u"9 223 372 036 854 775 807"_s;
}

void TestSizeRules::groupedNumber()
{
    QFETCH(qint64, number);
    QTEST(SizeRules::groupedNumber(number), "text");
}

QTEST_APPLESS_MAIN(TestSizeRules)
#include "tst_sizerules.moc"
