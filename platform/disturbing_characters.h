// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether the character does something to the line that it stands in instead of being seen there: control
// characters, line and paragraph separators, and what turns the direction of the text around it.
bool disturbsLine(QChar c);

// The text with such characters replaced by U+FFFD: a name on a disk must not be able to pass for another.
QString harmlessName(const QString &name);

// The same, and cut: a name that somebody wrote into a bundle may be of any length, and to lay it out would
// hold up the window.
inline constexpr qsizetype longestShownName = 300;
QString nameToShow(const QString &name);
