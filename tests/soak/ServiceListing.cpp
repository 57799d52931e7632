// SPDX-License-Identifier: MIT
#include "tests/soak/ServiceListing.h"

#include "platform/DisturbingCharacters.h"
#include "platform/udisks/UDisksMedium.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

const QString connectionName = u"soak"_s;
const QString prefix = u"org.freedesktop.UDisks2."_s;

// One object of the service; what it does not have reads as empty.
class Object
{
public:
    Object(const Objects &all, const QDBusObjectPath &path)
        : m_interfaces(all.value(path))
    {
    }

    bool has(const char *interface) const { return m_interfaces.contains(prefix + QLatin1String(interface)); }
    QVariant value(const char *interface, const char *property) const
    {
        return m_interfaces.value(prefix + QLatin1String(interface)).value(QLatin1String(property));
    }
    QString path(const char *property) const
    {
        return QFile::decodeName(value("Block", property).toByteArray().constData());
    }
    QDBusObjectPath table() const { return value("Partition", "Table").value<QDBusObjectPath>(); }
    quint64 size() const { return value("Block", "Size").toULongLong(); }

private:
    Interfaces m_interfaces;
};

quint64 numberIn(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toULongLong() : 0;
}

QString firstMountPoint(const Object &object)
{
    const QVariant value = object.value("Filesystem", "MountPoints");
    const auto points = qdbus_cast<QByteArrayList>(value);
    return points.isEmpty() ? QString() : QFile::decodeName(points.constFirst().constData());
}

// Memory of the machine that passes for a disk is left out, and what holds boot files or a partition map.
bool isKeptFromTheList(const Object &object)
{
    const QString node = object.path("Device");
    const QString type = object.value("Partition", "Type").toString().toLower();
    const bool isIgnored = object.value("Block", "HintIgnore").toBool() && !object.has("Filesystem");
    return isIgnored || object.value("Partition", "IsContainer").toBool() || node.startsWith("/dev/ram"_L1)
        || node.startsWith("/dev/zram"_L1) || type == "c12a7328-f81f-11d2-ba4b-00a0c93ec93b"_L1
        || type == "426f6f74-0000-11aa-aa11-00306543ecac"_L1;
}

// What belongs to the machine's firmware or to another system's disk management.
bool isReserved(const Object &object)
{
    static const QStringList types { u"21686148-6449-6e6f-744e-656564454649"_s,
        u"9e1a2d38-c612-4316-aa26-8b49521e5a8b"_s, u"e3c9e316-0b5c-4db8-817d-f92df00215ae"_s };
    return types.contains(object.value("Partition", "Type").toString().toLower());
}

bool hasPartitions(const Objects &all, const QDBusObjectPath &disk)
{
    const QList<QDBusObjectPath> paths = all.keys();
    return std::any_of(paths.begin(), paths.end(),
        [&](const QDBusObjectPath &path) { return Object(all, path).table() == disk; });
}

} // namespace

QString ListedMedium::line() const
{
    return u"%1 %2 %3 bytes%4%5%6%7 '%8' at '%9'"_s.arg(name, node, QString::number(size),
        isWhole ? u" whole"_s : QString(), isLeaf ? u" leaf"_s : QString(),
        isMountable ? u" mountable"_s : QString(), isWritable ? u" writable"_s : QString(), volumeName,
        mountPoint);
}

ServiceListing::ServiceListing()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName))
{
}

ServiceListing::~ServiceListing()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<QStringList> ServiceListing::lines() const
{
    const QDBusMessage reply = m_bus.call(QDBusMessage::createMethodCall(u"org.freedesktop.UDisks2"_s,
        u"/org/freedesktop/UDisks2"_s, u"org.freedesktop.DBus.ObjectManager"_s, u"GetManagedObjects"_s));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    const auto objects = qdbus_cast<Objects>(reply.arguments().value(0));

    // By disk, then by where it lies on the disk.
    std::vector<std::pair<std::pair<quint64, quint64>, QString>> lines;
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        const Object medium(objects, object.key());
        const bool isPartition = medium.has("Partition");
        const Object disk(objects, isPartition ? medium.table() : object.key());
        if (medium.size() == 0 || disk.size() == 0 || isKeptFromTheList(medium))
            continue;
        const QString node = medium.path("Device");
        const QString kernel = u"/sys/class/block/"_s + QFileInfo(node).fileName();
        const quint64 sequence
            = numberIn(QFileInfo(isPartition ? kernel + u"/.." : kernel).canonicalFilePath() + u"/diskseq");
        const quint64 partition = numberIn(kernel + u"/partition");
        if (sequence == 0 || isPartition != (partition != 0))
            continue; // it has just gone
        ListedMedium listed;
        listed.name = u"disk%1"_s.arg(sequence);
        if (isPartition)
            listed.name += u"s%1"_s.arg(partition);
        listed.node = node;
        listed.size = medium.size();
        listed.isWhole = !isPartition;
        listed.isLeaf = !medium.has("PartitionTable") || !hasPartitions(objects, object.key());
        listed.isMountable = listed.isLeaf && (medium.has("Filesystem") || !isReserved(medium));
        listed.isWritable = !medium.value("Block", "ReadOnly").toBool();
        listed.volumeName = harmlessName(medium.value("Block", "IdLabel").toString());
        listed.mountPoint = firstMountPoint(medium);
        const quint64 offset = medium.value("Partition", "Offset").toULongLong();
        lines.push_back({ { sequence, isPartition ? offset + 1 : 0 }, listed.line() });
    }
    std::sort(lines.begin(), lines.end());
    QStringList result;
    for (const auto &[place, line] : lines)
        result.append(line);
    return result;
}

uint ServiceListing::serviceProcess() const
{
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question.setArguments({ u"org.freedesktop.UDisks2"_s });
    const QDBusReply<uint> reply = m_bus.call(question);
    return reply.isValid() ? reply.value() : 0;
}
