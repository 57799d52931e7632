// SPDX-License-Identifier: MIT
//
// Mounting for the user at the desktop. What the disk service mounts for root lies in a folder that root
// alone may enter, and a file system without owners gives all its files to root.
#pragma once

#include "platform/DesktopUser.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

// The options of a request to mount a volume for this user, or for this process where there is none. Returns
// std::nullopt when a disk service of this version cannot mount for another user.
std::optional<QVariantMap> mountOptions(
    const std::optional<DesktopUser> &user, const QString &serviceVersion);

// For a disk service that cannot mount for another user: asks it in the user's own name to mount the volume
// with this object path; the user is not asked for a password. Runs done later, once, with whether it was
// mounted, unless the context goes first. The thread of the context. Can go with the support of UDisks2
// before 2.10, whose last Debian release is 12.
void mountForDesktopUser(
    const DesktopUser &user, const QString &objectPath, QObject *context, std::function<void(bool)> done);

// Makes a new volume that is mounted here the user's, where its file system has owners: what a formatter
// makes is root's, and nobody else could write to it. Nothing for no user.
void giveMountedVolume(const QString &mountPoint, const std::optional<DesktopUser> &user);
