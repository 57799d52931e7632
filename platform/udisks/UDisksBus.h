// SPDX-License-Identifier: MIT
//
// The conversation with UDisks2: one listing, signals, and calls whose answers come later. It keeps the store
// up to date and reports changes. Main thread only.
#pragma once

#include "platform/DiskArbitration.h"
#include "platform/udisks/UDisksStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QSet>

#include <chrono>
#include <functional>

// What the service tells of a device some hundredths of a second after something has happened to it is waited
// for this long. It may have nothing to tell.
constexpr std::chrono::seconds newsLimit { 5 };

class UDisksBus : public QObject
{
    Q_OBJECT

public:
    // Answer of a call: the dissenter is null when it was granted.
    using Reply = std::function<void(const QDBusMessage &reply, const DADissenterRef &dissenter)>;

    // The second makes another connection when this one is lost, which is possible once the bus runs again.
    UDisksBus(
        const QDBusConnection &bus, std::function<QDBusConnection()> reconnect, QObject *parent = nullptr);
    ~UDisksBus() override;

    // Starts the service if need be, subscribes to its signals, then lists its objects.
    void start();

    // The same for a caller that has no event loop yet: asks the bus, not the service, who the service is,
    // and waits a moment for the answer, so that the listing is on its way when this returns.
    void startAtOnce();

    // Lists all objects again; without a service, tries to start it.
    void listAgain();

    const UDisksStore &store() const { return m_store; }

    // Whether the store holds what the service has listed. Not while there is none, nor before its first
    // answer.
    bool isListed() const { return m_isListed; }

    // Calls a method of an object of the service. The reply does not run when this object goes first.
    void call(const QString &path, const QString &interface, const QString &method,
        const QVariantList &arguments, Reply reply);

    // Reads one property again into the store, for a caller that cannot wait for its signal; then runs done
    // with whether the store now holds the service's answer: a value, or no such interface.
    void readProperty(const QString &path, const QString &interface, const QString &name,
        std::function<void(bool isKnown)> done);

    // Runs done once, later: with true when the store fulfils the condition, or with false after the limit.
    void await(const std::function<bool()> &isFulfilled, std::chrono::milliseconds limit,
        std::function<void(bool isFulfilled)> done);

    // Emits changed() now for what has changed so far.
    void flush();

Q_SIGNALS:
    // All objects have been listed, or (available false) there are none any more.
    void listed(bool available);

    // Objects with these paths were added, changed or removed; several changes come in one signal.
    void changed(const QSet<QString> &paths);

private Q_SLOTS:
    void interfacesAdded(const QDBusMessage &message);
    void interfacesRemoved(const QDBusMessage &message);
    void propertiesChanged(const QDBusMessage &message);
    void nameOwnerChanged(const QString &name, const QString &oldOwner, const QString &newOwner);
    void busLost();

private:
    void callAt(const QString &destination, const QString &path, const QString &interface,
        const QString &method, const QVariantList &arguments, Reply reply);
    void watchOwner();
    void serviceLost();
    void tryReconnect();
    void askOwner();
    void startService();
    void follow(const QString &owner);
    void list();
    void forget();
    void connectSignals(bool connected);
    QDBusPendingCall callBus(const QString &method, const QVariantList &arguments);
    void objectsListed(const QDBusMessage &reply);
    void markChanged(const QString &path);

    QDBusConnection m_bus;
    std::function<QDBusConnection()> m_reconnect;
    UDisksStore m_store;
    QString m_owner; // unique name of the service that is followed; empty while there is none
    bool m_isListed = false; // signals before the listing are ignored, because it has their changes
    int m_listing = 0; // number of the latest listing; the answer to an older one is dropped
    QSet<QString> m_changed;
};
