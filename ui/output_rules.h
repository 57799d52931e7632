// SPDX-License-Identifier: MIT
//
// How output becomes lines of text. Functions of values, any thread.
#pragma once

#include <QByteArray>
#include <QString>

namespace OutputRules {

// A longer line is shown as several: laying out one line takes time that grows with the square of its length.
inline constexpr qsizetype longestShownLine = 2000; // bytes

// What must be laid out anew to show one output in the place of another: everything from the start of this
// line on, which becomes this text.
struct Change
{
    int firstBlock = 0;
    QString text;
};

// The change from what is shown to what is to be shown. Its cost is that of comparing the two, plus that of
// the lines that differ.
Change changeBetween(const QByteArray &shown, const QByteArray &output);

// The whole output as it is shown.
QString shownText(const QByteArray &output);

} // namespace OutputRules
