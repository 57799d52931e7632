// SPDX-License-Identifier: MIT
#pragma once

#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <functional>

namespace FormatMenuRules {

// How a file system goes with the size of a disk.
enum class SizeFit { Fits, DiskTooSmall, DiskTooLarge };

struct FormatMenuItem
{
    QString title;
    bool hasOwnIcon = false; // carries the icon of the program's own file systems
    SizeFit fit = SizeFit::Fits;
    FilesystemBundleRef record;
    QString reason = {}; // why it is disabled, in the user's language; for who shows the menu

    bool isEnabled() const { return fit == SizeFit::Fits; }
};

struct FormatMenu
{
    std::vector<FormatMenuItem> items;
    int selectedIndex = -1; // no selection
};

// The format menu for the list. The size is the selected disk's in bytes, 0 when it is unknown, and
// std::nullopt when no disk is selected. The remembered record is the one whose item was selected before, or
// null. Where its item is disabled the selection goes to the nearest enabled item above it, never downward.
FormatMenu formatMenuItems(const FilesystemBundleList &list, std::optional<qint64> selectedMediaSize,
    const FilesystemBundleRef &remembered,
    const std::function<QString(const ZorvexDiskManagerFSBundle &)> &title);

} // namespace FormatMenuRules
