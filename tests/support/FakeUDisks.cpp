// SPDX-License-Identifier: MIT
#include "tests/support/FakeUDisks.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString objectManager = u"org.freedesktop.DBus.ObjectManager"_s;
const QString properties = u"org.freedesktop.DBus.Properties"_s;

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
    return { { u"Device"_s, bytes(u"/dev/"_s + name) },
        { u"Size"_s, QVariant::fromValue(qulonglong { 1000000 }) }, { u"ReadOnly"_s, false },
        { u"HintSystem"_s, true }, { u"HintIgnore"_s, false },
        { u"Drive"_s, QVariant::fromValue(QDBusObjectPath(u"/"_s)) } };
}

} // namespace

FakeUDisks::FakeUDisks()
    : m_server(QString())
    , m_client(QString())
{
    registerUDisksTypes();
    m_daemon.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
    if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead())
        qFatal("there is no dbus-daemon");
    const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    m_server = QDBusConnection::connectToBus(address, u"server"_s);
    m_client = QDBusConnection::connectToBus(address, u"client"_s);
    m_server.registerVirtualObject(UDisks::rootPath, this, QDBusConnection::SubPath);
}

FakeUDisks::~FakeUDisks()
{
    m_server.unregisterObject(UDisks::rootPath);
    QDBusConnection::disconnectFromBus(u"client"_s);
    QDBusConnection::disconnectFromBus(u"server"_s);
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
    return UDisks::rootPath + u"/block_devices/"_s + name;
}

std::optional<BlockDeviceFacts> FakeUDisks::facts(const QString &deviceNode)
{
    static const QRegularExpression name(u"^/dev/fake(\\d+)(?:p(\\d+))?$"_s);
    const auto match = name.match(deviceNode);
    if (!match.hasMatch())
        return std::nullopt;
    BlockDeviceFacts facts;
    facts.diskSequence = match.capturedView(1).toULongLong();
    facts.partitionNumber = match.capturedView(2).toUInt();
    facts.logicalBlockSize = 512;
    facts.bsdName = u"disk%1"_s.arg(facts.diskSequence);
    if (facts.partitionNumber)
        facts.bsdName += u"s%1"_s.arg(facts.partitionNumber);
    return facts;
}

void FakeUDisks::addInterfaces(const QString &path, const UDisksInterfaces &interfaces, Tell tell)
{
    for (auto interface = interfaces.cbegin(); interface != interfaces.cend(); ++interface)
        m_objects[path].insert(interface.key(), interface.value());
    if (tell == Tell::No)
        return;
    auto signal = QDBusMessage::createSignal(UDisks::rootPath, objectManager, u"InterfacesAdded"_s);
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
    auto signal = QDBusMessage::createSignal(UDisks::rootPath, objectManager, u"InterfacesRemoved"_s);
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
    auto signal = QDBusMessage::createSignal(path, properties, u"PropertiesChanged"_s);
    signal << interface << changed << QStringList();
    m_server.send(signal);
}

QString FakeUDisks::introspect(const QString &) const
{
    return {};
}

bool FakeUDisks::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.member() == "GetManagedObjects"_L1) {
        ++listings;
        UDisksObjects objects;
        for (auto object = m_objects.cbegin(); object != m_objects.cend(); ++object)
            objects.insert(QDBusObjectPath(object.key()), object.value());
        return connection.send(listsNonsense ? message.createReply(u"nonsense"_s)
                                             : message.createReply(QVariant::fromValue(objects)));
    }
    if (message.interface() == properties) {
        const QVariant value = m_objects.value(message.path())
                                   .value(message.arguments().at(0).toString())
                                   .value(message.arguments().at(1).toString());
        // The errors are those of the library that the real service is made with.
        const auto error
            = m_objects.contains(message.path()) ? QDBusError::InvalidArgs : QDBusError::UnknownMethod;
        return connection.send(value.isValid() ? message.createReply(QVariant::fromValue(QDBusVariant(value)))
                                               : message.createErrorReply(error, u"no such property"_s));
    }
    calls.append(message.path().section(u'/', -1) + u' ' + message.member());
    const QDBusMessage reply = answer ? answer(message) : QDBusMessage();
    return connection.send(reply.type() == QDBusMessage::InvalidMessage ? message.createReply() : reply);
}

UDisksInterfaces fakeWholeDisk(const QString &name, bool isLoop)
{
    UDisksInterfaces interfaces { { UDisks::block, blockProperties(name) },
        { UDisks::partitionTable, { { u"Type"_s, u"gpt"_s } } } };
    if (isLoop)
        interfaces.insert(UDisks::loop, { { u"BackingFile"_s, bytes(u"/var/tmp/practice.img"_s) } });
    return interfaces;
}

UDisksInterfaces fakePartition(
    const QString &name, uint number, const QString &label, const QStringList &mountPoints)
{
    QVariantMap block = blockProperties(name);
    block.insert(u"IdLabel"_s, label);
    block.insert(u"IdUsage"_s, u"filesystem"_s);
    block.insert(u"IdType"_s, u"ext4"_s);
    const QString whole = FakeUDisks::blockPath(name.section(u'p', 0, 0));
    return { { UDisks::block, block },
        { UDisks::partition,
            { { u"Number"_s, number }, { u"Offset"_s, QVariant::fromValue(qulonglong { number } * 1000) },
                { u"Type"_s, u"0fc63daf-8483-4772-8e79-3d69d8477de4"_s }, { u"Name"_s, u"Part"_s },
                { u"Table"_s, QVariant::fromValue(QDBusObjectPath(whole)) } } },
        { UDisks::filesystem, { { u"MountPoints"_s, mountPointsValue(mountPoints) } } } };
}

VolumeClaimLookup noClaims()
{
    return [](const QString &, const QString &) { return std::nullopt; };
}
