// SPDX-License-Identifier: MIT
#include "platform/MountTable.h"

#include "platform/BlockDevice.h"

#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <libmount/libmount.h>
#include <memory>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace {

// The kernel numbers a mounted file system by its device; the two halves of the number serve as identity.
FilesystemID identityOf(quint32 deviceMajor, quint32 deviceMinor)
{
    return { static_cast<qint32>(deviceMajor), static_cast<qint32>(deviceMinor) };
}

struct TableDeleter
{
    void operator()(libmnt_table *table) const { mnt_unref_table(table); }
};

struct IteratorDeleter
{
    void operator()(libmnt_iter *iterator) const { mnt_free_iter(iterator); }
};

} // namespace

std::vector<KernelMount> readKernelMounts()
{
    std::vector<KernelMount> mounts;
    const std::unique_ptr<libmnt_table, TableDeleter> table(mnt_new_table_from_file("/proc/self/mountinfo"));
    const std::unique_ptr<libmnt_iter, IteratorDeleter> iterator(mnt_new_iter(MNT_ITER_FORWARD));
    if (!table || !iterator)
        return mounts;
    libmnt_fs *fs = nullptr;
    while (mnt_table_next_fs(table.get(), iterator.get(), &fs) == 0) {
        const char *const source = mnt_fs_get_source(fs);
        const char *const target = mnt_fs_get_target(fs);
        if (!source || !target)
            continue;
        const dev_t device = mnt_fs_get_devno(fs);
        mounts.push_back({ source, target, major(device), minor(device) });
    }
    return mounts;
}

std::vector<MountedFilesystem> KernelMountTable::mountedFilesystems() const
{
    std::vector<MountedFilesystem> result;
    for (const KernelMount &mount : readKernelMounts()) {
        if (!mount.source.startsWith("/dev/"))
            continue;
        const auto facts = readBlockDeviceFacts(QFile::decodeName(mount.source));
        if (!facts)
            continue;
        result.push_back({ "/dev/" + facts->bsdName.toLatin1(), mount.mountPoint,
            identityOf(mount.deviceMajor, mount.deviceMinor), {} });
    }
    return result;
}

std::optional<FilesystemID> KernelMountTable::filesystemID(const QByteArray &path) const
{
    struct stat status = {};
    if (stat(path.constData(), &status) != 0)
        return std::nullopt;
    return identityOf(major(status.st_dev), minor(status.st_dev));
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
    *bytes = static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
    return 0;
}
