// SPDX-License-Identifier: MIT
//
// Loads the interface file: makes the window, makes the controller the delegate of the application, sets its
// outlets and connects its actions. Main thread.
#pragma once

#include <memory>

class QMainWindow;
class ZorvexDiskManagerAppDelegate;

// The window of the controller, not yet shown. The controller must outlive it.
std::unique_ptr<QMainWindow> loadMainWindow(ZorvexDiskManagerAppDelegate &controller);
