// SPDX-License-Identifier: MIT
//
// The output of a tool as a terminal would leave it: a line that the tool rewrites with carriage returns
// shows only its last state. One thread at a time.
#pragma once

#include <QByteArray>

// Applies carriage returns to a whole buffer, the plain way: each one erases its line up to itself, unless it
// is the last byte, which waits for what follows. The byte after an erased carriage return is not looked at
// in the same pass.
void applyCarriageReturns(QByteArray &buffer);

class OutputBuffer
{
public:
    OutputBuffer();

    // Appends the bytes and applies carriage returns, with the result of applyCarriageReturns() on all that
    // is held, but at the cost of the line that is being written.
    void append(const char *bytes, qsizetype length);

    // Empties the buffer; its memory is kept.
    void clear();

    const QByteArray &bytes() const { return m_bytes; }

private:
    void applyToTail();

    QByteArray m_bytes;
    // A pass from the start would come to m_examined with nothing erased and its line starting at
    // m_lineStart: there is no carriage return before m_examined.
    qsizetype m_lineStart = 0;
    qsizetype m_examined = 0;
};
