// SPDX-License-Identifier: MIT
#include "filesystems/filesystem_names.h"

#include "platform/no_widgets.h"

using namespace Qt::Literals::StringLiterals;

bool isOwnFilesystem(const QString &bundleName)
{
    return bundleName.startsWith("fusefs_qvo"_L1) || bundleName.startsWith("zorvex_"_L1);
}
