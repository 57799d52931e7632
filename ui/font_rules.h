// SPDX-License-Identifier: MIT
//
// Which font shows a tool's output. Any thread; what it asks for is given.
#pragma once

#include <QFont>

#include <functional>
#include <optional>

namespace FontRules {

// The text size that sizes in points are relative to.
inline constexpr int standardPointSize = 13;

// Gives the font this size in points, measured by the font of the application's text: a user who has chosen a
// larger text gets a larger output, too.
QFont withPointSize(QFont font, int pointSize, const QFont &text);

// Where fonts come from: the system's own fixed-pitch font at a size in points, and a font by name.
struct FontSource
{
    std::function<std::optional<QFont>(int pointSize)> monospacedSystemFont;
    std::function<std::optional<QFont>(const QString &name, int pointSize)> namedFont;
};

// The first of the customary fixed-pitch fonts that there is; std::nullopt when there is none.
std::optional<QFont> outputFont(const FontSource &source);

} // namespace FontRules
