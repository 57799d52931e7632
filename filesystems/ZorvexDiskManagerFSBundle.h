// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Property.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

// One personality of one file system bundle. Which capabilities it has is told by the catalogue's lists that
// hold it. Changed on the main thread only; fsPersonality never changes once set, so that a worker may read
// it.
class ZorvexDiskManagerFSBundle
{
public:
    ZorvexDiskManagerFSBundle() = default;
    ~ZorvexDiskManagerFSBundle();
    ZorvexDiskManagerFSBundle(const ZorvexDiskManagerFSBundle &) = delete;
    ZorvexDiskManagerFSBundle &operator=(const ZorvexDiskManagerFSBundle &) = delete;

    // A record with every field empty and zero; null when memory is short.
    static std::shared_ptr<ZorvexDiskManagerFSBundle> alloc() noexcept;

    // The order of the catalogue's lists: -1, 0 or 1. The program's own file systems first, then by bundle
    // name, then by subtype. A subtype that is no number ranks with those that have none, which keeps the
    // order consistent.
    int compare(const ZorvexDiskManagerFSBundle &other) const;

    // Lets go of everything that the record holds.
    void cleanupZorvexDiskManagerFSBundle();

    // The folder of the bundle: baseDir/bundleName.fs.
    QString path() const;

    // fsName where the bundle gives one that is a text, else bundleName.
    QString fallbackName() const;

    QString identifier;
    QString baseDir;
    QString bundleName;
    qint32 fsPersonalityIndex = 0;
    QString fsPersonality;
    // Kept as the bundle has them: any of these may turn out to be of another type than it should be.
    std::optional<PropertyValue> fsName;
    std::optional<PropertyValue> fsSubtype;
    std::optional<PropertyValue> fsFormatMinimumSize; // bytes
    std::optional<PropertyValue> fsFormatMaximumSize; // bytes
    QStringList requiredTools; // programs of the system that the bundle's executables run
    QStringList packages; // that have these programs
};

using FilesystemBundleRef = std::shared_ptr<ZorvexDiskManagerFSBundle>;
using FilesystemBundleList = std::vector<FilesystemBundleRef>;

// The number that a field holds, or null when the field is absent or of another type.
const PropertyNumber *numberOf(const std::optional<PropertyValue> &field);
