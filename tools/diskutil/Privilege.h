// SPDX-License-Identifier: MIT
//
// One run of diskutil as root for a user who is not root: the same program with the same arguments, started
// by pkexec.
//
// Only root can send that process a signal. Its standard input is a pipe from here: a byte in it is the
// signal that this process has been sent. Its output is a pipe that is read here: when this process ends,
// however it ends, or its own reader has gone, that process has lost its reader, too. Main thread only.
#pragma once

#include "platform/FileDescriptor.h"
#include "tools/diskutil/Console.h"
#include "tools/diskutil/ExitCode.h"

#include <QProcess>
#include <QStringList>

#include <memory>

class QSocketNotifier;

class PrivilegedRun : public QObject
{
    Q_OBJECT

public:
    explicit PrivilegedRun(Console &console);
    ~PrivilegedRun() override;

    // Takes the mark of a run that was started like this out of the arguments. Returns whether it was there.
    static bool takeMark(QStringList &arguments);

    // Runs the program with the arguments. finished() always follows later.
    void start(const QString &program, const QStringList &arguments);

Q_SIGNALS:
    // The status to exit with.
    void finished(int status);

private:
    void passOutput();
    void stop();
    void loseReader();
    [[noreturn]] static void leave();
    void programEnded(int code, QProcess::ExitStatus status);
    void fail(ExitCode code, const QString &message);

    Console &m_console;
    QProcess m_process;
    std::unique_ptr<QSocketNotifier> m_notifier;
    FileDescriptor m_output;
    FileDescriptor m_childOutput;
    bool m_isStopped = false;
};
