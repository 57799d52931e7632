// SPDX-License-Identifier: MIT
#include "ui/direction_rules.h"

#include <QLocale>
#include <QRegularExpression>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace DirectionRules {

namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar popDirectionalIsolate(0x2069);

} // namespace

QString leftToRight(const QString &text)
{
    return leftToRightIsolate + text + popDirectionalIsolate;
}

QString withPartsClosed(const QString &text)
{
    int open = 0;
    for (const QChar character : text) {
        if (character >= leftToRightIsolate && character < popDirectionalIsolate)
            ++open;
        else if (character == popDirectionalIsolate && open > 0)
            --open;
    }
    return text + QString(open, popDirectionalIsolate);
}

QString withGroupedNumbersKept(const QString &text)
{
    static const QRegularExpression groupedNumber(u"([0-9]{1,3}(?: [0-9]{3})+)"_s);
    const QString isolated = leftToRightIsolate + u"\\1"_s + popDirectionalIsolate;
    return QString(text).replace(groupedNumber, isolated);
}

bool joinsLetters(const QString &localization)
{
    return QLocale(localization).script() == QLocale::ArabicScript;
}

} // namespace DirectionRules
