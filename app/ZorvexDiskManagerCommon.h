// SPDX-License-Identifier: MIT
//
// The types and helpers that the parts of the application share: the disk record and its node in the tree,
// the file system bundle record and which file systems are the program's own, what a format carries and how
// diskutil hands over its output, texts by key, and the generation of the system. They live in the folder of
// their concern, because the folders below app/ use them, too; the controller gets all of them here.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "disks/ZorvexDiskManagerDiskListItem.h"
#include "filesystems/FilesystemNames.h"
#include "filesystems/ZorvexDiskManagerFSBundle.h"
#include "operations/DiskutilRunner.h"
#include "operations/ZorvexDiskManagerFormatParams.h"
#include "platform/Localization.h"
#include "platform/SystemRelease.h"
