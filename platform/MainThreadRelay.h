// SPDX-License-Identifier: MIT
//
// From a worker thread to the main thread. The relay outlives both of its sides: once it is closed, a waiting
// worker is released and what it hands over is dropped, so that a worker can neither hang nor reach what is
// gone.
#pragma once

#include <functional>
#include <memory>

class MainThreadRelay
{
public:
    // Main thread.
    static std::shared_ptr<MainThreadRelay> create();
    ~MainThreadRelay();
    MainThreadRelay(const MainThreadRelay &) = delete;
    MainThreadRelay &operator=(const MainThreadRelay &) = delete;

    // Any thread. Runs the task on the main thread, in the order of the calls.
    void perform(std::function<void()> task);

    // Any thread but the main one. The same, and returns when the task has run or the relay is closed.
    void performAndWait(const std::function<void()> &task);

    // Main thread. No task runs from here on.
    void close();

private:
    struct State;

    MainThreadRelay();

    std::shared_ptr<State> m_state;
};
