// SPDX-License-Identifier: MIT
#include "platform/DeviceUse.h"

#include "platform/BlockDevice.h"
#include "platform/devices/SwapTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <memory>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QString folderOf(std::optional<dev_t> device, const SystemRoot &system)
{
    return QFile::decodeName(sysfsFolder(device, system));
}

quint64 sysfsNumber(const QByteArray &path)
{
    return sysfsText(path).toULongLong();
}

// Leads to the open device, even when its node leads to another one by now.
QString descriptorPath(const FileDescriptor &file)
{
    return u"/proc/self/fd/%1"_s.arg(file.number());
}

} // namespace

DeviceUse readDeviceUse(const QString &deviceNode, const SystemRoot &system)
{
    DeviceUse use;
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    if (!device)
        return use;
    for (const KernelMount &mount : readKernelMounts(system)) {
        if (mountedDevice(mount, system) == device)
            use.mountPoints.append(QFile::decodeName(mount.mountPoint));
    }
    use.holders
        = QDir(folderOf(device, system) + u"/holders"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    const std::vector<SwapSpace> spaces = readSwapSpaces(system);
    use.isSwap = std::any_of(spaces.begin(), spaces.end(),
        [&](const SwapSpace &space) { return !space.isFile && space.device == *device; });
    return use;
}

QStringList partitionNodes(const QString &deviceNode, const SystemRoot &system)
{
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    if (!device)
        return {};
    QStringList nodes;
    const QDir folder(folderOf(device, system));
    for (const QString &entry : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (QFile::exists(folder.filePath(entry + u"/partition"_s)))
            nodes.append(u"/dev/"_s + QString(entry).replace(u'!', u'/'));
    }
    return nodes;
}

std::optional<DeviceIdentity> readDeviceIdentity(const QString &deviceNode, const SystemRoot &system)
{
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    const auto facts = readFactsOfDevice(device, system);
    if (!facts)
        return std::nullopt;
    const QByteArray folder = sysfsFolder(device, system);
    return DeviceIdentity { *device, facts->diskSequence, sysfsNumber(folder + "/start"),
        sysfsNumber(folder + "/size") };
}

OpenDevice::OpenDevice(const QString &deviceNode)
    : m_device(
          open(QFile::encodeName(deviceNode).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK))
{
}

std::optional<DeviceIdentity> OpenDevice::identity() const
{
    return m_device.isOpen() ? readDeviceIdentity(descriptorPath(m_device)) : std::nullopt;
}

bool OpenDevice::isClaimed() const
{
    const FileDescriptor claim(
        open(QFile::encodeName(descriptorPath(m_device)).constData(), O_RDONLY | O_CLOEXEC | O_EXCL));
    return !claim.isOpen() && errno == EBUSY;
}

bool OpenDevice::isReadable() const
{
    // A page of memory, in whose size every device can be read without the system's cache.
    constexpr std::size_t page = 4096;
    struct alignas(page) Block
    {
        std::array<char, page> bytes;
    };
    const FileDescriptor device(
        open(QFile::encodeName(descriptorPath(m_device)).constData(), O_RDONLY | O_CLOEXEC | O_DIRECT));
    quint64 size = 0;
    if (!device.isOpen() || ioctl(device.number(), BLKGETSIZE64, &size) != 0 || size == 0)
        return false;
    const auto block = std::make_unique<Block>();
    const auto isReadableAt = [&](quint64 offset) {
        return pread(device.number(), block->bytes.data(), page, static_cast<off_t>(offset)) > 0;
    };
    return isReadableAt(0) && isReadableAt((size - 1) / page * page);
}

void announceChange(const QString &deviceNode)
{
    const SystemRoot running;
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), running);
    QFile file(folderOf(device, running) + u"/uevent"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("change");
}
