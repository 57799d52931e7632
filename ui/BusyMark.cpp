// SPDX-License-Identifier: MIT
#include "ui/BusyMark.h"

#include "ui/color_rules.h"
#include "ui/Units.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

void drawBusyMark(QPainter &painter, const QWidget &view, const QRect &row, bool isSelected)
{
    constexpr int degree = 16; // of QPainter
    const int size = units(10);
    QRect ring(0, 0, size, size);
    ring.moveCenter(row.center());
    if (QGuiApplication::layoutDirection() == Qt::RightToLeft)
        ring.moveLeft(row.left() + size / 2);
    else
        ring.moveRight(row.right() - size / 2);
    const QPalette &palette = view.palette();
    const QColor color
        = palette.color(QPalette::Active, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QColor behind = palette.color(QPalette::Active, isSelected ? QPalette::Highlight : QPalette::Base);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ColorRules::mix(color, behind, 0.35), units(2)));
    painter.drawEllipse(ring);
    painter.setPen(QPen(color, units(2)));
    painter.drawArc(ring, 90 * degree, -120 * degree);
    painter.restore();
}
