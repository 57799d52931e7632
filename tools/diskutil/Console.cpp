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

// A signal handler may do next to nothing: it writes the signal's number here, and the event loop reads it.
std::array<int, 2> signalPipe { -1, -1 };

void noteSignal(int number)
{
    const int savedError = errno;
    const auto byte = static_cast<unsigned char>(number);
    // The pipe is full only when enough signals are waiting in it already.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = savedError;
}

// Writes everything; false when nobody can take it.
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
    std::signal(SIGPIPE, SIG_IGN); // a write says so itself
    if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        m_signalNotifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
        connect(m_signalNotifier, &QSocketNotifier::activated, this, &Console::signalArrived);
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        for (const int number : { SIGINT, SIGTERM, SIGHUP })
            sigaction(number, &action, nullptr);
    }
    // A pipe whose reader has gone is told as an error, for which this is the only notifier that does not
    // fire all the time on a pipe with room in it.
    m_outputNotifier = new QSocketNotifier(STDOUT_FILENO, QSocketNotifier::Exception, this);
    connect(m_outputNotifier, &QSocketNotifier::activated, this, &Console::outputClosed);
}

void Console::say(const QString &line)
{
    pass(QByteArray((m_endsWithLine ? "" : "\n") + line.toUtf8() + '\n'));
}

void Console::pass(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    m_endsWithLine = bytes.endsWith('\n');
    if (!writeAll(STDOUT_FILENO, bytes))
        interrupt(u"nobody reads its output"_s);
}

void Console::complain(const QString &line)
{
    const QByteArray start = m_endsWithLine ? QByteArray("diskutil: ") : QByteArray("\ndiskutil: ");
    m_endsWithLine = true;
    // What a disk or an argument says is part of the line, and cannot begin another.
    // Whoever does not read the standard error still has the exit status.
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
        interrupt(u"nobody reads its output"_s);
    }
}

void Console::interrupt(const QString &reason)
{
    if (m_isInterrupted)
        return;
    m_isInterrupted = true;
    Q_EMIT interrupted(reason);
}
