// SPDX-License-Identifier: MIT
//
// The About panel: a small window with the program's name and version. Main thread only.
#pragma once

class QObject;
class QWidget;

// Shows the panel over the window, or raises the one that is open. It blocks nothing and closes with the
// window. The sender, which asked for it, makes no difference on Linux.
void orderFrontStandardAboutPanel(QWidget *window, QObject *sender);
