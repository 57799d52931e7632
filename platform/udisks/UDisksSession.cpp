// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksSession.h"

#include "platform/DisturbingCharacters.h"
#include "platform/SystemLog.h"
#include "platform/udisks/UDisksBus.h"
#include "platform/udisks/UDisksMedium.h"
#include "platform/udisks/UDisksRequests.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

// For a service that restarts, until it has told of its disks.
constexpr std::chrono::seconds listingLimit { 5 };

class UDisksDisk : public DADisk
{
public:
    UDisksDisk(QString path, UDisksMedium medium)
        : m_path(std::move(path))
        , m_medium(std::move(medium))
    {
    }

    std::optional<PropertyDictionary> copyDescription() const override { return m_medium.description; }
    std::optional<PropertyDictionary> copyIOMediaProperties() const override
    {
        return m_medium.mediaProperties;
    }
    QString deviceNode() const override { return m_medium.deviceNode; }
    std::optional<qint16> filesystemSubtype() const override { return m_medium.subtype; }
    ProbedContent probedContent() const override { return m_medium.content; }

    Encryption encryption() const override { return m_medium.encryption; }

    const QString &path() const { return m_path; }
    const UDisksMedium &medium() const { return m_medium; }

    // Replaces what is known of the medium. Returns the keys of its description that changed. Other content
    // that is no file system counts as a change of the kind, though both have none; another registry entry
    // counts as a change of the size.
    QStringList update(UDisksMedium medium)
    {
        QStringList keys;
        for (const auto &[key, value] : medium.description) {
            const PropertyValue *old = m_medium.description.value(key);
            if (!old || !(*old == value))
                keys.append(key);
        }
        for (const auto &[key, value] : m_medium.description) {
            if (!medium.description.value(key))
                keys.append(key);
        }
        if (medium.content != m_medium.content && !keys.contains(DAKey::volumeKind))
            keys.append(DAKey::volumeKind);
        if (medium.mediaProperties != m_medium.mediaProperties && !keys.contains(DAKey::mediaSize))
            keys.append(DAKey::mediaSize);
        m_medium = std::move(medium);
        return keys;
    }

private:
    QString m_path;
    UDisksMedium m_medium;
};

using UDisksDiskRef = std::shared_ptr<UDisksDisk>;

// A whole disk before its partitions, partitions by their number.
bool comesBefore(const UDisksDiskRef &a, const UDisksDiskRef &b)
{
    const BlockDeviceFacts &first = a->medium().facts;
    const BlockDeviceFacts &second = b->medium().facts;
    return first.diskSequence != second.diskSequence ? first.diskSequence < second.diskSequence
                                                     : first.partitionNumber < second.partitionNumber;
}

void logHarmfulName(const UDisksStore &store, const UDisksDisk &disk)
{
    const QString label = store.text(disk.path(), UDisks::block, "IdLabel");
    const QString name = store.text(disk.path(), UDisks::partition, "Name");
    if (harmlessName(label) != label || harmlessName(name) != name)
        systemLog(u"Control characters in a name of %1 are shown as replacement characters."_s.arg(
            disk.medium().facts.bsdName));
}

// Qt never replaces the connection that it calls the system bus, not even when it is lost.
QDBusConnection connectAgain()
{
    static const QString name = u"zorvex-system-bus"_s;
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
}

class UDisksSession : public DASession
{
public:
    UDisksSession(VolumeClaimReader readClaims, const QDBusConnection &bus,
        std::function<QDBusConnection()> reconnect, BlockDeviceFactsReader readFacts, MountFinder findMount)
        : m_readClaims(std::move(readClaims))
        , m_readFacts(std::move(readFacts))
        , m_bus(bus, std::move(reconnect))
        , m_requests(m_bus, std::move(findMount))
    {
        QObject::connect(
            &m_bus, &UDisksBus::listed, &m_bus, [this](bool available) { followListing(available); });
        QObject::connect(
            &m_bus, &UDisksBus::changed, &m_bus, [this](const QSet<QString> &paths) { followChange(paths); });
    }

    void listAhead()
    {
        m_isStarted = true;
        m_bus.startAtOnce();
    }

    void scheduleWithRunLoop() override
    {
        m_scheduled = true;
        if (!std::exchange(m_isStarted, true))
            m_bus.start();
        else if (m_isAvailable)
            QTimer::singleShot(0, &m_bus, [this] { followListing(*m_isAvailable); });
    }
    void unscheduleFromRunLoop() override { m_scheduled = false; }
    void refresh() override { m_bus.listAgain(); }

    void mount(const DADiskRef &disk, quint32, DADiskCompletion completion) override
    {
        withPath(disk, completion, [this, disk, completion](const QString &path) {
            if (m_requests.isLocked(path))
                askAndUnlock(disk, false, completion);
            else
                m_requests.mount(path, bound(disk, completion));
        });
    }

