// SPDX-License-Identifier: MIT
#include "tools/diskutil/OutputFilter.h"

namespace {

// Where the control characters of two bytes in UTF-8 begin (U+0080 to U+009F), and how far they go.
constexpr unsigned char firstByte = 0xC2;
constexpr unsigned char lowestSecondByte = 0x80;
constexpr unsigned char highestSecondByte = 0x9F;

bool isKept(unsigned char byte)
{
    constexpr unsigned char firstPrintable = 0x20;
    constexpr unsigned char erase = 0x7F;
    if (byte == '\n' || byte == '\t' || byte == '\r' || byte == '\b')
        return true;
    return byte >= firstPrintable && byte != erase;
}

} // namespace

QByteArray OutputFilter::next(const QByteArray &piece)
{
    QByteArray result;
    result.reserve(piece.size() + 1);
    for (const char c : piece) {
        const auto byte = static_cast<unsigned char>(c);
        if (m_hasFirstByte) {
            m_hasFirstByte = false;
            if (byte >= lowestSecondByte && byte <= highestSecondByte)
                continue;
            result.append(static_cast<char>(firstByte));
        }
        if (byte == firstByte)
            m_hasFirstByte = true;
        else if (isKept(byte))
            result.append(c);
    }
    return result;
}
