// SPDX-License-Identifier: MIT
#include "platform/VolumeMount.h"

#include "platform/devices/LibmountTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What a user may ask the disk service for with any file system, besides ro.
constexpr std::array optionsToKeep { "noexec", "noatime", "nodiratime", "sync", "dirsync", "lazytime" };

// Whether a line of libmount's own table is about what is mounted there.
bool isLineOf(const QList<QByteArray> &fields, const QByteArray &place)
{
    const QByteArray key = "TARGET=";
    return std::any_of(fields.begin(), fields.end(), [&](const QByteArray &field) {
        if (!field.startsWith(key))
            return false;
        const std::unique_ptr<char, decltype(&std::free)> target(
            mnt_unmangle(field.constData() + key.size()), std::free);
        return target && place == target.get();
    });
}

// The options in libmount's table of what the kernel does not keep. The disk service leaves its name there,
// and mount(8) that of a user whom /etc/fstab lets mount a volume (user, users, owner).
QList<QByteArray> notedOptions(const QByteArray &place, const SystemRoot &system)
{
    QFile table(QFile::decodeName(system.folder + "/run/mount/utab"));
    QList<QByteArray> options;
    if (!table.open(QIODevice::ReadOnly))
        return options;
    for (const QByteArray &line : table.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (!isLineOf(fields, place))
            continue;
        for (const QByteArray &field : fields) {
            if (field.startsWith("OPTS="))
                options += field.mid(5).split(',');
        }
    }
    return options;
}

QString userIn(const QList<QByteArray> &notedOptions)
{
    const QByteArray key = "user=";
    const auto found = std::find_if(notedOptions.begin(), notedOptions.end(),
        [&key](const QByteArray &option) { return option.startsWith(key); });
    return found == notedOptions.end() ? QString() : QString::fromUtf8(found->mid(key.size()));
}

QList<QByteArray> optionsIn(libmnt_fs *entry)
{
    return QByteArray(mnt_fs_get_options(entry)).split(',');
}

// Of the mount itself: the kernel makes a file system read-only after an error, and nobody has asked for
// that.
bool isReadOnly(libmnt_fs *entry)
{
    return QByteArray(mnt_fs_get_vfs_options(entry)).split(',').contains("ro");
}

// The service mounts such a volume as /etc/fstab says.
bool isAsInFstab(libmnt_fs *mount, const SystemRoot &system)
{
    const QByteArray path = system.folder + "/etc/fstab";
    const LibmountTable table(mnt_new_table_from_file(path.constData()));
    libmnt_fs *const entry
        = table ? mnt_table_find_target(table.get(), mnt_fs_get_target(mount), MNT_ITER_FORWARD) : nullptr;
    return entry && isReadOnly(entry) == isReadOnly(mount);
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
    if (isReadOnly(mount))
        options.append(u"ro"_s);
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
        const QList<QByteArray> noted = notedOptions(target, system);
        if (noted.contains("uhelper=udisks2"))
            mounts.push_back({ place, true, userOfPlace(place), optionsOf(entry) });
        else
            mounts.push_back({ place, isAsInFstab(entry, system), userIn(noted), {} });
    });
    return mounts;
}
