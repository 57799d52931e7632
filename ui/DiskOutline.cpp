// SPDX-License-Identifier: MIT
//
// The disk tree as rows of the outline view. It cannot be edited, dragged, dropped, sorted or saved.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/Localization.h"
#include "platform/SystemRelease.h"
#include "ui/ImageAndTextCell.h"
#include "ui/outline_rules.h"
#include "ui/OutlineView.h"
#include "ui/panel_rules.h"
#include "ui/status_rules.h"

namespace {

// First node of the item's children, or of the top level for no item.
const ZorvexDiskManagerDiskListItem *childrenOf(
    const OutlineItem &item, const ZorvexDiskManagerDiskListItem *topLevel)
{
    if (!item)
        return topLevel;
    return item->parent_item ? item->parent_item->children : nullptr;
}

} // namespace

DiskRecord ZorvexDiskManagerAppDelegate::selectedDisk() const
{
    return leftOutlineView->itemAtRow(leftOutlineView->selectedRow());
}

void ZorvexDiskManagerAppDelegate::selectMedium(const QString &bsdName)
{
    leftOutlineView->expand(leftOutlineView->currentIndex()); // a row that is not shown cannot be selected
    for (int row = 0; row < leftOutlineView->numberOfRows(); ++row) {
        if (leftOutlineView->itemAtRow(row)->bsdName == bsdName) {
            leftOutlineView->selectRow(row);
            leftOutlineView->setFocus(); // what was chosen is there, and the map is shown no more
            return;
        }
    }
}

int ZorvexDiskManagerAppDelegate::outlineView_numberOfChildrenOfItem(OutlineView *, const OutlineItem &item)
{
    const ZorvexDiskManagerDiskListItem *const first = childrenOf(item, disk_list);
    int count = 0;
    for (const auto *node = first; node; node = node->next == first ? nullptr : node->next)
        ++count;
    return count;
}

OutlineItem ZorvexDiskManagerAppDelegate::outlineView_child_ofItem(
    OutlineView *, int index, const OutlineItem &item)
{
    resizeOutlineView();
    const ZorvexDiskManagerDiskListItem *const first = childrenOf(item, disk_list);
    if (!first)
        return nullptr;
    const ZorvexDiskManagerDiskListItem *node = first;
    for (int i = 0; i < index; ++i) {
        node = node->next;
        if (node == first)
            break; // an index beyond the last child answers the first
    }
    return node->disk;
}

std::vector<OutlineItem> ZorvexDiskManagerAppDelegate::outlineView_childrenOfItem(
    OutlineView *, const OutlineItem &item)
{
    resizeOutlineView();
    const ZorvexDiskManagerDiskListItem *const first = childrenOf(item, disk_list);
    std::vector<OutlineItem> children;
    for (const auto *node = first; node; node = node->next == first ? nullptr : node->next)
        children.push_back(node->disk);
    return children;
}

bool ZorvexDiskManagerAppDelegate::outlineView_isItemExpandable(OutlineView *, const OutlineItem &item)
{
    return childrenOf(item, disk_list) != nullptr;
}

QString ZorvexDiskManagerAppDelegate::outlineView_objectValueForTableColumn_byItem(
    OutlineView *, int, const OutlineItem &item)
{
    return getDisplayNameForDisk(*item);
}

QString ZorvexDiskManagerAppDelegate::outlineView_accessibleTextByItem(OutlineView *, const OutlineItem &item)
{
    // As the panel would ask if the row were selected.
    qint16 subtype = 0;
    const bool isKnown = item->volumePath && getVolumeData(*item, nullptr, &subtype);
    return rowTextOf(*item, filesystemTextOf(*item, isKnown ? subtype : item->subtype));
}

