// SPDX-License-Identifier: MIT
//
// What a tool prints, without what a terminal or a file would take for more than text: control characters
// other than line feed, tab, carriage return and backspace. e2fsck marks its progress with some. Any thread,
// one at a time.
#pragma once

#include <QByteArray>

class OutputFilter
{
public:
    // The next piece of the output, without them. A character of two bytes may be cut between two pieces: its
    // first byte is kept for the next one.
    QByteArray next(const QByteArray &piece);

private:
    bool m_hasFirstByte = false;
};
