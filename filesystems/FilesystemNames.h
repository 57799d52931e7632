// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether the bundle of this name (without ".fs") holds one of the program's own file systems.
bool isOwnFilesystem(const QString &bundleName);

// The order of bundles by name, -1, 0 or 1: the program's own first, then by the characters' values.
int compareBundleNames(const QString &a, const QString &b);
