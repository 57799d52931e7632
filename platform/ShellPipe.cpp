// SPDX-License-Identifier: MIT
#include "platform/ShellPipe.h"

#include "platform/SystemLog.h"

#include <cerrno>
#include <cstring>
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
    if (m_stream)
        pclose(m_stream);
}

bool PosixShellPipe::open(const QByteArray &command)
{
    if (m_stream) {
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
