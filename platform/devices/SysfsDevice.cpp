// SPDX-License-Identifier: MIT
#include "platform/devices/SysfsDevice.h"

#include "platform/FileDescriptor.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/sysmacros.h>

std::optional<struct stat> readFileStatus(const QByteArray &path)
{
    struct stat status = {};
    return stat(path.constData(), &status) == 0 ? std::optional(status) : std::nullopt;
}

std::optional<dev_t> blockDeviceNumber(const QByteArray &node, const SystemRoot &system)
{
    const std::optional<struct stat> status = system.fileStatus(node);
    return status && S_ISBLK(status->st_mode) ? std::optional(status->st_rdev) : std::nullopt;
}

std::optional<dev_t> mountedDevice(const KernelMount &mount, const SystemRoot &system)
{
    // The number is the device's, even where the source is a name without a node (/dev/root). A file system
    // over several devices has a number of its own, with the major number 0, and is known by its source.
    if (mount.deviceMajor != 0)
        return makedev(mount.deviceMajor, mount.deviceMinor);
    // Any user can give a file system of their own any name.
    if (mount.type == "fuse" || mount.type.startsWith("fuse."))
        return std::nullopt;
    return mount.source.startsWith("/dev/") ? blockDeviceNumber(mount.source, system) : std::nullopt;
}

// The number from stat(2) would not do: on Btrfs, each subvolume has its own.
std::optional<KernelMount> mountOf(int file, const QByteArray &path, const SystemRoot &system)
{
    struct statx status = {};
    constexpr int flags = AT_EMPTY_PATH | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    if (statx(file, path.constData(), flags, STATX_MNT_ID, &status) != 0 || !(status.stx_mask & STATX_MNT_ID))
        return std::nullopt;
    const std::vector<KernelMount> mounts = readKernelMounts(system);
    const auto found = std::find_if(mounts.begin(), mounts.end(),
        [&](const KernelMount &mount) { return static_cast<quint64>(mount.id) == status.stx_mnt_id; });
    return found == mounts.end() ? std::nullopt : std::optional(*found);
}

QByteArray sysfsFolder(std::optional<dev_t> device, const SystemRoot &system)
{
    if (!device)
        return {};
    const QByteArray link = system.folder + "/sys/dev/block/" + QByteArray::number(major(*device)) + ':'
        + QByteArray::number(minor(*device));
    char resolved[PATH_MAX];
    return realpath(link.constData(), resolved) ? QByteArray(resolved) : QByteArray();
}

QByteArray folderAbove(const QByteArray &folder)
{
    return folder.left(folder.lastIndexOf('/'));
}

QByteArray nameOfFolder(const QByteArray &folder)
{
    return folder.mid(folder.lastIndexOf('/') + 1);
}

// Plain system calls: this is read for every medium at start, where QFile's own costs would show.
QByteArray sysfsText(const QByteArray &path)
{
    const FileDescriptor file(open(path.constData(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        return {};
    char buffer[64];
    const ssize_t length = read(file.number(), buffer, sizeof buffer);
    return length > 0 ? QByteArray(buffer, length).trimmed() : QByteArray();
}
