// SPDX-License-Identifier: MIT
#include "disks/tree_rules.h"
#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <QHash>

#include <new>

using Item = ZorvexDiskManagerDiskListItem;

namespace {

// A walk along a ring, and whether it still stands at the head.
struct Place
{
    Item *item = nullptr;
    bool atHead = true;
};

using Key = const std::optional<qint64> &(DiskListKeys::*)() const;

// Where a walk by offset or partition number puts the item. Returns std::nullopt when this key does not
// decide: it cannot be read, or a node before the place has the same.
std::optional<Place> placeByRegistryKey(Item *head, const DiskListKeys &keys, Key key)
{
    const std::optional<qint64> &wanted = (keys.*key)();
    if (!wanted)
        return std::nullopt;
    Place place { head, true };
    do {
        const std::optional<qint64> &other = (place.item->keys.*key)();
        if (!other || *other == *wanted)
            return std::nullopt;
        if (*wanted < *other)
            return place;
        place = { place.item->next, false };
    } while (place.item != head);
    return place;
}

// Where the walk by the number at the end of the BSD name, which begins at the entry place, puts the item.
Place placeByName(Item *head, Place entry, const QString &name, qint32 key)
{
    Place place = entry;
    do {
        const DiskListKeys &other = place.item->keys;
        if (key == other.nameNumber() ? name < other.bsdName() : key < other.nameNumber())
            return place;
        place = { place.item->next, false };
    } while (place.item != head);
    return place;
}

void insertBefore(Item **head, const Place &place, Item *item)
{
    item->next = place.item;
    item->prev = place.item->prev;
    item->prev->next = item;
    place.item->prev = item;
    if (place.atHead)
        *head = item;
}

// All nodes: the added one, then ring by ring, the ring found last first.
std::vector<Item *> flattened(Item *head, Item *added)
{
    std::vector<Item *> flat;
    std::vector<Item *> rings;
    if (head)
        rings.push_back(head);
    added->next = added->prev = added;
    added->children = nullptr;
    rings.push_back(added);
    while (!rings.empty()) {
        Item *const ring = rings.back();
        rings.pop_back();
        Item *node = ring;
        do {
            flat.push_back(node);
            if (node->children)
                rings.push_back(node->children);
            node->children = nullptr;
            node = node->next;
        } while (node != ring);
    }
    return flat;
}

} // namespace

std::unique_ptr<Item> Item::alloc() noexcept
{
    return std::unique_ptr<Item>(new (std::nothrow) Item);
}

void disk_list_place(Item **head, Item *item)
{
    if (!*head) {
        disk_list_insert(head, 0, item);
        return;
    }
    const DiskListKeys &keys = item->keys;
    std::optional<Place> entry = placeByRegistryKey(*head, keys, &DiskListKeys::offset);
    if (!entry)
        entry = placeByRegistryKey(*head, keys, &DiskListKeys::number);
    // From a place that was found by offset or number, the walk by name goes on with a key below every
    // name's. It stops at once, unless the name there ends in no digit.
    const Place place = entry ? placeByName(*head, *entry, keys.bsdName(), -1)
                              : placeByName(*head, { *head, true }, keys.bsdName(), keys.nameNumber());
    insertBefore(head, place, item);
}

void disk_list_add(Item **head, Item *item)
{
    item->readKeys();
    for (Item *node = *head; node; node = node->next == *head ? nullptr : node->next)
        node->readKeys();
    disk_list_place(head, item);
}

void disk_list_insert(Item **head, int index, Item *item)
{
    if (!*head) {
        item->next = item->prev = item;
        *head = item;
        return;
    }
    Place place { *head, index == 0 };
    for (int i = 0; i < index; ++i)
        place.item = place.item->next;
    insertBefore(head, place, item);
}

void disk_list_link(Item **head, const std::vector<Item *> &items)
{
    *head = items.empty() ? nullptr : items.front();
    for (std::size_t i = 0; i < items.size(); ++i) {
        Item *const next = items[(i + 1) % items.size()];
        items[i]->next = next;
        next->prev = items[i];
    }
}

void disk_list_remove(Item **head, Item *item)
{
    if (item->next == item) {
        *head = nullptr;
        return;
    }
    item->prev->next = item->next;
    item->next->prev = item->prev;
    if (*head == item)
        *head = item->next;
}

void disk_list_rebuild(Item **head, Item *added)
{
    const std::vector<Item *> nodes = flattened(*head, added);
    *head = nullptr;

    QHash<QString, Item *> byName;
    byName.reserve(static_cast<qsizetype>(nodes.size()));
    for (Item *node : nodes) {
        node->readKeys();
        if (!byName.contains(node->keys.bsdName())) // the first of a name is the parent of all its partitions
            byName.insert(node->keys.bsdName(), node);
    }
    for (Item *node : nodes) {
        const std::optional<QString> &parentName = node->keys.parentName();
        Item *const parent = parentName ? byName.value(*parentName) : nullptr;
        disk_list_place(parent ? &parent->children : head, node);
    }
}

DiskListPosition disk_list_find(Item **head, const QString &bsdName)
{
    std::vector<Item **> rings;
    if (*head)
        rings.push_back(head);
    while (!rings.empty()) {
        Item **const ring = rings.back();
        rings.pop_back();
        Item *node = *ring;
        do {
            if (node->disk->bsdName == bsdName)
                return { node, ring };
            if (node->children)
                rings.push_back(&node->children);
            node = node->next;
        } while (node != *ring);
    }
    return {};
}

std::vector<Item *> disk_list_all(Item *head)
{
    std::vector<Item *> nodes;
    for (Item *node = head; node; node = node->next == head ? nullptr : node->next)
        nodes.push_back(node);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        Item *const ring = nodes[i]->children;
        for (Item *node = ring; node; node = node->next == ring ? nullptr : node->next)
            nodes.push_back(node);
    }
    return nodes;
}

std::vector<Item *> disk_list_subtree(Item *item)
{
    std::vector<Item *> nodes = disk_list_all(item->children);
    nodes.insert(nodes.begin(), item);
    return nodes;
}
