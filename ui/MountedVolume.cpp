// SPDX-License-Identifier: MIT
#include "ui/MountedVolume.h"

#include "platform/NoWidgets.h"

namespace VolumeRules {

namespace {

bool isVolumeOf(const QByteArray &mountedFrom, const QByteArray &bsdName)
{
    static const QByteArray rawPrefix = QByteArrayLiteral("/dev/rdisk");
    static const QByteArray prefix = QByteArrayLiteral("/dev/disk");
    if (mountedFrom.startsWith(rawPrefix))
        return mountedFrom.mid(qsizetype(sizeof "/dev/r" - 1)) == bsdName;
    return mountedFrom.startsWith(prefix) && mountedFrom.mid(qsizetype(sizeof "/dev/" - 1)) == bsdName;
}

} // namespace

const MountedFilesystem *findVolume(const std::vector<MountedFilesystem> &mounted, const QString &bsdName)
{
    const QByteArray name = bsdName.toUtf8();
    for (const MountedFilesystem &filesystem : mounted) {
        if (isVolumeOf(filesystem.mountedFrom, name))
            return &filesystem;
    }
    return nullptr;
}

QByteArray pathToVolume(const MountTable &table, const MountedFilesystem &volume)
{
    if (table.filesystemID(volume.mountPoint) == volume.id)
        return volume.mountPoint;
    const qsizetype separator = volume.mountPoint.lastIndexOf('/');
    if (separator < 0)
        return volume.mountPoint;
    const QByteArray folder = separator == 0 ? QByteArray("/") : volume.mountPoint.left(separator);
    const QByteArray baseName = volume.mountPoint.mid(separator + 1);
    const auto entries = table.folderEntries(folder);
    if (!entries)
        return volume.mountPoint;
    for (const QByteArray &entry : *entries) {
        QByteArray path = folder + '/' + entry;
        if (entry.startsWith(baseName) && table.filesystemID(path) == volume.id)
            return path;
    }
    return volume.mountPoint;
}

} // namespace VolumeRules
