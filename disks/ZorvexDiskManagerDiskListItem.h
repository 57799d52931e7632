// SPDX-License-Identifier: MIT
//
// The disk tree: nodes in circular doubly linked sibling rings. A ring is named by the field that holds its
// first node: the controller's disk_list, or a node's children. Main thread only.
#pragma once

#include "disks/DiskListKeys.h"
#include "disks/ZorvexDiskManagerDisk.h"

#include <memory>
#include <vector>

class ZorvexDiskManagerDiskListItem
{
public:
    // A new node that is in no ring; null when memory is short.
    static std::unique_ptr<ZorvexDiskManagerDiskListItem> alloc() noexcept;

    DiskRecord disk;
    ZorvexDiskManagerDiskListItem *children = nullptr; // first node of the ring of children
    ZorvexDiskManagerDiskListItem *next = nullptr;
    ZorvexDiskManagerDiskListItem *prev = nullptr;
    DiskListKeys keys; // of the disk, as last read

    bool readKeys() { return keys.read(*disk); } // whether they have changed
};

// Inserts the item into the ring at its sorted place; makes it the head when it lands first.
void disk_list_add(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *item);

// The same with the keys that were last read, for which disk_list_add() asks the registry.
void disk_list_place(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *item);

// Unlinks the item from the ring. The item's own links and children stay as they are.
void disk_list_remove(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *item);

// The medium's byte offset in its parent; 0 for a whole disk, whose registry entry is not asked. Returns 0,
// or EIO and leaves out alone.
int get_partition_offset(const ZorvexDiskManagerDisk &record, qint64 *out);

// The medium's partition number. Returns 0, or EIO and leaves out alone.
int get_partition_number(const ZorvexDiskManagerDisk &record, qint64 *out);

// Inserts the item into the ring as number index, of which 0 is the head.
void disk_list_insert(ZorvexDiskManagerDiskListItem **head, int index, ZorvexDiskManagerDiskListItem *item);

// Makes a ring of the items, in this order.
void disk_list_link(
    ZorvexDiskManagerDiskListItem **head, const std::vector<ZorvexDiskManagerDiskListItem *> &items);

// Rebuilds the whole tree with one more node, so that a partition that was reported before its disk moves
// under it. Reads all keys again.
void disk_list_rebuild(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *added);

// A node that was found, and the field that holds the ring it is in; both null when there is none.
struct DiskListPosition
{
    ZorvexDiskManagerDiskListItem *item = nullptr;
    ZorvexDiskManagerDiskListItem **head = nullptr;
};

// Searches the tree, depth first, for the node of this BSD name.
DiskListPosition disk_list_find(ZorvexDiskManagerDiskListItem **head, const QString &bsdName);

// All nodes of the tree.
std::vector<ZorvexDiskManagerDiskListItem *> disk_list_all(ZorvexDiskManagerDiskListItem *head);

// The item and all nodes below it.
std::vector<ZorvexDiskManagerDiskListItem *> disk_list_subtree(ZorvexDiskManagerDiskListItem *item);
