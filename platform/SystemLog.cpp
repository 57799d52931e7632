// SPDX-License-Identifier: MIT
#include "platform/SystemLog.h"

#include "platform/DisturbingCharacters.h"

#include <cstdio>
#include <cstring>
#include <mutex>
#include <syslog.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct LogTarget
{
    std::mutex mutex;
    std::function<void(const QString &)> handler;
};

LogTarget &logTarget()
{
    static LogTarget target;
    return target;
}

} // namespace

QString escapedForLog(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'\n')
            result += "\\n"_L1;
        else if (c == u'\r')
            result += "\\r"_L1;
        else if (c == u'\t')
            result += "\\t"_L1;
        else if (disturbsLine(c))
            result += u"\\u{%1}"_s.arg(uint { c.unicode() }, 0, 16);
        else
            result += c;
    }
    return result;
}

void systemLog(const QString &line)
{
    const QString text = escapedForLog(line);
    {
        // Held while the handler runs, so that the end of a redirection waits for a worker that is in it.
        const std::lock_guard lock(logTarget().mutex);
        if (logTarget().handler) {
            logTarget().handler(text);
            return;
        }
    }
    const QByteArray bytes = text.toUtf8();
    syslog(LOG_USER | LOG_NOTICE, "%s", bytes.constData());
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "%s\n", bytes.constData());
}

SystemLogRedirection::SystemLogRedirection(std::function<void(const QString &)> handler)
{
    const std::lock_guard lock(logTarget().mutex);
    logTarget().handler = std::move(handler);
}

SystemLogRedirection::~SystemLogRedirection()
{
    const std::lock_guard lock(logTarget().mutex);
    logTarget().handler = nullptr;
}

QString errnoText(int error)
{
    // The log is in English, not in the user's language or encoding.
    const char *const text = strerrordesc_np(error);
    return text ? QString::fromLatin1(text) : u"Unknown error %1"_s.arg(error);
}
