// SPDX-License-Identifier: MIT
//
// What holds after every fault, whatever it was: the window answers, nothing that is shown is still marked as
// busy, no process is left, no other disk has changed, and the user was told what is true, once. For tests on
// the real window.
#pragma once

#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

class FaultCheck
{
public:
    // Makes a disk that stands by.
    explicit FaultCheck(RealWindow &window);

    // Waits for the quiet after the fault. Empty when all holds, else what does not. The alerts are those
    // that are expected to be open; they are closed.
    QString problem(const QStringList &alerts);

    // Whether the window takes an event and paints itself within a second.
    bool windowAnswers() const;

private:
    QStringList busyRows() const;

    RealWindow &m_window;
    LoopDisk m_bystander;
    QByteArray m_hash;
    QList<qint64> m_children; // of this process, from before
};
