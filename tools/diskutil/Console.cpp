// SPDX-License-Identifier: MIT
#include "tools/diskutil/Console.h"

#include "platform/SystemLog.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// A signal handler may do very little. It writes the number of the signal here, and the event loop reads it.
std::array<int, 2> signalPipe { -1, -1 };

void noteSignal(int number)
{
    const int savedError = errno;
    const auto byte = static_cast<unsigned char>(number);
    // The pipe is full only when it holds plenty of signals already.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = savedError;
}

// Writes everything. Returns false when the reader has gone.
bool writeAll(int fd, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = write(fd, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written > 0) {
            bytes = bytes.sliced(written);
        } else if (errno == EAGAIN) {
            pollfd waiting { fd, POLLOUT, 0 };
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

} // namespace

Console::Console(QObject *parent)
    : QObject(parent)
{
    std::signal(SIGPIPE, SIG_IGN); // a failed write is noticed where it happens
    if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        m_signalNotifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
        connect(m_signalNotifier, &QSocketNotifier::activated, this, &Console::signalArrived);
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        for (const int number : { SIGINT, SIGTERM, SIGHUP })
            sigaction(number, &action, nullptr);
    }
    // The kernel reports a pipe whose reader has gone as an error. Of all notifiers that hear of it, this is
    // the only one that stays quiet while the pipe can be written to.
    m_outputNotifier = new QSocketNotifier(STDOUT_FILENO, QSocketNotifier::Exception, this);
    connect(m_outputNotifier, &QSocketNotifier::activated, this, &Console::outputClosed);
}

void Console::say(const QString &line)
{
    pass(QByteArray((m_endsWithLine ? "" : "\n") + line.toUtf8() + '\n'));
}

void Console::ask(const QString &question)
{
    writeAll(STDERR_FILENO, question.toUtf8());
}

void Console::pass(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    m_endsWithLine = bytes.endsWith('\n');
    if (!writeAll(STDOUT_FILENO, bytes))
        interrupt(u"its output is no longer read"_s);
}

void Console::complain(const QString &line)
{
    const QByteArray start = m_endsWithLine ? QByteArray("diskutil: ") : QByteArray("\ndiskutil: ");
    m_endsWithLine = true;
    // The line may hold names from a disk or an argument, which must not begin another line. A failed write
    // is no reason to stop: the caller still has the exit status.
    writeAll(STDERR_FILENO, QByteArray(start + escapedForLog(line).toUtf8() + '\n'));
}

void Console::signalArrived()
{
    unsigned char number = 0;
    if (read(signalPipe[0], &number, 1) == 1)
        interrupt(QString::fromLatin1(strsignal(number)));
}

void Console::outputClosed()
{
    pollfd state { STDOUT_FILENO, 0, 0 };
    if (poll(&state, 1, 0) > 0 && (state.revents & POLLERR)) {
        m_outputNotifier->setEnabled(false);
        interrupt(u"its output is no longer read"_s);
    }
}

void Console::interrupt(const QString &reason)
{
    if (m_isInterrupted)
        return;
    m_isInterrupted = true;
    Q_EMIT interrupted(reason);
}
