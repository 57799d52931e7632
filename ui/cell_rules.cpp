// SPDX-License-Identifier: MIT
#include "ui/cell_rules.h"

#include <algorithm>
#include <cmath>

#include "platform/NoWidgets.h"

namespace CellRules {

qreal imageStripWidth(qreal imageWidth)
{
    return imageWidth + imageMargin;
}

Division divide(const QRectF &frame, qreal imageWidth)
{
    const qreal strip = std::clamp(imageStripWidth(imageWidth), 0.0, std::max(0.0, frame.width()));
    return { QRectF(frame.x(), frame.y(), strip, frame.height()),
        QRectF(frame.x() + strip, frame.y(), frame.width() - strip, frame.height()) };
}

Division divideFlipped(const QRectF &frame, qreal imageWidth)
{
    const qreal text
        = std::clamp(frame.width() - imageStripWidth(imageWidth), 0.0, std::max(0.0, frame.width()));
    return { QRectF(frame.x() + text, frame.y(), frame.width() - text, frame.height()),
        QRectF(frame.x(), frame.y(), text, frame.height()) };
}

QRectF imageFrame(const QRectF &frame, const QSizeF &imageSize)
{
    if (imageSize.isEmpty())
        return {};
    return { QPointF(
                 frame.x() + imageMargin, frame.y() + std::ceil((frame.height() - imageSize.height()) / 2)),
        imageSize };
}

QRectF imageFrameFlipped(const QRectF &frame, const QSizeF &imageSize)
{
    if (imageSize.isEmpty())
        return {};
    return { QPointF(frame.width() - imageSize.width() - imageMargin,
                 frame.y() + std::ceil((frame.height() - imageSize.height()) / 2)),
        imageSize };
}

QRectF drawnImageFrame(const Division &division, const QSizeF &imageSize)
{
    // The image stands on the line that this centres it on, its lower edge at the line.
    const qreal lowerEdge = division.image.y() + std::ceil((division.text.height() + imageSize.height()) / 2);
    return { QPointF(division.image.x() + imageMargin, lowerEdge - imageSize.height()), imageSize };
}

QRectF titleRect(const QRectF &base, const QRectF &bounds, qreal textHeight)
{
    QRectF rect = base;
    if (textHeight < rect.height()) {
        rect.setHeight(textHeight);
        rect.moveTop(bounds.y() + (bounds.height() - textHeight) / 2);
    }
    rect.adjust(imageMargin, 0, 0, 0);
    return rect;
}

} // namespace CellRules
