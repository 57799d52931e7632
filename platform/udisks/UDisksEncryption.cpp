// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksEncryption.h"

#include <QRegularExpression>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// The service has no error of its own for a wrong passphrase, only the words of the library that unlocks, or
// those of the system error that stands for it.
bool isWrongPassphrase(const DADissenter &dissenter)
{
    static const QRegularExpression words(u"Incorrect passphrase|Operation not permitted"_s);
    return dissenter.status == static_cast<quint32>(DAReturn::Error)
        && words.match(dissenter.statusString.value_or(QString())).hasMatch();
}

// Whether all has come that the service will tell of a new device. It comes in stages.
bool isDescribed(const UDisksStore &store, const QString &path)
{
    const QString usage = store.text(path, UDisks::block, "IdUsage");
    return store.hasInterface(path, UDisks::filesystem) || store.hasInterface(path, UDisks::partitionTable)
        || (!usage.isEmpty() && usage != "filesystem"_L1);
}

} // namespace

void UDisksEncryption::unlock(
    const QString &path, const Passphrase &passphrase, std::function<void(const Unlocked &)> done)
{
    // The message is made before this returns, so that the passphrase may go then.
    m_bus.call(path, UDisks::encrypted, u"Unlock"_s, { passphrase.text(), QVariantMap() },
        [this, done = std::move(done)](const QDBusMessage &reply, const DADissenterRef &dissenter) {
            if (dissenter) {
                done({ {}, dissenter, isWrongPassphrase(*dissenter) });
                return;
            }
            const QString device = reply.arguments().value(0).value<QDBusObjectPath>().path();
            m_bus.await([this, device] { return isDescribed(m_bus.store(), device); }, newsLimit,
                [done, device](bool) { done({ device, nullptr }); });
        });
}

void UDisksEncryption::lock(const QString &path, Completion completion)
{
    const QString encrypted = m_bus.store().isEncrypted(path)
        ? path
        : m_bus.store().objectPath(path, UDisks::block, "CryptoBackingDevice");
    const auto isLocked = [this, encrypted] { return m_bus.store().readableDeviceOf(encrypted).isEmpty(); };
    if (isLocked()) {
        QTimer::singleShot(0, &m_bus, [completion = std::move(completion)] { completion(nullptr); });
        return;
    }
    m_bus.call(encrypted, UDisks::encrypted, u"Lock"_s, { QVariantMap() },
        [this, isLocked, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            if (dissenter)
                completion(isLocked() ? nullptr : dissenter); // another program may have been quicker
            else
                m_bus.await(isLocked, newsLimit, [completion](bool) { completion(nullptr); });
        });
}

void UDisksEncryption::lockAll(QStringList paths, Completion completion)
{
    while (!paths.isEmpty()
        && m_bus.store().objectPath(paths.constFirst(), UDisks::block, "CryptoBackingDevice").isEmpty())
        paths.removeFirst();
    if (paths.isEmpty()) {
        completion(nullptr);
        return;
    }
    const QString encrypted
        = m_bus.store().objectPath(paths.takeFirst(), UDisks::block, "CryptoBackingDevice");
    lock(encrypted, [this, paths, completion = std::move(completion)](const DADissenterRef &dissenter) {
        if (dissenter)
            completion(dissenter);
        else
            lockAll(paths, completion);
    });
}
