// SPDX-License-Identifier: MIT
#include "platform/users/PolkitAuthorization.h"

#include "platform/dbus/PendingReply.h"
#include "platform/DesktopUser.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"org.freedesktop.PolicyKit1"_s;
const QString action = u"org.zorvex.DiskManager.run"_s;

constexpr uint allowUserInteraction = 1;
constexpr int noTimeLimit = INT_MAX;

// What is handed over is the address of a bus, and a descriptor beside it.
constexpr std::size_t longestAddress = 4096; // bytes

using DescriptorMessage = std::array<char, CMSG_SPACE(sizeof(int))>;

struct Subject
{
    QString kind;
    QVariantMap details;
};

struct Result
{
    bool isAuthorized = false;
    bool isChallenge = false; // asking the user could give it
    QMap<QString, QString> details;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Subject &subject)
{
    argument.beginStructure();
    argument << subject.kind << subject.details;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Subject &subject)
{
    argument.beginStructure();
    argument >> subject.kind >> subject.details;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Result &result)
{
    argument.beginStructure();
    argument >> result.isAuthorized >> result.isChallenge >> result.details;
    argument.endStructure();
    return argument;
}

AuthorizationStatus statusOfReply(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "(bba{ss})"_L1)
        return AuthorizationStatus::Internal;
    Result result;
    reply.arguments().constFirst().value<QDBusArgument>() >> result;
    if (result.isAuthorized)
        return AuthorizationStatus::Success;
    if (result.details.contains(u"polkit.dismissed"_s))
        return AuthorizationStatus::Canceled;
    return result.isChallenge ? AuthorizationStatus::InteractionNotAllowed : AuthorizationStatus::Denied;
}

// The path by which polkit knows the program: a shell gives only its name, and /bin leads to /usr/bin.
QByteArray canonicalPath(const QByteArray &program)
{
    const QString name = QFile::decodeName(program);
    const QString path = name.contains(u'/') ? name : QStandardPaths::findExecutable(name);
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? program : QFile::encodeName(canonical);
}

