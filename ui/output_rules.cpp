// SPDX-License-Identifier: MIT
#include "ui/output_rules.h"

#include <algorithm>
#include <cstring>

#include "platform/NoWidgets.h"

namespace OutputRules {

namespace {

// Where the first line feed of this range stands; -1 when there is none.
qsizetype findFeed(const QByteArray &output, qsizetype start, qsizetype end)
{
    const char *const bytes = output.constData();
    const void *const feed = std::memchr(bytes + start, '\n', static_cast<std::size_t>(end - start));
    return feed ? static_cast<const char *>(feed) - bytes : -1;
}

// How long the two are the same. Output mostly grows: it is the same for megabytes, which the C library
// compares many times faster than a loop does.
qsizetype commonLength(const QByteArray &a, const QByteArray &b)
{
    constexpr qsizetype stretch = 4096;
    const qsizetype shorter = std::min(a.size(), b.size());
    qsizetype common = 0;
    while (shorter - common >= stretch
        && std::memcmp(a.constData() + common, b.constData() + common, stretch) == 0)
        common += stretch;
    return std::mismatch(a.begin() + common, a.begin() + shorter, b.begin() + common).first - a.begin();
}

// Where the line that starts here ends to be shown: behind its line feed, or where it gets too long. A
// character of several bytes is not cut.
qsizetype endOfShownLine(const QByteArray &output, qsizetype start)
{
    const qsizetype limit = std::min(output.size(), start + longestShownLine);
    const qsizetype feed = findFeed(output, start, limit);
    if (feed >= 0)
        return feed + 1;
    qsizetype end = limit;
    const auto isContinuation
        = [&output](qsizetype i) { return (static_cast<unsigned char>(output.at(i)) & 0xC0U) == 0x80U; };
    for (int moved = 0; end < output.size() && moved < 3 && isContinuation(end); ++moved)
        --end;
    return end > start ? end : limit;
}

void appendLines(QString &text, const QByteArray &output, qsizetype start)
{
    for (qsizetype line = start; line < output.size();) {
        const qsizetype end = endOfShownLine(output, line);
        const bool endsInFeed = output.at(end - 1) == '\n';
        QString shown = QString::fromUtf8(output.constData() + line, end - line - (endsInFeed ? 1 : 0));
        // A carriage return, or a separator that the text layout knows, must not start a line of its own.
        for (QChar &c : shown) {
            if (c == u'\r' || c == QChar(QChar::ParagraphSeparator) || c == QChar(QChar::LineSeparator)
                || c == QChar(0xFDD0) || c == QChar(0xFDD1) || c.isNull())
                c = u' ';
        }
        // The others have no shape of their own: e2fsck marks its progress with some, and a box would be
        // drawn.
        shown.removeIf([](QChar c) { return c != u'\t' && c.category() == QChar::Other_Control; });
        text += shown;
        line = end;
        if (endsInFeed || line < output.size())
            text += u'\n';
    }
}

} // namespace

QByteArray shownPart(const QByteArray &output)
{
    if (output.size() <= 2 * longestShownOutput)
        return output;
    const qsizetype left = output.size() - longestShownOutput;
    const qsizetype start = left - left % longestShownOutput;
    const qsizetype feed = findFeed(output, start, start + longestShownOutput);
    QByteArray part = output.sliced(feed >= 0 ? feed + 1 : start);
    return part.prepend("\xE2\x80\xA6\n");
}

Change changeBetween(const QByteArray &shown, const QByteArray &output)
{
    const qsizetype common = commonLength(shown, output);
    Change change;
    qsizetype start = 0;
    while (start < common) {
        const qsizetype end = endOfShownLine(shown, start);
        // A line that was cut may be cut elsewhere in the other output, or go on there.
        const bool endsInFeed = end <= common && shown.at(end - 1) == '\n';
        if (!endsInFeed && (end >= common || end != endOfShownLine(output, start)))
            break;
        start = end;
        ++change.firstBlock;
    }
    appendLines(change.text, output, start);
    return change;
}

} // namespace OutputRules
