// SPDX-License-Identifier: MIT
//
// Colours that are made of the palette's own, so that they follow every theme. Functions of values, any
// thread.
#pragma once

#include <QPalette>

namespace ColorRules {

// This share of a colour, from 0 to 1, over another.
QColor mix(const QColor &color, const QColor &over, qreal share);

// The contrast of two colours, from 1 for none to 21, as the guidelines for accessible content measure it.
qreal contrast(const QColor &one, const QColor &other);

// Text that stands back behind the rest and can still be read.
QColor quietText(const QPalette &palette, QPalette::ColorGroup group = QPalette::Active);

// The parts of a bar: what is filled, the track below it, and the line around it.
QColor filled(const QPalette &palette);
QColor track(const QPalette &palette);
QColor border(const QPalette &palette);

// The palette for what is drawn on a selection: each text in the colour of a selected one.
QPalette onSelection(QPalette palette);

} // namespace ColorRules
