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

    const int selectedRow = leftOutlineView->selectedRow();
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
    if (selectedRow >= 0 && addedRow >= 0 && selectedRow >= addedRow) {
        leftOutlineView->selectRow(selectedRow + 1);
        outlineViewSelectionDidChange();
    }
}

// Gives back the node and those below it, which nothing reaches any more. Their records live on while an
// operation holds them.
void ZorvexDiskManagerAppDelegate::releaseDiskListItem(ZorvexDiskManagerDiskListItem *item)
{
    for (ZorvexDiskManagerDiskListItem *node : disk_list_subtree(item)) {
        node->disk->parent_item = nullptr;
        m_diskListItems.erase(node);
    }
}