    void mountAgain(const DADiskRef &disk, const QString &user, const QStringList &options,
        DADiskCompletion completion) override
    {
        withPath(disk, completion, [this, disk, user, options, completion](const QString &path) {
            m_requests.mountAgain(path, user, options, bound(disk, completion));
        });
    }

    DADiskRef unlockedDisk(const DADiskRef &disk) const override
    {
        const auto known = std::dynamic_pointer_cast<UDisksDisk>(disk);
        return known ? m_disks.value(m_bus.store().readableDeviceOf(known->path())) : nullptr;
    }

    void lock(const DADiskRef &disk, DADiskCompletion completion) override
    {
        withPath(disk, completion, [this, disk, completion](const QString &path) {
            m_requests.lock(path, bound(disk, completion));
        });
    }

    void unmount(const DADiskRef &disk, quint32 options, DADiskCompletion completion) override
    {
        const auto scope = options & kDADiskUnmountOptionWhole ? UDisksRequests::Scope::Disk
                                                               : UDisksRequests::Scope::Volume;
        const auto force
            = options & kDADiskUnmountOptionForce ? UDisksRequests::Force::Yes : UDisksRequests::Force::No;
        withPath(disk, completion, [this, disk, scope, force, completion](const QString &path) {
            m_requests.unmount(path, scope, force, bound(disk, completion));
        });
    }

    void eject(const DADiskRef &disk, quint32, DADiskCompletion completion) override
    {
        withPath(disk, completion, [this, disk, completion](const QString &path) {
            m_requests.eject(m_bus.store().bottomDiskOf(path), bound(disk, completion));
        });
    }

    void rename(const DADiskRef &disk, const QString &name, quint32, DADiskCompletion completion) override
    {
        withPath(disk, completion, [this, disk, name, completion](const QString &path) {
            m_requests.rename(path, name, bound(disk, completion));
        });
    }

private:
    // Runs the request with the object path of the medium, at once where it can. A service that restarts
    // has not listed it yet, which must not end what takes several requests, such as unmount and eject.
    void withPath(const DADiskRef &disk, const DADiskCompletion &completion,
        const std::function<void(const QString &path)> &request)
    {
        const auto runRequest = [this, disk, completion, request] {
            const QString path = presentPath(disk, completion);
            if (!path.isEmpty())
                request(path);
        };
        if (m_bus.isListed())
            runRequest();
        else
            m_bus.await(
                [this] { return m_bus.isListed(); }, listingLimit, [runRequest](bool) { runRequest(); });
    }

    // The object path of a medium that is present. A service that was started again may have reported it
    // under another handle. When the medium has gone, the request is answered (later, as every request is)
    // and the path is empty.
    QString presentPath(const DADiskRef &disk, const DADiskCompletion &completion)
    {
        const auto known = std::dynamic_pointer_cast<UDisksDisk>(disk);
        const UDisksDiskRef present = known ? m_disks.value(known->path()) : nullptr;
        if (present && present->medium().facts.bsdName == known->medium().facts.bsdName
            && isInPlace(*present))
            return known->path();
        QTimer::singleShot(0, &m_bus, [this, disk, known, completion] {
            if (known)
                followChange({ known->path() });
            completion(disk, makeDissenter(DAReturn::NotFound));
        });
        return {};
    }

    // Whether the kernel, too, has this medium in this place. The kernel knows first. The service would carry
    // out a request for a pulled disk on the next disk that takes its place.
    bool isInPlace(const UDisksDisk &disk) const
    {
        const std::optional<BlockDeviceFacts> facts = m_readFacts(disk.medium().deviceNode);
        return facts && facts->bsdName == disk.medium().facts.bsdName;
    }

    // The user may take their time: the medium is looked for again before it gets the passphrase.
    void askAndUnlock(const DADiskRef &disk, bool isRetry, const DADiskCompletion &completion)
    {
        const auto answered = [this, session = QPointer(&m_bus), disk, completion](
                                  const std::optional<Passphrase> &passphrase) {
            if (!session)
                return;
            if (!passphrase) {
                completion(disk, makeDeclinedDissenter());
                return;
            }
            const QString path = presentPath(disk, completion);
            if (!path.isEmpty())
                m_requests.unlockAndMount(
                    path, *passphrase, [this, disk, completion] { askAndUnlock(disk, true, completion); },
                    bound(disk, completion));
        };
        if (passphraseQuestion()) {
            passphraseQuestion()(disk, isRetry, answered);
            return;
        }
        QTimer::singleShot(0, &m_bus, [disk, completion] {
            completion(disk, makeDissenter(DAReturn::NotPermitted, u"The volume is encrypted and locked."_s));
        });
    }

    static UDisksRequests::Completion bound(const DADiskRef &disk, DADiskCompletion completion)
    {
        return [disk, completion = std::move(completion)](
                   const DADissenterRef &dissenter) { completion(disk, dissenter); };
    }

