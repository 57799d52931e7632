// SPDX-License-Identifier: MIT
//
// What diskutil asks this machine. Every answer is read at the time of the call. Main thread only.
#pragma once

#include "filesystems/BundleScan.h"
#include "filesystems/SystemTools.h"
#include "platform/DesktopUserMount.h"
#include "platform/DeviceUse.h"
#include "platform/KernelPartitions.h"
#include "platform/ShutdownInhibition.h"
#include "platform/VolumeMount.h"
#include "tools/diskutil/preflight_rules.h"

#include <functional>
#include <vector>

// The installed file system bundles, the program's own first.
std::vector<FilesystemBundle> readInstalledBundles();

// Lets those bundles be read whose executables this process may run. The others are read, too, but come last.
BundleGuard guardOfBundlesToRun();

// The situation of a medium. The other media tell what is mounted where this process does not see it.
PreflightRules::DeviceSituation readDeviceSituation(const Medium &medium, const std::vector<Medium> &media);

// The situation of a whole disk and of each of its partitions that the kernel has. The mounts of media that
// the disk service knows are no use in it: they are unmounted first.
struct PartSituation
{
    Medium medium; // as far as it is known: a partition that the disk service keeps to itself has only a node
    PreflightRules::DeviceSituation situation;
};
std::vector<PartSituation> readDiskSituation(const Medium &disk, const std::vector<Medium> &media);

// The situation of one of the bundle's executables.
PreflightRules::ToolSituation readToolSituation(const FilesystemBundle &bundle, const BundleTool &tool);

// The path of an executable of a bundle.
QString executablePath(const FilesystemBundle &bundle, const BundleTool &tool);

// The medium that an argument names, by its BSD name or by a device node, links followed as far as the user
// at whose wish this runs could follow them. Returns std::nullopt when there is none.
std::optional<Medium> findMedium(const std::vector<Medium> &media, const QString &argument);

// Whether the argument leads the user to something that exists but is not a block device.
bool isOtherFile(const QString &argument);

// A device that is held open. Its number is not given to another medium until this object has gone.
struct HeldDevice
{
    // Of the device itself, wherever its node leads by now. Returns std::nullopt when it could not be opened.
    std::function<std::optional<DeviceIdentity>()> identity;

    // Locks it, and claims it where the program does not. Returns 0, or why it could not, an errno value.
    std::function<int(Claimant claimant)> take;

    // What a program inherits so that lock and claim live as long as it does.
    std::function<std::vector<int>()> descriptors;

    // Whether its first and its last block can be read.
    std::function<bool()> isReadable;

    int openError = 0; // an errno value
};

HeldDevice holdDevice(const QString &deviceNode);

// The name of the user at whose wish this process runs as root; empty when there is none.
QString invokingUserName();

// Makes the new volume of this device the desktop user's, where that user could have mounted it. Does nothing
// when there is no such user.
void giveToDesktopUser(const QString &mountPoint, const QString &deviceNode);

// What a job asks. The defaults ask this machine; a test gives its own answers.
struct Machine
{
    std::function<std::vector<FilesystemBundle>()> readInstalledBundles = &::readInstalledBundles;
    std::function<PreflightRules::DeviceSituation(const Medium &medium, const std::vector<Medium> &media)>
        readDeviceSituation = &::readDeviceSituation;
    std::function<std::vector<PartSituation>(const Medium &disk, const std::vector<Medium> &media)>
        readDiskSituation = &::readDiskSituation;
    std::function<PreflightRules::ToolSituation(const FilesystemBundle &bundle, const BundleTool &tool)>
        readToolSituation = &::readToolSituation;
    ToolFinder findTool = &::findTool;
    std::function<std::optional<DeviceIdentity>(const QString &deviceNode)> readDeviceIdentity
        = [](const QString &deviceNode) { return ::readDeviceIdentity(deviceNode); };
    std::function<HeldDevice(const QString &deviceNode)> holdDevice = &::holdDevice;
    std::function<void(const QString &deviceNode)> announceChange = &::announceChange;
    std::function<bool(const QString &diskNode)> takesPartitions = &::takesPartitions;
    std::function<bool(const QString &diskNode, qint64 start, qint64 size)> makeOnlyPartition
        = &::makeOnlyPartition;
    std::function<std::vector<VolumeMount>(const QString &deviceNode)> readVolumeMounts
        = [](const QString &deviceNode) { return ::readVolumeMounts(deviceNode); };
    std::function<QString()> invokingUser = &::invokingUserName; // empty when root itself has started this
    std::function<std::shared_ptr<void>(const QString &reason)> inhibitShutdown = &::inhibitShutdown;
    std::function<void(const QString &mountPoint, const QString &deviceNode)> giveToDesktopUser
        = &::giveToDesktopUser;
    std::function<void(const QString &path, QObject *context, std::function<void(bool isOpen)> done)>
        findFolderAccess = &::findFolderAccess;
};
