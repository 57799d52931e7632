// SPDX-License-Identifier: MIT
//
// Disk trees without a window.
#pragma once

#include "disks/ZorvexDiskManagerDiskListItem.h"
#include "tests/support/TestController.h"

using Item = ZorvexDiskManagerDiskListItem;

// Nodes with their records, in a tree of their own.
class Forest
{
public:
    Item *make(const MemoryDiskRef &disk)
    {
        auto item = Item::alloc();
        item->disk = ZorvexDiskManagerDisk::alloc();
        if (zorvex_disk_manager_update_disk_description(disk, *item->disk))
            qFatal("a test's disk was refused");
        m_items.push_back(std::move(item));
        return m_items.back().get();
    }

    Item *head = nullptr;

private:
    std::vector<std::unique_ptr<Item>> m_items;
};

inline QStringList namesOf(const Item *ring)
{
    QStringList names;
    for (const Item *node = ring; node; node = node->next == ring ? nullptr : node->next)
        names.append(node->disk->description());
    return names;
}

// Each ring as its names, the parents' first, and every link checked both ways.
inline QStringList outline(const Item *ring, int depth = 0)
{
    QStringList lines;
    for (const Item *node = ring; node; node = node->next == ring ? nullptr : node->next) {
        if (node->next->prev != node || node->prev->next != node)
            return { QStringLiteral("broken ring") };
        lines.append(QString(depth, u' ') + node->disk->description());
        lines += outline(node->children, depth + 1);
    }
    return lines;
}

// A partition whose registry entry is missing what is not given.
inline MemoryDiskRef partitionWith(
    const QString &name, std::optional<qint64> offset, std::optional<qint64> number)
{
    const MemoryDiskRef disk = makePartition(name, 0);
    disk->mediaProperties = PropertyDictionary();
    if (offset)
        disk->mediaProperties->insert(IOMediaKey::base, PropertyNumber(*offset));
    if (number)
        disk->mediaProperties->insert(IOMediaKey::partitionID, PropertyNumber(*number));
    return disk;
}
