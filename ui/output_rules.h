// SPDX-License-Identifier: MIT
//
// How output becomes lines of text. Functions of values, any thread.
#pragma once

#include <QByteArray>
#include <QString>

namespace OutputRules {

// A longer line is shown as several: laying out one line takes time that grows with the square of its length.
inline constexpr qsizetype longestShownLine = 2000; // bytes

// An output that is longer than twice this is shown only from near its end: laying out what cannot be read
// would hold up the window. The output itself is kept whole.
inline constexpr qsizetype longestShownOutput = qsizetype { 1024 } * 1024; // bytes

// What is shown of an output: all of it, or its last lines below a line with an ellipsis. Where they begin
// changes only with every so many bytes of output, so that little has to be laid out when some are added.
QByteArray shownPart(const QByteArray &output);

// What must be laid out to show one output in the place of another: everything from the start of this line
// on, which becomes this text.
struct Change
{
    int firstBlock = 0;
    QString text;
};

// The change from the output that is shown to the next one. It costs a comparison of the two and the lines
// that differ.
Change changeBetween(const QByteArray &shown, const QByteArray &output);

} // namespace OutputRules
