// SPDX-License-Identifier: MIT
//
// Runs the tools of file systems, one at a time. Main thread only.
#pragma once

#include "platform/DeviceUse.h"

#include <QObject>
#include <QStringList>

#include <vector>

struct ToolCommand
{
    // A checker that writes to a pipe holds its output back until it ends. A formatter that has a terminal
    // may ask questions.
    enum class Output { Pipe, Terminal };

    QString program;
    QStringList arguments;
    Output output = Output::Pipe;
    QByteArray input = {}; // what it reads from its standard input
    Claimant claimant = Claimant::Program; // of the device that it works on
    std::vector<int> descriptors = {}; // that it inherits, and does not use
};

// How a program ended.
struct ToolEnd
{
    enum class Kind { NotStarted, Exited, Killed };
    Kind kind = Kind::NotStarted;
    int code = 0; // exit status, or the signal that killed it
    QString message; // why it could not be started
};

class ToolRunner : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Starts the program. ended() follows later, whatever happens. Nothing else may be running.
    virtual void start(const ToolCommand &command) = 0;

    // Ends the program and everything that it has started: politely first, then by force. ended() follows
    // when all of it has gone. Does nothing when no program is running.
    virtual void stop() = 0;

Q_SIGNALS:
    // The program is running. Not emitted when it could not be started.
    void started();
    void ended(const ToolEnd &end);
};
