// SPDX-License-Identifier: MIT
#include "tests/support/FakeUDisks.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QRegularExpression>

namespace {

const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

QByteArray bytes(const QString &text)
{
    return text.toUtf8() + '\0';
}

QVariant mountPointsValue(const QStringList &points)
{
    QByteArrayList list;
    for (const QString &point : points)
        list.append(bytes(point));
    return QVariant::fromValue(list);
}

QVariantMap blockProperties(const QString &name)
{
    return { { QStringLiteral("Device"), bytes(QStringLiteral("/dev/") + name) },
        { QStringLiteral("Size"), QVariant::fromValue(qulonglong { 1000000 }) },
        { QStringLiteral("ReadOnly"), false }, { QStringLiteral("HintSystem"), true },
        { QStringLiteral("HintIgnore"), false },
        { QStringLiteral("Drive"), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/"))) } };
}

} // namespace

FakeUDisks::FakeUDisks()
    : m_server(QString())
    , m_client(QString())
{
    registerUDisksTypes();
    m_daemon.start(QStringLiteral("dbus-daemon"),
        { QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address") });
    if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead())
        qFatal("there is no dbus-daemon");
    const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    m_server = QDBusConnection::connectToBus(address, QStringLiteral("server"));
    m_client = QDBusConnection::connectToBus(address, QStringLiteral("client"));
    m_server.registerVirtualObject(UDisks::rootPath, this, QDBusConnection::SubPath);
}

FakeUDisks::~FakeUDisks()
{
    m_server.unregisterObject(UDisks::rootPath);
    QDBusConnection::disconnectFromBus(QStringLiteral("client"));
    QDBusConnection::disconnectFromBus(QStringLiteral("server"));
    m_daemon.kill();
    m_daemon.waitForFinished();
}

void FakeUDisks::start()
{
    if (!m_server.registerService(UDisks::service))
        qFatal("the service's name is taken");
}

void FakeUDisks::stop()
{
    m_server.unregisterService(UDisks::service);
}

QString FakeUDisks::blockPath(const QString &name)
{
    return UDisks::rootPath + QStringLiteral("/block_devices/") + name;
}

std::optional<BlockDeviceFacts> FakeUDisks::facts(const QString &deviceNode)
{
    static const QRegularExpression name(QStringLiteral("^/dev/fake(\\d+)(?:p(\\d+))?$"));
    const auto match = name.match(deviceNode);
    if (!match.hasMatch())
        return std::nullopt;
    BlockDeviceFacts facts;
    facts.diskSequence = match.capturedView(1).toULongLong();
    facts.partitionNumber = match.capturedView(2).toUInt();
    facts.logicalBlockSize = 512;
    facts.bsdName = QStringLiteral("disk%1").arg(facts.diskSequence);
    if (facts.partitionNumber)
        facts.bsdName += QStringLiteral("s%1").arg(facts.partitionNumber);
    return facts;
}

void FakeUDisks::addInterfaces(const QString &path, const UDisksInterfaces &interfaces, Tell tell)
{
    for (auto interface = interfaces.cbegin(); interface != interfaces.cend(); ++interface)
        m_objects[path].insert(interface.key(), interface.value());
    if (tell == Tell::No)
        return;
    auto signal
        = QDBusMessage::createSignal(UDisks::rootPath, objectManager, QStringLiteral("InterfacesAdded"));
    signal << QVariant::fromValue(QDBusObjectPath(path)) << QVariant::fromValue(interfaces);
    m_server.send(signal);
}

void FakeUDisks::removeInterfaces(const QString &path, const QStringList &interfaces, Tell tell)
{
    for (const QString &interface : interfaces)
        m_objects[path].remove(interface);
    if (m_objects.value(path).isEmpty())
        m_objects.remove(path);
    if (tell == Tell::No)
        return;
    auto signal
        = QDBusMessage::createSignal(UDisks::rootPath, objectManager, QStringLiteral("InterfacesRemoved"));
    signal << QVariant::fromValue(QDBusObjectPath(path)) << interfaces;
    m_server.send(signal);
}

void FakeUDisks::changeProperties(
    const QString &path, const QString &interface, const QVariantMap &changed, Tell tell)
{
    for (auto property = changed.cbegin(); property != changed.cend(); ++property)
        m_objects[path][interface].insert(property.key(), property.value());
    if (tell == Tell::No)
        return;
    auto signal = QDBusMessage::createSignal(path, properties, QStringLiteral("PropertiesChanged"));
    signal << interface << changed << QStringList();
    m_server.send(signal);
}

QString FakeUDisks::introspect(const QString &path) const
{
    Q_UNUSED(path)
    return {};
}

bool FakeUDisks::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.member() == QLatin1String("GetManagedObjects")) {
        ++listings;
        UDisksObjects objects;
        for (auto object = m_objects.cbegin(); object != m_objects.cend(); ++object)
            objects.insert(QDBusObjectPath(object.key()), object.value());
        return connection.send(listsNonsense ? message.createReply(QStringLiteral("nonsense"))
                                             : message.createReply(QVariant::fromValue(objects)));
    }
    if (message.interface() == properties) {
        const QVariant value = m_objects.value(message.path())
                                   .value(message.arguments().at(0).toString())
                                   .value(message.arguments().at(1).toString());
        // The errors are those of the library that the real service is made with.
        const auto error
            = m_objects.contains(message.path()) ? QDBusError::InvalidArgs : QDBusError::UnknownMethod;
        return connection.send(value.isValid()
                ? message.createReply(QVariant::fromValue(QDBusVariant(value)))
                : message.createErrorReply(error, QStringLiteral("no such property")));
    }
    calls.append(message.path().section(u'/', -1) + u' ' + message.member());
    const QDBusMessage reply = answer ? answer(message) : QDBusMessage();
    return connection.send(reply.type() == QDBusMessage::InvalidMessage ? message.createReply() : reply);
}

UDisksInterfaces fakeWholeDisk(const QString &name, bool isLoop)
{
    UDisksInterfaces interfaces { { UDisks::block, blockProperties(name) },
        { UDisks::partitionTable, { { QStringLiteral("Type"), QStringLiteral("gpt") } } } };
    if (isLoop)
        interfaces.insert(UDisks::loop,
            { { QStringLiteral("BackingFile"), bytes(QStringLiteral("/var/tmp/practice.img")) } });
    return interfaces;
}

UDisksInterfaces fakePartition(
    const QString &name, uint number, const QString &label, const QStringList &mountPoints)
{
    QVariantMap block = blockProperties(name);
    block.insert(QStringLiteral("IdLabel"), label);
    block.insert(QStringLiteral("IdUsage"), QStringLiteral("filesystem"));
    block.insert(QStringLiteral("IdType"), QStringLiteral("ext4"));
    const QString whole = FakeUDisks::blockPath(name.section(u'p', 0, 0));
    return { { UDisks::block, block },
        { UDisks::partition,
            { { QStringLiteral("Number"), number },
                { QStringLiteral("Offset"), QVariant::fromValue(qulonglong { number } * 1000) },
                { QStringLiteral("Type"), QStringLiteral("0fc63daf-8483-4772-8e79-3d69d8477de4") },
                { QStringLiteral("Name"), QStringLiteral("Part") },
                { QStringLiteral("Table"), QVariant::fromValue(QDBusObjectPath(whole)) } } },
        { UDisks::filesystem, { { QStringLiteral("MountPoints"), mountPointsValue(mountPoints) } } } };
}