// Runs pkexec in a session of its own, so that it does not end with the caller's terminal; the socket is its
// standard input. Returns false when it cannot be run.
bool spawnPkexec(const QByteArray &program, const QByteArrayList &arguments, int socket)
{
    std::vector<QByteArray> words { "pkexec", "--disable-internal-agent", canonicalPath(program) };
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_adddup2(&files, socket, STDIN_FILENO);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = 0;
    const int error = posix_spawnp(&process, "pkexec", &files, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0;
}

// Both are there for the program when it starts. A program that does not get them does without.
void sendHandover(int socket, QByteArray address, int descriptor)
{
    address.append('\n'); // nothing at all would not be sent
    iovec text { address.data(), static_cast<std::size_t>(address.size()) };
    alignas(cmsghdr) DescriptorMessage passed {};
    msghdr message = {};
    message.msg_iov = &text;
    message.msg_iovlen = 1;
    if (descriptor >= 0) {
        message.msg_control = passed.data();
        message.msg_controllen = passed.size();
        cmsghdr *const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    }
    sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

Handover receiveHandover(int socket)
{
    QByteArray address(longestAddress, Qt::Uninitialized);
    iovec text { address.data(), longestAddress };
    alignas(cmsghdr) DescriptorMessage passed {}; // the kernel closes what has no room in it
    msghdr message = {};
    message.msg_iov = &text;
    message.msg_iovlen = 1;
    message.msg_control = passed.data();
    message.msg_controllen = passed.size();
    const ssize_t size = recvmsg(socket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    address.truncate(std::max<ssize_t>(size, 0));
    Handover handover { address.left(address.indexOf('\n')), {} };
    const cmsghdr *const header = size > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (header && header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_RIGHTS
        && header->cmsg_len == CMSG_LEN(sizeof(int))) {
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
        handover.lookSocket = FileDescriptor(descriptor);
    }
    return handover;
}

} // namespace

Q_DECLARE_METATYPE(Subject)

PolkitAuthorization::PolkitAuthorization(QObject *parent)
    : QObject(parent)
    , m_bus(QString())
{
    qDBusRegisterMetaType<Subject>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
}

PolkitAuthorization::~PolkitAuthorization() = default;

QDBusPendingCall PolkitAuthorization::call(const QDBusMessage &message) const
{
    return m_bus.asyncCall(message, noTimeLimit);
}

void PolkitAuthorization::create(StatusHandler handler)
{
    m_bus = QDBusConnection::systemBus();
    if (!m_bus.isConnected()) {
        QMetaObject::invokeMethod(
            this, [handler = std::move(handler)] { handler(AuthorizationStatus::Internal); },
            Qt::QueuedConnection);
        return;
    }
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
        u"org.freedesktop.DBus"_s, u"StartServiceByName"_s);
    message.setArguments({ service, 0U });
    onReply(call(message), this, [handler = std::move(handler)](const QDBusMessage &reply) {
        const bool isError = reply.type() == QDBusMessage::ErrorMessage;
        handler(isError ? AuthorizationStatus::Internal : AuthorizationStatus::Success);
    });
}

// The bus of the user's session does not let root in, so the program that runs as root cannot ask it. The
// answers are there long before the user has given the password.
void PolkitAuthorization::askForAccessibilityBus()
{
    if (!hasSessionBus())
        return;
    const QString bus = u"org.a11y.Bus"_s;
    const QString path = u"/org/a11y/bus"_s;
    auto question = QDBusMessage::createMethodCall(bus, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setArguments({ u"org.a11y.Status"_s, u"IsEnabled"_s });
    onReply(QDBusConnection::sessionBus().asyncCall(question), this,
        [this, bus, path](const QDBusMessage &reply) {
            if (!reply.arguments().value(0).value<QDBusVariant>().variant().toBool())
                return;
            onReply(QDBusConnection::sessionBus().asyncCall(
                        QDBusMessage::createMethodCall(bus, path, bus, u"GetAddress"_s)),
                this, [this](const QDBusMessage &answer) {
                    if (answer.type() == QDBusMessage::ReplyMessage)
                        m_accessibilityBus = answer.arguments().value(0).toString().toUtf8();
                });
        });
}

void PolkitAuthorization::copyRights(const QByteArray &, StatusHandler handler)
{ // only the owner of an action may tell polkit more than its name
    auto message = QDBusMessage::createMethodCall(service, u"/org/freedesktop/PolicyKit1/Authority"_s,
        u"org.freedesktop.PolicyKit1.Authority"_s, u"CheckAuthorization"_s);
    askForAccessibilityBus();
    // The name of a connection is never used again, unlike a process number.
    const Subject subject { u"system-bus-name"_s, { { u"name"_s, m_bus.baseService() } } };
    message.setArguments({ QVariant::fromValue(subject), action,
        QVariant::fromValue(QMap<QString, QString>()), allowUserInteraction, QString() });
    onReply(call(message), this,
        [handler = std::move(handler)](const QDBusMessage &reply) { handler(statusOfReply(reply)); });
}

// pkexec asks polkit about the process that started it, and makes the program end with that process. So this
// one has to stay until the program has taken over. Then the other end of the socket is closed: by
// completeExecutionWithPrivileges(), or because the program has ended.
void PolkitAuthorization::executeWithPrivileges(
    const QByteArray &program, const QByteArrayList &arguments, std::function<void()> done)
{
    std::array<int, 2> ends { -1, -1 };
    const bool hasSocket = socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0;
    m_handoverSocket = FileDescriptor(ends[0]);
    const FileDescriptor programsEnd(ends[1]);
    if (hasSocket)
        sendHandover(ends[0], m_accessibilityBus, takeLookSocket().number());
    if (!hasSocket || !spawnPkexec(program, arguments, programsEnd.number())) {
        QMetaObject::invokeMethod(this, std::move(done), Qt::QueuedConnection);
        return;
    }
    m_handover = std::make_unique<QSocketNotifier>(m_handoverSocket.number(), QSocketNotifier::Read);
    connect(m_handover.get(), &QSocketNotifier::activated, this, [this, done = std::move(done)] {
        m_handover->setEnabled(false);
        done();
    });
}

void PolkitAuthorization::free()
{
    m_handoverSocket = FileDescriptor();
    m_bus = QDBusConnection(QString());
}

Handover completeExecutionWithPrivileges()
{
    prctl(PR_SET_PDEATHSIG, 0);
    // A user who starts the program by hand has a terminal there, or nothing.
    Handover handover = receiveHandover(STDIN_FILENO);
    // It gets the number of the input itself where that is closed, and then has to stay open.
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing < 0)
        return handover;
    dup2(nothing, STDIN_FILENO);
    if (nothing != STDIN_FILENO)
        close(nothing);
    return handover;
}

std::unique_ptr<Authorization> createAuthorization()
{
    return std::make_unique<PolkitAuthorization>();
}
