// SPDX-License-Identifier: MIT
//
// The disk tree as the outline view shows it.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/SystemLog.h"
#include "ui/OutlineView.h"

#include <algorithm>
#include <utility>

void ZorvexDiskManagerAppDelegate::addDiskListItem(std::unique_ptr<ZorvexDiskManagerDiskListItem> item)
{
    ZorvexDiskManagerDiskListItem *const added = item.get();
    m_diskListItems.emplace(added, std::move(item));
    m_burst.added.push_back(added);
    if (!m_burst.isOpen)
        showBurst();
}

void ZorvexDiskManagerAppDelegate::followBurst(const std::function<void()> &report)
{
    m_burst.isOpen = true;
    report();
    m_burst.isOpen = false;
    showBurst();
}

void ZorvexDiskManagerAppDelegate::showBurst()
{
    const DiskListBurst burst = std::exchange(m_burst, {});
    if (burst.hasChanged)
        leftOutlineView->reloadData();
    const bool hasMoved = !burst.added.empty() && showAdded(burst.added);
    if (burst.hasChanged || hasMoved)
        outlineViewSelectionDidChange();
}

// Returns whether the selected row has got another number, or stands below a new one, and nobody was told.
bool ZorvexDiskManagerAppDelegate::showAdded(const std::vector<ZorvexDiskManagerDiskListItem *> &added)
{
    const DiskRecord selected = selectedDisk();
    const int rowBefore = leftOutlineView->selectedRow();
    if (added.size() > 1) {
        m_diskListBuilder.addAll(&disk_list, added);
        leftOutlineView->reloadData();
    } else if (const auto addition = m_diskListBuilder.add(&disk_list, added.front()); addition.movedOthers)
        leftOutlineView->reloadData();
    else
        leftOutlineView->insertItem(
            added.front()->disk, addition.parent ? addition.parent->disk : nullptr, addition.index);
    leftOutlineView->expandAllItems();
    for (const ZorvexDiskManagerDiskListItem *item : added) {
        if (!leftOutlineView->hasItem(item->disk))
            systemLog(QString::asprintf("No index found for item %p (disk %p)!",
                static_cast<const void *>(item), static_cast<const void *>(item->disk.get())));
    }
    // Rows below a new one have moved down; others may have gone under it, or come out of a collapsed disk.
    const int row = selected ? leftOutlineView->rowForItem(selected) : -1;
    if (row < 0)
        return false;
    if (row != leftOutlineView->selectedRow()) {
        leftOutlineView->selectRow(row); // which tells
        return false;
    }
    return row != rowBefore || std::any_of(added.begin(), added.end(), [&](const auto *item) {
        return leftOutlineView->hasItem(item->disk) && leftOutlineView->rowForItem(item->disk) < row;
    });
}

// Deletes the node and those below it, which have left the tree. Their records live on while an operation
// holds them.
void ZorvexDiskManagerAppDelegate::releaseDiskListItem(ZorvexDiskManagerDiskListItem *item)
{
    for (ZorvexDiskManagerDiskListItem *node : disk_list_subtree(item)) {
        node->disk->parent_item = nullptr;
        m_diskListItems.erase(node);
    }
}