    void followListing(bool available)
    {
        m_isAvailable = available;
        if (!m_scheduled)
            return;
        const QStringList listed = m_bus.store().paths();
        const QStringList known = m_disks.keys();
        follow(QSet<QString>(listed.begin(), listed.end()) + QSet<QString>(known.begin(), known.end()));
        deliverListing(available);
    }

    // A change of an object can change the descriptions of others: a drive those of its disks, a disk those
    // of its partitions, a partition that of its disk.
    void followChange(const QSet<QString> &paths)
    {
        if (!m_scheduled)
            return;
        const UDisksStore &store = m_bus.store();
        QSet<QString> affected = paths;
        for (const QString &path : store.paths()) {
            const QString table = store.objectPath(path, UDisks::partition, "Table");
            const QString drive = store.objectPath(path, UDisks::block, "Drive");
            if (paths.contains(path) && !table.isEmpty())
                affected.insert(table);
            if (paths.contains(table) || paths.contains(drive))
                affected.insert(path);
        }
        for (const UDisksDiskRef &disk : std::as_const(m_disks)) {
            if (!paths.contains(disk->path()))
                continue;
            // When a partition has gone, only the number still tells which disk it was on.
            for (const UDisksDiskRef &other : std::as_const(m_disks)) {
                if (other->medium().facts.diskSequence == disk->medium().facts.diskSequence)
                    affected.insert(other->path());
            }
        }
        follow(affected);
    }

    void follow(const QSet<QString> &paths)
    {
        std::vector<UDisksDiskRef> gone;
        std::vector<UDisksDiskRef> come;
        std::vector<std::pair<UDisksDiskRef, QStringList>> changed;
        const VolumeClaimLookup findClaim = m_readClaims();
        for (const QString &path : paths) {
            auto medium = readUDisksMedium(m_bus.store(), path, findClaim, m_readFacts);
            const UDisksDiskRef known = m_disks.value(path);
            if (known && medium && known->medium().facts.bsdName == medium->facts.bsdName) {
                const QStringList keys = known->update(std::move(*medium));
                if (!keys.isEmpty())
                    changed.emplace_back(known, keys);
                continue;
            }
            if (known) {
                m_disks.remove(path);
                gone.push_back(known);
            }
            if (medium) {
                come.push_back(std::make_shared<UDisksDisk>(path, std::move(*medium)));
                m_disks.insert(path, come.back());
            }
        }
        std::sort(gone.begin(), gone.end(), [](const auto &a, const auto &b) { return comesBefore(b, a); });
        std::sort(come.begin(), come.end(), comesBefore);
        std::sort(changed.begin(), changed.end(),
            [](const auto &a, const auto &b) { return comesBefore(a.first, b.first); });
        for (const UDisksDiskRef &disk : gone)
            deliverDisappeared(disk);
        deliverBurst([&] {
            for (const auto &[disk, keys] : changed)
                deliverDescriptionChanged(disk, keys);
            for (const UDisksDiskRef &disk : come) {
                logHarmfulName(m_bus.store(), *disk);
                deliverAppeared(disk);
            }
        });
    }

    VolumeClaimReader m_readClaims;
    BlockDeviceFactsReader m_readFacts;
    bool m_scheduled = false; // until then, the news stays in the store of the bus
    bool m_isStarted = false;
    std::optional<bool> m_isAvailable; // what the last listing told
    QHash<QString, UDisksDiskRef> m_disks; // the media that are present, by object path
    UDisksBus m_bus;
    UDisksRequests m_requests;
};

std::unique_ptr<DASession> makeSession(VolumeClaimReader readClaims, const QDBusConnection &bus,
    std::function<QDBusConnection()> reconnect, BlockDeviceFactsReader readFacts, MediaListing listing,
    MountFinder findMount)
{
    if (!bus.isConnected())
        return nullptr;
    auto session = std::make_unique<UDisksSession>(
        std::move(readClaims), bus, std::move(reconnect), std::move(readFacts), std::move(findMount));
    if (listing == MediaListing::Ahead)
        session->listAhead();
    return session;
}

} // namespace

std::unique_ptr<DASession> createDiskArbitrationSession(VolumeClaimReader readClaims, MediaListing listing)
{
    return makeSession(std::move(readClaims), QDBusConnection::systemBus(), connectAgain,
        readBlockDeviceFacts, listing, isMountOnDisk);
}

// Connecting the caller's bus again is up to the caller.
std::unique_ptr<DASession> createUDisksSession(VolumeClaimReader readClaims, const QDBusConnection &bus,
    BlockDeviceFactsReader readFacts, MediaListing listing, MountFinder findMount)
{
    return makeSession(
        std::move(readClaims), bus, nullptr, std::move(readFacts), listing, std::move(findMount));
}
