// SPDX-License-Identifier: MIT
//
// A disk service on a bus of its own, for what the real one cannot be made to say: objects that arrive in
// stages, replies of unexpected types, errors of unknown names.
#pragma once

#include "platform/BlockDevice.h"
#include "platform/DiskArbitration.h"
#include "platform/udisks/UDisksStore.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QProcess>

#include <functional>

// What no bundle serves.
VolumeClaimLookup noClaims();

class FakeUDisks : public QDBusVirtualObject
{
    Q_OBJECT

public:
    FakeUDisks();
    ~FakeUDisks() override;

    // A connection of a client to the bus.
    QDBusConnection client() const { return m_client; }

    // Takes the service's name on the bus, or gives it up.
    void start();
    void stop();

    // Changes an object; with a signal when the service is to tell of it.
    enum class Tell { No, Yes };
    void addInterfaces(const QString &path, const UDisksInterfaces &interfaces, Tell tell);
    void removeInterfaces(const QString &path, const QStringList &interfaces, Tell tell);
    void changeProperties(
        const QString &path, const QString &interface, const QVariantMap &changed, Tell tell);
    void sendSignal(const QDBusMessage &signal) { m_server.send(signal); }

    // Answers a method call other than the listing and the reading of a property; an invalid message for
    // "done".
    std::function<QDBusMessage(const QDBusMessage &call)> answer;
    QStringList calls; // "path method" of each that was answered
    bool listsNonsense = false;
    int listings = 0; // that were asked for

    // Facts of the devices that it describes: /dev/fake2p1 is disk2s1.
    static std::optional<BlockDeviceFacts> facts(const QString &deviceNode);

    static QString blockPath(const QString &name);

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QProcess m_daemon;
    QDBusConnection m_server;
    QDBusConnection m_client;
    QMap<QString, UDisksInterfaces> m_objects;
};

// A whole disk "fake2" with a partition table, and its partition "fake2p1" with a file system.
UDisksInterfaces fakeWholeDisk(const QString &name, bool isLoop = false);
UDisksInterfaces fakePartition(
    const QString &name, uint number, const QString &label, const QStringList &mountPoints = {});
