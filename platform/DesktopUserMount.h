// SPDX-License-Identifier: MIT
//
// Mounting for the user at the desktop. The disk service mounts root's volumes in a folder that only root may
// enter, and a file system without owners gives all its files to the user that it is mounted for.
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

// What a disk service that was asked in the user's own name has answered.
struct UserMountAnswer
{
    bool isMounted = false;
    QString errorName; // on the bus; empty when there was no such answer
    QString message; // of the error
};

// For a disk service that cannot mount for another user: asks it in the user's own name to mount the volume
// with this object path. Where the service wants a password for it, the user's desktop asks for that. Runs
// done later, once, unless the context goes first. The thread of the context. Only UDisks2 before 2.10 needs
// this, which is last in Debian 12.
void mountForDesktopUser(const DesktopUser &user, const QString &objectPath, QObject *context,
    std::function<void(const UserMountAnswer &)> done, const QStringList &options = {});

// Finds out whether the user at the desktop, or the user of this process where there is none, may look into
// the folder; one that is not there any more, or that nobody can read, counts as open. Runs done later, once,
// unless the context goes first. The thread of the context.
void findFolderAccess(const QString &path, QObject *context, std::function<void(bool isOpen)> done);

// Gives a new volume to the user, if its file system has owners: a formatter makes it root's, and nobody else
// could write to it. It must be mounted from this device, without any link on the way, in a place where the
// disk service mounts for users; where fstab names the mount point, the volume stays the administrator's.
// Does nothing without a user.
void giveMountedVolume(
    const QString &mountPoint, const QString &deviceNode, const std::optional<DesktopUser> &user);
