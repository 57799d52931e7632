// SPDX-License-Identifier: MIT
//
// One run of diskutil as root for a user who is not root: the same program with the same arguments, started
// by pkexec.
//
// Only root can send that process a signal. It writes to a pipe that is read here, and stops when the reader
// goes. So it stops when this process ends, however that ends, when this process is told to stop, and when
// the reader of this one has gone. Main thread only.
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

    // Runs the program with the arguments. finished() always follows later.
    void start(const QString &program, const QStringList &arguments);

Q_SIGNALS:
    // The status to exit with.
    void finished(int status);

private:
    void passOutput();
    void stop();
    void programEnded(int code, QProcess::ExitStatus status);
    void fail(ExitCode code, const QString &message);

    Console &m_console;
    QProcess m_process;
    std::unique_ptr<QSocketNotifier> m_notifier;
    FileDescriptor m_output;
    FileDescriptor m_childOutput;
};
