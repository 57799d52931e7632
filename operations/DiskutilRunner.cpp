// SPDX-License-Identifier: MIT
#include "operations/DiskutilRunner.h"

#include "platform/SystemLog.h"

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype initialOutputCapacity = 512;

// How much of the output, in bytes from its end, stands in the log. The log's socket takes no long lines.
constexpr qsizetype longestLoggedOutput = qsizetype { 16 } * 1024;

QByteArray outputForLog(const QByteArray &output)
{
    if (output.size() <= longestLoggedOutput)
        return output;
    const qsizetype start = output.size() - longestLoggedOutput;
    const qsizetype lineEnd = output.indexOf('\n', start - 1);
    return "[...]\n" + output.mid(lineEnd < 0 || lineEnd + 1 == output.size() ? start : lineEnd + 1);
}

QString systemFailureText(const QString &what, int error)
{
    return what + ": "_L1 + errnoText(error) + " ("_L1 + QString::number(error) + u')';
}

DiskutilFailure systemFailure(const QString &what, int error)
{
    return { error != 0 ? error : EIO, systemFailureText(what, error) };
}

// One run of the tool. The first failure is kept; later ones change nothing.
class DiskutilRun
{
public:
    DiskutilRun(QString verb, DiskutilOutputHandler handler, void *context, ShellPipe &pipe)
        : m_verb(std::move(verb))
        , m_handler(handler)
        , m_context(context)
        , m_pipe(pipe)
    {
        m_output.reserve(initialOutputCapacity);
    }

    std::optional<DiskutilFailure> run(const QString &arguments)
    {
        const QString command = "'/usr/sbin/diskutil' '"_L1 + m_verb + "' "_L1 + arguments + " 2>&1"_L1;
        errno = 0; // popen() does not set it when it is memory that is short
        if (!m_pipe.open(command.toUtf8())) {
            const int error = errno;
            return DiskutilFailure { error != 0 ? error : EIO, diskutilNotInvokedMessage(m_verb, error) };
        }
        readOutput();
        closePipe();
        return std::move(m_failure);
    }

private:
    void readOutput()
    {
        DiskutilOutputChunker chunker([this](std::string_view chunk) { deliver(chunk); });
        char byte = 0;
        ssize_t count = 0;
        while ((count = m_pipe.readByte(&byte)) == 1)
            chunker.add(byte);
        const int error = errno; // the handler may change it
        chunker.finish();
        if (count == -1)
            fail(systemFailure(u"Error while reading data from diskutil process"_s, error));
    }

    void deliver(std::string_view chunk)
    {
        // The output only serves to explain a failure. No file system tool says more than the limit, and one
        // that repeats itself without end must not use up the memory that the end of the operation needs.
        const std::size_t room = diskutilOutputLimit - static_cast<std::size_t>(m_output.size());
        const std::string_view kept = chunk.substr(0, room);
        m_output.append(kept.data(), static_cast<qsizetype>(kept.size()));
        if (m_handler)
            m_handler(m_context, chunk.size(), chunk.data());
    }

    void closePipe()
    {
        errno = 0;
        const int status = m_pipe.close();
        if (status == -1) {
            const int error = errno;
            fail(systemFailure(u"Error while executing diskutil for formatting volume"_s, error));
            return;
        }
        if (std::optional<DiskutilFailure> failure = decodeDiskutilStatus(status, m_verb))
            fail(*std::move(failure));
    }

    void fail(DiskutilFailure failure)
    {
        if (m_failure)
            return;
        if (failure.output == DiskutilFailure::OutputUse::ExplainsFailure) {
            systemLog(failure.message + " Output: "_L1 + QString::fromUtf8(outputForLog(m_output)));
            // A handler has seen the output already.
            if (!m_handler)
                failure.message += "\nOutput:\n"_L1 + QString::fromUtf8(m_output);
        }
        m_failure = std::move(failure);
    }

    QString m_verb;
    DiskutilOutputHandler m_handler;
    void *m_context;
    ShellPipe &m_pipe;
    QByteArray m_output;
    std::optional<DiskutilFailure> m_failure;
};

} // namespace

QString diskutilNotInvokedMessage(const QString &verb, int error)
{
    return systemFailureText(
        "Error while invoking diskutil command to "_L1 + diskutilVerbNoun(verb) + " volume"_L1, error);
}

std::optional<DiskutilFailure> runDiskutil(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, ShellPipe &pipe)
{
    return DiskutilRun(verb, outputHandler, outputHandlerContext, pipe).run(arguments);
}

qint32 invokeDiskutilWithVerb(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, std::optional<QString> &errorMessage,
    ShellPipe &pipe)
{
    errorMessage.reset();
    std::optional<DiskutilFailure> failure
        = runDiskutil(verb, arguments, outputHandler, outputHandlerContext, pipe);
    if (!failure)
        return 0;
    errorMessage = std::move(failure->message);
    return failure->code;
}

qint32 invokeDiskutilWithVerb(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, std::optional<QString> &errorMessage)
{
    PosixShellPipe pipe;
    return invokeDiskutilWithVerb(verb, arguments, outputHandler, outputHandlerContext, errorMessage, pipe);
}
