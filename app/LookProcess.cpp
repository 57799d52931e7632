// SPDX-License-Identifier: MIT
#include "app/LookProcess.h"

#include "app/startup_rules.h"

#include <QFile>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace {

constexpr std::chrono::seconds timeLimit { 1 };

// In a session of its own: it does not end with the terminal that the user has started the program from. What
// a desktop loads may write to the output. Returns 0 when it cannot be run.
pid_t spawn(const QString &program, int socket)
{
    QByteArray path = QFile::encodeName(program);
    QByteArray argument = StartupRules::lookArgument;
    std::array<char *, 3> words { path.data(), argument.data(), nullptr };
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_adddup2(&files, socket, STDIN_FILENO);
    for (const int output : { STDOUT_FILENO, STDERR_FILENO })
        posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = 0;
    const int error = posix_spawn(&process, path.constData(), &files, &attributes, words.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? process : 0;
}

} // namespace

LookProcess::LookProcess(const QString &program)
    : m_program(program)
{
}

LookProcess::~LookProcess()
{
    if (m_process == 0)
        return;
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
}

void LookProcess::start()
{
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return;
    auto [ours, theirs] = MessageSocket::makePair();
    if (ours.isOpen())
        m_process = spawn(m_program, theirs.number());
    if (m_process != 0)
        m_socket = std::move(ours);
}

FileDescriptor LookProcess::takeSocket()
{
    if (!m_socket.isOpen() || !m_socket.waitForMessage(timeLimit))
        return {};
    m_process = 0;
    return m_socket.take();
}
