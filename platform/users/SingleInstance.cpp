// SPDX-License-Identifier: MIT
#include "platform/SingleInstance.h"

#include "platform/UserGroups.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr std::size_t longestToken = 4096;
constexpr int backlog = 8;
constexpr char taken = '!'; // the answer to a request

// A process that takes longer hangs, and the user gets a new window, which works.
constexpr std::chrono::seconds answerLimit { 5 };

struct Address
{
    sockaddr_un name = {};
    socklen_t length = 0;

    const sockaddr *pointer() const { return reinterpret_cast<const sockaddr *>(&name); }
};

Address addressOf(const InstanceOwner &owner)
{
    const QByteArray text = QByteArrayLiteral("org.zorvex.DiskManager/") + QByteArray::number(owner.rights)
        + '/' + QByteArray::number(owner.user);
    Address address;
    address.name.sun_family = AF_UNIX;
    // A zero byte first: the kernel's own name space.
    std::copy(text.begin(), text.end(), address.name.sun_path + 1);
    address.length
        = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1) + static_cast<socklen_t>(text.size());
    return address;
}

std::optional<uid_t> peerOf(int socket)
{
    ucred credentials = {};
    socklen_t length = sizeof credentials;
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0)
        return std::nullopt;
    return credentials.uid;
}

FileDescriptor openSocket(int flags)
{
    return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | flags, 0));
}

// A process that has connected. The connection ends when this object is deleted.
class Client : public QObject
{
public:
    Client(FileDescriptor socket, QObject *parent)
        : QObject(parent)
        , m_socket(std::move(socket))
    {
    }

    int socket() const { return m_socket.number(); }

private:
    FileDescriptor m_socket;
};

bool hasAnswered(int socket)
{
    const timeval limit { answerLimit.count(), 0 };
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    char answer = 0;
    return recv(socket, &answer, 1, 0) == 1 && answer == taken;
}

} // namespace

InstanceOwner ownInstance()
{
    return { geteuid(), invokingUser().value_or(getuid()) };
}

InstanceOwner elevatedInstance()
{
    return { 0, getuid() };
}

QByteArray activationToken()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

bool raiseInstance(const InstanceOwner &owner, const QByteArray &token)
{
    const FileDescriptor connection = openSocket(0);
    const int socket = connection.number();
    if (!connection.isOpen())
        return false;
    const Address address = addressOf(owner);
    const timeval limit { answerLimit.count(), 0 };
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    // Anybody can take a name; only the owner is told anything.
    return ::connect(socket, address.pointer(), address.length) == 0 && peerOf(socket) == owner.rights
        && send(socket, token.constData(), std::min(longestToken, static_cast<std::size_t>(token.size())),
               MSG_NOSIGNAL)
        >= 0
        && ::shutdown(socket, SHUT_WR) == 0 && hasAnswered(socket);
}

SingleInstance::SingleInstance(const InstanceOwner &owner, QObject *parent)
    : QObject(parent)
    , m_owner(owner)
{
}

bool SingleInstance::listen()
{
    m_socket = openSocket(SOCK_NONBLOCK);
    const Address address = addressOf(m_owner);
    if (!m_socket.isOpen() || ::bind(m_socket.number(), address.pointer(), address.length) != 0
        || ::listen(m_socket.number(), backlog) != 0)
        return false;
    auto *const notifier = new QSocketNotifier(m_socket.number(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::accept);
    return true;
}

bool SingleInstance::isAllowed(int client) const
{
    const std::optional<uid_t> peer = peerOf(client);
    return peer && (*peer == m_owner.rights || *peer == m_owner.user);
}

void SingleInstance::accept()
{
    FileDescriptor socket(accept4(m_socket.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket.isOpen() || !isAllowed(socket.number()))
        return;
    auto *const client = new Client(std::move(socket), this);
    auto *const notifier = new QSocketNotifier(client->socket(), QSocketNotifier::Read, client);
    connect(notifier, &QSocketNotifier::activated, client, [this, notifier, client] {
        notifier->setEnabled(false);
        client->deleteLater();
        readToken(client->socket());
    });
    // A process that sends nothing is let go.
    QTimer::singleShot(answerLimit, client, &QObject::deleteLater);
}

void SingleInstance::readToken(int client)
{
    std::array<char, longestToken> token {};
    const ssize_t length = recv(client, token.data(), token.size(), 0);
    if (length < 0)
        return;
    Q_EMIT activationRequested(QByteArray(token.data(), length));
    send(client, &taken, 1, MSG_NOSIGNAL);
}
