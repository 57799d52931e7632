// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksStore.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// File names come as bytes with a zero at the end.
QString decodedFileName(QByteArray bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    if (end >= 0)
        bytes.truncate(end);
    return QFile::decodeName(bytes);
}

bool isWanted(const QString &interface)
{
    static const QStringList wanted { UDisks::block, UDisks::drive, UDisks::encrypted, UDisks::filesystem,
        UDisks::loop, UDisks::manager, UDisks::partition, UDisks::partitionTable };
    return wanted.contains(interface);
}

} // namespace

void registerUDisksTypes()
{
    qDBusRegisterMetaType<UDisksInterfaces>();
    qDBusRegisterMetaType<UDisksObjects>();
    qDBusRegisterMetaType<QByteArrayList>();
}

void UDisksStore::clear()
{
    m_objects.clear();
    m_children.reset();
}

void UDisksStore::addInterfaces(const QString &path, const UDisksInterfaces &interfaces)
{
    m_children.reset();
    for (auto interface = interfaces.cbegin(); interface != interfaces.cend(); ++interface) {
        if (isWanted(interface.key()))
            m_objects[path].insert(interface.key(), interface.value());
    }
}

void UDisksStore::removeInterfaces(const QString &path, const QStringList &interfaces)
{
    const auto object = m_objects.find(path);
    if (object == m_objects.end())
        return;
    m_children.reset();
    for (const QString &interface : interfaces)
        object->remove(interface);
    if (object->isEmpty())
        m_objects.erase(object);
}

bool UDisksStore::changeProperties(const QString &path, const QString &interface, const QVariantMap &changed)
{
    if (!hasInterface(path, interface))
        return false;
    m_children.reset();
    QVariantMap &properties = m_objects[path][interface];
    for (auto property = changed.cbegin(); property != changed.cend(); ++property)
        properties.insert(property.key(), property.value());
    return true;
}

bool UDisksStore::hasInterface(const QString &path, const QString &interface) const
{
    const auto object = m_objects.constFind(path);
    return object != m_objects.constEnd() && object->contains(interface);
}

QVariant UDisksStore::property(const QString &path, const QString &interface, const QString &name) const
{
    const auto object = m_objects.constFind(path);
    if (object == m_objects.constEnd())
        return {};
    const auto properties = object->constFind(interface);
    return properties == object->constEnd() ? QVariant() : properties->value(name);
}

QString UDisksStore::text(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QString UDisksStore::objectPath(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    if (value.metaType() != QMetaType::fromType<QDBusObjectPath>())
        return {};
    const QString result = value.value<QDBusObjectPath>().path();
    return result == "/"_L1 ? QString() : result;
}

QString UDisksStore::fileName(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    return value.typeId() == QMetaType::QByteArray ? decodedFileName(value.toByteArray()) : QString();
}

QStringList UDisksStore::fileNames(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    QByteArrayList list;
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        if (argument.currentSignature() == "aay"_L1)
            argument >> list;
    } else if (value.metaType() == QMetaType::fromType<QByteArrayList>()) {
        list = value.value<QByteArrayList>();
    }
    QStringList names;
    for (const QByteArray &bytes : list)
        names.append(decodedFileName(bytes));
    return names;
}

bool UDisksStore::flag(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    return value.typeId() == QMetaType::Bool && value.toBool();
}

quint64 UDisksStore::number(const QString &path, const QString &interface, const char *name) const
{
    const QVariant value = property(path, interface, QLatin1String(name));
    switch (value.typeId()) {
    case QMetaType::ULongLong:
    case QMetaType::UInt:
    case QMetaType::UShort:
        return value.toULongLong();
    case QMetaType::LongLong:
    case QMetaType::Int:
        return static_cast<quint64>(std::max<qint64>(0, value.toLongLong()));
    default:
        return 0;
    }
}

QString UDisksStore::wholeDiskOf(const QString &path) const
{
    const QString table = objectPath(path, UDisks::partition, "Table");
    return table.isEmpty() ? path : table;
}

QString UDisksStore::bottomDiskOf(const QString &path) const
{
    QString whole = wholeDiskOf(path);
    QStringList passed; // a service may say nonsense
    for (QString below = objectPath(whole, UDisks::block, "CryptoBackingDevice");
        !below.isEmpty() && !passed.contains(whole);
        below = objectPath(whole, UDisks::block, "CryptoBackingDevice")) {
        passed.append(whole);
        whole = wholeDiskOf(below);
    }
    return whole;
}

bool UDisksStore::isEncrypted(const QString &path) const
{
    return hasInterface(path, UDisks::encrypted) && text(path, UDisks::block, "IdUsage") == "crypto"_L1;
}

QString UDisksStore::readableDeviceOf(const QString &path) const
{
    const QStringList devices = children().values(path);
    const auto found = std::find_if(devices.begin(), devices.end(), [&](const QString &device) {
        return objectPath(device, UDisks::block, "CryptoBackingDevice") == path;
    });
    return found == devices.end() ? QString() : *found;
}

const QMultiHash<QString, QString> &UDisksStore::children() const
{
    if (!m_children) {
        m_children.emplace();
        for (auto object = m_objects.cbegin(); object != m_objects.cend(); ++object) {
            for (const QString &below : { objectPath(object.key(), UDisks::partition, "Table"),
                     objectPath(object.key(), UDisks::block, "CryptoBackingDevice") }) {
                if (!below.isEmpty())
                    m_children->insert(below, object.key());
            }
        }
    }
    return *m_children;
}

bool UDisksStore::hasPartitions(const QString &path) const
{
    const QStringList devices = children().values(path);
    return hasInterface(path, UDisks::partitionTable)
        && std::any_of(devices.begin(), devices.end(),
            [this](const QString &device) { return hasInterface(device, UDisks::partition); });
}

QStringList UDisksStore::blockDevicesOn(const QString &path) const
{
    QStringList result { path };
    for (qsizetype i = 0; i < result.size(); ++i) {
        for (const QString &device : children().values(result.at(i))) {
            if (!result.contains(device))
                result.append(device);
        }
    }
    return result;
}
