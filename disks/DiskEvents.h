// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DiskArbitration.h"

class ZorvexDiskManagerAppDelegate;

// What the disk service is given. Each forwards to the controller that is its context.
void zorvex_disk_manager_da_disk_peek(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context);
void zorvex_disk_manager_da_disk_appeared(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context);
void zorvex_disk_manager_da_disk_disappeared(const DADiskRef &disk, ZorvexDiskManagerAppDelegate *context);
void zorvex_disk_manager_da_disk_description_changed(
    const DADiskRef &disk, const QStringList &keys, ZorvexDiskManagerAppDelegate *context);
