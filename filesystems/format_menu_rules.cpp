// SPDX-License-Identifier: MIT
#include "filesystems/format_menu_rules.h"

#include "filesystems/FilesystemNames.h"

#include "platform/NoWidgets.h"

namespace FormatMenuRules {

namespace {

// Both bounds are inclusive. A bound that is no number binds nothing.
SizeFit fitOf(const ZorvexDiskManagerFSBundle &record, const PropertyNumber &size)
{
    const PropertyNumber *minimum = numberOf(record.fsFormatMinimumSize);
    const PropertyNumber *maximum = numberOf(record.fsFormatMaximumSize);
    if (minimum && size.compare(*minimum) < 0)
        return SizeFit::DiskTooSmall;
    return maximum && size.compare(*maximum) > 0 ? SizeFit::DiskTooLarge : SizeFit::Fits;
}

} // namespace

FormatMenu formatMenuItems(const FilesystemBundleList &list, std::optional<qint64> selectedMediaSize,
    const FilesystemBundleRef &remembered,
    const std::function<QString(const ZorvexDiskManagerFSBundle &)> &title)
{
    FormatMenu menu;
    menu.items.reserve(list.size());
    for (const FilesystemBundleRef &record : list) {
        if (remembered && record->compare(*remembered) == 0)
            menu.selectedIndex = static_cast<int>(menu.items.size());
        menu.items.push_back({ title(*record), isOwnFilesystem(record->bundleName),
            selectedMediaSize ? fitOf(*record, PropertyNumber(*selectedMediaSize)) : SizeFit::Fits, record });
    }
    while (menu.selectedIndex >= 0 && !menu.items[static_cast<std::size_t>(menu.selectedIndex)].isEnabled())
        --menu.selectedIndex;
    return menu;
}

} // namespace FormatMenuRules
