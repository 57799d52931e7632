// SPDX-License-Identifier: MIT
#include "disks/tree_rules.h"

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace TreeRules {

namespace {

bool isDecimalDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

qint32 trailingNumber(const QString &bsdName)
{
    if (bsdName.isEmpty() || !isDecimalDigit(bsdName.back()))
        return -1;
    quint32 number = 0;
    quint32 weight = 1;
    for (auto c = bsdName.crbegin(); c != bsdName.crend() && isDecimalDigit(*c); ++c) {
        number += static_cast<quint32>(c->unicode() - u'0') * weight;
        weight *= 10;
    }
    return static_cast<qint32>(number);
}

std::optional<QString> parentBsdName(const QString &bsdName)
{
    constexpr qsizetype shortestParent = 5; // "disk" and one digit
    const qsizetype separator = bsdName.lastIndexOf(u's');
    if (!bsdName.startsWith("disk"_L1) || separator < shortestParent)
        return std::nullopt;
    if (!std::all_of(bsdName.cbegin() + separator + 1, bsdName.cend(), isDecimalDigit))
        return std::nullopt;
    return bsdName.left(separator);
}

} // namespace TreeRules
