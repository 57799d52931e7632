// SPDX-License-Identifier: MIT
#include "disks/tree_rules.h"
#include "disks/ZorvexDiskManagerDiskListItem.h"

#include <QHash>

#include <cerrno>
#include <new>

using Item = ZorvexDiskManagerDiskListItem;

namespace {

// A walk along a ring, and whether it still stands at the head.
struct Place
{
    Item *item = nullptr;
    bool atHead = true;
};

using KeyReader = int (*)(const ZorvexDiskManagerDisk &record, qint64 *out);

int readRegistryNumber(const ZorvexDiskManagerDisk &record, const QString &key, qint64 *out)
{
    if (!record.daDisk)
        return EIO;
    const std::optional<PropertyDictionary> properties = record.daDisk->copyIOMediaProperties();
    if (!properties)
        return EIO;
    const PropertyValue *value = properties->value(key);
    const PropertyNumber *number = value ? value->asNumber() : nullptr;
    const std::optional<qint64> converted = number ? number->toLongLong() : std::nullopt;
    if (!converted || *converted < 0)
        return EIO;
    *out = *converted;
    return 0;
}

// Where a walk by offset or partition number puts the item; nothing when this key does not decide: it cannot
// be read, or a node before the place has the same.
std::optional<Place> placeByRegistryKey(Item *head, const Item &item, KeyReader readKey)
{
    qint64 key = 0;
    if (readKey(*item.disk, &key) != 0)
        return std::nullopt;
    Place place { head, true };
    do {
        qint64 other = 0;
        if (readKey(*place.item->disk, &other) != 0 || other == key)
            return std::nullopt;
        if (static_cast<quint64>(key) < static_cast<quint64>(other))
            return place;
        place = { place.item->next, false };
    } while (place.item != head);
    return place;
}

// Where the walk by the number at the end of the BSD name puts the item, from the entry place on.
Place placeByName(Item *head, Place entry, const Item &item, qint32 key)
{
    const QString name = item.disk->bsdName.value_or(QString());
    Place place = entry;
    do {
        const QString otherName = place.item->disk->bsdName.value_or(QString());
        const qint32 otherKey = trailingNumber(otherName);
        if (key == otherKey ? name < otherName : key < otherKey)
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

int get_partition_offset(const ZorvexDiskManagerDisk &record, qint64 *out)
{
    if (record.whole) {
        *out = 0;
        return 0;
    }
    return readRegistryNumber(record, IOMediaKey::base, out);
}

int get_partition_number(const ZorvexDiskManagerDisk &record, qint64 *out)
{
    return readRegistryNumber(record, IOMediaKey::partitionID, out);
}

void disk_list_add(Item **head, Item *item)
{
    if (!*head) {
        item->next = item->prev = item;
        *head = item;
        return;
    }
    std::optional<Place> entry = placeByRegistryKey(*head, *item, get_partition_offset);
    if (!entry)
        entry = placeByRegistryKey(*head, *item, get_partition_number);
    // A place that was found by offset or number is carried out by the walk by name with a key below every
    // name's, which stops at once unless the name there ends in no digit.
    const Place place = entry
        ? placeByName(*head, *entry, *item, -1)
        : placeByName(*head, { *head, true }, *item, trailingNumber(item->disk->bsdName.value_or(QString())));
    insertBefore(head, place, item);
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
        const QString name = node->disk->bsdName.value_or(QString());
        if (!byName.contains(name)) // the first node of a name is the parent of all its partitions
            byName.insert(name, node);
    }
    for (Item *node : nodes) {
        const auto parentName = parentBsdName(node->disk->bsdName.value_or(QString()));
        Item *const parent = parentName ? byName.value(*parentName) : nullptr;
        disk_list_add(parent ? &parent->children : head, node);
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

std::vector<Item *> disk_list_subtree(Item *item)
{
    std::vector<Item *> nodes { item };
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        Item *const ring = nodes[i]->children;
        for (Item *node = ring; node;) {
            nodes.push_back(node);
            node = node->next == ring ? nullptr : node->next;
        }
    }
    return nodes;
}
