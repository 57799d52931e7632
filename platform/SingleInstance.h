// SPDX-License-Identifier: MIT
//
// One window for each user and each privilege: the first process listens on a socket, a later one tells it to
// raise its window. The socket is in the kernel's own name space, so that nothing is left when a process
// dies, and each side makes sure of who is at the other. Main thread only.
#pragma once

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

// The owner of the window that this user's program has when it was started anew as root.
InstanceOwner elevatedInstance();

// What this process was given to be allowed to raise a window; empty when it was given nothing.
QByteArray activationToken();

// Asks the running process of this owner to raise its window. False when there is none, or none that answers.
bool raiseInstance(const InstanceOwner &owner, const QByteArray &token);

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const InstanceOwner &owner, QObject *parent = nullptr);
    ~SingleInstance() override;

    // False when another process has the name already. Who asks from now on is answered by the event loop.
    bool listen();

Q_SIGNALS:
    // Another start asks for the window; the token may be empty.
    void activationRequested(const QByteArray &token);

private:
    void accept();
    void readToken(int client);
    bool isAllowed(int client) const;

    InstanceOwner m_owner;
    int m_socket = -1;
};
