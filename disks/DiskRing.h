// SPDX-License-Identifier: MIT
//
// Building a ring of the disk tree from nodes in turn, at less cost than a walk for each. Main thread only.
#pragma once

#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <vector>

// The ring that disk_list_place() makes of the nodes, one after the other.
std::vector<ZorvexDiskManagerDiskListItem *> placedInTurn(
    const std::vector<ZorvexDiskManagerDiskListItem *> &items);

// Whether the first of two neighbours in a ring comes before the other by the number at the end of its name,
// then by the name.
bool areInOrderOfNames(const ZorvexDiskManagerDiskListItem *a, const ZorvexDiskManagerDiskListItem *b);

// The nodes of the ring, from its first.
std::vector<ZorvexDiskManagerDiskListItem *> itemsOfRing(ZorvexDiskManagerDiskListItem *head);
