// SPDX-License-Identifier: MIT
//
// Texts that read from left to right inside of a text that reads from right to left. Functions of values, any
// thread.
#pragma once

#include <QString>

namespace DirectionRules {

// The text set apart from what stands around it: a path, a device, a name from a tool.
QString leftToRight(const QString &text);

// The text with an end for each part that is set apart and has lost its own.
QString withPartsClosed(const QString &text);

// The text with each number whose digits stand in groups set apart, so that the groups keep their order.
QString withGroupedNumbersKept(const QString &text);

// Whether the letters of a word are joined in the script of the localization, such as "ar".
bool joinsLetters(const QString &localization);

} // namespace DirectionRules
