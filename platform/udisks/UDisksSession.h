// SPDX-License-Identifier: MIT
//
// The disk arbitration session of a Linux machine: UDisks2 on the system bus. Its objects are listed once,
// with one asynchronous call, and then followed by their signals. When the service restarts, all media are
// reported as gone, and then as new. Main thread only; no call waits for the service.
#pragma once

#include "platform/DiskArbitration.h"
#include "platform/udisks/UDisksMedium.h"
#include "platform/udisks/UDisksRequests.h"

#include <QDBusConnection>

#include <memory>

// Makes the session over this connection, with facts about devices from this reader, and word from this
// function on whether anything is mounted on a disk; null when the connection is down.
// createDiskArbitrationSession() makes it over the system bus.
std::unique_ptr<DASession> createUDisksSession(VolumeClaimReader readClaims, const QDBusConnection &bus,
    BlockDeviceFactsReader readFacts, MediaListing listing = MediaListing::WhenScheduled,
    MountFinder findMount = &isMountOnDisk);
