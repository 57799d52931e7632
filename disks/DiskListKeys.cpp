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

bool DiskListKeys::read(const ZorvexDiskManagerDisk &record)
{
    const Properties properties = propertiesOf(record);
    DiskListKeys keys;
    keys.m_bsdName = record.bsdName.value_or(QString());
    keys.m_nameNumber = TreeRules::trailingNumber(keys.m_bsdName);
    keys.m_parentName = TreeRules::parentBsdName(keys.m_bsdName);
    keys.m_offset = record.whole != 0 ? wholeDiskOffset : registryNumber(properties, IOMediaKey::base);
    keys.m_number = registryNumber(properties, IOMediaKey::partitionID);
    const bool isNews = keys != *this;
    *this = std::move(keys);
    return isNews;
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
