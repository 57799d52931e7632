// SPDX-License-Identifier: MIT
//
// The release of the system as the drawing and layout choices know it. Their thresholds (8, 9, 13) number the
// generations of a toolkit, not Linux kernels, whose own numbers would read as a very old system. Any Linux
// that uname(2) knows of counts as the newest generation. Any thread.
#pragma once

#include <QByteArray>

#include <optional>

// The release string, such as "24.0.0". Returns 0, or the errno value of uname(2) and leaves the string
// alone.
int systemRelease(QByteArray *release);

// The number before the first "." of the release. Returns std::nullopt, after a log line, when the release
// cannot be had.
std::optional<unsigned long> systemMajorVersion();

// For tests: while an object of this class lives, the system reports this release, or this error when it is
// not 0.
class SystemReleaseOverride
{
public:
    explicit SystemReleaseOverride(QByteArray release, int error = 0);
    ~SystemReleaseOverride();
    SystemReleaseOverride(const SystemReleaseOverride &) = delete;
    SystemReleaseOverride &operator=(const SystemReleaseOverride &) = delete;
};
