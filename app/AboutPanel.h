// SPDX-License-Identifier: MIT
//
// The About panel: a small window of its own that tells the program's name and version. Main thread only.
#pragma once

class QObject;
class QWidget;

// Shows the panel over the window, or raises the one that is open. It blocks nothing and closes with the
// window. Linux has no use for the sender, the object that asks for it.
void orderFrontStandardAboutPanel(QWidget *window, QObject *sender);
