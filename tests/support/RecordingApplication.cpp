// SPDX-License-Identifier: MIT
#include "tests/support/RecordingApplication.h"

#include <QEvent>
#include <QMetaEnum>
#include <QScopedValueRollback>
#include <QThread>

#include <cstdio>
#include <ctime>

namespace {

std::chrono::nanoseconds processorTimeOfThread()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

QByteArray nameOf(QEvent::Type type)
{
    const char *const name = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
    return name ? QByteArray(name) : QByteArray::number(type);
}

} // namespace

bool RecordingApplication::notify(QObject *receiver, QEvent *event)
{
    if (m_isHandling || QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const QScopedValueRollback handling(m_isHandling, true);
    // Both may be gone afterwards.
    const QEvent::Type type = event->type();
    const char *const receiverClass = receiver->metaObject()->className();
    const QString receiverName = receiver->objectName();
    const std::chrono::nanoseconds start = processorTimeOfThread();
    const bool isHandled = QApplication::notify(receiver, event);
    const std::chrono::nanoseconds taken = processorTimeOfThread() - start;
    if (taken > m_longest) {
        m_longest = taken;
        m_what = receiverClass + (" \"" + receiverName.toUtf8() + "\", ") + nameOf(type);
    }
    return isHandled;
}

QByteArray RecordingApplication::longestHandler() const
{
    return QByteArray::number(static_cast<double>(m_longest.count()) / 1e6, 'f', 1) + " ms: " + m_what;
}

void RecordingApplication::printLongestHandler() const
{
    std::printf("longest handler on the main thread: %s\n", longestHandler().constData());
    std::fflush(stdout);
}
