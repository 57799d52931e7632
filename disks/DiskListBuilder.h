// SPDX-License-Identifier: MIT
//
// Additions to the disk tree, in the order in which media are reported. Main thread only.
#pragma once

#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <optional>
#include <vector>

// Where a node was added.
struct DiskListAddition
{
    ZorvexDiskManagerDiskListItem *parent = nullptr; // null for the top level
    int index = 0; // among its siblings
    bool movedOthers = false; // other nodes may have moved; the parent and the index are not set
};

// Adds nodes to one tree, from which nodes may be removed in between. The tree is always the one that
// disk_list_rebuild() makes. It is not rebuilt where the result is known to be the present tree with the new
// node at its place: all names differ, the new node is not the missing parent of another, and the order of
// each ring does not depend on the order in which its nodes came. This holds for rings in which all offsets
// differ, and for rings in which offsets and numbers decide nothing, so that the names do.
class DiskListBuilder
{
public:
    DiskListAddition add(ZorvexDiskManagerDiskListItem **head, ZorvexDiskManagerDiskListItem *added);

private:
    using Ring = std::vector<const DiskListKeys *>;

    bool isSettledFor(ZorvexDiskManagerDiskListItem *head, const DiskListKeys &added,
        ZorvexDiskManagerDiskListItem **parent);
    std::optional<int> placeInOrder(ZorvexDiskManagerDiskListItem *head, const DiskListKeys &added);
    const Ring &read(ZorvexDiskManagerDiskListItem *head);

    bool m_namesDiffer = true; // of all nodes in the tree
    Ring m_ring; // the one that is looked at, and the ones that wait for it: kept for their room
    std::vector<ZorvexDiskManagerDiskListItem *> m_rings;
};
