// SPDX-License-Identifier: MIT
//
// What places a node in its ring, read from its record and its medium's registry entry. Main thread only.
#pragma once

#include "platform/Property.h"

#include <optional>

class ZorvexDiskManagerDisk;

class DiskListKeys
{
public:
    // Reads again what has changed since the last time. The registry is asked each time; its properties are
    // looked up only when they are others than before.
    void refresh(const ZorvexDiskManagerDisk &record);

    const QString &bsdName() const { return m_bsdName; } // empty when the record has none
    qint32 nameNumber() const { return m_nameNumber; } // the number at the end of the name, or -1
    const std::optional<QString> &parentName() const { return m_parentName; }

    // std::nullopt when it cannot be read. Never negative.
    const std::optional<qint64> &offset() const { return m_offset; }
    const std::optional<qint64> &number() const { return m_number; }

private:
    QString m_bsdName;
    qint32 m_nameNumber = -1;
    std::optional<QString> m_parentName;
    bool m_isWhole = false;
    bool m_isRead = false;
    std::optional<PropertyDictionary> m_properties; // of the registry entry, as last read
    std::optional<qint64> m_offset;
    std::optional<qint64> m_number;
};
