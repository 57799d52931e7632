// SPDX-License-Identifier: MIT
//
// A table of libmount, and the way through its entries.
#pragma once

#include <libmount/libmount.h>
#include <memory>

struct LibmountTableDeleter
{
    void operator()(libmnt_table *table) const { mnt_unref_table(table); }
};
using LibmountTable = std::unique_ptr<libmnt_table, LibmountTableDeleter>;

// Calls the function with every entry, a libmnt_fs *, in the table's order. A null table has none.
template <typename Function> void forEachEntry(const LibmountTable &table, Function function)
{
    const std::unique_ptr<libmnt_iter, decltype(&mnt_free_iter)> iterator(
        mnt_new_iter(MNT_ITER_FORWARD), mnt_free_iter);
    libmnt_fs *entry = nullptr;
    while (table && iterator && mnt_table_next_fs(table.get(), iterator.get(), &entry) == 0)
        function(entry);
}
