// SPDX-License-Identifier: MIT
#include "platform/DeviceUse.h"

#include "platform/BlockDevice.h"
#include "platform/devices/SwapTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/major.h>
#include <memory>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

QString folderOf(std::optional<dev_t> device, const SystemRoot &system)
{
    return QFile::decodeName(sysfsFolder(device, system));
}

QByteArray nodeOfFolder(const QByteArray &folder)
{
    return "/dev/" + nameOfFolder(folder).replace('!', '/');
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

QByteArray folderOfOpenDevice(const FileDescriptor &device)
{
    const SystemRoot running;
    return sysfsFolder(blockDeviceNumber(QFile::encodeName(descriptorPath(device)), running), running);
}

FileDescriptor openToHold(const QByteArray &node)
{
    return FileDescriptor(open(node.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}

// The folders of the loop devices that have the device with this folder in the place of a file. Such a device
// is no holder in sysfs.
QByteArrayList loopFolders(const QByteArray &folder, const SystemRoot &system)
{
    QByteArrayList loops;
    const QDir devices(QFile::decodeName(system.folder + "/sys/dev/block"));
    const QStringList numbers { QString::number(LOOP_MAJOR) + u":*"_s };
    for (const QString &number : devices.entryList(numbers, QDir::AllEntries | QDir::System)) {
        const QByteArray loop = sysfsFolder(makedev(LOOP_MAJOR, number.section(u':', 1).toUInt()), system);
        const QByteArray file = sysfsText(loop + "/loop/backing_file");
        if (file.startsWith("/dev/") && sysfsFolder(blockDeviceNumber(file, system), system) == folder)
            loops.append(loop);
    }
    return loops;
}

// The folders of the devices that are made right from the one with this folder.
QByteArrayList holderFolders(const QByteArray &folder, const SystemRoot &system)
{
    if (folder.isEmpty())
        return {};
    QByteArrayList folders;
    const QDir holders(QFile::decodeName(folder + "/holders"));
    for (const QFileInfo &holder : holders.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
        folders.append(QFile::encodeName(holder.canonicalFilePath()));
    return folders + loopFolders(folder, system);
}

QByteArrayList partitionFolders(const QByteArray &folder)
{
    QByteArrayList folders;
    for (const QString &entry :
        QDir(QFile::decodeName(folder)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray partition = folder + '/' + QFile::encodeName(entry);
        if (QFile::exists(QFile::decodeName(partition + "/partition")))
            folders.append(partition);
    }
    return folders;
}

// The folders of the device, of its partitions, and of all that is made from them.
QByteArrayList foldersOn(const QByteArray &folder, const SystemRoot &system)
{
    QByteArrayList folders { folder };
    for (qsizetype i = 0; i < folders.size(); ++i) {
        for (const QByteArray &upper :
            partitionFolders(folders.at(i)) + holderFolders(folders.at(i), system)) {
            if (!folders.contains(upper))
                folders.append(upper);
        }
    }
    return folders;
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
    for (const QByteArray &folder : holderFolders(sysfsFolder(device, system), system))
        use.holders.append(QFile::decodeName(nameOfFolder(folder)));
    const std::vector<SwapSpace> spaces = readSwapSpaces(system);
    use.isSwap = std::any_of(spaces.begin(), spaces.end(),
        [&](const SwapSpace &space) { return !space.isFile && space.device == *device; });
    return use;
}

bool carriesMount(const QString &deviceNode, const SystemRoot &system)
{
    const QByteArray folder = sysfsFolder(blockDeviceNumber(QFile::encodeName(deviceNode), system), system);
    if (folder.isEmpty())
        return false;
    const QByteArrayList folders = foldersOn(folder, system);
    const auto isOnIt
        = [&](std::optional<dev_t> used) { return used && folders.contains(sysfsFolder(used, system)); };
    const std::vector<KernelMount> mounts = readKernelMounts(system);
    const std::vector<SwapSpace> spaces = readSwapSpaces(system);
    return std::any_of(mounts.begin(), mounts.end(),
               [&](const KernelMount &mount) { return isOnIt(mountedDevice(mount, system)); })
        || std::any_of(
            spaces.begin(), spaces.end(), [&](const SwapSpace &space) { return isOnIt(space.device); });
}

QStringList partitionNodes(const QString &deviceNode, const SystemRoot &system)
{
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), system);
    if (!device)
        return {};
    QStringList nodes;
    for (const QByteArray &folder : partitionFolders(sysfsFolder(device, system)))
        nodes.append(QFile::decodeName(nodeOfFolder(folder)));
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
    : m_device(openToHold(QFile::encodeName(deviceNode)))
    , m_openError(m_device.isOpen() ? 0 : errno)
{
}

std::optional<DeviceIdentity> OpenDevice::identity() const
{
    return m_device.isOpen() ? readDeviceIdentity(descriptorPath(m_device)) : std::nullopt;
}

int OpenDevice::take(Claimant claimant)
{
    if (!m_device.isOpen())
        return m_openError;
    if (flock(m_device.number(), LOCK_EX | LOCK_NB) != 0)
        return errno;
    if (const int error = lockDisk())
        return error;
    m_claim = {};
    m_claim = FileDescriptor(
        open(QFile::encodeName(descriptorPath(m_device)).constData(), O_RDONLY | O_CLOEXEC | O_EXCL));
    if (!m_claim.isOpen())
        return errno;
    if (claimant == Claimant::Program)
        m_claim = {};
    return 0;
}

// Who works on a whole disk has its lock alone, and who works on a partition shares it with those who work on
// the others. So does udev while it looks at any of them: it does not look at a disk whose lock is somebody's
// own.
int OpenDevice::lockDisk()
{
    const QByteArray folder = folderOfOpenDevice(m_device);
    if (!QFile::exists(QFile::decodeName(folder + "/partition")))
        return 0;
    if (!m_disk.isOpen())
        m_disk = openToHold(nodeOfFolder(folderAbove(folder)));
    if (!m_disk.isOpen())
        return errno;
    if (folderOfOpenDevice(m_disk) != folderAbove(folder))
        return ENODEV;
    return flock(m_disk.number(), LOCK_SH | LOCK_NB) == 0 ? 0 : errno;
}

std::vector<int> OpenDevice::descriptors() const
{
    std::vector<int> numbers;
    for (const FileDescriptor *descriptor : { &m_device, &m_disk, &m_claim }) {
        if (descriptor->isOpen())
            numbers.push_back(descriptor->number());
    }
    return numbers;
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
        const ssize_t length = pread(device.number(), block->bytes.data(), page, static_cast<off_t>(offset));
        return length > 0 || (length < 0 && errno == EINVAL); // its blocks are larger, or it ends within one
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
