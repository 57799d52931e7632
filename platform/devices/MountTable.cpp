// SPDX-License-Identifier: MIT
#include "platform/MountTable.h"

#include "platform/BlockDevice.h"
#include "platform/devices/LibmountTable.h"
#include "platform/devices/SysfsDevice.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace {

// The kernel numbers a mounted file system by its device; the two halves of the number serve as identity.
FilesystemID identityOf(const KernelMount &mount)
{
    return { static_cast<qint32>(mount.deviceMajor), static_cast<qint32>(mount.deviceMinor) };
}

} // namespace

std::vector<KernelMount> readKernelMounts(const SystemRoot &system)
{
    std::vector<KernelMount> mounts;
    const QByteArray path = system.folder + "/proc/self/mountinfo";
    const LibmountTable table(mnt_new_table_from_file(path.constData()));
    forEachEntry(table, [&](libmnt_fs *entry) {
        const char *const source = mnt_fs_get_source(entry);
        const char *const target = mnt_fs_get_target(entry);
        if (!source || !target)
            return;
        const dev_t device = mnt_fs_get_devno(entry);
        mounts.push_back(
            { mnt_fs_get_id(entry), source, target, major(device), minor(device), mnt_fs_get_fstype(entry) });
    });
    return mounts;
}

KernelMountTable::KernelMountTable(SystemRoot system)
    : m_system(std::move(system))
{
}

std::vector<MountedFilesystem> KernelMountTable::mountedFilesystems() const
{
    std::vector<MountedFilesystem> result;
    for (const KernelMount &mount : readKernelMounts(m_system)) {
        const auto facts = readFactsOfDevice(mountedDevice(mount, m_system), m_system);
        if (facts)
            result.push_back(
                { "/dev/" + facts->bsdName.toLatin1(), mount.mountPoint, identityOf(mount), {} });
    }
    return result;
}

std::optional<FilesystemID> KernelMountTable::filesystemID(const QByteArray &path) const
{
    const auto mount = path.isEmpty() ? std::nullopt : mountOf(AT_FDCWD, path, m_system);
    return mount ? std::optional(identityOf(*mount)) : std::nullopt;
}

std::optional<std::vector<QByteArray>> KernelMountTable::folderEntries(const QByteArray &path) const
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(opendir(path.constData()), closedir);
    if (!folder)
        return std::nullopt;
    std::vector<QByteArray> names;
    while (const dirent *entry = readdir(folder.get()))
        names.emplace_back(entry->d_name);
    return names;
}

int KernelMountTable::freeSpace(const QByteArray &path, qint64 *bytes) const
{
    struct statvfs status = {};
    if (statvfs(path.constData(), &status) != 0)
        return errno;
    *bytes = static_cast<qint64>(status.f_bfree) * static_cast<qint64>(status.f_frsize);
    return 0;
}
