// SPDX-License-Identifier: MIT
#include "disks/DiskRing.h"

#include <algorithm>
#include <limits>

using Item = ZorvexDiskManagerDiskListItem;

namespace {

using Key = const std::optional<qint64> &(DiskListKeys::*)() const;

// A walk along a ring stops at the first node whose key is not smaller, or cannot be read.
quint64 valueOf(const Item *item, Key key)
{
    const std::optional<qint64> &value = (item->keys.*key)();
    return value ? static_cast<quint64>(*value) : std::numeric_limits<quint64>::max();
}

// A ring in short blocks. Each knows the largest keys in it, so that a walk passes over it in one step. All
// names end in a digit: a place that was found by offset or number is not moved on by the walk by name.
class BlockedRing
{
public:
    void add(Item *item)
    {
        const auto isDecided = [&](const Place &place, Key key) {
            const std::optional<qint64> &wanted = (item->keys.*key)();
            const Item *const next = itemAt(place);
            return wanted && (!next || ((next->keys.*key)() && *(next->keys.*key)() != *wanted));
        };
        Place place = placeByKey(item, &DiskListKeys::offset, &Block::largestOffset);
        if (!isDecided(place, &DiskListKeys::offset)) {
            place = placeByKey(item, &DiskListKeys::number, &Block::largestNumber);
            if (!isDecided(place, &DiskListKeys::number))
                place = placeByName(item);
        }
        insert(place, item);
    }

    std::vector<Item *> items() const
    {
        std::vector<Item *> all;
        for (const Block &block : m_blocks)
            all.insert(all.end(), block.items.begin(), block.items.end());
        return all;
    }

private:
    static constexpr std::size_t longestBlock = 64;

    struct Block
    {
        void note(Item *item)
        {
            largestOffset = std::max(largestOffset, valueOf(item, &DiskListKeys::offset));
            largestNumber = std::max(largestNumber, valueOf(item, &DiskListKeys::number));
            if (!lastName || areInOrderOfNames(lastName, item))
                lastName = item;
        }

        std::vector<Item *> items; // never empty
        quint64 largestOffset = 0;
        quint64 largestNumber = 0;
        const Item *lastName = nullptr;
    };

    struct Place // before this item; behind the last block for the end
    {
        std::size_t block = 0;
        std::size_t index = 0;
    };

    Item *itemAt(const Place &place) const
    {
        return place.block < m_blocks.size() ? m_blocks[place.block].items[place.index] : nullptr;
    }

    template <typename HoldsOne, typename IsOne> Place firstPlace(HoldsOne holdsOne, IsOne isOne) const
    {
        const auto block = std::find_if(m_blocks.begin(), m_blocks.end(), holdsOne);
        if (block == m_blocks.end())
            return { m_blocks.size(), 0 };
        const auto item = std::find_if(block->items.begin(), block->items.end(), isOne);
        return { static_cast<std::size_t>(block - m_blocks.begin()),
            static_cast<std::size_t>(item - block->items.begin()) };
    }

    Place placeByKey(const Item *item, Key key, quint64 Block::*largest) const
    {
        const quint64 wanted = valueOf(item, key);
        return firstPlace([&](const Block &block) { return block.*largest >= wanted; },
            [&](const Item *other) { return valueOf(other, key) >= wanted; });
    }

    Place placeByName(const Item *item) const
    {
        return firstPlace([&](const Block &block) { return areInOrderOfNames(item, block.lastName); },
            [&](const Item *other) { return areInOrderOfNames(item, other); });
    }

    void insert(Place place, Item *item)
    {
        if (place.block == m_blocks.size() && !m_blocks.empty())
            place = { place.block - 1, m_blocks.back().items.size() };
        if (m_blocks.empty())
            m_blocks.emplace_back();
        Block &block = m_blocks[place.block];
        block.items.insert(block.items.begin() + static_cast<std::ptrdiff_t>(place.index), item);
        block.note(item);
        if (block.items.size() > longestBlock)
            split(place.block);
    }

    void split(std::size_t index)
    {
        const std::vector<Item *> items = std::move(m_blocks[index].items);
        Block halves[2];
        for (std::size_t i = 0; i < items.size(); ++i) {
            Block &half = halves[i < items.size() / 2 ? 0 : 1];
            half.items.push_back(items[i]);
            half.note(items[i]);
        }
        m_blocks[index] = std::move(halves[1]);
        m_blocks.insert(m_blocks.begin() + static_cast<std::ptrdiff_t>(index), std::move(halves[0]));
    }

    std::vector<Block> m_blocks;
};

} // namespace

bool areInOrderOfNames(const Item *a, const Item *b)
{
    return a->keys.nameNumber() == b->keys.nameNumber() ? a->keys.bsdName() < b->keys.bsdName()
                                                        : a->keys.nameNumber() < b->keys.nameNumber();
}

std::vector<Item *> itemsOfRing(Item *head)
{
    std::vector<Item *> ring;
    for (Item *node = head; node; node = node->next == head ? nullptr : node->next)
        ring.push_back(node);
    return ring;
}

std::vector<Item *> placedInTurn(const std::vector<Item *> &items)
{
    if (std::all_of(items.begin(), items.end(), [](Item *item) { return item->keys.nameNumber() >= 0; })) {
        BlockedRing ring;
        for (Item *item : items)
            ring.add(item);
        return ring.items();
    }
    Item *head = nullptr;
    for (Item *item : items)
        disk_list_place(&head, item);
    return itemsOfRing(head);
}
