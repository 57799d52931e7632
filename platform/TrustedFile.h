// SPDX-License-Identifier: MIT
//
// Whether a privileged process may act on what a file says, or run it. Any thread.
#pragma once

#include <QString>

#include <optional>

// Why the file at this absolute path cannot be trusted with the rights of the administrator, as a sentence;
// nothing when it can: it and every folder above it belong to the administrator, nobody else can write to
// them, and no symbolic link leads elsewhere.
std::optional<QString> reasonForDistrust(const QString &path);

// The same for a folder and everything in it.
std::optional<QString> reasonForDistrustOfTree(const QString &path);
