// SPDX-License-Identifier: MIT
#include "platform/ShellPipe.h"

#include "platform/SystemLog.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray errorsIntoOutput = " 2>&1"_ba;

// Characters that stand for themselves outside of quotes, anywhere in a word.
bool isLiteral(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    const bool isLetterOrDigit = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return isLetterOrDigit || byte >= 0x80 || (c != '\0' && std::strchr(" /_-.,:+@", c) != nullptr);
}

} // namespace

bool isSingleProgram(const QByteArray &command)
{
    QByteArrayView text = command;
    if (text.endsWith(errorsIntoOutput))
        text = text.chopped(errorsIntoOutput.size());
    bool isQuoted = false;
    for (const char c : text) {
        if (c == '\'')
            isQuoted = !isQuoted;
        else if (c == '\0' || (!isQuoted && !isLiteral(c)))
            return false;
    }
    return true; // an open quote is an error to the shell, which then runs no program
}

PosixShellPipe::~PosixShellPipe()
{
    if (m_program != 0)
        static_cast<void>(PosixShellPipe::close());
}

bool PosixShellPipe::open(const QByteArray &command)
{
    if (m_program != 0) {
        errno = EBUSY;
        return false;
    }
    systemLog(u"Running: %1"_s.arg(QString::fromUtf8(command)));
    if (!isSingleProgram(command)) {
        systemLog(u"Not run: the shell would make more than one program of it."_s);
        errno = EINVAL;
        return false;
    }
    // The program replaces the shell, which as its parent would turn a death by signal into an exit code. The
    // shell reads line by line: where the command has its errors in the output, those that the shell finds in
    // it, such as a quote that is left open, stand there as well.
    const QByteArray ownErrors
        = command.endsWith(errorsIntoOutput) ? "exec"_ba + errorsIntoOutput + '\n' : ""_ba;
    const QByteArray line = ownErrors + "exec " + command;
    return start(line);
}

// As popen() does, which does not tell the number of the process.
bool PosixShellPipe::start(const QByteArray &line)
{
    // Close-on-exec: a program that another thread starts meanwhile must not inherit this end of the pipe.
    std::array<int, 2> ends { -1, -1 };
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
    FileDescriptor output(ends[0]);
    const FileDescriptor programOutput(ends[1]);
    std::array<QByteArray, 3> words { "sh"_ba, "-c"_ba, line };
    const std::array<char *, 4> arguments { words[0].data(), words[1].data(), words[2].data(), nullptr };
    posix_spawn_file_actions_t actions;
    int error = posix_spawn_file_actions_init(&actions);
    if (error == 0) {
        error = posix_spawn_file_actions_adddup2(&actions, programOutput.number(), STDOUT_FILENO);
        const std::lock_guard lock(m_mutex);
        if (error == 0)
            error = posix_spawn(&m_program, "/bin/sh", &actions, nullptr, arguments.data(), environ);
        if (error != 0)
            m_program = 0;
        posix_spawn_file_actions_destroy(&actions);
    }
    if (error == 0)
        m_output = std::move(output);
    errno = error;
    return error == 0;
}

ssize_t PosixShellPipe::readByte(char *byte)
{
    if (m_program == 0) {
        errno = EBADF;
        return -1;
    }
    return read(m_output.number(), byte, 1);
}

int PosixShellPipe::close()
{
    if (m_program == 0) {
        errno = EBADF;
        return -1;
    }
    m_output = {};
    siginfo_t end {};
    while (waitid(P_PID, static_cast<id_t>(m_program), &end, WEXITED | WNOWAIT) != 0 && errno == EINTR) { }
    const std::lock_guard lock(m_mutex);
    int status = 0;
    const pid_t ended = waitpid(std::exchange(m_program, 0), &status, 0);
    return ended == -1 ? -1 : status;
}

void PosixShellPipe::stop()
{
    const std::lock_guard lock(m_mutex);
    if (m_program != 0)
        kill(m_program, SIGTERM);
}
