// SPDX-License-Identifier: MIT
//
// One window for each user and each privilege: the first process listens on a socket, a later one tells it to
// raise its window. The socket is in the kernel's own name space, so that nothing is left when a process
// dies, and each side checks who is at the other. Main thread only.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QObject>

#include <sys/types.h>

class QSocketNotifier;

// Whose window it is: the rights that its process has, and the user who has started it.
struct InstanceOwner
{
    uid_t rights;
    uid_t user;
};

// The owner of this process's window.
InstanceOwner ownInstance();

// The owner of the window that this user's program has when it runs as root.
InstanceOwner elevatedInstance();

// The token that allows this process to raise a window; empty when it was given none.
QByteArray activationToken();

// Asks the running process of this owner to raise its window. Returns false when there is none, or when it
// does not answer within five seconds, for which this waits.
bool raiseInstance(const InstanceOwner &owner, const QByteArray &token);

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const InstanceOwner &owner, QObject *parent = nullptr);

    // Returns false when another process has the name already. The event loop answers requests from here on.
    bool listen();

Q_SIGNALS:
    // Another start asks for the window; the token may be empty.
    void activationRequested(const QByteArray &token);

private:
    void accept();
    void readToken(int client);
    bool isAllowed(int client) const;

    InstanceOwner m_owner;
    FileDescriptor m_socket;
};
