// SPDX-License-Identifier: MIT
#include "filesystems/LabelRule.h"

#include <QHash>

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Reason = LabelObjection::Reason;

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

std::optional<LabelObjection> objectionToLength(const LabelRule &rule, const QString &label)
{
    if (rule.unit == LabelRule::Unit::Unlimited)
        return std::nullopt;
    const bool isHalved = rule.unit == LabelRule::Unit::Osta && !isWithin(label, lastOfLatin1);
    const qint64 limit = isHalved ? rule.limit / 2 : rule.limit;
    if (lengthOf(label, rule.unit) <= limit)
        return std::nullopt;
    return LabelObjection { Reason::TooLong, {}, limit };
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

LabelRule readLabelRule(const PropertyDictionary &information)
{
    LabelRule rule;
    const PropertyNumber *const number = information.number(u"FSLabelLimit"_s);
    const auto limit = number ? number->toLongLong() : std::nullopt;
    const auto unit = labelUnitNamed(information.text(u"FSLabelUnit"_s));
    if (limit && unit) {
        rule.limit = *limit;
        rule.unit = *unit;
    }
    rule.forbidden = information.text(u"FSLabelForbiddenCharacters"_s);
    rule.forbiddenFirst = information.text(u"FSLabelForbiddenFirstCharacters"_s);
    return rule;
}

std::optional<LabelObjection> objectionToLabel(const LabelRule &rule, const QString &label)
{
    if (!label.isValidUtf16() || label.contains(QChar::ReplacementCharacter))
        return LabelObjection { Reason::NoText };
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (std::any_of(label.begin(), label.end(), isControl))
        return LabelObjection { Reason::ControlCharacter };
    if (rule.unit == LabelRule::Unit::Ascii && !isWithin(label, lastOfAscii))
        return LabelObjection { Reason::NotAscii };
    for (const QChar c : label) {
        if (rule.forbidden.contains(c))
            return LabelObjection { Reason::ForbiddenCharacter, c };
    }
    if (!label.isEmpty() && rule.forbiddenFirst.contains(label.front()))
        return LabelObjection { Reason::ForbiddenFirstCharacter, label.front() };
    return objectionToLength(rule, label);
}

std::optional<QString> reasonAgainstLabel(const LabelRule &rule, const QString &label)
{
    const auto objection = objectionToLabel(rule, label);
    if (!objection)
        return std::nullopt;
    switch (objection->reason) {
    case Reason::NoText:
        break;
    case Reason::ControlCharacter:
        return u"has a control character"_s;
    case Reason::NotAscii:
        return u"has a character that is not one of ASCII"_s;
    case Reason::ForbiddenCharacter:
        return u"has the character %1"_s.arg(objection->character);
    case Reason::ForbiddenFirstCharacter:
        return u"begins with the character \"%1\""_s.arg(objection->character);
    case Reason::TooLong:
        return u"is longer than %1 %2"_s.arg(objection->limit).arg(unitWord(rule.unit));
    }
    return u"is no valid text"_s;
}
