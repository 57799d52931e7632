// SPDX-License-Identifier: MIT
//
// One window for each user and each privilege: the first process holds a lock and listens on a socket beside
// it, a later one tells it to raise its window. Both lie in a folder that only the process's own user can
// write to, so nobody else can take their place. The lock goes with its process, however that ends; a socket
// that is left behind is replaced by the next process that gets the lock. Main thread only.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <sys/types.h>

// Whose window it is: the rights that its process has, and the user who has started it.
struct InstanceOwner
{
    uid_t rights;
    uid_t user;
    QString folder; // of the socket and the lock; made by the process that has these rights
};

// The owner of this process's window.
InstanceOwner ownInstance();

// The owner of the window that this user's program has when it runs as root.
InstanceOwner elevatedInstance();

// The token that allows this process to raise a window; empty when it was given none.
QByteArray activationToken();

enum class InstanceAnswer {
    Raised,
    None, // there is no such process
    Silent, // it does not answer within five seconds
};

// Asks the running process of this owner to raise its window, and waits for its answer.
InstanceAnswer raiseInstance(const InstanceOwner &owner, const QByteArray &token);

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(InstanceOwner owner, QObject *parent = nullptr);
    ~SingleInstance() override;

    enum class Listening {
        Started, // the event loop answers requests from here on
        Taken, // another process has the lock
        Impossible, // no folder, lock or socket can be made; it is logged
    };
    Listening listen();

    // Listens, or raises the window of the process that does. Returns None when this process may show its
    // window: it listens, or nothing can be made to listen on.
    InstanceAnswer listenOrRaise(const QByteArray &token);

Q_SIGNALS:
    // Another start asks for the window; the token may be empty.
    void activationRequested(const QByteArray &token);

private:
    bool openSocket();
    void accept();
    void readToken(int client);
    bool isAllowed(int client) const;

    InstanceOwner m_owner;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
};
