// SPDX-License-Identifier: MIT
#include "tools/diskutil/Machine.h"

#include "filesystems/FilesystemNames.h"
#include "platform/BlockDevice.h"
#include "platform/DesktopUserMount.h"
#include "platform/FileRights.h"
#include "platform/SystemLog.h"
#include "platform/TrustedFile.h"

#include <QFile>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

bool mayAccess(const QString &path, int mode)
{
    return access(QFile::encodeName(path).constData(), mode) == 0;
}

// Uses of a device that an unmount does not end.
QStringList usesBeyondMount(const QString &deviceNode)
{
    const DeviceUse use = readDeviceUse(deviceNode);
    QStringList words;
    for (const QString &holder : use.holders)
        words.append(u"%1 uses it"_s.arg(holder));
    if (use.isSwap)
        words.append(u"it is in use as swap space"_s);
    return words;
}

// The kernel's name of the block device that the path leads the user to; empty when it leads them to none.
QString kernelNameForUser(const QString &path)
{
    const FileRightsOfUser rights(desktopUser());
    return rights.areTaken() ? kernelDeviceName(path) : QString();
}

QStringList usesOfPartition(const QString &partition, const std::vector<Medium> &media)
{
    QStringList words;
    QStringList mountPoints = readDeviceUse(partition).mountPoints;
    for (const Medium &other : media) {
        if (other.deviceNode == partition && !other.mountPoint.isEmpty()
            && !mountPoints.contains(other.mountPoint))
            mountPoints.append(other.mountPoint);
    }
    for (const QString &mountPoint : mountPoints)
        words.append(u"%1 is mounted at %2"_s.arg(partition, mountPoint));
    for (const QString &use : usesBeyondMount(partition))
        words.append(partition + u": "_s + use);
    return words;
}

} // namespace

std::vector<FilesystemBundle> readInstalledBundles()
{
    std::vector<FilesystemBundle> bundles;
    scanBundles(
        filesystemDirectories(), [](const QString &line) { systemLog(line); },
        [&bundles](const BundleDescription &description) {
            bundles.push_back(readFilesystemBundle(description));
            return true;
        },
        guardOfBundlesToRun(), Distrusted::Last);
    std::sort(bundles.begin(), bundles.end(), [](const FilesystemBundle &a, const FilesystemBundle &b) {
        return compareBundleNames(a.name, b.name) < 0;
    });
    return bundles;
}

BundleGuard guardOfBundlesToRun()
{
    if (geteuid() != 0)
        return {};
    return [](const QString &bundlePath) { return !reasonForDistrustOfTree(bundlePath); };
}

PreflightRules::DeviceSituation readDeviceSituation(const Medium &medium, const std::vector<Medium> &media)
{
    PreflightRules::DeviceSituation situation;
    const QString &node = medium.deviceNode;
    situation.isBlockDevice = !kernelDeviceName(node).isEmpty();
    situation.systemUse = systemUse(node);
    situation.inUse = usesBeyondMount(node);
    for (const QString &partition : partitionNodes(node))
        situation.inUse += usesOfPartition(partition, media);
    situation.canRead = mayAccess(node, R_OK);
    situation.canWrite = mayAccess(node, W_OK);
    return situation;
}

std::vector<PartSituation> readDiskSituation(const Medium &disk, const std::vector<Medium> &media)
{
    std::vector<PartSituation> parts;
    for (const QString &node : partitionNodes(disk.deviceNode) + QStringList(disk.deviceNode)) {
        const auto known = std::find_if(media.begin(), media.end(),
            [&node](const Medium &candidate) { return candidate.deviceNode == node; });
        PartSituation part;
        if (known != media.end())
            part.medium = *known;
        part.medium.deviceNode = node;
        if (part.medium.bsdName.isEmpty())
            part.medium.bsdName = node;
        part.medium.isWritable = disk.isWritable;
        part.situation.isBlockDevice = !kernelDeviceName(node).isEmpty();
        part.situation.systemUse = systemUse(node);
        part.situation.inUse = usesBeyondMount(node);
        if (part.medium.mountPoint.isEmpty()) {
            for (const QString &mountPoint : readDeviceUse(node).mountPoints)
                part.situation.inUse.append(u"it is mounted at %1"_s.arg(mountPoint));
        }
        part.situation.canRead = mayAccess(node, R_OK);
        part.situation.canWrite = mayAccess(node, W_OK);
        parts.push_back(part);
    }
    return parts;
}

QString executablePath(const FilesystemBundle &bundle, const BundleTool &tool)
{
    return bundle.path + u"/Contents/Resources/"_s + tool.executable;
}

PreflightRules::ToolSituation readToolSituation(const FilesystemBundle &bundle, const BundleTool &tool)
{
    PreflightRules::ToolSituation situation;
    situation.missingTools = missingTools(bundle.requiredTools, &findTool);
    if (geteuid() != 0)
        return situation;
    // The dictionary decides what is run, so it must be trusted as well. What is run may use any other file
    // of its bundle.
    situation.distrust = reasonForDistrust(bundle.path + u"/Contents/Info.plist"_s);
    if (!situation.distrust)
        situation.distrust = reasonForDistrust(executablePath(bundle, tool));
    if (!situation.distrust)
        situation.distrust = reasonForDistrustOfTree(bundle.path);
    return situation;
}

std::optional<Medium> findMedium(const std::vector<Medium> &media, const QString &argument)
{
    const QString bsdName = bsdNameOfArgument(argument);
    const QString kernelName = bsdName.isEmpty() ? kernelNameForUser(argument) : QString();
    const auto found = std::find_if(media.begin(), media.end(), [&](const Medium &medium) {
        return bsdName.isEmpty() ? !kernelName.isEmpty() && kernelDeviceName(medium.deviceNode) == kernelName
                                 : medium.bsdName == bsdName;
    });
    return found == media.end() ? std::nullopt : std::optional(*found);
}

bool isOtherFile(const QString &argument)
{
    const FileRightsOfUser rights(desktopUser());
    // QFileInfo asks with access(2), which has the rights of the process.
    struct stat status = {};
    return rights.areTaken() && bsdNameOfArgument(argument).isEmpty()
        && stat(QFile::encodeName(argument).constData(), &status) == 0
        && kernelDeviceName(argument).isEmpty();
}

HeldDevice holdDevice(const QString &deviceNode)
{
    const auto device = std::make_shared<OpenDevice>(deviceNode);
    return { [device] { return device->identity(); },
        [device](Claimant claimant) { return device->take(claimant); },
        [device] { return device->descriptors(); }, [device] { return device->isReadable(); },
        device->openError() };
}

QString invokingUserName()
{
    const std::optional<DesktopUser> user = desktopUser();
    return user ? user->name : QString();
}

void giveToDesktopUser(const QString &mountPoint, const QString &deviceNode)
{
    giveMountedVolume(mountPoint, deviceNode, desktopUser());
}
