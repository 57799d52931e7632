// SPDX-License-Identifier: MIT
//
// The medium that a format is about to erase. Values, any thread.
#pragma once

#include "platform/DeviceUse.h"
#include "platform/DiskArbitration.h"

#include <QString>

#include <optional>

// What the question before a format shows of the medium, and what else tells it from another.
struct FormatTarget
{
    qint64 size = 0; // bytes
    qint64 start = 0; // byte offset on the disk
    QString label;
    QString kind;
    std::optional<qint16> subtype;
    ProbedContent content;
    std::optional<DeviceIdentity> identity; // absent when the device cannot be read

    friend bool operator==(const FormatTarget &, const FormatTarget &) = default;
};

// The volume that will be there instead, in the words of the window.
struct NewVolume
{
    QString filesystem;
    QString label;
    QString scheme; // of a new partition table; empty when no table is written
};

// The string key of the reason why a device in this use is not formatted; null when there is none. A mount is
// no reason: it can be ended.
const char *formatRefusalKey(const DeviceUse &use, bool isSystemDevice, ProbedContent::Kind content);
