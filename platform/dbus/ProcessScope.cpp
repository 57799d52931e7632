// SPDX-License-Identifier: MIT
#include "platform/ProcessScope.h"

#include "platform/dbus/PendingReply.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>

#include <chrono>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

// As the bus has them: (sv) and (sa(sv)).
struct UnitProperty
{
    QString name;
    QDBusVariant value;
};
struct AuxiliaryUnit
{
    QString name;
    QList<UnitProperty> properties;
};
Q_DECLARE_METATYPE(UnitProperty)
Q_DECLARE_METATYPE(AuxiliaryUnit)

QDBusArgument &operator<<(QDBusArgument &argument, const UnitProperty &property)
{
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, UnitProperty &property)
{
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const AuxiliaryUnit &unit)
{
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, AuxiliaryUnit &unit)
{
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument;
}

namespace {

const QString service = u"org.freedesktop.systemd1"_s;
const QString path = u"/org/freedesktop/systemd1"_s;
const QString interface = u"org.freedesktop.systemd1.Manager"_s;
constexpr std::chrono::seconds timeLimit { 3 };

// One move. It lives until it is known how that has ended.
class ScopeMove : public QObject
{
    Q_OBJECT

public:
    ScopeMove(const QString &slice, QObject *context, std::function<void()> done)
        : QObject(context)
        , m_slice(slice)
        , m_done(std::move(done))
    {
    }

    void begin();

private Q_SLOTS:
    void jobRemoved(const QDBusMessage &signal);

private:
    void answered(const QDBusMessage &reply);
    void end();

    const QString m_slice;
    std::function<void()> m_done;
    QStringList m_removedJobs;
    QString m_job;
};

void ScopeMove::begin()
{
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    QDBusConnection bus = QDBusConnection::systemBus();
    // From whomever: Qt may not know yet who has the name. Nothing is won by a signal that is not true.
    bus.connect(QString(), path, interface, u"JobRemoved"_s, this, SLOT(jobRemoved(QDBusMessage)));
    const auto process = static_cast<uint>(getpid());
    const QList<UnitProperty> properties {
        { u"Description"_s, QDBusVariant(u"Zorvex Disk Manager writes to a disk"_s) },
        { u"Slice"_s, QDBusVariant(m_slice) },
        { u"PIDs"_s, QDBusVariant(QVariant::fromValue(QList<uint> { process })) },
        { u"CollectMode"_s, QDBusVariant(u"inactive-or-failed"_s) },
    };
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"StartTransientUnit"_s);
    call << u"zorvex-diskutil-%1.scope"_s.arg(process) << u"fail"_s << QVariant::fromValue(properties)
         << QVariant::fromValue(QList<AuxiliaryUnit>());
    call.setAutoStartService(false);
    onReply(bus.asyncCall(call), this, [this](const QDBusMessage &reply) { answered(reply); });
    QTimer::singleShot(timeLimit, this, &ScopeMove::end);
}

void ScopeMove::answered(const QDBusMessage &reply)
{
    m_job = reply.arguments().value(0).value<QDBusObjectPath>().path();
    if (reply.type() != QDBusMessage::ReplyMessage || m_removedJobs.contains(m_job))
        end();
}

void ScopeMove::jobRemoved(const QDBusMessage &signal)
{
    const QString job = signal.arguments().value(1).value<QDBusObjectPath>().path();
    m_removedJobs.append(job);
    if (job == m_job)
        end();
}

void ScopeMove::end()
{
    if (const auto done = std::exchange(m_done, {})) {
        deleteLater();
        done();
    }
}

// Empty when it has gone.
QByteArray controlGroupsOf(const QString &process)
{
    QFile file(u"/proc/"_s + process + u"/cgroup"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<QString> userSlice(const QByteArray &controlGroups)
{
    static const QRegularExpression slice(
        u":/user\\.slice/(user-[0-9]+\\.slice)(/|$)"_s, QRegularExpression::MultilineOption);
    const auto match = slice.match(QString::fromLatin1(controlGroups));
    return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

std::optional<QString> userSlice()
{
    return userSlice(controlGroupsOf(u"self"_s));
}

bool isUsersServiceManager(const QByteArray &controlGroups)
{
    static const QRegularExpression manager(
        u"/user@[0-9]+\\.service/init\\.scope$"_s, QRegularExpression::MultilineOption);
    return manager.match(QString::fromLatin1(controlGroups)).hasMatch();
}

bool isUsersServiceManager(pid_t process)
{
    return isUsersServiceManager(controlGroupsOf(QString::number(process)));
}

void moveToScopeIn(const QString &slice, QObject *context, std::function<void()> done)
{
    (new ScopeMove(slice, context, std::move(done)))->begin();
}

#include "ProcessScope.moc"
