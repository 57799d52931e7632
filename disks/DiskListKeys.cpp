// SPDX-License-Identifier: MIT
#include "disks/DiskListKeys.h"

#include "disks/tree_rules.h"
#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <cerrno>

namespace {

constexpr qint64 wholeDiskOffset = 0; // whatever the registry has

using Properties = std::optional<PropertyDictionary>;

Properties propertiesOf(const ZorvexDiskManagerDisk &record)
{
    return record.daDisk ? record.daDisk->copyIOMediaProperties() : std::nullopt;
}

std::optional<qint64> registryNumber(const Properties &properties, const QString &key)
{
    const PropertyValue *value = properties ? properties->value(key) : nullptr;
    const PropertyNumber *number = value ? value->asNumber() : nullptr;
    const std::optional<qint64> converted = number ? number->toLongLong() : std::nullopt;
    return converted && *converted >= 0 ? converted : std::nullopt;
}

int answer(const std::optional<qint64> &value, qint64 *out)
{
    if (!value)
        return EIO;
    *out = *value;
    return 0;
}

} // namespace

void DiskListKeys::refresh(const ZorvexDiskManagerDisk &record)
{
    static const QString noName;
    const QString &name = record.bsdName ? *record.bsdName : noName;
    // Two texts that share their characters need no comparison.
    if (name.constData() != m_bsdName.constData() && name != m_bsdName) {
        m_bsdName = name;
        m_nameNumber = TreeRules::trailingNumber(name);
        m_parentName = TreeRules::parentBsdName(name);
    }
    const bool isWhole = record.whole != 0;
    if (m_isRead && isWhole == m_isWhole && record.daDisk
        && record.daDisk->hasSameIOMediaProperties(m_properties))
        return;
    m_isRead = true;
    m_isWhole = isWhole;
    m_properties = propertiesOf(record);
    m_offset = isWhole ? wholeDiskOffset : registryNumber(m_properties, IOMediaKey::base);
    m_number = registryNumber(m_properties, IOMediaKey::partitionID);
}

int get_partition_offset(const ZorvexDiskManagerDisk &record, qint64 *out)
{
    if (record.whole != 0) {
        *out = wholeDiskOffset;
        return 0;
    }
    return answer(registryNumber(propertiesOf(record), IOMediaKey::base), out);
}

int get_partition_number(const ZorvexDiskManagerDisk &record, qint64 *out)
{
    return answer(registryNumber(propertiesOf(record), IOMediaKey::partitionID), out);
}
