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

// Keeps Qt from starting a session bus for root, which nobody else would use and which would stay, where this
// process runs as root at a user's wish and no bus is named. Call it before the interface is made.
void doWithoutSessionBus();

// Names a folder for what lives as long as a session, where none is named: Qt would make one in the temporary
// folder. Call it before the interface is made.
void nameRuntimeFolderOfRoot();

// Names the accessibility bus of the user's session in the environment, so that the user's assistive
// technologies find the window of a process that runs as root at their wish. Only a socket of the user's in
// their runtime folder is taken for one: an address could name a program to be run. Call it before the
// interface is made.
void adoptAccessibilityBus(const DesktopUser &user, const QByteArray &address);

// The path of the socket that the address of a bus names, where it is the user's own, below the folder; else
// empty.
QString accessibilitySocket(const QByteArray &address, const QString &runtimeFolder, uid_t user);

// Whether there is a bus of this process's own session. Where there is none, Qt would start one.
bool hasSessionBus();

// The Wayland socket in a runtime folder that the user owns; empty when there is none.
QString waylandSocket(const QString &runtimeFolder, uid_t user);
