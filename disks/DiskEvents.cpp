// SPDX-License-Identifier: MIT
//
// Disks that appear, disappear and change.
#include "disks/DiskEvents.h"

#include "app/ZorvexDiskManagerAppDelegate.h"
#include "platform/SystemLog.h"
#include "ui/OutlineView.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// What a person needs to see that another disk is selected, and to hold back a press.
constexpr std::chrono::milliseconds timeToNotice { 500 };

std::optional<QString> bsdNameOf(const DADiskRef &disk)
{
    const std::optional<PropertyDictionary> description = disk->copyDescription();
    const PropertyValue *value = description ? description->value(DAKey::mediaBSDName) : nullptr;
    const QString *name = value ? value->asString() : nullptr;
    return name ? std::optional<QString>(*name) : std::nullopt;
}

void logNotFound(const DADiskRef &disk)
{
    systemLog(QString::asprintf("Could not find a matching ZorvexDiskManagerDisk for DADiskRef %p.",
        static_cast<const void *>(disk.get())));
}

} // namespace

void zorvex_disk_manager_da_disk_peek(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context)
{
    context->diskArbitrationDiskPeek(disk);
}

void zorvex_disk_manager_da_disk_appeared(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context)
{
    context->diskArbitrationDiskAppeared(disk);
}

void zorvex_disk_manager_da_disk_disappeared(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context)
{
    context->diskArbitrationDiskDisappeared(disk);
}

void zorvex_disk_manager_da_disk_description_changed(
    const DADiskRef &disk, const QStringList &keys, ZorvexDiskManagerAppDelegate *context)
{
    context->diskArbitrationDiskDescriptionChanged(disk, keys);
}

// No disk is held back or claimed.
void ZorvexDiskManagerAppDelegate::diskArbitrationDiskPeek(const DADiskRef &)
{
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskAppeared(const DADiskRef &disk)
{
    const DiskRecord record = m_platform.allocDisk();
    std::unique_ptr<ZorvexDiskManagerDiskListItem> item = m_platform.allocDiskListItem();
    if (!record || !item) {
        systemLog(u"Error while allocating new %1%2%3."_s.arg(record ? QString() : u"ZorvexDiskManagerDisk"_s,
            record || item ? QString() : u" and "_s, item ? QString() : u"ZorvexDiskManagerDiskListItem"_s));
        return;
    }
    if (zorvex_disk_manager_update_disk_description(disk, *record))
        return;
    record->delegate = this;
    record->parent_item = item.get();
    item->disk = record;
    item->children = nullptr;
    addDiskListItem(std::move(item));
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskDisappeared(const DADiskRef &disk)
{
    const std::optional<QString> bsdName = bsdNameOf(disk);
    if (!bsdName)
        return;
    const DiskListPosition position = m_diskListBuilder.find(&disk_list, *bsdName);
    if (!position.item) {
        logNotFound(disk);
        return;
    }
    Q_EMIT diskWillDisappear(disk);

    const DiskRecord record = position.item->disk;
    const DiskRecord selected = selectedDisk();
    const int selectedRow = leftOutlineView->selectedRow();
    const int removedRow = leftOutlineView->rowForItem(record);
    if (removedRow < 0) {
        systemLog(QString::asprintf("No index found for item %p (disk %p)!",
            static_cast<const void *>(position.item), static_cast<const void *>(record.get())));
    }
    m_diskListBuilder.remove(position);
    releaseDiskListItem(position.item);
    leftOutlineView->removeItem(record);

    if (selectedRow < removedRow || selectedRow < 0 || removedRow < 0)
        return;
    if (selectedRow > removedRow)
        leftOutlineView->selectRow(selectedRow - 1);
    else if (selectedRow >= leftOutlineView->numberOfRows())
        leftOutlineView->selectRow(leftOutlineView->numberOfRows() - 1);
    if (selectedDisk() != selected) {
        m_movedSelection = selectedDisk();
        m_sinceSelectionMoved.start();
    }
    outlineViewSelectionDidChange();
}

bool ZorvexDiskManagerAppDelegate::hasSelectionJustMoved() const
{
    return m_sinceSelectionMoved.isValid() && !m_sinceSelectionMoved.hasExpired(timeToNotice.count())
        && selectedDisk() == m_movedSelection;
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskDescriptionChanged(
    const DADiskRef &disk, const QStringList &)
{
    const std::optional<QString> bsdName = bsdNameOf(disk);
    if (!bsdName)
        return;
    const DiskListPosition position = m_diskListBuilder.find(&disk_list, *bsdName);
    if (!position.item) {
        logNotFound(disk);
        return;
    }
    if (zorvex_disk_manager_update_disk_description(disk, *position.item->disk)) {
        systemLog(u"Error while updating disk description from DADisk..."_s);
        return;
    }
    m_diskListBuilder.noteChange(position.item);
    m_burst.hasChanged = true;
    if (!m_burst.isOpen)
        showBurst();
}

void ZorvexDiskManagerAppDelegate::clickRefreshMenuItem(QObject *)
{
    refreshFilesystems();
    if (session)
        session->refresh();
    refreshAfterStateChange(); // free space is told by nobody
}
