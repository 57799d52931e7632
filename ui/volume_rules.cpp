// SPDX-License-Identifier: MIT
#include "ui/volume_rules.h"

#include "platform/no_widgets.h"

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

const MountedFileSystem *findVolume(const std::vector<MountedFileSystem> &mounted, const QString &bsdName)
{
    const QByteArray name = bsdName.toUtf8();
    for (const MountedFileSystem &fileSystem : mounted) {
        if (isVolumeOf(fileSystem.mountedFrom, name))
            return &fileSystem;
    }
    return nullptr;
}

QByteArray pathToVolume(const MountTable &table, const MountedFileSystem &volume)
{
    if (table.fileSystemID(volume.mountPoint) == volume.id)
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
        if (entry.startsWith(baseName) && table.fileSystemID(path) == volume.id)
            return path;
    }
    return volume.mountPoint;
}

} // namespace VolumeRules
