// SPDX-License-Identifier: MIT
//
// A process leaves its user's session with the help of a service manager of the test's own. Run by
// dbus-run-session, whose bus stands for the system's.
#include "platform/ProcessScope.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include <cstdlib>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"org.freedesktop.systemd1"_s;
const QString path = u"/org/freedesktop/systemd1"_s;
const QString slice = u"user-1000.slice"_s;
const QDBusObjectPath job(u"/org/freedesktop/systemd1/job/7"_s);

// Answers a request for a unit, and tells that its job has ended when the test says so.
class ServiceManager : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        calls.append(message);
        if (refuses)
            return connection.send(message.createErrorReply(QDBusError::AccessDenied, u"no"_s));
        return connection.send(message.createReply(QVariant::fromValue(job)));
    }

    static void endJob(const QDBusConnection &connection, const QDBusObjectPath &ended)
    {
        QDBusMessage signal
            = QDBusMessage::createSignal(path, u"org.freedesktop.systemd1.Manager"_s, u"JobRemoved"_s);
        signal << 7U << QVariant::fromValue(ended) << u"unit.scope"_s << u"done"_s;
        connection.send(signal);
    }

    bool refuses = false;
    QList<QDBusMessage> calls;
};

// The properties of a unit, by their names.
QVariantMap propertiesOf(const QVariant &properties)
{
    const auto argument = properties.value<QDBusArgument>();
    QVariantMap values;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        QDBusVariant value;
        argument.beginStructure();
        argument >> name >> value;
        argument.endStructure();
        values.insert(name, value.variant());
    }
    argument.endArray();
    return values;
}

} // namespace

class TestProcessScope : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sliceOfTheUserIsFound_data();
    void sliceOfTheUserIsFound();
    void serviceManagersOfUsersAreFound_data();
    void serviceManagersOfUsersAreFound();
    void isDoneWhenTheJobHasEnded();
    void refusalIsNotWaitedFor();
    void withoutAServiceManagerItIsDoneAtOnce();
    void nothingIsCalledOnceTheContextHasGone();

private:
    QDBusConnection m_bus { QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"systemd"_s) };
    std::unique_ptr<ServiceManager> m_manager;
};

void TestProcessScope::init()
{
    m_manager = std::make_unique<ServiceManager>();
    QVERIFY(m_bus.registerVirtualObject(path, m_manager.get()));
    QVERIFY(m_bus.registerService(service));
}

void TestProcessScope::cleanup()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(path);
}

void TestProcessScope::sliceOfTheUserIsFound_data()
{
    QTest::addColumn<QByteArray>("controlGroups");
    QTest::addColumn<std::optional<QString>>("found");
    const std::optional<QString> users(slice);
    const std::optional<QString> none;
    QTest::newRow("a session") << QByteArray("0::/user.slice/user-1000.slice/session-3.scope\n") << users;
    QTest::newRow("a user's service")
        << QByteArray("0::/user.slice/user-1000.slice/user@1000.service/app.slice/a.scope\n") << users;
    QTest::newRow("with the older control groups") << QByteArray(
        "12:pids:/user.slice/user-1000.slice\n1:name=systemd:/user.slice/user-1000.slice/session-3.scope\n")
                                                   << users;
    QTest::newRow("a service") << QByteArray("0::/system.slice/cron.service\n") << none;
    QTest::newRow("a slice of the same name elsewhere")
        << QByteArray("0::/machine.slice/user.slice/user-1000.slice\n") << none;
    QTest::newRow("no service manager") << QByteArray("0::/\n") << none;
    QTest::newRow("none") << QByteArray() << none;
}

void TestProcessScope::sliceOfTheUserIsFound()
{
    QFETCH(QByteArray, controlGroups);
    QFETCH(std::optional<QString>, found);
    QCOMPARE(userSlice(controlGroups), found);
}

