// SPDX-License-Identifier: MIT
//
// What is asked before the window closes: a tool that writes is not stopped by accident. A part of the
// controller, which holds it. Main thread only.
#pragma once

#include <QPointer>

#include <functional>

class AlertSheet;
class ZorvexDiskManagerAppDelegate;

// What a desktop that is about to end the session lets its programs do.
struct SessionEnd
{
    std::function<bool()> allowsInteraction; // waits for its turn
    std::function<void()> cancel;
    std::function<void()> release; // gives the turn back
};

class CloseQuestion
{
public:
    explicit CloseQuestion(ZorvexDiskManagerAppDelegate &controller);

    // Whether the window may close now. While a repair or a format runs, asks in a sheet and answers no; what
    // is chosen there closes the window.
    bool windowShouldClose();

    // The desktop is about to end the session.
    void sessionWillEnd(const SessionEnd &end);

    // An operation has ended: ends a question that has become moot.
    void operationDidFinish();

private:
    void stopAndClose();

    ZorvexDiskManagerAppDelegate &m_controller;
    QPointer<AlertSheet> m_sheet;
    bool m_isStopping = false; // the user has chosen to stop what runs and to close
};
