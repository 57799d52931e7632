// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksRequests.h"

#include "platform/DesktopUserMount.h"
#include "platform/DeviceUse.h"
#include "platform/SystemDevices.h"
#include "platform/udisks/UDisksError.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// One call removes one mount point. A volume with more mount points than this is being mounted again by
// something else.
constexpr int mostMountPoints = 16;

// Before a volume that is busy is unmounted once more: nobody tells when it no longer is.
constexpr std::chrono::milliseconds busyPause { 100 };

// The kernel detaches a loop disk that is still open only when it is closed. The user is told after this
// time.
constexpr std::chrono::seconds detachmentLimit { 5 };

const QVariantMap noOptions;

} // namespace

bool isMountOnDisk(const QString &deviceNode)
{
    return carriesMount(deviceNode);
}

void UDisksRequests::answerLater(
    Completion completion, DAReturn status, const std::optional<QString> &statusString)
{
    QTimer::singleShot(0, &m_bus, [completion = std::move(completion), status, statusString] {
        completion(status == DAReturn::Success ? nullptr : makeDissenter(status, statusString));
    });
}

bool UDisksRequests::isMounted(const QString &path) const
{
    return !m_bus.store().fileNames(path, UDisks::filesystem, "MountPoints").isEmpty();
}

// The signal about new mount points comes after the answer to the call that made them. They are read here so
// that the volume is up to date when the answer is handed on.
void UDisksRequests::readMountPoints(const QString &path, std::function<void(bool isKnown)> done)
{
    m_bus.readProperty(path, UDisks::filesystem, u"MountPoints"_s, std::move(done));
}

void UDisksRequests::mount(const QString &path, Completion completion)
{
    if (const QString device = m_bus.store().readableDeviceOf(path); !device.isEmpty()) {
        mountReadable(device, std::move(completion));
        return;
    }
    const auto canMount = [this, path] { return m_bus.store().hasInterface(path, UDisks::filesystem); };
    if (canMount()) {
        mountFilesystem(path, std::move(completion));
    } else if (m_bus.store().text(path, UDisks::block, "IdUsage") == "filesystem"_L1) {
        // The service tells of a new file system before it adds the interface that mounts it.
        m_bus.await(canMount, newsLimit, [this, path, completion = std::move(completion)](bool isFulfilled) {
            if (isFulfilled)
                mountFilesystem(path, completion);
            else
                completion(makeDissenter(DAReturn::Unsupported));
        });
    } else {
        answerLater(std::move(completion), DAReturn::Unsupported);
    }
}

void UDisksRequests::mountFilesystem(const QString &path, Completion completion)
{
    const std::optional<DesktopUser> user = desktopUser();
    if (user && !user->isKnown()) {
        answerLater(std::move(completion), DAReturn::NotPermitted,
            u"The user %1 cannot be looked up"_s.arg(user->user));
        return;
    }
    const auto options
        = mountOptions(user, m_bus.store().text(UDisks::managerPath, UDisks::manager, "Version"));
    if (options) {
        callMount(path, *options, std::move(completion));
        return;
    }
    mountForDesktopUser(
        *user, path, &m_bus, [this, path, completion = std::move(completion)](const UserMountAnswer &answer) {
            const DADissenterRef dissenter
                = answer.isMounted ? nullptr : dissenterFromBusError(answer.errorName, answer.message);
            if (dissenter && !dissenter->isDeclined)
                callMount(path, noOptions, completion);
            else
                readMountPoints(path, [completion, dissenter](bool) { completion(dissenter); });
        });
}

void UDisksRequests::mountAgain(
    const QString &path, const QString &user, const QStringList &options, Completion completion)
{
    const std::optional<DesktopUser> owner = userNamed(user);
    if (!user.isEmpty() && !owner) {
        answerLater(std::move(completion), DAReturn::NotFound, u"There is no user %1."_s.arg(user));
        return;
    }
    const bool isCallers = !owner || owner->user == geteuid();
    auto request = mountOptions(isCallers ? std::nullopt : owner,
        m_bus.store().text(UDisks::managerPath, UDisks::manager, "Version"));
    if (request) {
        if (!options.isEmpty())
            request->insert(u"options"_s, options.join(u','));
        callMount(path, *request, std::move(completion));
        return;
    }
    mountForDesktopUser(
        *owner, path, &m_bus,
        [this, path, completion = std::move(completion)](const UserMountAnswer &answer) {
            const DADissenterRef dissenter
                = answer.isMounted ? nullptr : dissenterFromBusError(answer.errorName, answer.message);
            readMountPoints(path, [completion, dissenter](bool) { completion(dissenter); });
        },
        options);
}

