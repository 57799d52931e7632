// SPDX-License-Identifier: MIT
//
// The system's own programs, which the executables of file system bundles run. Any thread.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class ZorvexDiskManagerFSBundle;

// The folders of the system's programs, which are also the PATH that a tool runs with.
QStringList toolFolders();

// The path of the program of this name in the system's folders; empty when there is none.
QString findTool(const QString &name);

// What findTool() is, or a test's answer in its place.
using ToolFinder = std::function<QString(const QString &name)>;

// Those of the programs that are not there.
QStringList missingTools(const QStringList &names, const ToolFinder &findTool);

// The packages that the file system needs, when one of its programs is missing; else empty.
QStringList missingPackages(const ZorvexDiskManagerFSBundle &filesystem, const ToolFinder &findTool);
