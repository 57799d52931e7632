// SPDX-License-Identifier: MIT
//
// What the decisions need to know of this machine at this moment.
#pragma once

#include "tools/diskutil/preflight.h"

#include <vector>

// Which file system bundles are installed, the program's own first.
std::vector<FilesystemBundle> readInstalledBundles();

// The situation of a medium. The other media tell what is mounted where this process does not see it.
DeviceSituation readDeviceSituation(const Medium &medium, const std::vector<Medium> &media);

// The situation of one of the bundle's executables.
ToolSituation readToolSituation(const FilesystemBundle &bundle, const BundleTool &tool);

// The path of an executable of a bundle.
QString executablePath(const FilesystemBundle &bundle, const BundleTool &tool);

// The program of this name in the system's folders; empty when there is none.
QString findTool(const QString &name);

// The medium that an argument names: by its BSD name, or by a device node, links followed.
std::optional<Medium> findMedium(const std::vector<Medium> &media, const QString &argument);

// Whether the argument leads to something that is there but no block device.
bool isOtherFile(const QString &argument);
