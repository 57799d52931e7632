// SPDX-License-Identifier: MIT
//
// What an X display shows and when it changed, seen from outside of the program that draws: the same ruler
// for every program. What fails ends the benchmark with a message.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

// Time in nanoseconds of the clock that all figures share.
std::int64_t monotonicTime();

class DisplayWatcher
{
public:
    DisplayWatcher(); // of $DISPLAY
    ~DisplayWatcher();
    DisplayWatcher(const DisplayWatcher &) = delete;
    DisplayWatcher &operator=(const DisplayWatcher &) = delete;

    // A descriptor that is readable when something may have been drawn.
    int descriptor() const;

    // Whether anything was drawn since the last question.
    bool takeChanges();

    // The pixels of the whole display, row by row.
    std::vector<std::uint32_t> pixels() const;

    // Whether two pictures show something else, beyond a blinking cursor.
    static bool differ(const std::vector<std::uint32_t> &a, const std::vector<std::uint32_t> &b);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
