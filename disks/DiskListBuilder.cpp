// SPDX-License-Identifier: MIT
#include "disks/DiskListBuilder.h"

#include "disks/DiskRing.h"

#include <algorithm>
#include <unordered_map>

using Item = ZorvexDiskManagerDiskListItem;

namespace {

// Two neighbours in a ring that is ordered by offset. The name must end in a digit, and in so few that their
// value does not wrap: the walk by name, which follows, would not stop there otherwise.
bool areInOrderOfOffsets(const Item *a, const Item *b)
{
    return a->keys.offset() && b->keys.offset() && *a->keys.offset() < *b->keys.offset()
        && a->keys.nameNumber() >= 0 && b->keys.nameNumber() >= 0;
}

// Whether this key cannot tell the two apart.
bool areSilent(const std::optional<qint64> &a, const std::optional<qint64> &b)
{
    return !a || !b || *a == *b;
}

using Order = bool (*)(const Item *a, const Item *b);

constexpr Order orders[] = { areInOrderOfOffsets, areInOrderOfNames };

bool isInOrder(const std::vector<Item *> &ring, Order order)
{
    return std::adjacent_find(ring.begin(), ring.end(), [order](const Item *a, const Item *b) {
        return !order(a, b);
    }) == ring.end();
}

// The order that the ring has however its nodes came into it; null when there is none, or when it is not
// known.
Order orderOf(const std::vector<Item *> &ring)
{
    if (isInOrder(ring, areInOrderOfOffsets))
        return areInOrderOfOffsets;
    std::optional<qint64> offset;
    std::optional<qint64> number;
    for (const Item *item : ring) {
        if (!areSilent(offset, item->keys.offset()) || !areSilent(number, item->keys.number()))
            return nullptr;
        offset = item->keys.offset() ? item->keys.offset() : offset;
        number = item->keys.number() ? item->keys.number() : number;
    }
    return isInOrder(ring, areInOrderOfNames) ? areInOrderOfNames : nullptr;
}

// The index that the item gets in the ring; std::nullopt when the ring with it has no such order.
std::optional<int> placeInOrder(Item *head, Item *item)
{
    std::vector<Item *> ring = itemsOfRing(head);
    for (const Order order : orders) {
        const auto place = ring.insert(std::upper_bound(ring.begin(), ring.end(), item, order), item);
        if (orderOf(ring) == order)
            return static_cast<int>(place - ring.begin());
        ring.erase(place);
    }
    return std::nullopt;
}

// Sorts the ring; false when it has no such order.
bool sortRing(std::vector<Item *> &ring)
{
    const bool haveOffsets
        = std::all_of(ring.begin(), ring.end(), [](const Item *item) { return item->keys.offset(); });
    if (haveOffsets) {
        std::sort(ring.begin(), ring.end(),
            [](const Item *a, const Item *b) { return *a->keys.offset() < *b->keys.offset(); });
        if (isInOrder(ring, areInOrderOfOffsets))
            return true;
    }
    std::sort(ring.begin(), ring.end(), areInOrderOfNames);
    return orderOf(ring);
}

} // namespace

Item *DiskListBuilder::parentOf(const Item *item) const
{
    const std::optional<QString> &name = item->keys.parentName();
    return name ? m_byName.value(*name) : nullptr;
}

Item **DiskListBuilder::ringOf(Item **head, const Item *item) const
{
    Item *const parent = parentOf(item);
    return parent ? &parent->children : head;
}

void DiskListBuilder::remember(Item *item)
{
    m_byName.insert(item->keys.bsdName(), item);
    if (item->keys.parentName() && !parentOf(item))
        m_orphans.insert(*item->keys.parentName(), item);
}

DiskListAddition DiskListBuilder::add(Item **head, Item *added)
{
    added->readKeys();
    added->children = nullptr;
    const QString &name = added->keys.bsdName();
    if (!m_isOrdered || m_byName.contains(name))
        return rebuild(head, added);
    Item *const parent = parentOf(added);
    const bool keepsTop = m_isTopOrdered && !m_orphans.contains(name);
    std::optional<int> index;
    if (parent || keepsTop) {
        Item **const ring = ringOf(head, added);
        index = placeInOrder(*ring, added);
        if (parent && !index)
            return rebuild(head, added);
        if (index)
            disk_list_insert(ring, *index, added);
    }
    remember(added);
    if (!keepsTop || !index)
        return rebuildTop(head, added, { parent, index.value_or(0), false });
    return { parent, *index, false };
}

