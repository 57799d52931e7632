// SPDX-License-Identifier: MIT
#include "ui/MediumMark.h"

#include "ui/color_rules.h"
#include "ui/ImageResources.h"
#include "ui/Units.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

namespace {

constexpr int glyphSize = 14; // units
constexpr int margin = 8; // units, to the end of the row and to the name

} // namespace

int mediumMarkWidth()
{
    return units(glyphSize + 2 * margin);
}

void drawMediumMark(
    QPainter &painter, const QWidget &view, const QRect &row, const QString &glyph, bool isSelected)
{
    if (glyph.isEmpty())
        return;
    QRect place(0, 0, units(glyphSize), units(glyphSize));
    place.moveCenter(row.center());
    if (QGuiApplication::layoutDirection() == Qt::RightToLeft)
        place.moveLeft(row.left() + units(margin));
    else
        place.moveRight(row.right() - units(margin));
    const QPalette &palette = view.palette();
    const QColor quiet = ColorRules::mix(palette.color(QPalette::Active, QPalette::Text),
        palette.color(QPalette::Active, QPalette::Base), 0.66);
    const QColor color = isSelected ? palette.color(QPalette::Active, QPalette::HighlightedText) : quiet;
    const auto drawing = glyphNamed(glyph, color, view.devicePixelRatio());
    if (!drawing)
        return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, *drawing);
    painter.restore();
}
