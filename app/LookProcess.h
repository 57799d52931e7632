// SPDX-License-Identifier: MIT
//
// A process of the user's own that finds out how their desktop looks, while they are asked for the password:
// what a desktop loads into a program may need time, or fail. It tells the window that runs as root, and goes
// on to tell of changes until that window is closed. Main thread only.
#pragma once

#include "platform/MessageSocket.h"

#include <QString>

#include <sys/types.h>

class LookProcess
{
public:
    // The program tells the look on its standard input, which is a socket, when it is started with the
    // argument for it.
    explicit LookProcess(const QString &program);
    ~LookProcess(); // ends the process, unless its socket was taken

    // Does nothing without a display.
    void start();

    // The socket on which the process tells the look; it has done so for the first time. Not open when it has
    // not within a second, or the process has failed. Nothing is shown that could wait for this.
    FileDescriptor takeSocket();

private:
    QString m_program;
    MessageSocket m_socket;
    pid_t m_process = 0; // while it is to be ended
};
