// SPDX-License-Identifier: MIT
#include "ui/font_rules.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace FontRules {

QFont withPointSize(QFont font, int pointSize, const QFont &text)
{
    const qreal share = static_cast<qreal>(pointSize) / standardPointSize;
    // A font has its size in either of the two.
    if (text.pixelSize() > 0)
        font.setPixelSize(qRound(text.pixelSize() * share));
    else
        font.setPointSizeF(text.pointSizeF() * share);
    return font;
}

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
