// SPDX-License-Identifier: MIT
//
// What can happen in a soak run. A step returns false, having done nothing, when it is impossible as things
// stand; it throws SoakFailure when something is not as it must be.
#pragma once

#include "tests/soak/SoakWorld.h"

struct StepKind
{
    const char *name;
    int weight; // how often, compared with the others
    bool (*run)(SoakWorld &world);
};

// All kinds, in the order in which they are reported.
const std::vector<StepKind> &stepKinds();

// tests/soak/DiskSteps.cpp
bool attachDisk(SoakWorld &world);
bool detachDisk(SoakWorld &world);
bool ejectDisk(SoakWorld &world);
bool changeFromOutside(SoakWorld &world);
void detachAllDisks(SoakWorld &world);

// tests/soak/OperationSteps.cpp
bool mountVolume(SoakWorld &world);
bool unmountVolume(SoakWorld &world);
bool unmountBusyVolume(SoakWorld &world);
bool checkVolume(SoakWorld &world);
bool repairDamagedVolume(SoakWorld &world);
bool formatVolume(SoakWorld &world);

// tests/soak/ConcurrentSteps.cpp
bool twoOperations(SoakWorld &world);
bool restartService(SoakWorld &world);
bool restartServiceDuringOperation(SoakWorld &world);
bool closeWindowDuringCheck(SoakWorld &world);

// tests/soak/CommandLineSteps.cpp
bool commandLine(SoakWorld &world);
bool commandLineBesideOperation(SoakWorld &world);
bool commandLineDuringOperation(SoakWorld &world);
bool commandLineInARace(SoakWorld &world);

// tests/soak/WindowSteps.cpp
bool selectRow(SoakWorld &world);
bool resizeWindow(SoakWorld &world);
bool switchPage(SoakWorld &world);
bool activateWindow(SoakWorld &world);
bool changeLanguage(SoakWorld &world);
