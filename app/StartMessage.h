// SPDX-License-Identifier: MIT
//
// The one message of a start that ends without a window. Main thread; both wait until the user has closed it.
#pragma once

#include "app/startup_rules.h"

// Shows it in a process that has an application.
void showStartProblem(StartProblem problem);

// Makes the application as well, with the program's command line. Shows nothing where there is no display.
void showStartProblem(StartProblem problem, int argc, char **argv);