void TestProcessScope::serviceManagersOfUsersAreFound_data()
{
    QTest::addColumn<QByteArray>("controlGroups");
    QTest::addColumn<bool>("isManager");
    QTest::newRow("a user's") << QByteArray("0::/user.slice/user-1000.slice/user@1000.service/init.scope\n")
                              << true;
    QTest::newRow("with the older control groups")
        << QByteArray("12:pids:/user.slice/user-1000.slice/user@1000.service\n"
                      "1:name=systemd:/user.slice/user-1000.slice/user@1000.service/init.scope\n")
        << true;
    QTest::newRow("the system's") << QByteArray("0::/init.scope\n") << false;
    QTest::newRow("a user's program")
        << QByteArray("0::/user.slice/user-1000.slice/user@1000.service/app.slice/init.scope\n") << false;
    QTest::newRow("a session") << QByteArray("0::/user.slice/user-1000.slice/session-3.scope\n") << false;
    QTest::newRow("none") << QByteArray() << false;
}

void TestProcessScope::serviceManagersOfUsersAreFound()
{
    QFETCH(QByteArray, controlGroups);
    QFETCH(bool, isManager);
    QCOMPARE(isUsersServiceManager(controlGroups), isManager);
}

void TestProcessScope::isDoneWhenTheJobHasEnded()
{
    QObject context;
    int done = 0;
    moveToScopeIn(slice, &context, [&done] { ++done; });
    QTRY_COMPARE(m_manager->calls.size(), 1);
    const QDBusMessage &call = m_manager->calls.constFirst();
    QCOMPARE(
        call.interface() + u'.' + call.member(), u"org.freedesktop.systemd1.Manager.StartTransientUnit"_s);
    QCOMPARE(call.signature(), u"ssa(sv)a(sa(sv))"_s);
    QVERIFY(call.arguments().value(0).toString().endsWith(u".scope"_s));
    const QVariantMap properties = propertiesOf(call.arguments().value(2));
    QCOMPARE(
        qdbus_cast<QList<uint>>(properties.value(u"PIDs"_s)), QList<uint> { static_cast<uint>(getpid()) });
    QCOMPARE(properties.value(u"Slice"_s), slice);

    // The end of another job is not meant. Signals arrive in their order.
    ServiceManager::endJob(m_bus, QDBusObjectPath(u"/org/freedesktop/systemd1/job/6"_s));
    QDBusMessage barrier = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s);
    m_bus.call(barrier);
    QDBusConnection::systemBus().call(barrier, QDBus::BlockWithGui);
    QCOMPARE(done, 0);
    ServiceManager::endJob(m_bus, job);
    QTRY_COMPARE_WITH_TIMEOUT(done, 1, 2000);
}

void TestProcessScope::refusalIsNotWaitedFor()
{
    m_manager->refuses = true;
    QObject context;
    int done = 0;
    moveToScopeIn(slice, &context, [&done] { ++done; });
    QCOMPARE(done, 0);
    QTRY_COMPARE_WITH_TIMEOUT(done, 1, 2000);
}

void TestProcessScope::withoutAServiceManagerItIsDoneAtOnce()
{
    QVERIFY(m_bus.unregisterService(service));
    QObject context;
    int done = 0;
    moveToScopeIn(slice, &context, [&done] { ++done; });
    QTRY_COMPARE_WITH_TIMEOUT(done, 1, 2000);
    QVERIFY(m_manager->calls.isEmpty());
}

void TestProcessScope::nothingIsCalledOnceTheContextHasGone()
{
    auto context = std::make_unique<QObject>();
    int done = 0;
    moveToScopeIn(slice, context.get(), [&done] { ++done; });
    context.reset();
    QTRY_COMPARE(m_manager->calls.size(), 1);
    ServiceManager::endJob(m_bus, job);
    QDBusMessage barrier = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s);
    m_bus.call(barrier);
    QDBusConnection::systemBus().call(barrier, QDBus::BlockWithGui);
    QCOMPARE(done, 0);
}

int main(int argc, char **argv)
{
    setenv("DBUS_SYSTEM_BUS_ADDRESS", getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
    QCoreApplication application(argc, argv);
    TestProcessScope test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_processscope.moc"
