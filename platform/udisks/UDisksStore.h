// SPDX-License-Identifier: MIT
//
// What UDisks2 has said of its objects: object path, interface, properties, as they came over the bus.
// Written by the bus's listing and signals, read by everything else; it never asks the bus. Main thread only.
#pragma once

#include <QDBusObjectPath>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

using UDisksInterfaces = QMap<QString, QVariantMap>;
using UDisksObjects = QMap<QDBusObjectPath, UDisksInterfaces>;

namespace UDisks {
inline const QString service = QStringLiteral("org.freedesktop.UDisks2");
inline const QString rootPath = QStringLiteral("/org/freedesktop/UDisks2");
inline const QString block = QStringLiteral("org.freedesktop.UDisks2.Block");
inline const QString drive = QStringLiteral("org.freedesktop.UDisks2.Drive");
inline const QString encrypted = QStringLiteral("org.freedesktop.UDisks2.Encrypted");
inline const QString filesystem = QStringLiteral("org.freedesktop.UDisks2.Filesystem");
inline const QString loop = QStringLiteral("org.freedesktop.UDisks2.Loop");
inline const QString managerPath = QStringLiteral("/org/freedesktop/UDisks2/Manager");
inline const QString manager = QStringLiteral("org.freedesktop.UDisks2.Manager");
inline const QString partition = QStringLiteral("org.freedesktop.UDisks2.Partition");
inline const QString partitionTable = QStringLiteral("org.freedesktop.UDisks2.PartitionTable");
} // namespace UDisks

// Makes the types of the bus known to Qt. Called once before the first message.
void registerUDisksTypes();

class UDisksStore
{
public:
    void clear();

    // Adds or replaces interfaces of an object; interfaces without a reader are left out.
    void addInterfaces(const QString &path, const UDisksInterfaces &interfaces);
    void removeInterfaces(const QString &path, const QStringList &interfaces);

    // Changes properties of an interface. Returns false when the interface is not known.
    bool changeProperties(const QString &path, const QString &interface, const QVariantMap &changed);

    bool hasInterface(const QString &path, const QString &interface) const;
    QVariant property(const QString &path, const QString &interface, const QString &name) const;
    QStringList paths() const { return m_objects.keys(); }

    // Readers of properties as our types. An absent property, or one of an unexpected type, reads as empty,
    // zero or false.
    QString text(const QString &path, const QString &interface, const char *name) const;
    QString objectPath(const QString &path, const QString &interface, const char *name) const; // "" for "/"
    QString fileName(const QString &path, const QString &interface, const char *name) const;
    QStringList fileNames(const QString &path, const QString &interface, const char *name) const;
    bool flag(const QString &path, const QString &interface, const char *name) const;
    quint64 number(const QString &path, const QString &interface, const char *name) const;

    // The whole disk of a partition; the path itself for anything else.
    QString wholeDiskOf(const QString &path) const;

    // The whole disk that is at the bottom: of a partition its disk, of what is unlocked that of the device
    // below; the path itself for anything else.
    QString bottomDiskOf(const QString &path) const;

    // Whether the device is encrypted. The service tells of a new file system on an encrypted device before
    // it takes away the interface that unlocks it.
    bool isEncrypted(const QString &path) const;

    // The device that is unlocked on an encrypted one; empty while that is locked.
    QString readableDeviceOf(const QString &path) const;

    // Whether the disk has partitions.
    bool hasPartitions(const QString &path) const;

    // Every block device on this disk: itself, its partitions, and what is unlocked on top of them.
    QStringList blockDevicesOn(const QString &path) const;

private:
    const QMultiHash<QString, QString> &children() const;

    QHash<QString, UDisksInterfaces> m_objects;
    // From a device to the partitions and unlocked devices right on it; made when it is asked for after a
    // change.
    mutable std::optional<QMultiHash<QString, QString>> m_children;
};
