// SPDX-License-Identifier: MIT
//
// The disk tree as the outline view shows it.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/SystemLog.h"
#include "ui/OutlineView.h"

void ZorvexDiskManagerAppDelegate::addDiskListItem(std::unique_ptr<ZorvexDiskManagerDiskListItem> item)
{
    ZorvexDiskManagerDiskListItem *const added = item.get();
    m_diskListItems.emplace(added, std::move(item));
    const DiskListAddition addition = m_diskListBuilder.add(&disk_list, added);

    const DiskRecord selected = selectedDisk();
    if (addition.movedOthers)
        leftOutlineView->reloadData();
    else
        leftOutlineView->insertItem(
            added->disk, addition.parent ? addition.parent->disk : nullptr, addition.index);
    leftOutlineView->expandAllItems();
    const int addedRow = leftOutlineView->rowForItem(added->disk);
    if (addedRow < 0) {
        systemLog(QString::asprintf("No index found for item %p (disk %p)!", static_cast<const void *>(added),
            static_cast<const void *>(added->disk.get())));
    }
    // Rows below the new one have moved down; others may have gone under it, or come out of a collapsed disk.
    const int selectedRow = selected ? leftOutlineView->rowForItem(selected) : -1;
    const bool hasMoved = selectedRow > addedRow || selectedRow != leftOutlineView->selectedRow();
    if (selectedRow >= 0 && addedRow >= 0 && hasMoved) {
        leftOutlineView->selectRow(selectedRow);
        outlineViewSelectionDidChange();
    }
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
