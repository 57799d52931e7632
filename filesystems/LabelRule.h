// SPDX-License-Identifier: MIT
//
// What a file system allows as the name of a volume. Functions of values, any thread.
#pragma once

#include "platform/Property.h"

#include <QString>

#include <optional>

// As a bundle declares it.
struct LabelRule
{
    enum class Unit {
        Unlimited,
        Ascii, // characters; others than those of ASCII are not allowed
        Bytes, // of UTF-8
        Utf16, // code units
        Osta, // characters up to U+00FF; half as many UTF-16 code units when one is beyond
    };

    Unit unit = Unit::Unlimited;
    qint64 limit = 0;
    QString forbidden; // characters that may not occur
    QString forbiddenFirst; // characters that may not come first
};

// The unit that a bundle names ("ascii", "bytes", "utf16", "osta"), or std::nullopt when there is no such
// unit.
std::optional<LabelRule::Unit> labelUnitNamed(const QString &name);

// The rule in a bundle's information dictionary. A value of another type than it should have counts as
// absent.
LabelRule readLabelRule(const PropertyDictionary &information);

// What a name has that the file system does not take.
struct LabelObjection
{
    enum class Reason {
        NoText, // it cannot be written in any encoding, or was lost in one
        ControlCharacter,
        NotAscii,
        ForbiddenCharacter,
        ForbiddenFirstCharacter,
        TooLong,
    };

    Reason reason = Reason::NoText;
    QChar character {}; // that is forbidden
    qint64 limit = 0; // for a name like this one, in the rule's unit
};

// Why the name cannot be given. Returns std::nullopt when it can. The tools themselves notice it only after
// the old volume is lost, or shorten the name without a word.
std::optional<LabelObjection> objectionToLabel(const LabelRule &rule, const QString &label);

// The same as the end of an English sentence about the name.
std::optional<QString> reasonAgainstLabel(const LabelRule &rule, const QString &label);
