// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QPainter;
class QRect;
class QWidget;

// What stands in the place of rows while there are none.
struct EmptyState
{
    QString glyph; // the name of a drawing
    QString title; // a few words
    QString text; // a sentence

    QString words() const; // all of them; empty for none
};

// Draws them one below the other in the middle of the view. Main thread only.
void drawEmptyState(QPainter &painter, const QWidget &view, const QRect &area, const EmptyState &state);