QString ZorvexDiskManagerAppDelegate::rowTextOf(
    const ZorvexDiskManagerDisk &disk, const QString &filesystem) const
{
    QStringList parts { getDisplayNameForDisk(disk), filesystem,
        localizedString(PanelRules::rowStateKey(disk)),
        disk.operationInProgress ? localizedString("ROW_BUSY_TEXT") : QString() };
    parts.removeAll(QString());
    return parts.join(localizedString("LIST_SEPARATOR_TEXT"));
}

bool ZorvexDiskManagerAppDelegate::outlineView_isItemBusy(OutlineView *, const OutlineItem &item)
{
    return item->operationInProgress;
}

// What can be taken out, at a glance.
QString ZorvexDiskManagerAppDelegate::outlineView_glyphOfItem(OutlineView *, const OutlineItem &item)
{
    using StatusRules::Medium;
    if (!item->whole)
        return {};
    switch (const Medium medium = StatusRules::mediumOf(*item)) {
    case Medium::Removable:
    case Medium::Card:
    case Medium::Disc:
    case Medium::Image:
        return StatusRules::mediumGlyph(medium);
    case Medium::Internal:
    case Medium::External:
    case Medium::Unlocked:
        break;
    }
    return {};
}

void ZorvexDiskManagerAppDelegate::outlineView_setObjectValue_forTableColumn_byItem(
    OutlineView *, const QVariant &, int, const OutlineItem &)
{
}

bool ZorvexDiskManagerAppDelegate::outlineView_acceptDrop_item_childIndex(
    OutlineView *, const QMimeData *, const OutlineItem &, int)
{
    return false;
}

Qt::DropAction ZorvexDiskManagerAppDelegate::outlineView_validateDrop_proposedItem_proposedChildIndex(
    OutlineView *, const QMimeData *, const OutlineItem &, int)
{
    return Qt::IgnoreAction;
}

QStringList
ZorvexDiskManagerAppDelegate::outlineView_namesOfPromisedFilesDroppedAtDestination_forDraggedItems(
    OutlineView *, const QString &, const std::vector<OutlineItem> &)
{
    return {};
}

OutlineItem ZorvexDiskManagerAppDelegate::outlineView_itemForPersistentObject(OutlineView *, const QVariant &)
{
    return nullptr;
}

QVariant ZorvexDiskManagerAppDelegate::outlineView_persistentObjectForItem(OutlineView *, const OutlineItem &)
{
    return {};
}

bool ZorvexDiskManagerAppDelegate::outlineView_writeItems_toPasteboard(
    OutlineView *, const std::vector<OutlineItem> &, QMimeData *)
{
    return false;
}

void ZorvexDiskManagerAppDelegate::outlineView_sortDescriptorsDidChange(OutlineView *, const QStringList &)
{
}

void ZorvexDiskManagerAppDelegate::outlineView_willDisplayCell_forTableColumn_item(
    OutlineView *, TextFieldCell *cell, int, const OutlineItem &item)
{
    if (!item)
        return;
    cell->enabled = PanelRules::isUnmountable(*item);
    if (auto *imageCell = dynamic_cast<ImageAndTextCell *>(cell))
        imageCell->setImage(getUIImageforDisk(*item, false));
}

bool ZorvexDiskManagerAppDelegate::outlineView_shouldEditTableColumn_item(
    OutlineView *, int, const OutlineItem &)
{
    return false;
}

void ZorvexDiskManagerAppDelegate::outlineView_didClickTableColumn(OutlineView *, int)
{
}

void ZorvexDiskManagerAppDelegate::outlineViewColumnDidResize()
{
    resizeOutlineView();
}

void ZorvexDiskManagerAppDelegate::resizeOutlineView()
{
    if (!isRightToLeftLocalization())
        return;
    if (!OutlineRules::mirrorsFrames(systemMajorVersion()))
        return;
    if (leftOutlineView && outlineViewScrollContainer)
        leftOutlineView->resize(
            outlineViewScrollContainer->width(), outlineViewScrollContainer->contentsRect().height());
}
