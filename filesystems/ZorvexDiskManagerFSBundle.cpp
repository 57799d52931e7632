// SPDX-License-Identifier: MIT
#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include "filesystems/FilesystemNames.h"

#include <new>

using namespace Qt::Literals::StringLiterals;

const PropertyNumber *numberOf(const std::optional<PropertyValue> &field)
{
    return field ? field->asNumber() : nullptr;
}

std::shared_ptr<ZorvexDiskManagerFSBundle> ZorvexDiskManagerFSBundle::alloc() noexcept
{
    try {
        return std::make_shared<ZorvexDiskManagerFSBundle>();
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

ZorvexDiskManagerFSBundle::~ZorvexDiskManagerFSBundle()
{
    cleanupZorvexDiskManagerFSBundle();
}

int ZorvexDiskManagerFSBundle::compare(const ZorvexDiskManagerFSBundle &other) const
{
    if (const int order = compareBundleNames(bundleName, other.bundleName))
        return order;
    const PropertyNumber *subtype = numberOf(fsSubtype);
    const PropertyNumber *otherSubtype = numberOf(other.fsSubtype);
    if (!subtype || !otherSubtype)
        return (subtype ? 1 : 0) - (otherSubtype ? 1 : 0);
    return subtype->compare(*otherSubtype);
}

void ZorvexDiskManagerFSBundle::cleanupZorvexDiskManagerFSBundle()
{
    packages.clear();
    requiredTools.clear();
    fsFormatMaximumSize.reset();
    fsFormatMinimumSize.reset();
    fsSubtype.reset();
    fsName.reset();
    fsPersonality.clear();
    bundleName.clear();
    baseDir.clear();
    identifier.clear();
}

QString ZorvexDiskManagerFSBundle::path() const
{
    return baseDir + u'/' + bundleName + ".fs"_L1;
}

QString ZorvexDiskManagerFSBundle::fallbackName() const
{
    const QString *name = fsName ? fsName->asString() : nullptr;
    return name ? *name : bundleName;
}
