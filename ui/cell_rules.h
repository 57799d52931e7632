// SPDX-License-Identifier: MIT
//
// The geometry of a row's cell: an icon with a margin, and text. Lengths in device-independent pixels; y
// grows downwards, as in every view here. Functions of values, any thread.
#pragma once

#include <QRectF>

namespace CellRules {

inline constexpr qreal imageMargin = 3;

struct Division
{
    QRectF image; // the strip that holds the image
    QRectF text;
};

// The strip of an image this wide; the margin alone for no image.
qreal imageStripWidth(qreal imageWidth);

// Cuts the image strip off the left of the frame.
Division divide(const QRectF &frame, qreal imageWidth);

// Cuts the text off the left of the frame and leaves the image strip at the right.
Division divideFlipped(const QRectF &frame, qreal imageWidth);

// The frame that the cell reports for its image.
QRectF imageFrame(const QRectF &frame, const QSizeF &imageSize);

// The same of the mirrored cell: x is measured from 0, not from the frame's own x.
QRectF imageFrameFlipped(const QRectF &frame, const QSizeF &imageSize);

// Where the image of a divided frame is drawn.
QRectF drawnImageFrame(const Division &division, const QSizeF &imageSize);

// The text's rectangle: the base rectangle, no higher than the text and then centred in the bounds, its
// leading side 3 further in.
QRectF titleRect(const QRectF &base, const QRectF &bounds, qreal textHeight);

} // namespace CellRules
