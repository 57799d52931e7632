// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// So many units of the window's grid in pixels: a unit is one pixel at the usual text size and grows with the
// text. Main thread.
int units(qreal count);

// The size of the application's text as a multiple of the usual one. Main thread.
qreal textScale();
