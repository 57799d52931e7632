// SPDX-License-Identifier: MIT
//
// Mount, unmount, eject and rename as chains of calls to UDisks2. Each completion runs once, later than the
// call that started it, unless the bus goes first. Main thread only.
#pragma once

#include "platform/DiskArbitration.h"
#include "platform/udisks/UDisksBus.h"
#include "platform/udisks/UDisksEncryption.h"

#include <QDeadlineTimer>
#include <QObject>

#include <chrono>
#include <functional>

// Tells whether anything is mounted on a disk or on what is made from it.
using MountFinder = std::function<bool(const QString &deviceNode)>;

// The same of this machine.
bool isMountOnDisk(const QString &deviceNode);

class UDisksRequests
{
public:
    using Completion = std::function<void(const DADissenterRef &dissenter)>;
    enum class Force { No, Yes };
    enum class Scope { Volume, Disk };

    UDisksRequests(UDisksBus &bus, MountFinder findMount)
        : m_bus(bus)
        , m_encryption(bus)
        , m_findMount(std::move(findMount))
    {
    }

    // Where this process runs as root at a user's request, the volume is mounted for that user. A service
    // that cannot mount for another user is asked in the user's own name, which may ask them for a password;
    // a volume that it refuses them is mounted for root. Of an encrypted device, what is unlocked on it is
    // mounted; mounted already counts as done.
    void mount(const QString &path, Completion completion);

    // Mounts the volume as it was, for this user and with these options; for nobody else when that is
    // refused. With an empty user, the service decides.
    void mountAgain(
        const QString &path, const QString &user, const QStringList &options, Completion completion);

    // Whether the device has to be unlocked before it can be mounted.
    bool isLocked(const QString &path) const;

    // Unlocks the device and mounts what is on it. Runs one of the two functions.
    void unlockAndMount(const QString &path, const Passphrase &passphrase,
        std::function<void()> wrongPassphrase, Completion completion);

    // Locks the device that is encrypted, or that this one is unlocked on. Locked already counts as done.
    void lock(const QString &path, Completion completion);

    // Unmounts the volume, or in order all volumes of its disk, up to the first refusal. A volume that is not
    // mounted counts as done. One that is busy is refused only when it stays so for a second.
    void unmount(const QString &path, Scope scope, Force force, Completion completion);

    // The path of a whole disk, on which nothing may be mounted. What is unlocked on it is locked first. A
    // drive that keeps its medium is powered off as well.
    void eject(const QString &path, Completion completion);

    // A mounted volume whose file system can be named only while it is not in use is unmounted first, and
    // mounted again afterwards.
    void rename(const QString &path, const QString &name, Completion completion);

private:
    // A program that only looks at a volume, as one that shows its free space does, makes it busy for less
    // than this.
    static constexpr std::chrono::seconds busyLimit { 1 };

    // The volumes that are left; the first of them has been unmounted from so many places.
    struct Unmounting
    {
        QStringList paths;
        Force force = Force::No;
        int places = 0;
        QDeadlineTimer patience { busyLimit };
    };

    void answerLater(Completion completion, DAReturn status, const std::optional<QString> &statusString = {});
    void readMountPoints(const QString &path, std::function<void(bool isKnown)> done);
    bool isMounted(const QString &path) const;
    void callMount(const QString &path, const QVariantMap &options, Completion completion);
    void unmountNext(const Unmounting &volumes, Completion completion);
    void setLabel(const QString &path, const QString &name, Completion completion);
    void detachLoop(const QString &path, Completion completion);
    void ejectDrive(const QString &drive, Completion completion);
    void awaitDetachment(const QString &path, Completion completion);

    void mountFilesystem(const QString &path, Completion completion);
    void mountReadable(const QString &path, Completion completion);
    void ejectLocked(const QString &path, Completion completion);

    UDisksBus &m_bus;
    UDisksEncryption m_encryption;
    MountFinder m_findMount;
};
