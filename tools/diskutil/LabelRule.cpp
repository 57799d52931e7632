// SPDX-License-Identifier: MIT
#include "tools/diskutil/LabelRule.h"

#include <QHash>

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char16_t lastOfAscii = 0x7f;
constexpr char16_t lastOfLatin1 = 0xff;

bool isWithin(const QString &label, char16_t last)
{
    return std::all_of(label.begin(), label.end(), [last](QChar c) { return c.unicode() <= last; });
}

qint64 lengthOf(const QString &label, LabelRule::Unit unit)
{
    return unit == LabelRule::Unit::Bytes ? label.toUtf8().size() : label.size();
}

QString unitWord(LabelRule::Unit unit)
{
    switch (unit) {
    case LabelRule::Unit::Bytes:
        return u"bytes of UTF-8"_s;
    case LabelRule::Unit::Utf16:
        return u"UTF-16 code units"_s;
    default:
        return u"characters"_s;
    }
}

std::optional<QString> reasonAgainstLength(const LabelRule &rule, const QString &label)
{
    if (rule.unit == LabelRule::Unit::Unlimited)
        return std::nullopt;
    const bool isHalved = rule.unit == LabelRule::Unit::Osta && !isWithin(label, lastOfLatin1);
    const qint64 limit = isHalved ? rule.limit / 2 : rule.limit;
    if (lengthOf(label, rule.unit) <= limit)
        return std::nullopt;
    return u"is longer than %1 %2"_s.arg(limit).arg(unitWord(rule.unit));
}

} // namespace

std::optional<LabelRule::Unit> labelUnitNamed(const QString &name)
{
    static const QHash<QString, LabelRule::Unit> units {
        { u"ascii"_s, LabelRule::Unit::Ascii },
        { u"bytes"_s, LabelRule::Unit::Bytes },
        { u"utf16"_s, LabelRule::Unit::Utf16 },
        { u"osta"_s, LabelRule::Unit::Osta },
    };
    const auto unit = units.constFind(name);
    return unit == units.constEnd() ? std::nullopt : std::optional(*unit);
}

std::optional<QString> reasonAgainstLabel(const LabelRule &rule, const QString &label)
{
    if (!label.isValidUtf16() || label.contains(QChar::ReplacementCharacter))
        return u"is no valid text"_s;
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (std::any_of(label.begin(), label.end(), isControl))
        return u"has a control character"_s;
    if (rule.unit == LabelRule::Unit::Ascii && !isWithin(label, lastOfAscii))
        return u"has a character that is not one of ASCII"_s;
    for (const QChar c : label) {
        if (rule.forbidden.contains(c))
            return u"has the character %1"_s.arg(c);
    }
    if (!label.isEmpty() && rule.forbiddenFirst.contains(label.front()))
        return u"begins with the character \"%1\""_s.arg(label.front());
    return reasonAgainstLength(rule, label);
}
