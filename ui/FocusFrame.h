// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QPainter;
class QWidget;

// Draws the style's mark of keyboard focus around this part of the widget.
void drawFocusFrame(QPainter &painter, const QWidget &widget, const QRect &rect);
