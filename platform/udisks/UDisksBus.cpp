// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksBus.h"

#include "platform/dbus/PendingReply.h"
#include "platform/SystemLog.h"
#include "platform/udisks/UDisksError.h"

#include <QDBusArgument>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QTimer>

#include <chrono>
#include <climits>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// Calls have no time limit: one can wait for the user's password, or for a slow disk that is flushed.
constexpr int noTimeLimit = INT_MAX;

constexpr std::chrono::seconds reconnectInterval { 1 };

const QString objectManager = u"org.freedesktop.DBus.ObjectManager"_s;
const QString busService = u"org.freedesktop.DBus"_s;
const QString busPath = u"/org/freedesktop/DBus"_s;
// For an answer of the bus itself, before there is a window. A later answer is taken when it comes.
constexpr int longestWait = 100; // milliseconds

const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

QDBusMessage busCall(const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(busService, busPath, busService, method);
    message.setArguments(arguments);
    return message;
}

// Whether this error of reading a property means that the object has no such interface.
bool isMissing(const QDBusMessage &answer)
{
    static const QStringList names { QDBusError::errorString(QDBusError::UnknownObject),
        QDBusError::errorString(QDBusError::UnknownInterface),
        QDBusError::errorString(QDBusError::UnknownMethod), // the object is missing
        QDBusError::errorString(QDBusError::InvalidArgs) }; // the object is without the interface
    return names.contains(answer.errorName());
}

} // namespace

UDisksBus::UDisksBus(const QDBusConnection &bus, std::function<QDBusConnection()> reconnect, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_reconnect(std::move(reconnect))
{
    registerUDisksTypes();
}

UDisksBus::~UDisksBus() = default;

void UDisksBus::start()
{
    watchOwner();
    askOwner();
}

void UDisksBus::startAtOnce()
{
    watchOwner();
    const QDBusPendingReply<QString> reply
        = m_bus.call(busCall(u"GetNameOwner"_s, { UDisks::service }), QDBus::Block, longestWait);
    if (reply.isValid())
        follow(reply.value());
    else
        askOwner();
}

void UDisksBus::watchOwner()
{
    m_bus.connect(busService, busPath, busService, u"NameOwnerChanged"_s, { UDisks::service }, {}, this,
        SLOT(nameOwnerChanged(QString, QString, QString)));
    m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
        this, SLOT(busLost()));
}

QDBusPendingCall UDisksBus::callBus(const QString &method, const QVariantList &arguments)
{
    return m_bus.asyncCall(busCall(method, arguments), noTimeLimit);
}

// Signals are connected by the service's unique name: for any other name, Qt would look up the owner and wait
// for the answer.
void UDisksBus::askOwner()
{
    onReply(callBus(u"GetNameOwner"_s, { UDisks::service }), this, [this](const QDBusMessage &message) {
        const QDBusPendingReply<QString> reply(message);
        if (reply.isError())
            startService();
        else if (m_owner.isEmpty())
            follow(reply.value());
    });
}

void UDisksBus::startService()
{
    if (!m_owner.isEmpty())
        return;
    const QDBusPendingCall call = callBus(u"StartServiceByName"_s, { UDisks::service, 0U });
    onReply(call, this, [this](const QDBusMessage &message) {
        // The change of the name's owner tells of a service that has started.
        const QDBusPendingReply<uint> reply(message);
        if (!reply.isError() || !m_owner.isEmpty())
            return;
        systemLog(u"Unable to start the disk service: %1"_s.arg(reply.error().message()));
        Q_EMIT listed(false);
    });
}

void UDisksBus::follow(const QString &owner)
{
    m_owner = owner;
    connectSignals(true);
    list();
}

void UDisksBus::connectSignals(bool connected)
{
    const struct
    {
        QString path;
        QString interface;
        QString name;
        const char *slot;
    } signalSlots[] = {
        { UDisks::rootPath, objectManager, u"InterfacesAdded"_s, SLOT(interfacesAdded(QDBusMessage)) },
        { UDisks::rootPath, objectManager, u"InterfacesRemoved"_s, SLOT(interfacesRemoved(QDBusMessage)) },
        { {}, propertiesInterface, u"PropertiesChanged"_s, SLOT(propertiesChanged(QDBusMessage)) },
    };
    for (const auto &[path, interface, name, slot] : signalSlots) {
        if (connected)
            m_bus.connect(m_owner, path, interface, name, this, slot);
        else
            m_bus.disconnect(m_owner, path, interface, name, this, slot);
    }
}

void UDisksBus::list()
{
    const int listing = ++m_listing;
    const auto message
        = QDBusMessage::createMethodCall(m_owner, UDisks::rootPath, objectManager, u"GetManagedObjects"_s);
    onReply(m_bus.asyncCall(message, noTimeLimit), this, [this, listing](const QDBusMessage &reply) {
        if (listing == m_listing)
            objectsListed(reply);
    });
}

void UDisksBus::listAgain()
{
    if (m_owner.isEmpty())
        startService();
    else
        list();
}

void UDisksBus::objectsListed(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        systemLog(u"Unable to list disks: %1"_s.arg(reply.errorMessage()));
        Q_EMIT listed(false);
        return;
    }
    if (reply.signature() != "a{oa{sa{sv}}}"_L1) {
        systemLog(u"Unexpected reply to the listing of disks: %1"_s.arg(reply.signature()));
        Q_EMIT listed(false);
        return;
    }
    m_isListed = true;
    m_store.clear();
    const auto objects = qdbus_cast<UDisksObjects>(reply.arguments().constFirst());
    for (auto object = objects.cbegin(); object != objects.cend(); ++object)
        m_store.addInterfaces(object.key().path(), object.value());
    m_changed.clear();
    Q_EMIT listed(true);
}

