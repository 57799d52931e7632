// SPDX-License-Identifier: MIT
//
// A program started by the shell, its standard output read through a pipe. One object belongs to one thread;
// only stop() can be called from any.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>

#include <mutex>
#include <sys/types.h>

// The calls report a failure as the system's own calls do, through errno.
class ShellPipe
{
public:
    ShellPipe() = default;
    ShellPipe(const ShellPipe &) = delete;
    ShellPipe &operator=(const ShellPipe &) = delete;
    virtual ~ShellPipe() = default;

    // popen(command, "r"): starts the command, a single program with its arguments and redirections. Returns
    // false with errno when that fails; EINVAL when the shell would do more than that. Only once for each
    // object.
    [[nodiscard]] virtual bool open(const QByteArray &command) = 0;

    // read() of one byte of the output: 1, 0 at the end, or -1 with errno.
    [[nodiscard]] virtual ssize_t readByte(char *byte) = 0;

    // pclose(): waits for the end of the program. Returns its wait status, or -1 with errno.
    [[nodiscard]] virtual int close() = 0;

    // Asks the program to end, with SIGTERM. Does nothing while none runs. Any thread.
    virtual void stop() { }
};

// Whether the shell would run the command as one program with literal arguments, and redirect at most its
// standard error to its standard output. Arguments come from media and bundles: a quote in a volume's name
// ends the quotes that it stands in, and what follows must not become another command, comment or
// redirection.
bool isSingleProgram(const QByteArray &command);

// Logs every command before it is run.
class PosixShellPipe : public ShellPipe
{
public:
    ~PosixShellPipe() override;

    [[nodiscard]] bool open(const QByteArray &command) override;
    [[nodiscard]] ssize_t readByte(char *byte) override;
    [[nodiscard]] int close() override;
    void stop() override;

private:
    bool start(const QByteArray &line); // the shell's

    FileDescriptor m_output;
    std::mutex m_mutex; // while the number is used, it is not given to another process
    pid_t m_program = 0; // 0 when there is none
};
