// SPDX-License-Identifier: MIT
//
// Swap space in use, from the kernel's own table. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <sys/types.h>
#include <vector>

struct SwapSpace
{
    dev_t device = 0; // that is swap space, or that the swap file's file system is on
    bool isFile = false;
};

// Empty when there is none, or when the table cannot be read.
std::vector<SwapSpace> readSwapSpaces(const SystemRoot &system);
