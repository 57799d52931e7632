// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Runs the task on a thread of its own, which nobody waits for. 0, or the errno value of the system when it
// has no thread to give; the task is not run then. Any thread.
[[nodiscard]] int startDetachedThread(std::function<void()> task);
