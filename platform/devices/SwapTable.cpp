// SPDX-License-Identifier: MIT
#include "platform/devices/SwapTable.h"

#include "platform/devices/LibmountTable.h"

#include <QStringBuilder>

std::vector<SwapSpace> readSwapSpaces(const SystemRoot &system)
{
    std::vector<SwapSpace> spaces;
    const QByteArray path = system.folder + "/proc/swaps";
    const LibmountTable table(mnt_new_table());
    if (!table || mnt_table_parse_swaps(table.get(), path.constData()) != 0)
        return spaces;
    forEachEntry(table, [&](libmnt_fs *entry) {
        const auto status = system.fileStatus(mnt_fs_get_source(entry));
        if (!status)
            return;
        const bool isDevice = S_ISBLK(status->st_mode);
        spaces.push_back({ isDevice ? status->st_rdev : status->st_dev, !isDevice });
    });
    return spaces;
}
