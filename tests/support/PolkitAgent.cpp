// SPDX-License-Identifier: MIT
#include "tests/support/PolkitAgent.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString agentPath = u"/org/zorvex/test/agent"_s;

// A subject or an identity, as polkit passes both.
struct KindAndDetails
{
    QString kind;
    QVariantMap details;
};

QDBusArgument &operator<<(QDBusArgument &argument, const KindAndDetails &value)
{
    argument.beginStructure();
    argument << value.kind << value.details;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, KindAndDetails &value)
{
    argument.beginStructure();
    argument >> value.kind >> value.details;
    argument.endStructure();
    return argument;
}

QDBusMessage authorityCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.PolicyKit1"_s,
        u"/org/freedesktop/PolicyKit1/Authority"_s, u"org.freedesktop.PolicyKit1.Authority"_s, method);
}

} // namespace

Q_DECLARE_METATYPE(KindAndDetails)

PolkitAgent::PolkitAgent(const QDBusConnection &bus, Answer answer)
    : m_bus(bus)
    , m_answer(answer)
{
    qDBusRegisterMetaType<KindAndDetails>();
    m_bus.registerVirtualObject(agentPath, this);
}

PolkitAgent::~PolkitAgent()
{
    m_bus.unregisterObject(agentPath);
}

bool PolkitAgent::registerFor(qint64 process)
{
    const KindAndDetails subject { u"unix-process"_s,
        { { u"pid"_s, static_cast<uint>(process) }, { u"start-time"_s, qulonglong { 0 } } } };
    QDBusMessage message = authorityCall(u"RegisterAuthenticationAgent"_s);
    message.setArguments({ QVariant::fromValue(subject), u"C"_s, agentPath });
    const QDBusMessage reply = m_bus.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qWarning("%s", qPrintable(reply.errorMessage()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

QString PolkitAgent::introspect(const QString &) const
{
    return {};
}

bool PolkitAgent::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.member() != u"BeginAuthentication"_s) {
        connection.send(message.createReply());
        return true;
    }
    askedActions.append(message.arguments().at(0).toString());
    switch (m_answer) {
    case Answer::Grant:
        grant(message);
        break;
    case Answer::Dismiss:
        connection.send(message.createErrorReply(
            u"org.freedesktop.PolicyKit1.Error.Cancelled"_s, u"The dialog was closed."_s));
        break;
    case Answer::Fail:
        connection.send(message.createReply());
        break;
    }
    return true;
}

void PolkitAgent::grant(const QDBusMessage &message)
{
    const KindAndDetails root { u"unix-user"_s, { { u"uid"_s, 0U } } };
    QDBusMessage response = authorityCall(u"AuthenticationAgentResponse2"_s);
    response.setArguments(
        { static_cast<uint>(getuid()), message.arguments().at(4), QVariant::fromValue(root) });
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(response), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, message] {
        if (watcher->isError())
            qWarning("%s", qPrintable(watcher->error().message()));
        watcher->deleteLater();
        m_bus.send(message.createReply());
    });
}
