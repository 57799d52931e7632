// SPDX-License-Identifier: MIT
//
// Lets a process outlive the session of the user who has started it. Main thread only.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

#include <sys/types.h>

class QObject;

// The user's slice in which the service manager keeps a process of these control groups: that ends with a
// session of the user's. They are the contents of /proc/PID/cgroup. Nothing where no session is.
std::optional<QString> userSlice(const QByteArray &controlGroups);

// That of this process.
std::optional<QString> userSlice();

// Whether a process of these control groups is the service manager of a user, which ends what a session has
// left behind.
bool isUsersServiceManager(const QByteArray &controlGroups);

// Whether that process is one. Not when it has gone.
bool isUsersServiceManager(pid_t process);

// Asks the service manager (systemd) to move this process, and what it starts from then on, to a scope of its
// own. It stays in the user's slice, by which polkit finds the user's session: what asks polkit from
// elsewhere counts as somebody who is not at the machine. Calls done once, later: when that has happened, or
// when it is refused or takes too long. Calls nothing once the context has gone.
void moveToScopeIn(const QString &slice, QObject *context, std::function<void()> done);
