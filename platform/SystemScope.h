// SPDX-License-Identifier: MIT
//
// Lets a process outlive the session of the user who has started it. Main thread only.
#pragma once

#include <QByteArray>

#include <functional>

class QObject;

// Whether the service manager ends a process of these control groups with a user's session. They are the
// contents of /proc/PID/cgroup.
bool endsWithUserSession(const QByteArray &controlGroups);

// Whether it does so with this process.
bool endsWithUserSession();

// Asks the service manager (systemd) to move this process, and what it starts from then on, to a scope of the
// system's own. Calls done once, later: when that has happened, or when it is refused or takes too long.
// Calls nothing once the context has gone.
void moveToSystemScope(QObject *context, std::function<void()> done);
