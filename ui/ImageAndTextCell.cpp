// SPDX-License-Identifier: MIT
#include "ui/ImageAndTextCell.h"

#include "platform/SystemLog.h"
#include "platform/SystemRelease.h"
#include "ui/cell_rules.h"

#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

// The first system whose cells keep the text colour of a disabled cell, and whose mirrored views mirror.
constexpr unsigned long currentGeneration = 9;

bool isCurrentSystem()
{
    return systemMajorVersion().value_or(0) >= currentGeneration;
}

} // namespace

std::unique_ptr<TextFieldCell> ImageAndTextCell::copyWithZone() const
{
    return std::make_unique<ImageAndTextCell>(*this);
}

std::unique_ptr<TextFieldCell> ImageAndTextCellFlipped::copyWithZone() const
{
    return std::make_unique<ImageAndTextCellFlipped>(*this);
}

QSizeF ImageAndTextCell::imageSize() const
{
    return m_image ? m_image->deviceIndependentSize() : QSizeF(0, 0);
}

QRectF ImageAndTextCell::imageFrameForCellFrame(const QRectF &frame) const
{
    return CellRules::imageFrame(frame, imageSize());
}

QPixmap ImageAndTextCell::imageResize(QPixmap &image, const QSize &newSize)
{
    if (image.isNull())
        return image;
    const QSize pixels = newSize * image.devicePixelRatio();
    image = image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.copy();
}

void ImageAndTextCell::toOriginalTextViewDrawWithFrame(
    const QRectF &frame, const QWidget *view, QPainter &painter) const
{
    TextFieldCell::drawWithFrame(frame, view, painter);
}

QColor ImageAndTextCell::textColor() const
{
    if (highlighted)
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    if (!isCurrentSystem() && !enabled)
        return Qt::lightGray;
    return palette.color(QPalette::Active, QPalette::Text);
}

// The view paints the selection; the cell adds none of its own.
QColor ImageAndTextCell::highlightColorWithFrame(const QRectF &, const QWidget *) const
{
    return {};
}

QSizeF ImageAndTextCell::cellSize() const
{
    return TextFieldCell::cellSize() + QSizeF(CellRules::imageStripWidth(imageSize().width()), 0);
}

QRectF ImageAndTextCell::titleRectForBounds(const QRectF &bounds) const
{
    const QRectF base = TextFieldCell::titleRectForBounds(bounds);
    return CellRules::titleRect(base, bounds, measuredHeight(attributedStringValue(), base));
}

void ImageAndTextCell::drawImage(const QRectF &imageStrip, const QRectF &imageFrame, QPainter &painter) const
{
    if (drawsBackground)
        painter.fillRect(imageStrip, backgroundColor);
    painter.drawPixmap(imageFrame.topLeft(), *m_image);
}

void ImageAndTextCell::drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const
{
    if (!m_image) {
        TextFieldCell::drawWithFrame(frame, view, painter);
        return;
    }
    const CellRules::Division division = CellRules::divide(frame, imageSize().width());
    drawImage(division.image, CellRules::drawnImageFrame(division, imageSize()), painter);
    TextFieldCell::drawWithFrame(division.text, view, painter);
}

void ImageAndTextCell::drawInteriorWithFrame(const QRectF &frame, const QWidget *, QPainter &painter) const
{
    AttributedString string = attributedStringValue();
    if (highlighted)
        string.color = palette.color(QPalette::Active, QPalette::HighlightedText);
    drawString(string, titleRectForBounds(frame), painter);
}

void ImageAndTextCell::editWithFrame(const QRectF &frame, QWidget *view, QLineEdit *editor) const
{
    systemLog(u"editWithFrame"_s);
    TextFieldCell::editWithFrame(CellRules::divide(frame, imageSize().width()).text, view, editor);
}

void ImageAndTextCell::selectWithFrame(
    const QRectF &frame, QWidget *view, QLineEdit *editor, int start, int length) const
{
    TextFieldCell::selectWithFrame(
        CellRules::divide(frame, imageSize().width()).text, view, editor, start, length);
}

QRectF ImageAndTextCellFlipped::imageFrameForCellFrame(const QRectF &frame) const
{
    return isCurrentSystem() ? CellRules::imageFrameFlipped(frame, imageSize())
                             : ImageAndTextCell::imageFrameForCellFrame(frame);
}

void ImageAndTextCellFlipped::drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const
{
    if (!isCurrentSystem()) {
        ImageAndTextCell::drawWithFrame(frame, view, painter);
        return;
    }
    if (!image()) {
        toOriginalTextViewDrawWithFrame(frame, view, painter);
        return;
    }
    const CellRules::Division division = CellRules::divideFlipped(frame, imageSize().width());
    drawImage(division.image, CellRules::drawnImageFrame(division, imageSize()), painter);
    toOriginalTextViewDrawWithFrame(division.text, view, painter);
}
