// SPDX-License-Identifier: MIT
#include "ui/size_rules.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace SizeRules {

namespace {

struct Unit
{
    qint64 divisor;
    const char *key;
};

constexpr Unit roundedUnits[] = {
    { 1'000'000'000'000'000'000, QT_TRID_NOOP("EXABYTES_SHORT_TEXT") },
    { 1'000'000'000'000'000, QT_TRID_NOOP("PETABYTES_SHORT_TEXT") },
    { 1'000'000'000'000, QT_TRID_NOOP("TERABYTES_SHORT_TEXT") },
    { 1'000'000'000, QT_TRID_NOOP("GIGABYTES_SHORT_TEXT") },
    { 1'000'000, QT_TRID_NOOP("MEGABYTES_SHORT_TEXT") },
};

// The number of units with up to two decimals. A size just under the next unit is not carried into it.
QString roundedNumber(quint64 bytes, quint64 divisor)
{
    const quint64 whole = bytes / divisor;
    const quint64 remainder = divisor / 200 + bytes % divisor; // half a hundredth more, to round
    const quint64 hundredths = remainder / (divisor / 100);
    if (hundredths == 100)
        return QString::number(whole + 1);
    if (hundredths == 0)
        return QString::number(whole);
    return u"%1.%2"_s.arg(whole).arg(hundredths, 2, 10, QLatin1Char('0'));
}

} // namespace

ShortSize shortSize(qint64 bytes)
{
    for (const Unit &unit : roundedUnits) {
        if (bytes >= unit.divisor)
            return { roundedNumber(static_cast<quint64>(bytes), static_cast<quint64>(unit.divisor)),
                unit.key };
    }
    if (bytes >= 1000)
        return { QString::number(bytes / 1000), QT_TRID_NOOP("KILOBYTES_SHORT_TEXT") };
    return { QString::number(bytes), QT_TRID_NOOP("BYTES_SHORT_TEXT") };
}

QString groupedNumber(qint64 number)
{
    QString text = QString::number(number);
    for (qsizetype position = text.size(); position > 3;) {
        position -= 3;
        text.insert(position, u' ');
    }
    return text;
}

} // namespace SizeRules
