// SPDX-License-Identifier: MIT
//
// The release of the system as the drawing and layout choices know it. Their thresholds (8, 9, 13) number the
// generations of a toolkit, not Linux kernels, whose own numbers would read as a very old system: what stands
// behind this header is a current one. Any thread.
#pragma once

#include <QByteArray>

#include <optional>

// The release string, such as "23.1.0". Returns 0, or an errno value when it cannot be had.
int systemRelease(QByteArray *release);

// The number before the first "." of the release; nothing, after a log line, when the release cannot be had.
std::optional<unsigned long> systemMajorVersion();

// While an object of this class lives, the system reports this release, or this error when it is not 0.
class SystemReleaseOverride
{
public:
    explicit SystemReleaseOverride(QByteArray release, int error = 0);
    ~SystemReleaseOverride();
    SystemReleaseOverride(const SystemReleaseOverride &) = delete;
    SystemReleaseOverride &operator=(const SystemReleaseOverride &) = delete;
};
