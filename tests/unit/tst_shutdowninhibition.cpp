// SPDX-License-Identifier: MIT
//
// Shutdown and sleep are held back by a logind of the test's own. Run by dbus-run-session, whose bus stands
// for the system's.
#include "platform/FileDescriptor.h"
#include "platform/ShutdownInhibition.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QTest>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"org.freedesktop.login1"_s;
const QString path = u"/org/freedesktop/login1"_s;

class Logind : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == u"Ping"_s)
            return connection.send(message.createReply());
        calls.append(message);
        if (answers)
            answer(connection);
        return true;
    }

    void answer(const QDBusConnection &connection)
    {
        std::array<int, 2> ends {};
        QCOMPARE(pipe2(ends.data(), O_CLOEXEC), 0);
        m_lock = FileDescriptor(ends[0]);
        const FileDescriptor given(ends[1]);
        connection.send(calls.constLast().createReply(QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))));
    }

    // Whether the descriptor that was given has been closed everywhere.
    bool isReleased() const
    {
        pollfd state { m_lock.number(), POLLIN, 0 };
        return m_lock.isOpen() && poll(&state, 1, 0) == 1 && (state.revents & POLLHUP);
    }

    bool answers = true;
    QList<QDBusMessage> calls;

private:
    FileDescriptor m_lock;
};

} // namespace

class TestShutdownInhibition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isHeldAsLongAsItIsThere();
    void lateAnswerHoldsNothing();
    void withoutLogindNothingHappens();

private:
    QDBusConnection m_bus { QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"logind"_s) };
    std::unique_ptr<Logind> m_logind;
};

void TestShutdownInhibition::init()
{
    m_logind = std::make_unique<Logind>();
    QVERIFY(m_bus.registerVirtualObject(path, m_logind.get()));
    QVERIFY(m_bus.registerService(service));
}

void TestShutdownInhibition::cleanup()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(path);
}

void TestShutdownInhibition::isHeldAsLongAsItIsThere()
{
    auto inhibition = inhibitShutdown(u"A volume is being repaired"_s);
    QTRY_COMPARE(m_logind->calls.size(), 1);
    const QDBusMessage &call = m_logind->calls.constFirst();
    QCOMPARE(call.interface() + u'.' + call.member(), u"org.freedesktop.login1.Manager.Inhibit"_s);
    QCOMPARE(call.arguments(),
        QVariantList(
            { u"shutdown:sleep"_s, u"Zorvex Disk Manager"_s, u"A volume is being repaired"_s, u"block"_s }));
    // The answer to a later call comes after that to the first.
    const QDBusPendingCallWatcher later(QDBusConnection::systemBus().asyncCall(
        QDBusMessage::createMethodCall(service, path, u"org.test.Logind"_s, u"Ping"_s)));
    QTRY_VERIFY(later.isFinished());
    QVERIFY(!m_logind->isReleased());
    inhibition.reset();
    QTRY_VERIFY(m_logind->isReleased());
}

void TestShutdownInhibition::lateAnswerHoldsNothing()
{
    m_logind->answers = false;
    auto inhibition = inhibitShutdown(u"test"_s);
    QTRY_COMPARE(m_logind->calls.size(), 1);
    inhibition.reset();
    m_logind->answer(m_bus);
    QTRY_VERIFY(m_logind->isReleased());
}

void TestShutdownInhibition::withoutLogindNothingHappens()
{
    QVERIFY(m_bus.unregisterService(service));
    const auto inhibition = inhibitShutdown(u"test"_s);
    QVERIFY(inhibition);
    QVERIFY(m_logind->calls.isEmpty());
}

int main(int argc, char **argv)
{
    setenv("DBUS_SYSTEM_BUS_ADDRESS", getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
    QCoreApplication application(argc, argv);
    TestShutdownInhibition test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_shutdowninhibition.moc"
