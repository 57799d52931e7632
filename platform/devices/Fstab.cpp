// SPDX-License-Identifier: MIT
#include "platform/devices/Fstab.h"

#include "platform/devices/LibmountTable.h"

#include <QDir>
#include <QFile>

std::vector<FstabEntry> readFstab(const SystemRoot &system)
{
    std::vector<FstabEntry> entries;
    const QByteArray path = system.folder + "/etc/fstab";
    const LibmountTable table(mnt_new_table_from_file(path.constData()));
    forEachEntry(table, [&](libmnt_fs *entry) {
        const char *tag = nullptr;
        const char *value = nullptr;
        const bool isTag = mnt_fs_get_tag(entry, &tag, &value) == 0;
        const QByteArray source
            = isTag ? QByteArray(tag) + '=' + value : QByteArray(mnt_fs_get_source(entry));
        const QString target = QFile::decodeName(mnt_fs_get_target(entry));
        entries.push_back(
            { source, QFile::encodeName(QDir::cleanPath(target)), mnt_fs_is_swaparea(entry) != 0 });
    });
    return entries;
}
