// SPDX-License-Identifier: MIT
//
// The disk tree as media come and go. Main thread only.
#pragma once

#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <QHash>

#include <vector>

// Where a node was added.
struct DiskListAddition
{
    ZorvexDiskManagerDiskListItem *parent = nullptr; // null for the top level
    int index = 0; // among its siblings
    bool movedOthers = false; // other nodes may have moved; the parent and the index are not set
};

// Events that are shown together.
struct DiskListBurst
{
    bool isOpen = false; // they are being reported
    bool hasChanged = false; // a medium in the tree
    std::vector<ZorvexDiskManagerDiskListItem *> added; // not in the tree yet
};

// Adds nodes to one tree and removes them. The tree is always the one that disk_list_rebuild() makes, for one
// node after the other. It is not rebuilt where the result is known: while all names differ, a ring keeps its
// order if that does not depend on the order in which its nodes came. This holds for rings in which all
// offsets differ, and for rings in which offsets and numbers decide nothing, so that the names do. Partitions
// without their disk give the top level another order; then only the top level is rebuilt.
class DiskListBuilder
{
public:
    DiskListAddition add(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *added);

    // Adds them one after the other, at the cost of sorting them once where the tree that comes of it does
    // not depend on their order.
    void addAll(
        ZorvexDiskManagerDiskListItem **head, const std::vector<ZorvexDiskManagerDiskListItem *> &added);

    // What disk_list_find() finds.
    DiskListPosition find(ZorvexDiskManagerDiskListItem **head, const QString &bsdName) const;

    // Takes the node out of the tree, with what is below it.
    void remove(const DiskListPosition &position);

    // To be called for a node in the tree whose record or registry entry may have changed.
    void noteChange(ZorvexDiskManagerDiskListItem *item);

private:
    using Item = ZorvexDiskManagerDiskListItem;
    using Ring = std::vector<Item *>;

    Item *parentOf(const Item *item) const;
    Item **ringOf(Item **head, const Item *item) const;
    DiskListAddition rebuild(Item **head, Item *added);
    DiskListAddition rebuildTop(Item **head, Item *added, DiskListAddition addition);
    void remember(Item *item);
    bool sortIn(Item **head, const Ring &added);
    bool linkSorted(Item **head, const Ring &added);

    bool m_isOrdered = true; // all names differ, and each ring below the top level has such an order
    bool m_isTopOrdered = true; // and the top level has
    // While all names differ:
    QHash<QString, Item *> m_byName;
    QMultiHash<QString, Item *> m_orphans; // by the name of the parent that is missing
};
