// SPDX-License-Identifier: MIT
//
// The system log: the journal through syslog(3), and stderr as well when that is a terminal. Any thread.
#pragma once

#include <QString>

#include <functional>
#include <memory>

// Writes one line. Line breaks, control characters and characters that turn the direction of text are written
// as escapes, so that text from a disk or a bundle can neither forge a second line nor rearrange this one.
void systemLog(const QString &line);

// While an object of this class lives, every line goes to its handler instead of the system log. The handler
// is called on the thread that logs, by one thread at a time, and must not log itself. The destructor waits
// for a thread that is in it. Only one such object at a time.
class SystemLogRedirection
{
public:
    explicit SystemLogRedirection(std::function<void(const QString &line)> handler);
    ~SystemLogRedirection();
    SystemLogRedirection(const SystemLogRedirection &) = delete;
    SystemLogRedirection &operator=(const SystemLogRedirection &) = delete;
};

// The text as it is written: characters that disturb a line as \n, \t or \u{…}, everything else unchanged.
QString escapedForLog(const QString &text);

// The system's text of an errno value, in English.
QString errnoText(int error);
