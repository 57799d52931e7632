// SPDX-License-Identifier: MIT
#include "tests/support/UserProcess.h"

#include <QFile>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void append(const QString &path, const QByteArray &line)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(line + '\n') < 0)
        qFatal("%s cannot be written", qPrintable(path));
}

// Only calls that are safe between fork and exec.
void becomeUser(
    const TestUser &user, const QByteArray &loginUser, const std::vector<gid_t> &groups, int terminal)
{
    setsid();
    ioctl(terminal, TIOCSCTTY, 0);
    for (const int fd : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
        dup2(terminal, fd);
    // The kernel's note of who has logged in; a container may not have it.
    const int login = open("/proc/self/loginuid", O_WRONLY | O_CLOEXEC);
    [[maybe_unused]] const ssize_t written
        = write(login, loginUser.constData(), static_cast<std::size_t>(loginUser.size()));
    close(login);
    if (setgroups(groups.size(), groups.data()) != 0 || setresgid(user.group, user.group, user.group) != 0
        || setresuid(user.user, user.user, user.user) != 0)
        _exit(EXIT_FAILURE);
}

} // namespace

void addUser(const TestUser &user, const std::vector<gid_t> &groups)
{
    append(QStringLiteral("/etc/passwd"),
        user.name + ":x:" + QByteArray::number(user.user) + ':' + QByteArray::number(user.group)
            + "::/nonexistent:/bin/sh");
    for (const gid_t group : groups) {
        const QByteArray number = QByteArray::number(group);
        append(QStringLiteral("/etc/group"), user.name + '-' + number + ":x:" + number + ':' + user.name);
    }
}

UserProcess::UserProcess(const TestUser &user)
{
    if (openpty(&m_terminal, &m_childTerminal, nullptr, nullptr, nullptr) != 0)
        qFatal("no terminal can be made");
    for (const int fd : { m_terminal, m_childTerminal })
        fcntl(fd, F_SETFD, FD_CLOEXEC);
    fcntl(m_terminal, F_SETFL, O_NONBLOCK);
    setChildProcessModifier([user, login = QByteArray::number(user.user), terminal = m_childTerminal] {
        becomeUser(user, login, { user.group }, terminal);
    });
}

UserProcess::~UserProcess()
{
    kill();
    waitForFinished();
    ::close(m_terminal);
    ::close(m_childTerminal);
}

void UserProcess::startHeld(const QString &program, const QStringList &arguments)
{
    // The process stops itself before it becomes the program.
    start(QStringLiteral("/bin/sh"),
        QStringList { QStringLiteral("-c"), QStringLiteral("kill -STOP $$; exec \"$@\""),
            QStringLiteral("sh"), program }
            + arguments);
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