void UDisksRequests::mountReadable(const QString &path, Completion completion)
{
    if (isMounted(path))
        answerLater(std::move(completion), DAReturn::Success);
    else
        mount(path, std::move(completion));
}

bool UDisksRequests::isLocked(const QString &path) const
{
    return m_bus.store().isEncrypted(path) && m_bus.store().readableDeviceOf(path).isEmpty();
}

void UDisksRequests::unlockAndMount(const QString &path, const Passphrase &passphrase,
    std::function<void()> wrongPassphrase, Completion completion)
{
    m_encryption.unlock(path, passphrase,
        [this, wrongPassphrase = std::move(wrongPassphrase), completion = std::move(completion)](
            const UDisksEncryption::Unlocked &unlocked) {
            if (unlocked.isWrongPassphrase)
                wrongPassphrase();
            else if (unlocked.dissenter)
                completion(unlocked.dissenter);
            else
                mountReadable(unlocked.readableDevice, completion);
        });
}

void UDisksRequests::lock(const QString &path, Completion completion)
{
    m_encryption.lock(path, std::move(completion));
}

void UDisksRequests::callMount(const QString &path, const QVariantMap &options, Completion completion)
{
    m_bus.call(path, UDisks::filesystem, u"Mount"_s, { options },
        [this, path, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            readMountPoints(path, [completion, dissenter](bool) { completion(dissenter); });
        });
}

void UDisksRequests::unmount(const QString &path, Scope scope, Force force, Completion completion)
{
    QStringList mounted { path };
    if (scope == Scope::Disk)
        mounted = m_bus.store().blockDevicesOn(m_bus.store().bottomDiskOf(path));
    else if (m_bus.store().isEncrypted(path))
        mounted = m_bus.store().blockDevicesOn(path);
    mounted.removeIf([this](const QString &device) { return !isMounted(device); });
    if (force == Force::Yes) {
        for (const QString &device : std::as_const(mounted)) {
            if (isSystemDevice(m_bus.store().fileName(device, UDisks::block, "Device"))) {
                answerLater(std::move(completion), DAReturn::NotPermitted,
                    u"The volume belongs to the running system."_s);
                return;
            }
        }
    }
    if (mounted.isEmpty()) {
        answerLater(std::move(completion), DAReturn::Success);
        return;
    }
    unmountNext({ mounted, force }, std::move(completion));
}

void UDisksRequests::unmountNext(const Unmounting &volumes, Completion completion)
{
    if (volumes.paths.isEmpty()) {
        completion(nullptr);
        return;
    }
    const QString &path = volumes.paths.constFirst();
    QVariantMap options;
    if (volumes.force == Force::Yes)
        options.insert(u"force"_s, true);
    m_bus.call(path, UDisks::filesystem, u"Unmount"_s, { options },
        [this, volumes, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            const auto goOn = [this, volumes, completion, dissenter](bool isKnown) {
                const bool isStillMounted = isMounted(volumes.paths.constFirst());
                // Another program may have been quicker, or the disk has been pulled, for which the service
                // has no error of its own.
                const bool isDone = !dissenter
                    || dissenter->status == static_cast<quint32>(DAReturn::NotMounted)
                    || (isKnown && !isStillMounted);
                const bool isBusy = dissenter && dissenter->status == static_cast<quint32>(DAReturn::Busy);
                if (!isDone && isBusy && volumes.force == Force::No && !volumes.patience.hasExpired())
                    QTimer::singleShot(
                        busyPause, &m_bus, [this, volumes, completion] { unmountNext(volumes, completion); });
                else if (!isDone)
                    completion(dissenter);
                else if (isStillMounted && volumes.places + 1 < mostMountPoints)
                    unmountNext({ volumes.paths, volumes.force, volumes.places + 1 }, completion);
                else if (isStillMounted)
                    completion(makeDissenter(DAReturn::Busy));
                else
                    unmountNext({ volumes.paths.mid(1), volumes.force }, completion);
            };
            readMountPoints(volumes.paths.constFirst(), goOn);
        });
}

