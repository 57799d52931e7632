// SPDX-License-Identifier: MIT
//
// The controller's catalogue of file systems, and the format menu made from it.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "filesystems/display_name.h"
#include "filesystems/format_menu_rules.h"
#include "platform/SystemLog.h"
#include "ui/OutlineView.h"

#include <QComboBox>
#include <QIcon>
#include <QStandardItemModel>

void ZorvexDiskManagerAppDelegate::refreshFilesystems()
{
    const std::optional<FilesystemLists> scanned
        = scanFilesystemDirectories(m_platform.filesystemDirectories, m_platform.catalogueMemory);
    if (!scanned)
        return;
    mergeFilesystemList(allFilesystemBundlesList, scanned->all);
    mergeFilesystemList(formatFilesystemBundlesList, scanned->format);
    mergeFilesystemList(checkFilesystemBundlesList, scanned->check);
    mergeFilesystemList(repairFilesystemBundlesList, scanned->repair);
    refreshFormatFilesystemsPopupButton();
}

QString ZorvexDiskManagerAppDelegate::getFilesystemTypeString(const ZorvexDiskManagerFSBundle &bundle) const
{
    return ::getFilesystemTypeString(bundle, m_platform.preferredLocalizations.value_or(QStringList()));
}

void ZorvexDiskManagerAppDelegate::refreshFormatFilesystemsPopupButton()
{
    QComboBox *const popup = formatFilesystemsPopupButton;
    const auto remembered = popup->currentData().value<FilesystemBundleRef>();
    std::optional<qint64> mediaSize;
    if (const OutlineItem disk = selectedDisk())
        mediaSize = disk->mediaSize ? disk->mediaSize->longLongValue() : 0;

    const FormatMenu menu
        = formatMenuItems(formatFilesystemBundlesList.value_or(FilesystemBundleList()), mediaSize, remembered,
            [this](const ZorvexDiskManagerFSBundle &bundle) { return getFilesystemTypeString(bundle); });

    const QSignalBlocker blocker(popup);
    popup->clear();
    const auto *model = qobject_cast<QStandardItemModel *>(popup->model());
    const QIcon ownIcon(getImageNamed(QStringLiteral("zorvex_ntfs_icon.png")).value_or(QPixmap()));
    for (const FormatMenuItem &item : menu.items) {
        popup->addItem(item.hasOwnIcon ? ownIcon : QIcon(), item.title, QVariant::fromValue(item.record));
        model->item(popup->count() - 1)->setEnabled(item.isEnabled);
    }
    popup->setCurrentIndex(menu.selectedIndex);
}
