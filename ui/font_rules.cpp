// SPDX-License-Identifier: MIT
#include "ui/font_rules.h"

#include "platform/no_widgets.h"

using namespace Qt::Literals::StringLiterals;

namespace FontRules {

std::optional<QFont> outputFont(const FontSource &source)
{
    constexpr int pointSize = 11;
    constexpr int monacoPointSize = 10; // it runs larger than the others
    if (auto font = source.monospacedSystemFont(pointSize))
        return font;
    if (auto font = source.namedFont(u"SF Mono"_s, pointSize))
        return font;
    if (auto font = source.namedFont(u"Menlo"_s, pointSize))
        return font;
    return source.namedFont(u"Monaco"_s, monacoPointSize);
}

} // namespace FontRules
