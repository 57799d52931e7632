// SPDX-License-Identifier: MIT
//
// diskutil as root, for one run and at the wish of a user who is not: the same program with the same
// arguments, started by pkexec.
//
// Nobody but root can send that process a signal. It writes into a pipe that is read here, and stops when the
// reader goes: so it ends with this process however that ends, and when this one is told to stop or is not
// listened to. Main thread only.
#pragma once

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

    // Runs the program with the arguments; finished() tells its end, always later.
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
    int m_output = -1;
    int m_childOutput = -1;
};
