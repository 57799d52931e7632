// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QPainter;
class QRect;
class QString;
class QWidget;

// The drawing that tells what kind of disk the row is of: at the end of the row, in the text's colour,
// standing back. Main thread only.
void drawMediumMark(
    QPainter &painter, const QWidget &view, const QRect &row, const QString &glyph, bool isSelected);

// How much of the row it takes.
int mediumMarkWidth();
