// SPDX-License-Identifier: MIT
#pragma once

#include <QChar>

// Whether the character does something to the line that it stands in instead of being seen there: control
// characters, line and paragraph separators, and what turns the direction of the text around it.
bool disturbsLine(QChar c);
