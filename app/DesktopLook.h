// SPDX-License-Identifier: MIT
//
// How the user's desktop looks, as plain data. The program that runs as root finds none of it: its
// environment is not the user's, and it must not load what the user's desktop would. So a process of the
// user's tells it, and the one that runs as root takes what it can check: colours, numbers, and names that it
// looks up among what the system has installed.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QFont>
#include <QPalette>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

struct DesktopLook
{
    static constexpr qsizetype longestText = 8192; // bytes; more is no look

    std::optional<QPalette> palette;
    std::optional<QFont> font;
    QString iconTheme; // its name; empty for the default
    // Variables for the scale of the display and for the mouse cursor, with values that have been checked.
    std::vector<std::pair<QByteArray, QByteArray>> environment;

    // The look as lines of text. What is not set has no line.
    QByteArray toText() const;

    // The look that the text tells of. The text may come from anybody: what is unknown, too long or not well
    // formed is left out.
    static DesktopLook fromText(const QByteArray &text);

    // The look of this process. Main thread, once there is a QApplication.
    static DesktopLook ofThisProcess();

    // Puts the variables into the environment. Call it before there is a QApplication.
    void applyToEnvironment() const;

    // Gives the rest to all windows. Main thread, once there is a QApplication.
    void apply() const;
};
