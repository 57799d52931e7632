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

int ZorvexDiskManagerAppDelegate::outlineView_numberOfChildrenOfItem(
    OutlineView *view, const OutlineItem &item)
{
    Q_UNUSED(view)
    const ZorvexDiskManagerDiskListItem *const first = childrenOf(item, disk_list);
    int count = 0;
    for (const auto *node = first; node; node = node->next == first ? nullptr : node->next)
        ++count;
    return count;
}

OutlineItem ZorvexDiskManagerAppDelegate::outlineView_child_ofItem(
    OutlineView *view, int index, const OutlineItem &item)
{
    Q_UNUSED(view)
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

bool ZorvexDiskManagerAppDelegate::outlineView_isItemExpandable(OutlineView *view, const OutlineItem &item)
{
    Q_UNUSED(view)
    return childrenOf(item, disk_list) != nullptr;
}

QString ZorvexDiskManagerAppDelegate::outlineView_objectValueForTableColumn_byItem(
    OutlineView *view, int column, const OutlineItem &item)
{
    Q_UNUSED(view)
    Q_UNUSED(column)
    return getDisplayNameForDisk(*item);
}

QString ZorvexDiskManagerAppDelegate::outlineView_accessibleTextByItem(
    OutlineView *view, const OutlineItem &item)
{
    Q_UNUSED(view)
    QStringList parts { getDisplayNameForDisk(*item), filesystemTextOf(*item),
        localizedString(PanelRules::rowStateKey(*item)) };
    parts.removeAll(QString());
    return parts.join(localizedString("LIST_SEPARATOR_TEXT"));
}

void ZorvexDiskManagerAppDelegate::outlineView_setObjectValue_forTableColumn_byItem(
    OutlineView *view, const QVariant &value, int column, const OutlineItem &item)
{
    Q_UNUSED(view)
    Q_UNUSED(value)
    Q_UNUSED(column)
    Q_UNUSED(item)
}

bool ZorvexDiskManagerAppDelegate::outlineView_acceptDrop_item_childIndex(
    OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index)
{
    Q_UNUSED(view)
    Q_UNUSED(drop)
    Q_UNUSED(item)
    Q_UNUSED(index)
    return false;
}

Qt::DropAction ZorvexDiskManagerAppDelegate::outlineView_validateDrop_proposedItem_proposedChildIndex(
    OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index)
{
    Q_UNUSED(view)
    Q_UNUSED(drop)
    Q_UNUSED(item)
    Q_UNUSED(index)
    return Qt::IgnoreAction;
}

QStringList
ZorvexDiskManagerAppDelegate::outlineView_namesOfPromisedFilesDroppedAtDestination_forDraggedItems(
    OutlineView *view, const QString &destination, const std::vector<OutlineItem> &items)
{
    Q_UNUSED(view)
    Q_UNUSED(destination)
    Q_UNUSED(items)
    return {};
}

OutlineItem ZorvexDiskManagerAppDelegate::outlineView_itemForPersistentObject(
    OutlineView *view, const QVariant &object)
{
    Q_UNUSED(view)
    Q_UNUSED(object)
    return nullptr;
}

QVariant ZorvexDiskManagerAppDelegate::outlineView_persistentObjectForItem(
    OutlineView *view, const OutlineItem &item)
{
    Q_UNUSED(view)
    Q_UNUSED(item)
    return {};
}

bool ZorvexDiskManagerAppDelegate::outlineView_writeItems_toPasteboard(
    OutlineView *view, const std::vector<OutlineItem> &items, QMimeData *pasteboard)
{
    Q_UNUSED(view)
    Q_UNUSED(items)
    Q_UNUSED(pasteboard)
    return false;
}

void ZorvexDiskManagerAppDelegate::outlineView_sortDescriptorsDidChange(
    OutlineView *view, const QStringList &oldDescriptors)
{
    Q_UNUSED(view)
    Q_UNUSED(oldDescriptors)
}

void ZorvexDiskManagerAppDelegate::outlineView_willDisplayCell_forTableColumn_item(
    OutlineView *view, TextFieldCell *cell, int column, const OutlineItem &item)
{
    Q_UNUSED(view)
    Q_UNUSED(column)
    if (!item)
        return;
    cell->enabled = PanelRules::isUnmountable(*item);
    if (auto *imageCell = dynamic_cast<ImageAndTextCell *>(cell))
        imageCell->setImage(getUIImageforDisk(*item, false));
}

bool ZorvexDiskManagerAppDelegate::outlineView_shouldEditTableColumn_item(
    OutlineView *view, int column, const OutlineItem &item)
{
    Q_UNUSED(view)
    Q_UNUSED(column)
    Q_UNUSED(item)
    return false;
}

void ZorvexDiskManagerAppDelegate::outlineView_didClickTableColumn(OutlineView *view, int column)
{
    Q_UNUSED(view)
    Q_UNUSED(column)
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
