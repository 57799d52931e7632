// SPDX-License-Identifier: MIT
//
// A process of the user's own that finds out how their desktop looks, while they are asked for the password:
// what a desktop loads into a program may need time, or fail. Main thread only.
#pragma once

#include <QByteArray>
#include <QProcess>

class LookProcess
{
public:
    // The program prints the look when it is started with the argument for it.
    explicit LookProcess(const QString &program);
    ~LookProcess(); // ends the process

    // Does nothing without a display.
    void start();

    // The look as plain data; empty when it has not come within a second, or the process has failed. Nothing
    // is shown that could wait for this.
    QByteArray finish();

private:
    QString m_program;
    QProcess m_process;
};