// All nodes, the added one first.
DiskListAddition DiskListBuilder::rebuild(Item **head, Item *added)
{
    disk_list_rebuild(head, added);
    const Ring nodes = disk_list_all(*head);
    m_byName.clear();
    m_orphans.clear();
    for (Item *node : nodes)
        m_byName.insert(node->keys.bsdName(), node);
    for (Item *node : nodes)
        remember(node);
    m_isTopOrdered = orderOf(itemsOfRing(*head));
    m_isOrdered = m_byName.size() == static_cast<qsizetype>(nodes.size())
        && std::all_of(nodes.begin(), nodes.end(),
            [](const Item *node) { return orderOf(itemsOfRing(node->children)); });
    return { nullptr, 0, true };
}

// The same for the top level alone. The rings below it stay as they are, except that the added node, which is
// in its ring already if it has a parent, takes its children from the top.
DiskListAddition DiskListBuilder::rebuildTop(Item **head, Item *added, DiskListAddition addition)
{
    const Ring before = itemsOfRing(*head);
    const bool adopts = m_orphans.remove(added->keys.bsdName()) > 0;
    Ring top;
    Ring adopted;
    if (!addition.parent)
        top.push_back(added);
    for (Item *node : before)
        (adopts && parentOf(node) ? adopted : top).push_back(node);
    disk_list_link(head, placedInTurn(top));
    disk_list_link(&added->children, placedInTurn(adopted));
    Ring after = itemsOfRing(*head);
    m_isTopOrdered = orderOf(after);
    m_isOrdered = orderOf(itemsOfRing(added->children));
    if (!addition.parent) {
        const auto place = std::find(after.begin(), after.end(), added);
        addition.index = static_cast<int>(place - after.begin());
        after.erase(place);
    }
    addition.movedOthers = after != before;
    return addition;
}

void DiskListBuilder::addAll(Item **head, const std::vector<Item *> &added)
{
    if (sortIn(head, added))
        return;
    for (Item *item : added)
        add(head, item);
}

// Returns false, with the tree unchanged, when the tree with them has not such an order everywhere.
bool DiskListBuilder::sortIn(Item **head, const Ring &added)
{
    if (!m_isOrdered)
        return false;
    std::size_t named = 0;
    for (; named < added.size(); ++named) {
        Item *const item = added[named];
        item->readKeys();
        item->children = nullptr;
        if (m_byName.contains(item->keys.bsdName()))
            break;
        m_byName.insert(item->keys.bsdName(), item);
    }
    if (named == added.size() && linkSorted(head, added))
        return true;
    while (named > 0)
        m_byName.remove(added[--named]->keys.bsdName());
    return false;
}

// The same when the nodes are known by their names.
bool DiskListBuilder::linkSorted(Item **head, const Ring &added)
{
    std::unordered_map<Item **, Ring> rings; // that change
    rings.try_emplace(head);
    for (Item *item : itemsOfRing(*head))
        rings[ringOf(head, item)].push_back(item);
    for (Item *item : added) {
        Item **const field = ringOf(head, item);
        const auto [ring, isNew] = rings.try_emplace(field);
        if (isNew)
            ring->second = itemsOfRing(*field);
        ring->second.push_back(item);
    }
    if (!std::all_of(rings.begin(), rings.end(), [](auto &ring) { return sortRing(ring.second); }))
        return false;
    for (const auto &[field, ring] : rings)
        disk_list_link(field, ring);
    m_orphans.clear();
    for (Item *item : rings[head])
        remember(item);
    m_isTopOrdered = true;
    return true;
}

DiskListPosition DiskListBuilder::find(Item **head, const QString &bsdName) const
{
    if (!m_isOrdered)
        return disk_list_find(head, bsdName);
    Item *const item = m_byName.value(bsdName);
    return item ? DiskListPosition { item, ringOf(head, item) } : DiskListPosition {};
}

void DiskListBuilder::remove(const DiskListPosition &position)
{
    for (const Item *node : disk_list_subtree(position.item)) {
        const DiskListKeys &keys = node->keys;
        m_byName.remove(keys.bsdName());
        if (keys.parentName())
            m_orphans.remove(*keys.parentName(), position.item);
    }
    disk_list_remove(position.head, position.item);
}

void DiskListBuilder::noteChange(Item *item)
{
    if (item->readKeys())
        m_isOrdered = false;
}
