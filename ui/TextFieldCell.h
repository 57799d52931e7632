// SPDX-License-Identifier: MIT
//
// What a text field cell of the platform does: it draws one line of text in a frame. A cell is no widget; a
// view draws many rows with one cell. Main thread only.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRectF>
#include <QString>
#include <QWidget>

#include <memory>

class QLineEdit;
class QPainter;

class TextFieldCell
{
public:
    // A text with the attributes that it is drawn with.
    struct AttributedString
    {
        QString text;
        QFont font;
        QColor color;
    };

    TextFieldCell() = default;
    TextFieldCell(const TextFieldCell &) = default;
    TextFieldCell &operator=(const TextFieldCell &) = delete;
    virtual ~TextFieldCell() = default;
    virtual std::unique_ptr<TextFieldCell> copyWithZone() const;

    QString stringValue;
    QFont font;
    QPalette palette;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    bool enabled = true;
    bool highlighted = false;
    bool drawsBackground = false;
    QColor backgroundColor;

    virtual bool isEditable() const { return false; }
    virtual QColor textColor() const;

    // The background that a highlighted cell paints; an invalid colour for none.
    virtual QColor highlightColorWithFrame(const QRectF &frame, const QWidget *view) const;

    // The size that shows the whole text.
    virtual QSizeF cellSize() const;

    // The rectangle of the text within the bounds.
    virtual QRectF titleRectForBounds(const QRectF &bounds) const;

    // The text as it is drawn: in a disabled cell the ordinary text colour is dimmed.
    AttributedString attributedStringValue() const;

    virtual void drawWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const;
    virtual void drawInteriorWithFrame(const QRectF &frame, const QWidget *view, QPainter &painter) const;

    // Shows the editor over the frame with the cell's text in it.
    virtual void editWithFrame(const QRectF &frame, QWidget *view, QLineEdit *editor) const;

    // The same, with this range of the text selected.
    virtual void selectWithFrame(
        const QRectF &frame, QWidget *view, QLineEdit *editor, int start, int length) const;

protected:
    static qreal measuredHeight(const AttributedString &string, const QRectF &rect);
    void drawString(const AttributedString &string, const QRectF &rect, QPainter &painter) const;
};
