// SPDX-License-Identifier: MIT
//
// Whether a privileged process may act on what a file says, or run it. Any thread.
#pragma once

#include <QString>

#include <optional>
#include <sys/types.h>

// Whose files are trusted, and where "/" is.
struct TrustedOwner
{
    uid_t user = 0; // the administrator
    QString folder; // stands before every path; empty for the running system
};

// Why the file at this absolute path cannot be trusted with the rights of the administrator, as a sentence.
// Returns std::nullopt when it can: it and every folder above it belong to the administrator, nobody else can
// write to them, and none of them is a symbolic link.
std::optional<QString> reasonForDistrust(const QString &path, const TrustedOwner &owner = {});

// The same for a folder and everything in it.
std::optional<QString> reasonForDistrustOfTree(const QString &path, const TrustedOwner &owner = {});
