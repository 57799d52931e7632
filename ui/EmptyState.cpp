// SPDX-License-Identifier: MIT
#include "ui/EmptyState.h"

#include "ui/color_rules.h"
#include "ui/ImageResources.h"
#include "ui/Units.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

namespace {

constexpr int glyphSize = 28; // units
constexpr int gap = 6; // units
constexpr int margin = 16; // units
constexpr int textFlags = Qt::AlignHCenter | Qt::TextWordWrap;

int heightOf(const QFont &font, const QRect &room, const QString &text)
{
    return QFontMetrics(font).boundingRect(room, textFlags, text).height();
}

} // namespace

QString EmptyState::words() const
{
    return title.isEmpty() ? QString() : QString(title + u'\n' + text);
}

void drawEmptyState(QPainter &painter, const QWidget &view, const QRect &area, const EmptyState &state)
{
    if (state.title.isEmpty())
        return;
    const int side = units(margin);
    const QRect room = area.adjusted(side, side, -side, -side);
    const QPalette &palette = view.palette();
    const QColor color = ColorRules::mix(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.75);
    QFont bold = view.font();
    bold.setBold(true);
    const int titleHeight = heightOf(bold, room, state.title);
    const int textHeight = heightOf(view.font(), room, state.text);
    const int height = units(glyphSize) + titleHeight + textHeight + 2 * units(gap);
    QRect line(room.left(), room.center().y() - height / 2, room.width(), units(glyphSize));
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (const auto glyph = glyphNamed(state.glyph, color, 2 * view.devicePixelRatio()))
        painter.drawPixmap(
            QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, { line.height(), line.height() }, line),
            *glyph);
    painter.setPen(color);
    line = QRect(room.left(), line.bottom() + 1 + units(gap), room.width(), titleHeight);
    painter.setFont(bold);
    painter.drawText(line, textFlags, state.title);
    line = QRect(room.left(), line.bottom() + 1 + units(gap), room.width(), textHeight);
    painter.setFont(view.font());
    painter.drawText(line, textFlags, state.text);
    painter.restore();
}
