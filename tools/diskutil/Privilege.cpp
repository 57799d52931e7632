// SPDX-License-Identifier: MIT
#include "tools/diskutil/Privilege.h"

#include "platform/SystemLog.h"

#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// The exit statuses of pkexec itself. Those of diskutil are lower.
constexpr int dismissedStatus = 126;
constexpr int refusedStatus = 127;

// Stands before the verb.
const QString mark = u"--stopped-by-input"_s;

} // namespace

PrivilegedRun::PrivilegedRun(Console &console)
    : m_console(console)
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setChildProcessModifier([this] { dup2(m_childOutput.number(), STDOUT_FILENO); });
    connect(&m_process, &QProcess::finished, this, &PrivilegedRun::programEnded);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail(ExitCode::ToolMissing,
                u"administrator rights are needed, and pkexec could not be started: %1 (package pkexec)"_s
                    .arg(m_process.errorString()));
    });
    connect(&m_console, &Console::interrupted, this, &PrivilegedRun::stop);
    connect(&m_console, &Console::readerLeft, this, &PrivilegedRun::loseReader);
    connect(&m_console, &Console::sessionEnded, this, &PrivilegedRun::leave);
}

PrivilegedRun::~PrivilegedRun()
{
    m_process.disconnect(this);
}

bool PrivilegedRun::takeMark(QStringList &arguments)
{
    if (arguments.value(0) != mark)
        return false;
    arguments.removeFirst();
    return true;
}

void PrivilegedRun::start(const QString &program, const QStringList &arguments)
{
    std::array<int, 2> ends { -1, -1 };
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        const QString reason = errnoText(errno);
        QTimer::singleShot(0, this, [this, reason] { fail(ExitCode::ToolFailed, reason); });
        return;
    }
    m_output = FileDescriptor(ends[0]);
    m_childOutput = FileDescriptor(ends[1]);
    fcntl(m_output.number(), F_SETFL, O_NONBLOCK);
    m_notifier = std::make_unique<QSocketNotifier>(m_output.number(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PrivilegedRun::passOutput);
    m_process.start(u"pkexec"_s, QStringList { program, mark } + arguments);
    m_childOutput = {};
}

void PrivilegedRun::passOutput()
{
    std::array<char, 4096> buffer {};
    while (m_output.isOpen()) {
        const ssize_t length = read(m_output.number(), buffer.data(), buffer.size());
        if (length > 0) {
            m_console.pass(QByteArray(buffer.data(), length)); // may emit any signal
        } else if (length == 0 || (errno != EINTR && errno != EAGAIN)) {
            m_notifier->setEnabled(false);
            return;
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

// Until the user has answered, pkexec still runs as that user and receives the signal. After that, only the
// byte arrives.
void PrivilegedRun::stop()
{
    m_isStopped = true;
    m_process.write("\n");
    m_process.terminate();
}

// As root, diskutil knows whether it has begun to write. Nobody can answer the question for the password any
// more.
void PrivilegedRun::loseReader()
{
    m_isStopped = true;
    if (m_notifier)
        m_notifier->setEnabled(false);
    m_output = {};
    m_process.terminate();
}

// The service manager waits for this process, and what runs as root may need long to write what it has begun.
// The process object would wait for that, too.
void PrivilegedRun::leave()
{
    std::_Exit(static_cast<int>(ExitCode::Interrupted));
}

void PrivilegedRun::programEnded(int code, QProcess::ExitStatus status)
{
    passOutput();
    if (m_isStopped && status == QProcess::CrashExit && code == SIGTERM)
        Q_EMIT finished(static_cast<int>(ExitCode::Interrupted));
    else if (status == QProcess::CrashExit)
        fail(ExitCode::ToolFailed, u"the run with administrator rights was killed by signal %1"_s.arg(code));
    else if (code == dismissedStatus)
        fail(ExitCode::NotPermitted, u"the request for administrator rights was dismissed"_s);
    else if (code == refusedStatus)
        fail(ExitCode::NotPermitted, u"administrator rights were not granted"_s);
    else
        Q_EMIT finished(code);
}

void PrivilegedRun::fail(ExitCode code, const QString &message)
{
    m_console.complain(message);
    Q_EMIT finished(static_cast<int>(code));
}
