// SPDX-License-Identifier: MIT
#include "platform/DeviceUse.h"

#include "platform/BlockDevice.h"
#include "platform/MountTable.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<dev_t> deviceNumber(const QString &deviceNode)
{
    struct stat status = {};
    if (stat(QFile::encodeName(deviceNode).constData(), &status) != 0 || !S_ISBLK(status.st_mode))
        return std::nullopt;
    return status.st_rdev;
}

QString sysfsFolder(const QString &deviceNode)
{
    return u"/sys/class/block/"_s + kernelDeviceName(deviceNode);
}

quint64 sysfsNumber(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toULongLong() : 0;
}

// Leads to what is open, even when its own name has been given to something else.
QString descriptorPath(int fd)
{
    return u"/proc/self/fd/%1"_s.arg(fd);
}

bool isSwapSpace(dev_t device)
{
    QFile swaps(u"/proc/swaps"_s);
    if (!swaps.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : swaps.readAll().split('\n')) {
        if (deviceNumber(QFile::decodeName(line.left(line.indexOf(' ')))) == device)
            return true;
    }
    return false;
}

} // namespace

DeviceUse readDeviceUse(const QString &deviceNode)
{
    DeviceUse use;
    const auto device = deviceNumber(deviceNode);
    if (!device)
        return use;
    for (const KernelMount &mount : readKernelMounts()) {
        // A file system over several devices has a number of its own, and is known by its source.
        if (makedev(mount.deviceMajor, mount.deviceMinor) == *device
            || deviceNumber(QFile::decodeName(mount.source)) == device)
            use.mountPoints.append(QFile::decodeName(mount.mountPoint));
    }
    use.holders
        = QDir(sysfsFolder(deviceNode) + u"/holders"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    use.isSwap = isSwapSpace(*device);
    return use;
}

QStringList partitionNodes(const QString &deviceNode)
{
    QStringList nodes;
    const QDir folder(sysfsFolder(deviceNode));
    for (const QString &entry : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (QFile::exists(folder.filePath(entry + u"/partition"_s)))
            nodes.append(u"/dev/"_s + entry);
    }
    return nodes;
}

std::optional<DeviceIdentity> readDeviceIdentity(const QString &deviceNode)
{
    const auto device = deviceNumber(deviceNode);
    const auto facts = readBlockDeviceFacts(deviceNode);
    if (!device || !facts)
        return std::nullopt;
    const QString folder = sysfsFolder(deviceNode);
    return DeviceIdentity { *device, facts->diskSequence, sysfsNumber(folder + u"/start"_s),
        sysfsNumber(folder + u"/size"_s) };
}

OpenDevice::OpenDevice(const QString &deviceNode)
    : m_fd(open(QFile::encodeName(deviceNode).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK))
{
}

OpenDevice::~OpenDevice()
{
    if (m_fd >= 0)
        close(m_fd);
}

std::optional<DeviceIdentity> OpenDevice::identity() const
{
    return m_fd < 0 ? std::nullopt : readDeviceIdentity(descriptorPath(m_fd));
}

bool OpenDevice::isClaimed() const
{
    const int claim
        = open(QFile::encodeName(descriptorPath(m_fd)).constData(), O_RDONLY | O_CLOEXEC | O_EXCL);
    const bool isRefused = claim < 0 && errno == EBUSY;
    if (claim >= 0)
        close(claim);
    return isRefused;
}

void announceChange(const QString &deviceNode)
{
    QFile file(sysfsFolder(deviceNode) + u"/uevent"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("change");
}
