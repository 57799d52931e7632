// SPDX-License-Identifier: MIT
#include "ui/color_rules.h"

#include <algorithm>
#include <cmath>

#include "platform/NoWidgets.h"

namespace ColorRules {

namespace {

constexpr qreal step = 0.05;
constexpr qreal leastTextContrast = 4.5;
constexpr qreal leastShapeContrast = 3;

qreal linear(qreal channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

QColor mix(const QColor &color, const QColor &over, qreal share)
{
    const auto channel
        = [share](float top, float bottom) { return static_cast<float>(top * share + bottom * (1 - share)); };
    return QColor::fromRgbF(channel(color.redF(), over.redF()), channel(color.greenF(), over.greenF()),
        channel(color.blueF(), over.blueF()));
}

qreal contrast(const QColor &one, const QColor &other)
{
    const qreal a = luminance(one);
    const qreal b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor quietText(const QPalette &palette, QPalette::ColorGroup group)
{
    const QColor text = palette.color(group, QPalette::WindowText);
    const QColor background = palette.color(group, QPalette::Window);
    qreal share = 0.65;
    while (share < 1 && contrast(mix(text, background, share), background) < leastTextContrast)
        share += step;
    return mix(text, background, std::min(share, 1.0));
}

QColor filled(const QPalette &palette)
{
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor below = track(palette);
    qreal share = 0;
    while (share < 1 && contrast(mix(text, highlight, share), below) < leastShapeContrast)
        share += step;
    return mix(text, highlight, std::min(share, 1.0));
}

QColor track(const QPalette &palette)
{
    return mix(palette.color(QPalette::Active, QPalette::WindowText),
        palette.color(QPalette::Active, QPalette::Window), 0.08);
}

QColor border(const QPalette &palette)
{
    return mix(palette.color(QPalette::Active, QPalette::WindowText),
        palette.color(QPalette::Active, QPalette::Window), 0.22);
}

QPalette onSelection(QPalette palette)
{
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(role, palette.color(QPalette::HighlightedText));
    return palette;
}

} // namespace ColorRules
