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
    bool movedOthers
        = false; // other nodes may stand elsewhere than before; the parent and the index are not told
};

// Adds nodes to one tree, from which nodes may be removed in between. The tree is always the one that
// disk_list_rebuild() makes. That is found without building anew where it is known to come out as it is, with
// the new node at its place: when no two nodes have one name, the new one is nobody's missing parent, and
// each ring is in an order that does not depend on the order in which its nodes come. These are rings in
// which all offsets differ, and rings in which offsets and numbers tell nothing apart and the names decide.
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
