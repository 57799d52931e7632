// SPDX-License-Identifier: MIT
//
// The controller's catalogue of file systems, and the format menu made from it.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "filesystems/DisplayName.h"
#include "filesystems/format_menu_rules.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "ui/FormatMenuDelegate.h"
#include "ui/OutlineView.h"

#include <QComboBox>
#include <QIcon>

using namespace Qt::Literals::StringLiterals;

namespace {

// Whether the menu shows these titles and icons, in this order.
bool showsItems(const QComboBox &popup, const std::vector<FormatMenuRules::FormatMenuItem> &items)
{
    if (popup.count() != static_cast<int>(items.size()))
        return false;
    for (int i = 0; i < popup.count(); ++i) {
        const FormatMenuRules::FormatMenuItem &item = items[static_cast<std::size_t>(i)];
        if (popup.itemText(i) != item.title || popup.itemIcon(i).isNull() == item.hasOwnIcon)
            return false;
    }
    return true;
}

} // namespace

void ZorvexDiskManagerAppDelegate::refreshFilesystems()
{
    const std::optional<FilesystemLists> scanned = scanFilesystemDirectories(
        m_platform.filesystemDirectories, m_platform.catalogueMemory, m_platform.bundleGuard);
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

FormatMenuRules::FormatMenu ZorvexDiskManagerAppDelegate::formatMenuFor(
    std::optional<qint64> mediaSize, const FilesystemBundleRef &remembered) const
{
    FormatMenuRules::FormatMenu menu
        = FormatMenuRules::formatMenuItems(formatFilesystemBundlesList.value_or(FilesystemBundleList()),
            mediaSize, remembered, [this](const ZorvexDiskManagerFSBundle &bundle) {
                return nameToShow(getFilesystemTypeString(bundle));
            });
    for (FormatMenuRules::FormatMenuItem &item : menu.items) {
        if (item.isEnabled())
            continue;
        const bool isTooSmall = item.fit == FormatMenuRules::SizeFit::DiskTooSmall;
        const PropertyNumber *const bound
            = numberOf(isTooSmall ? item.record->fsFormatMinimumSize : item.record->fsFormatMaximumSize);
        item.reason
            = formatLocalized(localizedString(isTooSmall ? "FORMAT_TOO_SMALL_FMT" : "FORMAT_TOO_LARGE_FMT"),
                { getSizeString(bound->longLongValue()) });
    }
    return menu;
}

QString ZorvexDiskManagerAppDelegate::missingPackagesText(const ZorvexDiskManagerFSBundle *filesystem) const
{
    const QStringList packages
        = filesystem ? missingPackages(*filesystem, m_platform.findTool) : QStringList();
    return packages.isEmpty()
        ? QString()
        : formatLocalized(localizedString("PACKAGES_MISSING_FMT"), { nameToShow(packages.join(u", "_s)) });
}

void ZorvexDiskManagerAppDelegate::refreshFormatFilesystemsPopupButton()
{
    QComboBox *const popup = formatFilesystemsPopupButton;
    const auto remembered = popup->currentData().value<FilesystemBundleRef>();
    std::optional<qint64> mediaSize;
    if (const DiskRecord disk = selectedDisk())
        mediaSize = disk->mediaSize ? disk->mediaSize->longLongValue() : 0;
    const FormatMenuRules::FormatMenu menu = formatMenuFor(mediaSize, remembered);

    const QSignalBlocker blocker(popup);
    // The same menu stays: the user may have it open.
    if (!showsItems(*popup, menu.items)) {
        popup->clear();
        const QIcon ownIcon(getImageNamed(u"zorvex_ntfs_icon.png"_s).value_or(QPixmap()));
        for (const FormatMenuRules::FormatMenuItem &item : menu.items)
            popup->addItem(item.hasOwnIcon ? ownIcon : QIcon(), item.title);
    }
    for (int i = 0; i < popup->count(); ++i) {
        const FormatMenuRules::FormatMenuItem &item = menu.items[static_cast<std::size_t>(i)];
        popup->setItemData(i, QVariant::fromValue(item.record));
        FormatMenuDelegate::enableItem(*popup, i, item.reason);
    }
    if (popup->currentIndex() != menu.selectedIndex)
        popup->setCurrentIndex(menu.selectedIndex);
}
