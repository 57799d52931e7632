// SPDX-License-Identifier: MIT
//
// Mounting for the user at the desktop. What the disk service mounts for root lies in a folder that root
// alone may enter, and a file system without owners gives all its files to root.
#pragma once

#include "platform/DesktopUser.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

// Asks the disk service in the user's own name to mount the volume with this object path; he is not asked for
// a password. Runs done later, once, with whether it was mounted, unless the context goes first. The thread
// of the context.
void mountForDesktopUser(
    const DesktopUser &user, const QString &objectPath, QObject *context, std::function<void(bool)> done);

// Makes a new volume that is mounted here the user's, where its file system has owners: what a formatter
// makes is root's, and nobody else could write to it. Nothing for no user.
void giveMountedVolume(const QString &mountPoint, const std::optional<DesktopUser> &user);
