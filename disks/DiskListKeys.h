// SPDX-License-Identifier: MIT
//
// What places a node in its ring, read from its record and its medium's registry entry. Main thread only.
#pragma once

#include <QString>

#include <optional>

class ZorvexDiskManagerDisk;

class DiskListKeys
{
public:
    // Reads them from the record and from the registry. Returns whether one is another than before.
    bool read(const ZorvexDiskManagerDisk &record);

    const QString &bsdName() const { return m_bsdName; } // empty when the record has none
    qint32 nameNumber() const { return m_nameNumber; } // the number at the end of the name, or -1
    const std::optional<QString> &parentName() const { return m_parentName; }

    // std::nullopt when it cannot be read. Never negative.
    const std::optional<qint64> &offset() const { return m_offset; }
    const std::optional<qint64> &number() const { return m_number; }

    friend bool operator==(const DiskListKeys &a, const DiskListKeys &b) = default;

private:
    QString m_bsdName;
    qint32 m_nameNumber = -1;
    std::optional<QString> m_parentName;
    std::optional<qint64> m_offset;
    std::optional<qint64> m_number;
};
