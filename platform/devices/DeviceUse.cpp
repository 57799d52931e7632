// SPDX-License-Identifier: MIT
#include "platform/DeviceUse.h"

#include "platform/BlockDevice.h"
#include "platform/devices/SwapTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

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

// The kernel opens what a loop device stands on like any reader, so that it is nobody's holder.
QStringList loopDevicesOn(dev_t device, const SystemRoot &system)
{
    QStringList names;
    const QDir folder(QFile::decodeName(system.folder + "/sys/block"));
    for (const QString &name : folder.entryList({ u"loop*"_s }, QDir::AllEntries)) {
        const QByteArray backing
            = sysfsText(QFile::encodeName(folder.filePath(name + u"/loop/backing_file"_s)));
        if (!backing.isEmpty() && blockDeviceNumber(backing, system) == device)
            names.append(name);
    }
    return names;
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
    use.holders += loopDevicesOn(*device, system);
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

bool OpenDevice::take(Claimant claimant)
{
    if (flock(m_device.number(), LOCK_EX | LOCK_NB) != 0)
        return false;
    m_claim = {};
    m_claim = FileDescriptor(
        open(QFile::encodeName(descriptorPath(m_device)).constData(), O_RDONLY | O_CLOEXEC | O_EXCL));
    if (claimant == Claimant::ThisProcess || !m_claim.isOpen())
        return m_claim.isOpen();
    m_claim = {};
    return true;
}

std::vector<int> OpenDevice::descriptors() const
{
    std::vector<int> numbers;
    for (const FileDescriptor *descriptor : { &m_device, &m_claim }) {
        if (descriptor->isOpen())
            numbers.push_back(descriptor->number());
    }
    return numbers;
}

void announceChange(const QString &deviceNode)
{
    const SystemRoot running;
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), running);
    QFile file(folderOf(device, running) + u"/uevent"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("change");
}
