// SPDX-License-Identifier: MIT
#include "disks/ZorvexDiskManagerDisk.h"

#include <new>

using namespace Qt::Literals::StringLiterals;

DiskRecord ZorvexDiskManagerDisk::alloc() noexcept
{
    try {
        return std::make_shared<ZorvexDiskManagerDisk>();
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

ZorvexDiskManagerDisk::~ZorvexDiskManagerDisk()
{
    cleanupZorvexDiskManagerDisk();
}

void ZorvexDiskManagerDisk::cleanupZorvexDiskManagerDisk()
{
    checkRepairOutput.reset();
    mediaSize.reset();
    volumeKind.reset();
    mediaName.reset();
    volumeName.reset();
    volumePath.reset();
    bsdName.reset();
    content.reset();
}

DiskRecord ZorvexDiskManagerDisk::copyWithZone() const
{
    auto copy = alloc();
    if (!copy)
        return nullptr;
    copy->removable = removable;
    copy->content = content;
    copy->whole = whole;
    copy->leaf = leaf;
    copy->bsdName = bsdName;
    copy->ejectable = ejectable;
    copy->preferred_block_size = preferred_block_size;
    copy->parent_item = parent_item;
    copy->volumeKind = volumeKind;
    return copy;
}

QString ZorvexDiskManagerDisk::description() const
{
    return bsdName.value_or(u"(null)"_s);
}

QString ZorvexDiskManagerDisk::deviceNode() const
{
    return daDisk ? daDisk->deviceNode() : QString();
}
