// SPDX-License-Identifier: MIT
//
// How long something holds up the window: the time that has passed, without the time in which the main thread
// was ready to go on and the machine gave its processors to others. A test that asks for an answer within a
// time asks the program, not the machine.
#pragma once

#include <QElapsedTimer>

class WindowTime
{
public:
    // On the thread that is measured.
    WindowTime();

    qint64 milliseconds() const;

private:
    QElapsedTimer m_passed;
    qint64 m_waitedBefore;
};
