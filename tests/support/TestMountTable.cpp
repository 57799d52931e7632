// SPDX-License-Identifier: MIT
#include "tests/support/TestMountTable.h"

#include <cerrno>

std::optional<FilesystemID> TestMountTable::filesystemID(const QByteArray &path) const
{
    const auto found = ids.find(path);
    return found == ids.end() ? std::nullopt : std::optional<FilesystemID>(found->second);
}

std::optional<std::vector<QByteArray>> TestMountTable::folderEntries(const QByteArray &path) const
{
    const auto found = folders.find(path);
    return found == folders.end() ? std::nullopt : std::optional<std::vector<QByteArray>>(found->second);
}

int TestMountTable::freeSpace(const QByteArray &path, qint64 *bytes) const
{
    queriedPaths.push_back(path);
    const auto found = freeSpaces.find(path);
    if (freeSpaceError != 0 || found == freeSpaces.end())
        return freeSpaceError != 0 ? freeSpaceError : ENOENT;
    *bytes = found->second;
    return 0;
}
