// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Bytes that the process has allocated and not freed. What an allocator keeps for later is not among them.
std::size_t liveHeap();
