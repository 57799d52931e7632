// SPDX-License-Identifier: MIT
#include "platform/SystemDevices.h"

#include "platform/devices/Fstab.h"
#include "platform/devices/MountUnits.h"
#include "platform/devices/NamedDevices.h"
#include "platform/devices/SwapTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

using Folders = QSet<QByteArray>;

// Where the system has its own volumes. What is mounted below is the system's as well, but for "/".
bool isSystemPlace(const QByteArray &mountPoint)
{
    static const QByteArrayList places { "/boot", "/efi", "/usr", "/var", "/home", "/run/live" };
    return mountPoint == "/" || std::any_of(places.begin(), places.end(), [&](const QByteArray &place) {
        return mountPoint == place || mountPoint.startsWith(QByteArray(place + '/'));
    });
}

// Adds the device with this folder and everything that it stands on.
void addWithFoundations(Folders &folders, const QByteArray &folder)
{
    if (folder.isEmpty() || folders.contains(folder))
        return;
    folders.insert(folder);
    if (QFile::exists(QFile::decodeName(folder + "/partition")))
        addWithFoundations(folders, folderAbove(folder));
    const QDir slaves(QFile::decodeName(folder + "/slaves"));
    for (const QString &slave : slaves.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        char resolved[PATH_MAX];
        if (realpath(QFile::encodeName(slaves.filePath(slave)).constData(), resolved))
            addWithFoundations(folders, resolved);
    }
}

// The tables of the machine at one time, and what follows from them.
class SystemTables
{
public:
    explicit SystemTables(const SystemRoot &system)
        : m_system(system)
        , m_mounts(readKernelMounts(system))
        , m_swaps(readSwapSpaces(system))
    {
    }

    // The folders of the devices that the system stands on.
    Folders currentFolders() const
    {
        Folders folders;
        for (const KernelMount &mount : m_mounts) {
            if (isSystemPlace(mount.mountPoint))
                addWithFoundations(folders, sysfsFolder(mountedDevice(mount, m_system), m_system));
        }
        for (const SwapSpace &space : m_swaps)
            addWithFoundations(folders, sysfsFolder(space.device, m_system));
        return folders;
    }

    // The folders of the devices that it is set up to use.
    Folders namedFolders() const
    {
        Folders folders;
        for (const FstabEntry &entry : systemEntries()) {
            const std::vector<dev_t> devices = devicesNamed(entry.source, m_system);
            // A copy of a disk carries the same tags. While the volume itself is in its place, a copy is not
            // what is meant.
            if (std::any_of(devices.begin(), devices.end(),
                    [&](dev_t device) { return isInItsPlace(entry, device); }))
                continue;
            for (const dev_t device : devices)
                addWithFoundations(folders, sysfsFolder(device, m_system));
        }
        return folders;
    }

private:
    std::vector<FstabEntry> systemEntries() const
    {
        std::vector<FstabEntry> entries;
        for (const FstabEntry &entry : readFstab(m_system)) {
            if (entry.isSwap || isSystemPlace(entry.mountPoint))
                entries.push_back(entry);
        }
        for (const KernelMount &mount : m_mounts) {
            if (mount.type == "autofs" && isSystemPlace(mount.mountPoint))
                entries.push_back({ sourceOfMountUnit(mount.mountPoint, m_system), mount.mountPoint });
        }
        return entries;
    }

    bool isInItsPlace(const FstabEntry &entry, dev_t device) const
    {
        if (entry.isSwap)
            return std::any_of(m_swaps.begin(), m_swaps.end(),
                [&](const SwapSpace &space) { return space.device == device; });
        return std::any_of(m_mounts.begin(), m_mounts.end(), [&](const KernelMount &mount) {
            return mount.mountPoint == entry.mountPoint && mountedDevice(mount, m_system) == device;
        });
    }

    const SystemRoot &m_system;
    std::vector<KernelMount> m_mounts;
    std::vector<SwapSpace> m_swaps;
};

} // namespace

SystemUse systemUse(const QString &deviceNode, const SystemRoot &system)
{
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    const QByteArray folder = sysfsFolder(device, system);
    if (folder.isEmpty())
        return SystemUse::None;
    const SystemTables tables(system);
    const Folders current = tables.currentFolders();
    if (current.contains(folder))
        return SystemUse::Current;
    const Folders named = tables.namedFolders();
    const QByteArray disk = folderAbove(folder);
    const bool isOnSystemDisk = current.contains(disk) || named.contains(disk);
    const bool isNamed = named.contains(folder) || (isOnSystemDisk && isBootPartition(*device, system));
    return isNamed ? SystemUse::Named : SystemUse::None;
}

bool isSystemDevice(const QString &deviceNode, const SystemRoot &system)
{
    return systemUse(deviceNode, system) != SystemUse::None;
}

bool isInFstab(const QString &mountPoint, const SystemRoot &system)
{
    const QByteArray path = QFile::encodeName(QDir::cleanPath(mountPoint));
    const std::vector<FstabEntry> entries = readFstab(system);
    return std::any_of(entries.begin(), entries.end(),
        [&](const FstabEntry &entry) { return !entry.isSwap && entry.mountPoint == path; });
}
