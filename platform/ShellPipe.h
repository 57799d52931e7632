// SPDX-License-Identifier: MIT
//
// A program started by the shell, its standard output read through a pipe. Belongs to the thread that runs
// it; several threads may each have one.
#pragma once

#include <QByteArray>

#include <cstdio>
#include <sys/types.h>

// The calls report a failure as the system's own calls do, through errno.
class ShellPipe
{
public:
    ShellPipe() = default;
    ShellPipe(const ShellPipe &) = delete;
    ShellPipe &operator=(const ShellPipe &) = delete;
    virtual ~ShellPipe() = default;

    // popen(command, "r"): starts the command, a single program with its arguments and redirections; false
    // with errno when that fails, EINVAL when the shell would do more than that. Once for an object.
    [[nodiscard]] virtual bool open(const QByteArray &command) = 0;

    // read() of one byte of the output: 1, 0 at the end, or -1 with errno.
    [[nodiscard]] virtual ssize_t readByte(char *byte) = 0;

    // pclose(): waits for the end of the program; its wait status, or -1 with errno.
    [[nodiscard]] virtual int close() = 0;
};

// Whether the shell would make nothing of the command but one program with literal arguments, its standard
// error in its standard output at most. Arguments come from media and bundles: a quote in a volume's name
// ends the quotes that it stands in, and what follows must not become another command, comment or
// redirection.
bool isSingleProgram(const QByteArray &command);

// Logs every command that it is given, before it is run.
class PosixShellPipe : public ShellPipe
{
public:
    ~PosixShellPipe() override;

    [[nodiscard]] bool open(const QByteArray &command) override;
    [[nodiscard]] ssize_t readByte(char *byte) override;
    [[nodiscard]] int close() override;

private:
    std::FILE *m_stream = nullptr;
};
