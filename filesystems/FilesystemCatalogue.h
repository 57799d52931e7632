// SPDX-License-Identifier: MIT
//
// The catalogue of installed file systems: which personalities the bundles on this machine have, and which of
// them can be formatted, checked and repaired. Main thread only.
#pragma once

#include "filesystems/BundleScan.h"
#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <QStringList>

#include <functional>

// Every personality, and those with a capability. A record is a member of each list to which it belongs.
struct FilesystemLists
{
    FilesystemBundleList all;
    FilesystemBundleList format;
    FilesystemBundleList check;
    FilesystemBundleList repair;
};

// Where the scan takes memory from. Either may fail: null, or std::nullopt.
struct CatalogueMemory
{
    std::function<FilesystemBundleRef()> allocRecord = &ZorvexDiskManagerFSBundle::alloc;
    std::function<std::optional<FilesystemBundleList>(std::size_t capacity)> createList
        = createFilesystemBundleList;

    static std::optional<FilesystemBundleList> createFilesystemBundleList(std::size_t capacity) noexcept;
};

// Reads the bundles of the directories that the guard lets it read, in order, unsorted. Whatever cannot be
// read is left out, with a line in the system log where it is worth one. Returns std::nullopt when memory is
// short for the lists themselves.
std::optional<FilesystemLists> scanFilesystemDirectories(
    const QStringList &directories, const CatalogueMemory &memory = {}, const BundleGuard &guard = {});

// Brings the records of a scan into a list that lives on, which is created when it is absent, and sorts it. A
// record that is there is refreshed in place and keeps its identity; none is ever removed.
void mergeFilesystemList(
    std::optional<FilesystemBundleList> &persistent, const FilesystemBundleList &temporary);
