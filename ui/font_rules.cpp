// SPDX-License-Identifier: MIT
#include "ui/font_rules.h"

#include "platform/no_widgets.h"

namespace FontRules {

std::optional<QFont> outputFont(const FontSource &source)
{
    constexpr int pointSize = 11;
    constexpr int monacoPointSize = 10; // it runs larger than the others
    if (auto font = source.monospacedSystemFont(pointSize))
        return font;
    if (auto font = source.namedFont(QStringLiteral("SF Mono"), pointSize))
        return font;
    if (auto font = source.namedFont(QStringLiteral("Menlo"), pointSize))
        return font;
    return source.namedFont(QStringLiteral("Monaco"), monacoPointSize);
}

} // namespace FontRules