void UDisksBus::forget()
{
    ++m_listing;
    connectSignals(false);
    m_owner.clear();
    m_isListed = false;
    m_store.clear();
    m_changed.clear();
}

void UDisksBus::nameOwnerChanged(const QString &name, const QString &, const QString &newOwner)
{
    if (name != UDisks::service || newOwner == m_owner)
        return;
    if (!m_owner.isEmpty())
        serviceLost();
    // The service exports its objects before it takes its name, without a signal, so they must be listed.
    if (!newOwner.isEmpty())
        follow(newOwner);
    else
        startService();
}

void UDisksBus::serviceLost()
{
    forget();
    Q_EMIT listed(false);
}

void UDisksBus::busLost()
{
    systemLog(u"The connection to the system bus is lost."_s);
    serviceLost();
    if (m_reconnect)
        QTimer::singleShot(reconnectInterval, this, &UDisksBus::tryReconnect);
}

// Without a bus, there is no signal that it is back: it has to be tried.
void UDisksBus::tryReconnect()
{
    const QDBusConnection bus = m_reconnect();
    if (!bus.isConnected()) {
        QTimer::singleShot(reconnectInterval, this, &UDisksBus::tryReconnect);
        return;
    }
    m_bus = bus;
    start();
}

void UDisksBus::interfacesAdded(const QDBusMessage &message)
{
    if (!m_isListed || message.service() != m_owner || message.signature() != "oa{sa{sv}}"_L1)
        return;
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    m_store.addInterfaces(path, qdbus_cast<UDisksInterfaces>(message.arguments().at(1)));
    markChanged(path);
}

void UDisksBus::interfacesRemoved(const QDBusMessage &message)
{
    if (!m_isListed || message.service() != m_owner || message.signature() != "oas"_L1)
        return;
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    m_store.removeInterfaces(path, message.arguments().at(1).toStringList());
    markChanged(path);
}

void UDisksBus::propertiesChanged(const QDBusMessage &message)
{
    if (!m_isListed || message.service() != m_owner || message.signature() != "sa{sv}as"_L1)
        return;
    const QString interface = message.arguments().at(0).toString();
    if (m_store.changeProperties(
            message.path(), interface, qdbus_cast<QVariantMap>(message.arguments().at(1))))
        markChanged(message.path());
}

void UDisksBus::markChanged(const QString &path)
{
    // Signals come in bursts; those in the queue already are reported together.
    if (m_changed.isEmpty())
        QMetaObject::invokeMethod(this, &UDisksBus::flush, Qt::QueuedConnection);
    m_changed.insert(path);
}

void UDisksBus::flush()
{
    if (!m_changed.isEmpty())
        Q_EMIT changed(std::exchange(m_changed, {}));
}

void UDisksBus::await(const std::function<bool()> &isFulfilled, std::chrono::milliseconds limit,
    std::function<void(bool isFulfilled)> done)
{
    auto *wait = new QTimer(this);
    wait->setSingleShot(true);
    connect(wait, &QTimer::timeout, wait, [wait, isFulfilled, done = std::move(done)] {
        wait->deleteLater();
        done(isFulfilled());
    });
    const auto check = [wait, isFulfilled] {
        if (wait->isActive() && isFulfilled())
            wait->start(std::chrono::milliseconds(0));
    };
    connect(this, &UDisksBus::changed, wait, check);
    connect(this, &UDisksBus::listed, wait, check);
    wait->start(limit);
    check();
}

void UDisksBus::call(const QString &path, const QString &interface, const QString &method,
    const QVariantList &arguments, Reply reply)
{
    callAt(UDisks::service, path, interface, method, arguments, std::move(reply));
}

void UDisksBus::callAt(const QString &destination, const QString &path, const QString &interface,
    const QString &method, const QVariantList &arguments, Reply reply)
{
    auto message = QDBusMessage::createMethodCall(destination, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall call = m_bus.asyncCall(message, noTimeLimit);
    onReply(call, this, [reply = std::move(reply)](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ErrorMessage)
            reply(answer, dissenterFromBusError(answer.errorName(), answer.errorMessage()));
        else
            reply(answer, nullptr);
    });
}

void UDisksBus::readProperty(const QString &path, const QString &interface, const QString &name,
    std::function<void(bool isKnown)> done)
{
    // The call goes to the unique name of the service that filled the store, not to one that took its place,
    // and an answer that comes after that service has gone is ignored. Not every Qt 6 tells who sent an
    // answer.
    const QString asked = m_owner.isEmpty() ? UDisks::service : m_owner;
    callAt(asked, path, propertiesInterface, u"Get"_s, { interface, name },
        [this, asked, path, interface, name, done = std::move(done)](
            const QDBusMessage &reply, const DADissenterRef &dissenter) {
            const bool isOwners = asked == m_owner;
            bool isKnown = false;
            if (isOwners && dissenter && isMissing(reply)) {
                // Its signal can come after the answer.
                m_store.removeInterfaces(path, { interface });
                isKnown = true;
            } else if (isOwners && !dissenter && reply.signature() == "v"_L1) {
                const QVariant value = reply.arguments().constFirst().value<QDBusVariant>().variant();
                isKnown = m_store.changeProperties(path, interface, { { name, value } });
            }
            if (isKnown)
                m_changed.insert(path);
            flush();
            done(isKnown);
        });
}
