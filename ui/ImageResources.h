// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QString>

#include <optional>

// The program's own image of this name, such as "drive_icon.png", sharp on a display of this pixel ratio.
// Returns std::nullopt when there is none. Images are read once. Main thread.
std::optional<QPixmap> imageNamed(const QString &name, qreal devicePixelRatio);
