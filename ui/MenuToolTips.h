// SPDX-License-Identifier: MIT
#pragma once

class QMenu;

// Has the menu show the tool tips of its items, and a screen reader told why an item is disabled, which Qt
// does not do. Main thread only.
void showToolTipsOf(QMenu *menu);
