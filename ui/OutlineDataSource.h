// SPDX-License-Identifier: MIT
//
// What an outline view asks of its data source and delegate. Items are disk records; the null item is the
// root. A drop on an item has the child index -1. This view does not save what it shows, sort its rows or
// promise files: it asks nothing of persistent objects, sort descriptors and promised files.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"

#include <QDropEvent>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

class OutlineView;
class TextFieldCell;

using OutlineItem = DiskRecord;

class OutlineDataSource
{
public:
    virtual ~OutlineDataSource() = default;
    virtual int outlineView_numberOfChildrenOfItem(OutlineView *view, const OutlineItem &item) = 0;
    virtual OutlineItem outlineView_child_ofItem(OutlineView *view, int index, const OutlineItem &item) = 0;
    // All of them, in their order.
    virtual std::vector<OutlineItem> outlineView_childrenOfItem(OutlineView *view, const OutlineItem &item)
        = 0;
    virtual bool outlineView_isItemExpandable(OutlineView *view, const OutlineItem &item) = 0;
    virtual QString outlineView_objectValueForTableColumn_byItem(
        OutlineView *view, int column, const OutlineItem &item)
        = 0;
    // What a screen reader says of the item's row.
    virtual QString outlineView_accessibleTextByItem(OutlineView *view, const OutlineItem &item) = 0;
    virtual void outlineView_setObjectValue_forTableColumn_byItem(
        OutlineView *view, const QVariant &value, int column, const OutlineItem &item)
        = 0;
    virtual bool outlineView_acceptDrop_item_childIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index)
        = 0;
    virtual Qt::DropAction outlineView_validateDrop_proposedItem_proposedChildIndex(
        OutlineView *view, const QMimeData *drop, const OutlineItem &item, int index)
        = 0;
    virtual QStringList outlineView_namesOfPromisedFilesDroppedAtDestination_forDraggedItems(
        OutlineView *view, const QString &destination, const std::vector<OutlineItem> &items)
        = 0;
    virtual OutlineItem outlineView_itemForPersistentObject(OutlineView *view, const QVariant &object) = 0;
    virtual QVariant outlineView_persistentObjectForItem(OutlineView *view, const OutlineItem &item) = 0;
    virtual bool outlineView_writeItems_toPasteboard(
        OutlineView *view, const std::vector<OutlineItem> &items, QMimeData *pasteboard)
        = 0;
    virtual void outlineView_sortDescriptorsDidChange(OutlineView *view, const QStringList &oldDescriptors)
        = 0;
};

class OutlineDelegate
{
public:
    // Whether the row is marked as one on which an operation runs.
    virtual bool outlineView_isItemBusy(OutlineView *, const OutlineItem &) { return false; }
    // The name of the drawing at the end of the item's row; empty for none.
    virtual QString outlineView_glyphOfItem(OutlineView *, const OutlineItem &) { return {}; }
    virtual ~OutlineDelegate() = default;
    virtual void outlineView_willDisplayCell_forTableColumn_item(
        OutlineView *view, TextFieldCell *cell, int column, const OutlineItem &item)
        = 0;
    virtual bool outlineView_shouldEditTableColumn_item(
        OutlineView *view, int column, const OutlineItem &item)
        = 0;
    virtual void outlineView_didClickTableColumn(OutlineView *view, int column) = 0;
    virtual void outlineViewColumnDidResize() = 0;
    virtual void outlineViewSelectionDidChange() = 0;
    virtual void outlineViewSelectionIsChanging() = 0;
};
