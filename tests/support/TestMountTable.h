// SPDX-License-Identifier: MIT
//
// A mount table made of values.
#pragma once

#include "platform/MountTable.h"

#include <map>

class TestMountTable : public MountTable
{
public:
    std::vector<MountedFilesystem> mountedFilesystems() const override { return mounted; }
    std::optional<FilesystemID> filesystemID(const QByteArray &path) const override;
    std::optional<std::vector<QByteArray>> folderEntries(const QByteArray &path) const override;
    int freeSpace(const QByteArray &path, qint64 *bytes) const override;

    std::vector<MountedFilesystem> mounted;
    std::map<QByteArray, FilesystemID> ids; // by path
    std::map<QByteArray, std::vector<QByteArray>> folders;
    std::map<QByteArray, qint64> freeSpaces;
    int freeSpaceError = 0; // for every path, when it is not 0
    mutable std::vector<QByteArray> queriedPaths; // of free space
};
