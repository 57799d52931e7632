// SPDX-License-Identifier: MIT
//
// What a disk description says, and which media are never shown. Functions of values, any thread.
#pragma once

#include "platform/Property.h"

#include <QStringList>

#include <optional>
#include <span>

namespace DescriptionRules {

// A description read into typed fields. Pointers lead into the description that was read.
struct DescriptionFields
{
    const bool *removable = nullptr;
    const QString *content = nullptr;
    const bool *whole = nullptr;
    const bool *leaf = nullptr;
    const QString *bsdName = nullptr;
    const bool *ejectable = nullptr;
    std::optional<qint64> blockSize;
    const bool *mountable = nullptr;
    const bool *writable = nullptr;
    const bool *internal = nullptr;
    const QUrl *volumePath = nullptr;
    const QString *mediaName = nullptr;
    const QString *volumeName = nullptr;
    const QString *volumeKind = nullptr;
    const PropertyNumber *mediaSize = nullptr;

    // Whether every value that a record cannot do without is there.
    bool isComplete() const;
};

// Reads one entry into the fields; an unknown key is skipped. Returns the line to log when the value is of a
// wrong type, and the scan of the description ends there.
std::optional<QString> readDescriptionEntry(
    DescriptionFields &fields, const QString &key, const PropertyValue &value);

// Whether a medium of this content hint is never shown: a partition map, an EFI or a boot partition.
bool isHiddenContent(const QString &content);

} // namespace DescriptionRules
