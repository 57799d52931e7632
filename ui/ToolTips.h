// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// A tool tip that shows the text as it is. A tool tip guesses whether it is given markup, and names of disks
// and folders may look like some.
QString plainToolTip(const QString &text);
