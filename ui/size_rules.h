// SPDX-License-Identifier: MIT
//
// Sizes as texts. Functions of values, any thread.
#pragma once

#include <QString>

namespace SizeRules {

// A size as a number and the key of its unit's abbreviation.
struct ShortSize
{
    QString number; // with "." as decimal point in every language
    const char *unitKey = nullptr;
};

// Decimal units; up to two decimals, rounded, from a million bytes on, truncated below.
ShortSize shortSize(qint64 bytes);

// The number in groups of three digits, counted from the end. The sign of a negative number counts as a
// digit.
QString groupedNumber(qint64 number);

} // namespace SizeRules
