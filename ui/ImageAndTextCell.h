// SPDX-License-Identifier: MIT
//
// The cell of a row of the disk outline: an icon, then the name. Main thread only.
#pragma once

#include "ui/TextFieldCell.h"

#include <QPixmap>

#include <optional>

class ImageAndTextCell : public TextFieldCell
{
public:
    std::unique_ptr<TextFieldCell> copyWithZone() const override; // shares the image

    void setImage(const std::optional<QPixmap> &image) { m_image = image; }
    const std::optional<QPixmap> &image() const { return m_image; }

    // Where the image is reported to stand; the zero rectangle without one.
    virtual QRectF imageFrameForCellFrame(const QRectF &frame) const;

    // Scales the image itself to the requested size, smoothly and in device-independent pixels, and returns a
    // new picture of it. Returns a null image as it is.
    static QPixmap imageResize(QPixmap &image, const QSize &newSize);

    // Draws the frame as a text field cell would, without this class's image.
    void toOriginalTextViewDrawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const;

    bool isEditable() const override { return true; }
    QColor textColor() const override;
    QColor highlightColorWithFrame(const QRectF &frame, const QWidget *view) const override;
    QSizeF cellSize() const override;
    QRectF titleRectForBounds(const QRectF &bounds) const override;
    void drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const override;
    void drawInteriorWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const override;
    void editWithFrame(const QRectF &frame, QWidget *view, QLineEdit *editor) const override;
    void selectWithFrame(
        const QRectF &frame, QWidget *view, QLineEdit *editor, int start, int length) const override;

protected:
    // Device-independent; empty without an image.
    QSizeF imageSize() const;
    void drawImage(const QRectF &imageStrip, const QRectF &imageFrame, QPainter &painter) const;

private:
    std::optional<QPixmap> m_image;
};

// The same mirrored: the image at the right end, the text to its left. On systems before generation 9 it is
// drawn as the plain cell is.
class ImageAndTextCellFlipped : public ImageAndTextCell
{
public:
    std::unique_ptr<TextFieldCell> copyWithZone() const override;
    QRectF imageFrameForCellFrame(const QRectF &frame) const override;
    void drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const override;
};
