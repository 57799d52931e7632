// SPDX-License-Identifier: MIT
#include "disks/DiskListBuilder.h"

#include <algorithm>
#include <vector>

using Item = ZorvexDiskManagerDiskListItem;

namespace {

// Two neighbours in a ring that is ordered by offset. The name must end in a digit, and in so few that their
// value does not wrap: the walk by name, which follows, would not stop there otherwise.
bool areInOrderOfOffsets(const DiskListKeys &a, const DiskListKeys &b)
{
    return a.offset() && b.offset() && *a.offset() < *b.offset() && a.nameNumber() >= 0
        && b.nameNumber() >= 0;
}

// Two neighbours in a ring that is ordered by name.
bool areInOrderOfNames(const DiskListKeys &a, const DiskListKeys &b)
{
    return a.nameNumber() == b.nameNumber() ? a.bsdName() < b.bsdName() : a.nameNumber() < b.nameNumber();
}

// Whether this key cannot tell the two apart.
bool areSilent(const std::optional<qint64> &a, const std::optional<qint64> &b)
{
    return !a || !b || *a == *b;
}

using Order = bool (*)(const DiskListKeys &a, const DiskListKeys &b);

// The order that the ring has however its nodes came into it; null when there is none, or when it is not
// known.
Order orderOf(const std::vector<const DiskListKeys *> &ring)
{
    const auto isInOrder = [&ring](Order order) {
        return std::adjacent_find(ring.begin(), ring.end(),
                   [order](const DiskListKeys *a, const DiskListKeys *b) { return !order(*a, *b); })
            == ring.end();
    };
    if (isInOrder(areInOrderOfOffsets))
        return areInOrderOfOffsets;
    std::optional<qint64> offset;
    std::optional<qint64> number;
    for (const DiskListKeys *keys : ring) {
        if (!areSilent(offset, keys->offset()) || !areSilent(number, keys->number()))
            return nullptr;
        offset = keys->offset() ? keys->offset() : offset;
        number = keys->number() ? keys->number() : number;
    }
    return isInOrder(areInOrderOfNames) ? areInOrderOfNames : nullptr;
}

} // namespace

const DiskListBuilder::Ring &DiskListBuilder::read(Item *head)
{
    m_ring.clear();
    for (Item *node = head; node; node = node->next == head ? nullptr : node->next)
        m_ring.push_back(&node->readKeys());
    return m_ring;
}

// Whether each ring has such an order, and a node with these keys is new to the tree and not the parent of
// another one. Sets the parent that the node would get.
bool DiskListBuilder::isSettledFor(Item *head, const DiskListKeys &added, Item **parent)
{
    m_rings.clear();
    if (head)
        m_rings.push_back(head);
    while (!m_rings.empty()) {
        Item *const ring = m_rings.back();
        m_rings.pop_back();
        if (!orderOf(read(ring)))
            return false;
        Item *node = ring;
        do {
            const DiskListKeys &keys = node->keys;
            if (keys.bsdName() == added.bsdName() || keys.parentName() == added.bsdName())
                return false;
            if (keys.bsdName() == added.parentName())
                *parent = node;
            if (node->children)
                m_rings.push_back(node->children);
            node = node->next;
        } while (node != ring);
    }
    return true;
}

// The index that a node with these keys gets in the ring; std::nullopt when the ring with it has no such
// order.
std::optional<int> DiskListBuilder::placeInOrder(Item *head, const DiskListKeys &added)
{
    for (const Order order : { areInOrderOfOffsets, areInOrderOfNames }) {
        read(head);
        const auto before = std::find_if(
            m_ring.begin(), m_ring.end(), [&](const DiskListKeys *keys) { return order(added, *keys); });
        const auto place = m_ring.insert(before, &added);
        if (orderOf(m_ring) == order)
            return static_cast<int>(place - m_ring.begin());
    }
    return std::nullopt;
}

DiskListAddition DiskListBuilder::add(Item **head, Item *added)
{
    const DiskListKeys &keys = added->readKeys();
    Item *parent = nullptr;
    if (m_namesDiffer && isSettledFor(*head, keys, &parent)) {
        Item **const ring = parent ? &parent->children : head;
        if (const auto index = placeInOrder(*ring, keys)) {
            added->children = nullptr;
            disk_list_insert(ring, *index, added);
            return { parent, *index, false };
        }
    }
    m_namesDiffer = disk_list_rebuild(head, added);
    return { nullptr, 0, true };
}
