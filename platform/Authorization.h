// SPDX-License-Identifier: MIT
//
// The authorisation service: a session with it, the administrator's right, and a program started with that
// right. Main thread only; every answer comes later. No request has a time limit, because a user thinks and
// types a password.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArrayList>

#include <functional>
#include <memory>
#include <utility>

// Answers of the service, with the numbers by which they are known in the system log.
enum class AuthorizationStatus : int {
    Success = 0,
    Denied = -60005, // a wrong password, or a user who may not
    Canceled = -60006, // the user has closed the dialog
    InteractionNotAllowed = -60007, // nobody could ask the user
    Internal = -60008, // the service cannot be reached, or does not understand
};

class Authorization
{
public:
    using StatusHandler = std::function<void(AuthorizationStatus status)>;

    virtual ~Authorization() = default;

    // Makes the session. The other calls need one.
    virtual void create(StatusHandler handler) = 0;

    // Obtains the administrator's right to run the program, asking the user where that is needed.
    virtual void copyRights(const QByteArray &program, StatusHandler handler) = 0;

    // Runs the program as root. Runs done when the program has taken over or cannot be run: then this process
    // may end.
    virtual void executeWithPrivileges(
        const QByteArray &program, const QByteArrayList &arguments, std::function<void()> done)
        = 0;

    // Ends the session.
    virtual void free() = 0;

    // Takes the socket on which a process tells how the user's desktop looks, for the program that is run as
    // root. It is taken right before.
    void setLookSource(std::function<FileDescriptor()> takeSocket)
    {
        m_takeLookSocket = std::move(takeSocket);
    }

protected:
    // Not open when nobody tells.
    FileDescriptor takeLookSocket() const { return m_takeLookSocket ? m_takeLookSocket() : FileDescriptor(); }

private:
    std::function<FileDescriptor()> m_takeLookSocket;
};

// What the process of the user hands over to the program that it starts as root. All of it is the user's word
// and to be looked at.
struct Handover
{
    QByteArray accessibilityBus; // its address; empty when assistive technologies are not in use
    FileDescriptor lookSocket; // where the look of the user's desktop is told, if it is that; may be closed
};

// The machine's authorisation service.
std::unique_ptr<Authorization> createAuthorization();

// Of the program that was started by executeWithPrivileges(), before anything else: makes it independent of
// the process that started it, and lets that process end. Returns what that process has handed over.
Handover completeExecutionWithPrivileges();
