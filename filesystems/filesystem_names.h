// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether the bundle of this name (without ".fs") holds one of the program's own file systems.
bool isOwnFilesystem(const QString &bundleName);
