// SPDX-License-Identifier: MIT
//
// A process leaves its user's session with the help of a service manager of the test's own. Run by
// dbus-run-session, whose bus stands for the system's.
#include "platform/SystemScope.h"

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

// The processes that the properties of a unit name.
QList<uint> processesOf(const QVariant &properties)
{
    const auto argument = properties.value<QDBusArgument>();
    QList<uint> processes;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        QDBusVariant value;
        argument.beginStructure();
        argument >> name >> value;
        argument.endStructure();
        if (name == u"PIDs"_s)
            processes = qdbus_cast<QList<uint>>(value.variant());
    }
    argument.endArray();
    return processes;
}

} // namespace

class TestSystemScope : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sessionsAreToldFromServices_data();
    void sessionsAreToldFromServices();
    void isDoneWhenTheJobHasEnded();
    void refusalIsNotWaitedFor();
    void withoutAServiceManagerItIsDoneAtOnce();
    void nothingIsCalledOnceTheContextHasGone();

private:
    QDBusConnection m_bus { QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"systemd"_s) };
    std::unique_ptr<ServiceManager> m_manager;
};

void TestSystemScope::init()
{
    m_manager = std::make_unique<ServiceManager>();
    QVERIFY(m_bus.registerVirtualObject(path, m_manager.get()));
    QVERIFY(m_bus.registerService(service));
}

void TestSystemScope::cleanup()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(path);
}

void TestSystemScope::sessionsAreToldFromServices_data()
{
    QTest::addColumn<QByteArray>("controlGroups");
    QTest::addColumn<bool>("ends");
    QTest::newRow("a session") << QByteArray("0::/user.slice/user-1000.slice/session-3.scope\n") << true;
    QTest::newRow("a user's service")
        << QByteArray("0::/user.slice/user-1000.slice/user@1000.service/app.slice/a.scope\n") << true;
    QTest::newRow("with the older control groups") << QByteArray(
        "12:pids:/user.slice/user-1000.slice\n1:name=systemd:/user.slice/user-1000.slice/session-3.scope\n")
                                                   << true;
    QTest::newRow("a service") << QByteArray("0::/system.slice/cron.service\n") << false;
    QTest::newRow("no service manager") << QByteArray("0::/\n") << false;
    QTest::newRow("none") << QByteArray() << false;
}

void TestSystemScope::sessionsAreToldFromServices()
{
    QFETCH(QByteArray, controlGroups);
    QFETCH(bool, ends);
    QCOMPARE(endsWithUserSession(controlGroups), ends);
}

void TestSystemScope::isDoneWhenTheJobHasEnded()
{
    QObject context;
    int done = 0;
    moveToSystemScope(&context, [&done] { ++done; });
    QTRY_COMPARE(m_manager->calls.size(), 1);
    const QDBusMessage &call = m_manager->calls.constFirst();
    QCOMPARE(
        call.interface() + u'.' + call.member(), u"org.freedesktop.systemd1.Manager.StartTransientUnit"_s);
    QCOMPARE(call.signature(), u"ssa(sv)a(sa(sv))"_s);
    QVERIFY(call.arguments().value(0).toString().endsWith(u".scope"_s));
    QCOMPARE(processesOf(call.arguments().value(2)), QList<uint> { static_cast<uint>(getpid()) });

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

void TestSystemScope::refusalIsNotWaitedFor()
{
    m_manager->refuses = true;
    QObject context;
    int done = 0;
    moveToSystemScope(&context, [&done] { ++done; });
    QCOMPARE(done, 0);
    QTRY_COMPARE_WITH_TIMEOUT(done, 1, 2000);
}

void TestSystemScope::withoutAServiceManagerItIsDoneAtOnce()
{
    QVERIFY(m_bus.unregisterService(service));
    QObject context;
    int done = 0;
    moveToSystemScope(&context, [&done] { ++done; });
    QTRY_COMPARE_WITH_TIMEOUT(done, 1, 2000);
    QVERIFY(m_manager->calls.isEmpty());
}

void TestSystemScope::nothingIsCalledOnceTheContextHasGone()
{
    auto context = std::make_unique<QObject>();
    int done = 0;
    moveToSystemScope(context.get(), [&done] { ++done; });
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
    TestSystemScope test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_systemscope.moc"
