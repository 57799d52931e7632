// SPDX-License-Identifier: MIT
//
// The user at the desktop, for a process that runs as root at his wish: his session has the file manager, the
// document viewer and the display, and root's environment says nothing of it. Any thread.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

#include <functional>
#include <optional>
#include <sys/types.h>
#include <vector>

struct DesktopUser
{
    uid_t user = 0;
    gid_t group = 0;
    std::vector<gid_t> groups;
    QString name;
    QString home;

    // Where the sockets of the user's session are.
    QString runtimeFolder() const;

    // The bus of the user's session; empty when there is none.
    QString busAddress() const;

    // This process's environment, with what tells of the user and of the session.
    QProcessEnvironment environment() const;

    // Has a process that is not started yet run as the user, with what his session needs in its environment.
    void prepare(QProcess &process) const;

private:
    std::function<void()> identityChange() const;
};

// Nothing when this process runs with its user's own rights.
std::optional<DesktopUser> desktopUser();

// Names the Wayland socket of the user's session in the environment, where nothing else names one: pkexec
// keeps the X11 display only. Before the interface is made.
void adoptDisplayOfDesktopUser();

// The Wayland socket in a runtime folder that the user owns; empty when there is none.
QString waylandSocket(const QString &runtimeFolder, uid_t user);
