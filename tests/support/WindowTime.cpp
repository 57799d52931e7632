// SPDX-License-Identifier: MIT
#include "tests/support/WindowTime.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

// How long the calling thread has waited for a processor so far. A kernel that does not tell says 0.
qint64 waitedNanoseconds()
{
    QFile file(u"/proc/thread-self/schedstat"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
}

} // namespace

WindowTime::WindowTime()
    : m_waitedBefore(waitedNanoseconds())
{
    m_passed.start();
}

qint64 WindowTime::milliseconds() const
{
    return (m_passed.nsecsElapsed() - (waitedNanoseconds() - m_waitedBefore)) / 1'000'000;
}
