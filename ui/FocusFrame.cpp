// SPDX-License-Identifier: MIT
#include "ui/FocusFrame.h"

#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QWidget>

void drawFocusFrame(QPainter &painter, const QWidget &widget, const QRect &rect)
{
    QStyleOptionFocusRect focus;
    focus.initFrom(&widget);
    focus.rect = rect;
    widget.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, &widget);
}
