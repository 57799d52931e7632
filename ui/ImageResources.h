// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <optional>

// The program's own image of this name, such as "drive_icon.png", sharp on a display of this pixel ratio.
// Returns std::nullopt when there is none. Images are read once. Main thread.
std::optional<QPixmap> imageNamed(const QString &name, qreal devicePixelRatio);

// The same of a drawing in one colour, painted in this one instead.
std::optional<QPixmap> glyphNamed(const QString &name, const QColor &color, qreal devicePixelRatio);

// Paints what is drawn in this colour; what is left free stays so.
void paintOver(QPixmap &drawing, const QColor &color);
