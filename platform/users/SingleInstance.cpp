// SPDX-License-Identifier: MIT
#include "platform/SingleInstance.h"

#include "platform/RuntimeFolder.h"
#include "platform/SystemLog.h"
#include "platform/UserGroups.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t longestToken = 4096;
constexpr int backlog = 8;
constexpr char taken = '!'; // the answer to a request

// A process that takes longer hangs.
constexpr std::chrono::seconds answerLimit { 5 };
constexpr std::chrono::duration<unsigned long, std::milli> lookAgain { 10 };

struct Address
{
    sockaddr_un name = {};
    socklen_t length = 0; // 0 when the path is too long for a socket

    const sockaddr *pointer() const { return reinterpret_cast<const sockaddr *>(&name); }
};

QByteArray socketPath(const InstanceOwner &owner)
{
    return QFile::encodeName(owner.folder) + '/' + QByteArray::number(owner.user);
}

Address addressOf(const InstanceOwner &owner)
{
    const QByteArray path = socketPath(owner);
    Address address;
    address.name.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.name.sun_path)
        return address;
    std::copy(path.begin(), path.end(), address.name.sun_path);
    address.length
        = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1) + static_cast<socklen_t>(path.size());
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

FileDescriptor makeSocket(int flags)
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

// Both kinds of folders may be made by the process that has the rights alone; the one of root is looked into
// by the users, whose sockets are in it.
FileDescriptor openFolder(const InstanceOwner &owner)
{
    constexpr mode_t ownPermissions = 0700;
    constexpr mode_t rootsPermissions = 0755;
    return openOwnFolder(owner.folder, owner.rights == 0 ? rootsPermissions : ownPermissions);
}

void logImpossible(const InstanceOwner &owner)
{
    systemLog(u"Another start will not find this window: nothing can be made in %1: %2"_s.arg(
        owner.folder, errnoText(errno)));
}

} // namespace

InstanceOwner ownInstance()
{
    return { geteuid(), invokingUser().value_or(getuid()), programsRuntimeFolder(geteuid()) };
}

InstanceOwner elevatedInstance()
{
    return { 0, getuid(), programsRuntimeFolder(0) };
}

QByteArray activationToken()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

InstanceAnswer raiseInstance(const InstanceOwner &owner, const QByteArray &token)
{
    const FileDescriptor connection = makeSocket(0);
    const int socket = connection.number();
    const Address address = addressOf(owner);
    if (!connection.isOpen() || address.length == 0)
        return InstanceAnswer::None;
    const timeval limit { answerLimit.count(), 0 };
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    if (::connect(socket, address.pointer(), address.length) != 0)
        return errno == EAGAIN ? InstanceAnswer::Silent : InstanceAnswer::None;
    // Somebody else can have made the folder where there is no runtime folder. They are told nothing.
    if (peerOf(socket) != owner.rights)
        return InstanceAnswer::None;
    const bool isTold = send(socket, token.constData(),
                            std::min(longestToken, static_cast<std::size_t>(token.size())), MSG_NOSIGNAL)
            >= 0
        && ::shutdown(socket, SHUT_WR) == 0;
    return isTold && hasAnswered(socket) ? InstanceAnswer::Raised : InstanceAnswer::Silent;
}

SingleInstance::SingleInstance(InstanceOwner owner, QObject *parent)
    : QObject(parent)
    , m_owner(std::move(owner))
{
}

SingleInstance::~SingleInstance()
{
    if (m_socket.isOpen())
        unlink(socketPath(m_owner).constData());
}

SingleInstance::Listening SingleInstance::listen()
{
    const FileDescriptor folder = openFolder(m_owner);
    const QByteArray lockName = QByteArray::number(m_owner.user) + ".lock";
    FileDescriptor lock(folder.isOpen()
            ? openat(folder.number(), lockName.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600)
            : -1);
    if (!lock.isOpen()) {
        logImpossible(m_owner);
        return Listening::Impossible;
    }
    if (flock(lock.number(), LOCK_EX | LOCK_NB) != 0)
        return Listening::Taken;
    m_lock = std::move(lock);
    if (!openSocket()) {
        logImpossible(m_owner);
        return Listening::Impossible;
    }
    auto *const notifier = new QSocketNotifier(m_socket.number(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::accept);
    return Listening::Started;
}

// Called with the lock: a socket that is there has been left by a process that has gone.
bool SingleInstance::openSocket()
{
    const QByteArray path = socketPath(m_owner);
    const Address address = addressOf(m_owner);
    FileDescriptor socket = makeSocket(SOCK_NONBLOCK);
    unlink(path.constData());
    if (!socket.isOpen() || address.length == 0
        || ::bind(socket.number(), address.pointer(), address.length) != 0
        || chmod(path.constData(), S_IRUSR | S_IWUSR) != 0)
        return false;
    // The user connects to the window that has root's rights; nobody else can.
    const bool isForUser = m_owner.rights == m_owner.user || m_owner.rights != 0
        || lchown(path.constData(), m_owner.user, static_cast<gid_t>(-1)) == 0;
    if (!isForUser || ::listen(socket.number(), backlog) != 0)
        return false;
    m_socket = std::move(socket);
    return true;
}

InstanceAnswer SingleInstance::listenOrRaise(const QByteArray &token)
{
    const QDeadlineTimer limit(answerLimit);
    while (listen() == Listening::Taken) {
        const InstanceAnswer answer = raiseInstance(m_owner, token);
        if (answer != InstanceAnswer::None)
            return answer;
        if (limit.hasExpired())
            return InstanceAnswer::Silent;
        // The other process gets its lock before it listens.
        QThread::msleep(lookAgain.count());
    }
    return InstanceAnswer::None;
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
