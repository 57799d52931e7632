// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

// What a file system allows as the name of a volume, as its bundle declares it.
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

// Why the name cannot be given, as the end of a sentence about it. Returns std::nullopt when it can. The
// tools themselves notice it only after the old volume is lost, or shorten the name without a word.
std::optional<QString> reasonAgainstLabel(const LabelRule &rule, const QString &label);
