// SPDX-License-Identifier: MIT
//
// What the parts of the application share, gathered for the controller, which uses all of it. Each stands in
// the folder of its concern, where the folders below app/ find it, too.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h" // the disk record
#include "disks/ZorvexDiskManagerDiskListItem.h" // the node of the disk tree
#include "filesystems/filesystem_names.h" // which file systems are the program's own
#include "filesystems/ZorvexDiskManagerFSBundle.h" // the file system bundle record
#include "operations/DiskutilRunner.h" // DiskutilOutputHandler
#include "operations/ZorvexDiskManagerFormatParams.h" // what one format operation carries
#include "platform/Localization.h" // texts by key
#include "platform/SystemRelease.h" // the generation of the system
