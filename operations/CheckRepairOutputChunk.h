// SPDX-License-Identifier: MIT
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"

#include <cstddef>
#include <memory>

// One chunk of output on its way from a worker to the main thread; valid while the worker waits.
struct CheckRepairOutputChunk
{
    DiskRecord disk;
    const char *bytes = nullptr;
    std::size_t length = 0;
};
