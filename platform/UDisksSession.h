// SPDX-License-Identifier: MIT
//
// The disk arbitration session of a Linux machine: UDisks2 on the system bus. Its objects are listed once,
// with one asynchronous call, and followed by their signals from then on; a service that restarts takes all
// its media back and reports them anew. Main thread only; nothing waits for the service.
#pragma once

#include "platform/DiskArbitration.h"
#include "platform/FilesystemClaims.h"
#include "platform/UDisksMedium.h"

#include <QDBusConnection>

#include <memory>

// When the service is asked for its media, which are reported from scheduling on. Asked ahead, it answers
// while the caller is busy with other things.
enum class UDisksListing { WhenScheduled, Ahead };

// Makes the session over the system bus; null when there is no system bus. The claims say which bundle serves
// which file system.
std::unique_ptr<DASession> createUDisksSession(
    FilesystemClaims claims, UDisksListing listing = UDisksListing::WhenScheduled);

// The same over a connection, and with facts about devices, of the caller's choice.
std::unique_ptr<DASession> createUDisksSession(FilesystemClaims claims, const QDBusConnection &bus,
    BlockDeviceFactsReader readFacts, UDisksListing listing = UDisksListing::WhenScheduled);
