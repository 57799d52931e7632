// SPDX-License-Identifier: MIT
#include "tests/support/UserProcess.h"

#include <QFile>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

void append(const QString &path, const QByteArray &line)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(line + '\n') < 0)
        qFatal("%s cannot be written", qPrintable(path));
}

// Takes the user's and the group's number and a command. The kernel's note of who has logged in is root's to
// write, and a container may not have it.
const QString becomeUser = uR"(
user=$1 group=$2
shift 2
{ echo "$user" >/proc/self/loginuid; } 2>/dev/null
exec setpriv --reuid="$user" --regid="$group" --groups="$group" sh -c 'kill -STOP $$; exec "$@"' sh "$@"
)"_s;

} // namespace

void addUser(const TestUser &user, const std::vector<gid_t> &groups)
{
    append(u"/etc/passwd"_s,
        user.name + ":x:" + QByteArray::number(user.user) + ':' + QByteArray::number(user.group)
            + "::/nonexistent:/bin/sh");
    for (const gid_t group : groups) {
        const QByteArray number = QByteArray::number(group);
        append(u"/etc/group"_s, user.name + '-' + number + ":x:" + number + ':' + user.name);
    }
}

UserProcess::UserProcess(const TestUser &user)
    : m_user(user)
{
    std::array<char, 64> name {};
    if (openpty(&m_terminal, &m_childTerminal, name.data(), nullptr, nullptr) != 0)
        qFatal("no terminal can be made");
    for (const int fd : { m_terminal, m_childTerminal })
        fcntl(fd, F_SETFD, FD_CLOEXEC);
    fcntl(m_terminal, F_SETFL, O_NONBLOCK);
    setStandardInputFile(QString::fromLatin1(name.data()));
    setStandardOutputFile(QString::fromLatin1(name.data()));
    setProcessChannelMode(MergedChannels);
}

UserProcess::~UserProcess()
{
    kill();
    waitForFinished();
    ::close(m_terminal);
    ::close(m_childTerminal);
}

// By programs and not between fork and exec: there the child has a few kilobytes of its parent's stack, which
// a sanitizer's versions of the calls would overrun.
void UserProcess::startHeld(const QString &program, const QStringList &arguments)
{
    start(u"setsid"_s,
        QStringList { u"--ctty"_s, u"sh"_s, u"-c"_s, becomeUser, u"sh"_s, QString::number(m_user.user),
            QString::number(m_user.group), program }
            + arguments);
    // It stops itself before it becomes the program.
    siginfo_t info = {};
    waitid(P_PID, static_cast<id_t>(processId()), &info, WSTOPPED | WEXITED | WNOWAIT);
}

void UserProcess::release()
{
    ::kill(static_cast<pid_t>(processId()), SIGCONT);
}

QByteArray UserProcess::terminalOutput()
{
    std::array<char, 4096> buffer {};
    for (;;) {
        const ssize_t length = ::read(m_terminal, buffer.data(), buffer.size());
        if (length <= 0)
            return m_output;
        m_output.append(buffer.data(), length);
    }
}
