// SPDX-License-Identifier: MIT
#include "app/help_rules.h"

#include "platform/NoWidgets.h"

namespace HelpRules {

namespace {

constexpr unsigned long lastGenerationWithoutLinkColor = 13;

} // namespace

QString leftToRightText(const QString &text)
{
    return QChar(0x202A) + text + QChar(0x202C);
}

bool usesSystemLinkColor(std::optional<unsigned long> generation)
{
    return generation && *generation > lastGenerationWithoutLinkColor;
}

bool isClickOnLink(qsizetype location, qsizetype length, int selectedRow, qsizetype textLength)
{
    return length == 0 && location != 0 && selectedRow >= 0 && location < textLength;
}

} // namespace HelpRules
