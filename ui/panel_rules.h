// SPDX-License-Identifier: MIT
//
// What the information panel shows and allows for a disk. Functions of values, any thread.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <optional>

namespace PanelRules {

// A whole disk that carries partitions: what the button ejects.
bool isEjectable(const ZorvexDiskManagerDisk &disk);

// The string key of the button's title.
const char *buttonTitleKey(const ZorvexDiskManagerDisk &disk);

// The string key of what a row says of the disk's state.
const char *rowStateKey(const ZorvexDiskManagerDisk &disk);

// Whether the disk can be unmounted or ejected. Its row is drawn enabled then, and the button has the image
// for it.
bool isUnmountable(const ZorvexDiskManagerDisk &disk);

// The personality that names the disk's file system: the one of its subtype, else the first general one; null
// when none of its kind is in the list. An absent list is an empty one.
const ZorvexDiskManagerFSBundle *namingBundle(
    const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &list);

// The same for a volume of this kind and subtype.
const ZorvexDiskManagerFSBundle *namingBundle(
    const QString &volumeKind, qint32 subtype, const std::optional<FilesystemBundleList> &list);

// The string key of what stands in the place of a file system; null when it has no word of ours.
const char *contentKey(ProbedContent::Kind kind);

// Whether the list holds a personality for the disk's file system.
bool hasMatchingBundle(const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &list);

// Whether the menus offer to eject the disk that the medium is on, or is. The button has the rule of its own
// that isEjectable() is a part of.
bool canBeEjected(const ZorvexDiskManagerDisk &disk);

// What the panel's controls allow. While an operation is in progress nothing is.
struct Abilities
{
    bool mountUnmount = false;
    bool format = false;
    bool check = false;
    bool repair = false;
};
Abilities abilitiesOf(const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &checkList,
    const std::optional<FilesystemBundleList> &repairList);

// The string key of the reason why a control is disabled; null when there is none.
const char *mountReasonKey(const ZorvexDiskManagerDisk &disk);
const char *ejectReasonKey(const ZorvexDiskManagerDisk &disk); // of the item in the menus
const char *formatReasonKey(const ZorvexDiskManagerDisk &disk);
const char *checkReasonKey(const ZorvexDiskManagerDisk &disk, const Abilities &abilities);
const char *repairReasonKey(const ZorvexDiskManagerDisk &disk, const Abilities &abilities);

// What becomes of a tab that is there for some disks only. One that is to be kept stays as it is, there or
// not: while an operation is in progress no tab goes.
enum class TabChange { Keep, Remove, Insert };
TabChange formatTabChange(const ZorvexDiskManagerDisk &disk, bool canFormat);
TabChange maintenanceTabChange(const ZorvexDiskManagerDisk &disk);

// The percentage that the current line of a tool's output carries, 0 to 100. Returns std::nullopt when it
// carries none.
std::optional<int> percentageIn(const QByteArray &output);

} // namespace PanelRules
