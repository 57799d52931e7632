// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Runs the task on a thread of its own, which nobody waits for. Returns 0, or an errno value when there is no
// thread; then the task does not run. Any thread.
[[nodiscard]] int startDetachedThread(std::function<void()> task);
