// SPDX-License-Identifier: MIT
#include "ui/output_rules.h"

#include <algorithm>

#include "platform/no_widgets.h"

namespace OutputRules {

namespace {

// Where the line that starts here ends to be shown: behind its line feed, or where it gets too long. A
// character of several bytes is not cut.
qsizetype endOfShownLine(const QByteArray &output, qsizetype start)
{
    const qsizetype limit = std::min(output.size(), start + longestShownLine);
    const auto feed = std::find(output.begin() + start, output.begin() + limit, '\n');
    if (feed != output.begin() + limit)
        return feed - output.begin() + 1;
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
    const auto feed = std::find(output.begin() + start, output.begin() + start + longestShownOutput, '\n');
    const bool isLine = feed != output.begin() + start + longestShownOutput;
    return "\xE2\x80\xA6\n" + output.mid(isLine ? feed - output.begin() + 1 : start);
}

Change changeBetween(const QByteArray &shown, const QByteArray &output)
{
    const auto differ = std::mismatch(shown.begin(), shown.end(), output.begin(), output.end());
    const qsizetype common = differ.first - shown.begin();
    Change change;
    qsizetype start = 0;
    while (start < common) {
        const qsizetype end = endOfShownLine(shown, start);
        // A line that ends where the common part ends may go on in the other output.
        if (end > common || (end == common && shown.at(end - 1) != '\n')
            || end != endOfShownLine(output, start))
            break;
        start = end;
        ++change.firstBlock;
    }
    appendLines(change.text, output, start);
    return change;
}

QString shownText(const QByteArray &output)
{
    QString text;
    appendLines(text, output, 0);
    return text;
}

} // namespace OutputRules
