// SPDX-License-Identifier: MIT
//
// Turns a disk's description into a disk record, or refuses the disk.
#include "disks/description_rules.h"
#include "disks/ZorvexDiskManagerDisk.h"
#include "platform/SystemLog.h"

#include <memory>
#include <new>

using namespace Qt::Literals::StringLiterals;

namespace {

template <typename T> std::optional<T> copied(const T *value)
{
    return value ? std::optional<T>(*value) : std::nullopt;
}

void fillRecord(
    ZorvexDiskManagerDisk &record, const DADiskRef &disk, const DescriptionRules::DescriptionFields &fields)
{
    record.daDisk = disk;
    record.removable = *fields.removable ? 1 : 0;
    record.content = *fields.content;
    record.whole = *fields.whole ? 1 : 0;
    record.leaf = *fields.leaf ? 1 : 0;
    record.bsdName = *fields.bsdName;
    record.ejectable = *fields.ejectable ? 1 : 0;
    record.preferred_block_size = *fields.blockSize;
    record.mountable = *fields.mountable;
    record.writable = *fields.writable;
    record.internal = fields.internal && *fields.internal;
    record.volumePath = copied(fields.volumePath);
    record.mediaName = copied(fields.mediaName);
    record.volumeName = copied(fields.volumeName);
    record.volumeKind = copied(fields.volumeKind);
    record.mediaSize = copied(fields.mediaSize);
}

} // namespace

bool zorvex_disk_manager_update_disk_description(const DADiskRef &disk, ZorvexDiskManagerDisk &record)
{
    // A record that was made when memory was short has no disk.
    const std::optional<PropertyDictionary> description = disk ? disk->copyDescription() : std::nullopt;
    if (!description) {
        systemLog(u"Error while copying disk description dictionary."_s);
        return true;
    }

    const std::size_t count = description->size();
    const std::unique_ptr<const QString *[]> keys(new (std::nothrow) const QString *[count] { });
    const std::unique_ptr<const PropertyValue *[]> values(
        new (std::nothrow) const PropertyValue *[count] { });
    if (!keys || !values) {
        // Success, although the record was not filled: a known disk keeps what it had, and is not reported as
        // broken because memory was short for a moment.
        return false;
    }
    std::size_t index = 0;
    for (const PropertyDictionary::Entry &entry : *description) {
        keys[index] = &entry.first;
        values[index] = &entry.second;
        ++index;
    }

    DescriptionRules::DescriptionFields fields;
    bool failed = false;
    for (std::size_t i = 0; i < count && !failed; ++i) {
        // The analyser does not see that the description has as many entries as it was asked for.
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
        if (const auto line = DescriptionRules::readDescriptionEntry(fields, *keys[i], *values[i])) {
            systemLog(*line);
            failed = true;
        }
    }
    if (!fields.isComplete() || DescriptionRules::isHiddenContent(*fields.content))
        return true;
    fillRecord(record, disk, fields);
    return failed;
}
