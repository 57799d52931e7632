// SPDX-License-Identifier: MIT
//
// The callbacks that the disk service is given with a request. Each receives the service's disk, the
// dissenter (null on success) and the record as context, which it keeps alive from the request to here. Main
// thread only.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"

using DiskRequestCallback
    = void (*)(const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);

// First steps.
void UnmountDidUnmountDisk(const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);
void UnmountDidForceUnmountDisk(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);
void EjectDidUnmountDisk(const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);
void EjectDidForceUnmountDisk(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);

// Final steps: the record is brought up to date and the outcome reported.
void zorvex_disk_manager_da_disk_did_mount(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);
void zorvex_disk_manager_da_disk_did_unmount(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);
void zorvex_disk_manager_da_disk_did_eject(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context);

// The callback and its context as one completion.
DADiskCompletion completionWithContext(DiskRequestCallback callback, const DiskRecord &record);
