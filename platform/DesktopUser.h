// SPDX-License-Identifier: MIT
//
// The user at the desktop, for a process that runs as root at their wish: their session has the file manager,
// the document viewer and the display, and root's environment does not mention it. Any thread.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

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

    // This process's environment, changed to name the user and their session.
    QProcessEnvironment environment() const;

    // Makes a process that is not started yet run as the user, with what their session needs in its
    // environment.
    void prepare(QProcess &process) const;

private:
    std::function<void()> identityChange() const;
};

// Returns std::nullopt when this process runs with its user's own rights.
std::optional<DesktopUser> desktopUser();

// Starts a program as this user, or as this process's own where there is none; it has no input, and its
// output is lost. Runs done once, with whether it could be started and ended with 0, unless the context goes
// first: then the program is ended. The thread of the context.
void startProgram(const std::optional<DesktopUser> &user, const QString &program,
    const QStringList &arguments, QObject *context, std::function<void(bool hasSucceeded)> done);

// How a program ended, and what it wrote to its standard error.
struct ProgramEnd
{
    bool hasSucceeded = false; // it could be started and ended with 0
    QByteArray errorOutput;
};

// The same for a program whose errors are read. It must leave nothing behind that writes there.
void startProgramForErrors(const std::optional<DesktopUser> &user, const QString &program,
    const QStringList &arguments, QObject *context, std::function<void(const ProgramEnd &end)> done);

// Names the Wayland socket of the user's session in the environment, unless one is named already: pkexec
// keeps only the X11 display. Call it before the interface is made.
void adoptDisplayOfDesktopUser();

// Names the bus of the user's session in the environment, where this process runs as root at that user's wish
// and no bus is named: assistive technologies of the user find the window over it. Without such a bus, keeps
// Qt from starting one for root, which nobody else would use and which would stay. Call it before the
// interface is made.
void adoptSessionBusOfDesktopUser();

// The Wayland socket in a runtime folder that the user owns; empty when there is none.
QString waylandSocket(const QString &runtimeFolder, uid_t user);
