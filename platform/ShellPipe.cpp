// SPDX-License-Identifier: MIT
#include "platform/ShellPipe.h"

#include <cerrno>
#include <unistd.h>
#include <utility>

PosixShellPipe::~PosixShellPipe()
{
    if (m_stream)
        pclose(m_stream);
}

bool PosixShellPipe::open(const QByteArray &command)
{
    if (m_stream) {
        errno = EBUSY;
        return false;
    }
    // The shell gives way to the program. As its parent it would turn a death by signal into an exit code.
    const QByteArray line = QByteArray("exec ").append(command);
    // Close-on-exec: a program that another thread starts meanwhile must not inherit this end of the pipe.
    m_stream = popen(line.constData(), "re");
    return m_stream != nullptr;
}

ssize_t PosixShellPipe::readByte(char *byte)
{
    if (!m_stream) {
        errno = EBADF;
        return -1;
    }
    return read(fileno(m_stream), byte, 1);
}

int PosixShellPipe::close()
{
    if (!m_stream) {
        errno = EBADF;
        return -1;
    }
    return pclose(std::exchange(m_stream, nullptr));
}
