// SPDX-License-Identifier: MIT
#include "disks/OutputBuffer.h"

#include <algorithm>

namespace {

constexpr qsizetype initialCapacity = 4096;

// What is kept once there was too much. The rest makes room for a while: to drop means to move what is kept.
constexpr qsizetype keptLength = OutputBuffer::limit / 4 * 3;

// One pass from this place on. Returns where the first erased line started; the buffer's length when there
// was none.
qsizetype pass(QByteArray &buffer, qsizetype lineStart, qsizetype examined)
{
    qsizetype firstErased = buffer.size();
    bool hasErased = false;
    qsizetype i = examined;
    qsizetype s = lineStart;
    while (i < buffer.size()) {
        const char c = buffer.at(i++);
        if (c == '\r' && i < buffer.size()) {
            buffer.remove(s, i - s);
            firstErased = hasErased ? firstErased : s;
            hasErased = true;
            i = s + 1;
        } else if (c == '\n') {
            s = i;
        }
    }
    return std::min(firstErased, buffer.size());
}

} // namespace

OutputBuffer::OutputBuffer()
{
    m_bytes.reserve(initialCapacity);
}

void OutputBuffer::append(const char *bytes, qsizetype length)
{
    m_bytes.append(bytes, length);
    if (!m_bytes.isEmpty())
        applyToTail();
    if (m_bytes.size() > limit)
        dropFront();
}

void OutputBuffer::dropFront()
{
    const qsizetype earliest = m_bytes.size() - keptLength;
    const qsizetype lineEnd = m_bytes.indexOf('\n', earliest - 1);
    const qsizetype dropped = lineEnd < 0 ? earliest : lineEnd + 1; // a line without an end is cut
    m_bytes.remove(0, dropped);
    m_lineStart = std::max(m_lineStart - dropped, qsizetype { 0 });
    m_examined = std::max(m_examined - dropped, qsizetype { 0 });
}

void OutputBuffer::applyToTail()
{
    // A line that is erased may have begun before what is known to be free of carriage returns.
    const qsizetype erasedFrom = pass(m_bytes, m_lineStart, m_examined);
    m_examined = std::min(m_examined, erasedFrom);
    while (m_examined < m_bytes.size() && m_bytes.at(m_examined) != '\r') {
        ++m_examined;
        if (m_bytes.at(m_examined - 1) == '\n')
            m_lineStart = m_examined;
    }
}

void OutputBuffer::clear()
{
    m_bytes.resize(0);
    m_lineStart = 0;
    m_examined = 0;
}
