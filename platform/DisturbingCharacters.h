// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether the character changes the line that it stands in instead of being seen there: control characters,
// line and paragraph separators, and characters that turn the direction of the text around them.
bool disturbsLine(QChar c);

// The text with such characters replaced by U+FFFD: no name on a disk can pass for another.
QString harmlessName(const QString &name);

// The same, and shortened: a name in a bundle may have any length, and its layout would hold up the window.
inline constexpr qsizetype longestShownName = 300;
QString nameToShow(const QString &name);
