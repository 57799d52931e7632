// SPDX-License-Identifier: MIT
//
// Everything that the application gets from outside. main() fills it with the real services, a test with
// others.
#pragma once

#include "disks/ZorvexDiskManagerDiskListItem.h"
#include "filesystems/FilesystemCatalogue.h"
#include "filesystems/SystemTools.h"
#include "platform/DetachedThread.h"
#include "platform/DeviceUse.h"
#include "platform/DiskArbitration.h"
#include "platform/MountTable.h"
#include "platform/ShellPipe.h"
#include "platform/SystemDevices.h"
#include "platform/Workspace.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

struct ApplicationPlatform
{
    DASessionFactory createSession;
    std::shared_ptr<MountTable> mountTable;
    std::shared_ptr<Workspace> workspace;
    std::function<bool(const QString &deviceNode)> isSystemDevice
        = [](const QString &deviceNode) { return ::isSystemDevice(deviceNode); };
    std::function<std::unique_ptr<ShellPipe>()> createShellPipe;
    std::function<int(std::function<void()> task)> startThread = &startDetachedThread;

    // What a device node is used for, and which medium it leads to, at the time of the call.
    std::function<DeviceUse(const QString &deviceNode)> readDeviceUse
        = [](const QString &deviceNode) { return ::readDeviceUse(deviceNode); };
    std::function<std::optional<DeviceIdentity>(const QString &deviceNode)> readDeviceIdentity
        = [](const QString &deviceNode) { return ::readDeviceIdentity(deviceNode); };

    // The device nodes of a whole disk's partitions, those without a row as well.
    std::function<QStringList(const QString &deviceNode)> partitionNodes
        = [](const QString &deviceNode) { return ::partitionNodes(deviceNode); };

    // Where the system has a program that a file system needs; empty when it has not.
    ToolFinder findTool = &::findTool;

    // The program's localizations in the order of the user's preference, if known, and the locale's name.
    std::optional<QStringList> preferredLocalizations;
    QString localeIdentifier;

    QStringList filesystemDirectories;
    BundleGuard bundleGuard;
    QString userManualPath;

    // Where records get their memory; null when memory is short.
    CatalogueMemory catalogueMemory;
    std::function<DiskRecord()> allocDisk = &ZorvexDiskManagerDisk::alloc;
    std::function<std::unique_ptr<ZorvexDiskManagerDiskListItem>()> allocDiskListItem
        = &ZorvexDiskManagerDiskListItem::alloc;
};
