// SPDX-License-Identifier: MIT
#include "ui/TextFieldCell.h"

#include <QFontMetricsF>
#include <QLineEdit>
#include <QPainter>

namespace {

// How much of a disabled text's own colour is left; the rest is the background's.
constexpr qreal dimmedShare = 0.55;

QColor blended(const QColor &color, const QColor &background, qreal share)
{
    const auto mix = [share](int a, int b) { return qRound(a * share + b * (1 - share)); };
    return QColor(mix(color.red(), background.red()), mix(color.green(), background.green()),
        mix(color.blue(), background.blue()));
}

} // namespace

std::unique_ptr<TextFieldCell> TextFieldCell::copyWithZone() const
{
    return std::make_unique<TextFieldCell>(*this);
}

QColor TextFieldCell::textColor() const
{
    return palette.color(QPalette::Active, QPalette::Text);
}

QColor TextFieldCell::highlightColorWithFrame(const QRectF &, const QWidget *) const
{
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QSizeF TextFieldCell::cellSize() const
{
    const QFontMetricsF metrics(font);
    return { metrics.horizontalAdvance(stringValue), metrics.height() };
}

QRectF TextFieldCell::titleRectForBounds(const QRectF &bounds) const
{
    return bounds;
}

TextFieldCell::AttributedString TextFieldCell::attributedStringValue() const
{
    QColor color = textColor();
    // A colour of the cell's own for this state is not dimmed again.
    if (!enabled && color == TextFieldCell::textColor())
        color = blended(color, palette.color(QPalette::Active, QPalette::Base), dimmedShare);
    return { stringValue, font, color };
}

void TextFieldCell::drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const
{
    if (drawsBackground)
        painter.fillRect(frame, backgroundColor);
    if (highlighted) {
        const QColor highlight = highlightColorWithFrame(frame, view);
        if (highlight.isValid())
            painter.fillRect(frame, highlight);
    }
    drawInteriorWithFrame(frame, view, painter);
}

void TextFieldCell::drawInteriorWithFrame(const QRectF &frame, const QWidget *, QPainter &painter) const
{
    drawString(attributedStringValue(), titleRectForBounds(frame), painter);
}

void TextFieldCell::editWithFrame(const QRectF &frame, QWidget *view, QLineEdit *editor) const
{
    editor->setParent(view);
    editor->setGeometry(frame.toAlignedRect());
    editor->setText(stringValue);
    editor->show();
}

void TextFieldCell::selectWithFrame(
    const QRectF &frame, QWidget *view, QLineEdit *editor, int start, int length) const
{
    TextFieldCell::editWithFrame(frame, view, editor);
    editor->setSelection(start, length);
}

qreal TextFieldCell::measuredHeight(const AttributedString &string, const QRectF &rect)
{
    const QFontMetricsF metrics(string.font);
    return metrics.boundingRect(QRectF(0, 0, rect.width(), rect.height()), Qt::TextSingleLine, string.text)
        .height();
}

void TextFieldCell::drawString(const AttributedString &string, const QRectF &rect, QPainter &painter) const
{
    const QFontMetricsF metrics(string.font);
    const QString text = metrics.elidedText(string.text, Qt::ElideRight, rect.width());
    painter.save();
    painter.setFont(string.font);
    painter.setPen(string.color);
    // The window's direction decides at which end a name stands. The name itself decides how it reads.
    painter.setLayoutDirection(string.text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const Qt::Alignment end = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(
        rect, static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | end) | Qt::TextSingleLine, text);
    painter.restore();
}
