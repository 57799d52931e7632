// SPDX-License-Identifier: MIT
#include "filesystems/FilesystemNames.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

bool isOwnFilesystem(const QString &bundleName)
{
    return bundleName.startsWith("fusefs_qvo"_L1) || bundleName.startsWith("zorvex_"_L1);
}

int compareBundleNames(const QString &a, const QString &b)
{
    const bool isOwn = isOwnFilesystem(a);
    if (isOwn != isOwnFilesystem(b))
        return isOwn ? -1 : 1;
    const int order = a.compare(b);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}
