// SPDX-License-Identifier: MIT
#include "platform/VolumeMount.h"

#include "platform/devices/LibmountTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What a user may ask the disk service for with any file system.
constexpr std::array optionsToKeep { "ro", "noexec", "noatime", "nodiratime", "sync", "dirsync", "lazytime" };

// Spaces and the like in a path of libmount's own table.
QByteArray escaped(const QByteArray &path)
{
    QByteArray text;
    for (const char c : path) {
        if (QByteArrayView(" \t\n\\#").contains(c))
            text += '\\' + QByteArray::number(static_cast<unsigned char>(c), 8).rightJustified(3, '0');
        else
            text += c;
    }
    return text;
}

// The disk service leaves its name in libmount's table of what the kernel does not keep.
bool isNotedAsServices(const QByteArray &place, const SystemRoot &system)
{
    QFile table(QFile::decodeName(system.folder + "/run/mount/utab"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> lines = table.readAll().split('\n');
    return std::any_of(lines.begin(), lines.end(), [&place](const QByteArray &line) {
        const QList<QByteArray> fields = line.split(' ');
        return fields.contains("TARGET=" + escaped(place))
            && std::any_of(fields.begin(), fields.end(), [](const QByteArray &field) {
                   return field.startsWith("OPTS=") && field.mid(5).split(',').contains("uhelper=udisks2");
               });
    });
}

QList<QByteArray> optionsIn(libmnt_fs *entry)
{
    return QByteArray(mnt_fs_get_options(entry)).split(',');
}

// The service mounts such a volume as /etc/fstab says.
bool isAsInFstab(libmnt_fs *mount, const SystemRoot &system)
{
    const QByteArray path = system.folder + "/etc/fstab";
    const LibmountTable table(mnt_new_table_from_file(path.constData()));
    libmnt_fs *const entry
        = table ? mnt_table_find_target(table.get(), mnt_fs_get_target(mount), MNT_ITER_FORWARD) : nullptr;
    return entry && optionsIn(entry).contains("ro") == optionsIn(mount).contains("ro");
}

// The service mounts in /media/USER or /run/media/USER, but what all users share in /media.
QString userOfPlace(const QString &place)
{
    const QString folder = place.section(u'/', 0, -3);
    return folder == u"/media"_s || folder == u"/run/media"_s ? place.section(u'/', -2, -2) : QString();
}

QStringList optionsOf(libmnt_fs *mount)
{
    const QList<QByteArray> present = optionsIn(mount);
    QStringList options;
    for (const char *option : optionsToKeep) {
        if (present.contains(option))
            options.append(QString::fromLatin1(option));
    }
    // The kernel has another name for it than the service.
    if (QByteArray(mnt_fs_get_fstype(mount)).startsWith("ext") && present.contains("norecovery"))
        options.append(u"noload"_s);
    return options;
}

} // namespace

std::vector<VolumeMount> readVolumeMounts(const QString &deviceNode, const SystemRoot &system)
{
    std::vector<VolumeMount> mounts;
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    if (!device)
        return mounts;
    const QByteArray path = system.folder + "/proc/self/mountinfo";
    const LibmountTable table(mnt_new_table_from_file(path.constData()));
    forEachEntry(table, [&](libmnt_fs *entry) {
        const QByteArray source = mnt_fs_get_source(entry);
        const QByteArray target = mnt_fs_get_target(entry);
        const dev_t number = mnt_fs_get_devno(entry);
        const KernelMount mount { mnt_fs_get_id(entry), source, target, major(number), minor(number),
            mnt_fs_get_fstype(entry) };
        if (mountedDevice(mount, system) != device)
            return;
        const QString place = QFile::decodeName(target);
        if (isNotedAsServices(target, system))
            mounts.push_back({ place, true, userOfPlace(place), optionsOf(entry) });
        else
            mounts.push_back({ place, isAsInFstab(entry, system), {}, {} });
    });
    return mounts;
}
