// SPDX-License-Identifier: MIT
#include "tools/diskutil/Console.h"

#include "platform/ProcessScope.h"
#include "platform/SystemLog.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ArrivedSignal
{
    int number = 0;
    pid_t sender = 0; // none: the kernel
};

// A signal handler may do very little. It writes the signal here, and the event loop reads it.
std::array<int, 2> signalPipe { -1, -1 };

void noteSignal(int number, siginfo_t *info, void *)
{
    const int savedError = errno;
    const ArrivedSignal arrived { number, info->si_code <= 0 ? info->si_pid : 0 };
    // The pipe is full only when it holds plenty of signals already.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &arrived, sizeof arrived);
    errno = savedError;
}

const QString noReader = u"its output is no longer read"_s;

// The same pipe or terminal, to write to without ever blocking. Others who have it, too, must not notice, so
// it is opened once more. Not open for a file, which never blocks, for what cannot be opened, and for what
// the caller could not write to: root might be let.
FileDescriptor openWithoutBlocking(int fd)
{
    struct stat status = {};
    if (fstat(fd, &status) != 0 || !(S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode)))
        return {};
    const int flags = fcntl(fd, F_GETFL);
    if (flags < 0 || (flags & O_ACCMODE) == O_RDONLY)
        return {};
    const int packets = flags & O_DIRECT;
    return FileDescriptor(open(QByteArray("/dev/fd/" + QByteArray::number(fd)).constData(),
        O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | packets));
}

bool isWritable(int fd)
{
    pollfd state { fd, POLLOUT, 0 };
    return poll(&state, 1, 0) > 0;
}

} // namespace

Console::Console(QObject *parent)
    : QObject(parent)
    , m_output(openWithoutBlocking(STDOUT_FILENO))
    , m_errors(openWithoutBlocking(STDERR_FILENO))
{
    std::signal(SIGPIPE, SIG_IGN); // a failed write is noticed where it happens
    if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        m_signalNotifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
        connect(m_signalNotifier, &QSocketNotifier::activated, this, &Console::signalArrived);
        struct sigaction action = {};
        action.sa_flags = SA_SIGINFO;
        action.sa_sigaction = noteSignal; // interrupts a write that blocks
        for (const int number : { SIGINT, SIGTERM, SIGHUP })
            sigaction(number, &action, nullptr);
    }
    // The kernel reports a pipe whose reader has gone as an error. Of all notifiers that hear of it, this is
    // the only one that stays quiet while the pipe can be written to.
    m_outputNotifier = new QSocketNotifier(STDOUT_FILENO, QSocketNotifier::Exception, this);
    connect(m_outputNotifier, &QSocketNotifier::activated, this, &Console::outputClosed);
}

void Console::heedInput()
{
    m_inputNotifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(m_inputNotifier, &QSocketNotifier::activated, this, &Console::inputArrived);
}

// Writes everything, and waits for a reader who is slow. Once the run has been interrupted or the reader
// counts as gone, what is not taken at once is dropped. Returns false when the reader has gone.
bool Console::write(const FileDescriptor &own, int fd, QByteArrayView bytes)
{
    const int target = own.isOpen() ? own.number() : fd;
    while (!bytes.isEmpty()) {
        if (isHurried() && !isWritable(target))
            return true;
        const ssize_t written = ::write(target, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written > 0)
            bytes = bytes.sliced(written);
        else if (errno == EAGAIN || errno == EINTR)
            awaitReader(target);
        else
            return false;
    }
    return true;
}

void Console::awaitReader(int fd)
{
    std::array<pollfd, 3> waiting { { { fd, POLLOUT, 0 }, { signalPipe[0], POLLIN, 0 },
        { m_inputNotifier ? STDIN_FILENO : -1, POLLIN, 0 } } };
    if (poll(waiting.data(), waiting.size(), isHurried() ? 0 : -1) <= 0)
        return;
    if (waiting[1].revents)
        signalArrived();
    if (waiting[2].revents)
        inputArrived();
}

void Console::say(const QString &line)
{
    pass(QByteArray((m_endsWithLine ? "" : "\n") + line.toUtf8() + '\n'));
}

void Console::ask(const QString &question)
{
    write(m_errors, STDERR_FILENO, question.toUtf8());
}

void Console::pass(const QByteArray &bytes)
{
    if (bytes.isEmpty() || m_isOutputClosed)
        return;
    m_endsWithLine = bytes.endsWith('\n');
    if (write(m_output, STDOUT_FILENO, bytes))
        return;
    m_isOutputClosed = true;
    loseReader(noReader);
}

void Console::complain(const QString &line)
{
    const QByteArray start = m_endsWithLine ? QByteArray("diskutil: ") : QByteArray("\ndiskutil: ");
    m_endsWithLine = true;
    // The line may hold names from a disk or an argument, which must not begin another line. A failed write
    // is no reason to stop: the caller still has the exit status.
    write(m_errors, STDERR_FILENO, QByteArray(start + escapedForLog(line).toUtf8() + '\n'));
}

void Console::signalArrived()
{
    ArrivedSignal arrived;
    if (read(signalPipe[0], &arrived, sizeof arrived) != sizeof arrived)
        return;
    const QString name = QString::fromLatin1(strsignal(arrived.number));
    if (arrived.number == SIGHUP)
        loseReader(name);
    else if (arrived.number == SIGTERM && isUsersServiceManager(arrived.sender))
        endWithSession(name);
    else
        interrupt(name);
}

void Console::inputArrived()
{
    char byte = 0;
    const bool isStop = read(STDIN_FILENO, &byte, 1) == 1;
    m_inputNotifier->setEnabled(false);
    std::exchange(m_inputNotifier, nullptr)->deleteLater();
    if (isStop)
        interrupt(u"stopped"_s);
}

void Console::outputClosed()
{
    pollfd state { STDOUT_FILENO, 0, 0 };
    if (poll(&state, 1, 0) > 0 && (state.revents & POLLERR)) {
        m_outputNotifier->setEnabled(false);
        m_isOutputClosed = true;
        loseReader(noReader);
    }
}

// Who writes is not called back from within: they may have to end what they write of.
void Console::emitLater(std::function<void()> signal)
{
    QMetaObject::invokeMethod(this, std::move(signal), Qt::QueuedConnection);
}

void Console::interrupt(const QString &reason)
{
    if (m_isInterrupted)
        return;
    m_isInterrupted = true;
    emitLater([this, reason] { Q_EMIT interrupted(reason); });
}

void Console::loseReader(const QString &reason)
{
    if (!std::exchange(m_hasLostReader, true))
        emitLater([this, reason] { Q_EMIT readerLeft(reason); });
}

void Console::endWithSession(const QString &reason)
{
    loseReader(reason);
    if (!std::exchange(m_hasSessionEnded, true))
        emitLater([this] { Q_EMIT sessionEnded(); });
}
