// SPDX-License-Identifier: MIT
#include "filesystems/SystemTools.h"

#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <QStandardPaths>

#include <algorithm>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

QStringList toolFolders()
{
    return { u"/usr/sbin"_s, u"/usr/bin"_s, u"/sbin"_s, u"/bin"_s };
}

QString findTool(const QString &name)
{
    return QStandardPaths::findExecutable(name, toolFolders());
}

QStringList missingTools(const QStringList &names, const ToolFinder &findTool)
{
    QStringList missing;
    std::copy_if(names.begin(), names.end(), std::back_inserter(missing),
        [&findTool](const QString &name) { return findTool(name).isEmpty(); });
    return missing;
}

QStringList missingPackages(const ZorvexDiskManagerFSBundle &filesystem, const ToolFinder &findTool)
{
    return missingTools(filesystem.requiredTools, findTool).isEmpty() ? QStringList() : filesystem.packages;
}
