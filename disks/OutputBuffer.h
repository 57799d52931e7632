// SPDX-License-Identifier: MIT
//
// The output of a tool as a terminal would leave it: a line that the tool rewrites with carriage returns
// shows only its last state. One thread at a time.
#pragma once

#include <QByteArray>

class OutputBuffer
{
public:
    // How much is kept, in bytes. What is beyond is dropped in front, up to a line's end.
    static constexpr qsizetype limit = qsizetype { 64 } * 1024 * 1024;

    OutputBuffer();

    // Appends the bytes and applies carriage returns to all that is held: each one erases its line up to
    // itself, unless it is the last byte, which waits for what follows. The byte after an erased carriage
    // return is looked at with the next bytes only. The cost is that of the line that is being written.
    void append(const char *bytes, qsizetype length);

    // Empties the buffer; its memory is kept.
    void clear();

    const QByteArray &bytes() const { return m_bytes; }

private:
    void applyToTail();
    void dropFront();

    QByteArray m_bytes;
    // A pass from the start would come to m_examined with nothing erased and its line starting at
    // m_lineStart: there is no carriage return before m_examined.
    qsizetype m_lineStart = 0;
    qsizetype m_examined = 0;
};
