// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QRect;
class QWidget;

// A ring with a part of it filled, at the end of a row of the view whose disk is at work.
void drawBusyMark(QPainter &painter, const QWidget &view, const QRect &row, bool isSelected);