void UDisksRequests::eject(const QString &path, Completion completion)
{
    // The service would detach a loop disk with a mounted volume, and the disk would vanish some time later.
    // It does not know what logical volumes and arrays are made from.
    QStringList devices = m_bus.store().blockDevicesOn(path);
    if (std::any_of(
            devices.begin(), devices.end(), [this](const QString &device) { return isMounted(device); })
        || m_findMount(m_bus.store().fileName(path, UDisks::block, "Device"))) {
        answerLater(std::move(completion), DAReturn::Busy, u"A volume of the disk is still mounted."_s);
        return;
    }
    // What is unlocked on something unlocked goes first.
    std::reverse(devices.begin(), devices.end());
    m_encryption.lockAll(
        devices, [this, path, completion = std::move(completion)](const DADissenterRef &dissenter) {
            if (dissenter)
                completion(dissenter);
            else
                ejectLocked(path, completion);
        });
}

void UDisksRequests::ejectLocked(const QString &path, Completion completion)
{
    const QString drive = m_bus.store().objectPath(path, UDisks::block, "Drive");
    if (m_bus.store().hasInterface(path, UDisks::loop))
        detachLoop(path, std::move(completion));
    else if (!drive.isEmpty())
        ejectDrive(drive, std::move(completion));
    else
        answerLater(std::move(completion), DAReturn::Unsupported);
}

void UDisksRequests::detachLoop(const QString &path, Completion completion)
{
    m_bus.call(path, UDisks::loop, u"Delete"_s, { noOptions },
        [this, path, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            if (dissenter)
                completion(dissenter);
            else
                awaitDetachment(path, completion);
        });
}

// The kernel reports success for a loop disk that is still in use, and detaches it at its last close.
void UDisksRequests::awaitDetachment(const QString &path, Completion completion)
{
    const auto isDetached
        = [this, path] { return m_bus.store().fileName(path, UDisks::loop, "BackingFile").isEmpty(); };
    m_bus.readProperty(
        path, UDisks::loop, u"BackingFile"_s, [this, isDetached, completion = std::move(completion)](bool) {
            m_bus.await(isDetached, detachmentLimit, [completion](bool isDone) {
                completion(isDone ? nullptr : makeDissenter(DAReturn::Busy, u"The disk is still in use."_s));
            });
        });
}

void UDisksRequests::ejectDrive(const QString &drive, Completion completion)
{
    const bool canEject = m_bus.store().flag(drive, UDisks::drive, "Ejectable");
    // Without power, the slot of a medium that is taken out would stay dead, and so would all others of its
    // reader.
    const bool canPowerOff = m_bus.store().flag(drive, UDisks::drive, "CanPowerOff")
        && !m_bus.store().flag(drive, UDisks::drive, "MediaRemovable");
    if (!canEject && !canPowerOff) {
        answerLater(std::move(completion), DAReturn::Unsupported);
        return;
    }
    const auto powerOff = [this, drive](const Completion &done, bool isRequired) {
        m_bus.call(drive, UDisks::drive, u"PowerOff"_s, { noOptions },
            [done, isRequired](const QDBusMessage &, const DADissenterRef &dissenter) {
                done(isRequired ? dissenter : nullptr);
            });
    };
    if (!canEject) {
        powerOff(completion, true);
        return;
    }
    m_bus.call(drive, UDisks::drive, u"Eject"_s, { noOptions },
        [canPowerOff, powerOff, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            // An ejected disk may be pulled, even if it could not be powered off as well.
            if (dissenter || !canPowerOff)
                completion(dissenter);
            else
                powerOff(completion, false);
        });
}

void UDisksRequests::setLabel(const QString &path, const QString &name, Completion completion)
{
    m_bus.call(path, UDisks::filesystem, u"SetLabel"_s, { name, noOptions },
        [this, path, completion = std::move(completion)](
            const QDBusMessage &, const DADissenterRef &dissenter) {
            m_bus.readProperty(
                path, UDisks::block, u"IdLabel"_s, [completion, dissenter](bool) { completion(dissenter); });
        });
}

void UDisksRequests::rename(const QString &path, const QString &name, Completion completion)
{
    if (!m_bus.store().hasInterface(path, UDisks::filesystem)) {
        answerLater(std::move(completion), DAReturn::Unsupported);
        return;
    }
    const bool wasMounted = isMounted(path);
    setLabel(path, name,
        [this, path, name, wasMounted, completion = std::move(completion)](const DADissenterRef &dissenter) {
            if (!dissenter || !wasMounted) {
                completion(dissenter);
                return;
            }
            unmount(path, Scope::Volume, Force::No,
                [this, path, name, completion](const DADissenterRef &refusal) {
                    if (refusal) {
                        completion(refusal);
                        return;
                    }
                    setLabel(path, name, [this, path, completion](const DADissenterRef &outcome) {
                        mount(path, [completion, outcome](const DADissenterRef &) { completion(outcome); });
                    });
                });
        });
}
