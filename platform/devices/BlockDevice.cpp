// SPDX-License-Identifier: MIT
#include "platform/BlockDevice.h"

#include "platform/MountTable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What a small file of sysfs holds, without the line end; empty when it cannot be read. Plain system calls:
// it is read for every medium at start, where QFile's own costs would show.
QByteArray sysfsText(const QByteArray &path)
{
    const int fd = open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return {};
    char buffer[64];
    const ssize_t length = read(fd, buffer, sizeof buffer);
    close(fd);
    return length > 0 ? QByteArray(buffer, length).trimmed() : QByteArray();
}

// The folder of a device in sysfs, links resolved; empty when there is no such block device.
QByteArray sysfsFolder(quint32 deviceMajor, quint32 deviceMinor)
{
    const QByteArray link
        = "/sys/dev/block/" + QByteArray::number(deviceMajor) + ':' + QByteArray::number(deviceMinor);
    char resolved[PATH_MAX];
    return realpath(link.constData(), resolved) ? QByteArray(resolved) : QByteArray();
}

QByteArray sysfsFolder(const QString &deviceNode)
{
    struct stat status = {};
    if (stat(QFile::encodeName(deviceNode).constData(), &status) != 0 || !S_ISBLK(status.st_mode))
        return {};
    return sysfsFolder(major(status.st_rdev), minor(status.st_rdev));
}

QByteArray folderAbove(const QByteArray &folder)
{
    return folder.left(folder.lastIndexOf('/'));
}

QByteArray nameOf(const QByteArray &folder)
{
    return folder.mid(folder.lastIndexOf('/') + 1);
}

// Adds the device of this sysfs folder and everything that it stands on.
void addWithFoundations(QSet<QByteArray> &names, const QByteArray &folder)
{
    const QByteArray name = nameOf(folder);
    if (folder.isEmpty() || names.contains(name))
        return;
    names.insert(name);
    if (QFile::exists(QString::fromUtf8(folder + "/partition")))
        addWithFoundations(names, folderAbove(folder));
    const QDir slaves(QString::fromUtf8(folder + "/slaves"));
    for (const QString &slave : slaves.entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
        addWithFoundations(names, sysfsFolder(u"/dev/"_s + slave));
}

QSet<QByteArray> systemDeviceNames()
{
    static const QSet<QByteArray> systemMountPoints { "/", "/boot", "/boot/efi", "/usr" };
    QSet<QByteArray> names;
    for (const KernelMount &mount : readKernelMounts()) {
        if (!systemMountPoints.contains(mount.mountPoint))
            continue;
        // The table may name the root by a node that does not exist (/dev/root), and a file system of several
        // devices by a number that is no device's: either leads to the device.
        addWithFoundations(names, sysfsFolder(QFile::decodeName(mount.source)));
        addWithFoundations(names, sysfsFolder(mount.deviceMajor, mount.deviceMinor));
    }
    QFile swaps(u"/proc/swaps"_s);
    if (swaps.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : swaps.readAll().split('\n')) {
            const QByteArray path = line.left(line.indexOf(' '));
            struct stat status = {};
            if (stat(path.constData(), &status) != 0)
                continue;
            const dev_t device
                = S_ISBLK(status.st_mode) ? status.st_rdev : status.st_dev; // a swap file's disk
            addWithFoundations(names, sysfsFolder(major(device), minor(device)));
        }
    }
    return names;
}

} // namespace

std::optional<BlockDeviceFacts> readBlockDeviceFacts(const QString &deviceNode)
{
    const QByteArray folder = sysfsFolder(deviceNode);
    if (folder.isEmpty())
        return std::nullopt;
    BlockDeviceFacts facts;
    facts.partitionNumber = sysfsText(folder + "/partition").toUInt();
    const QByteArray wholeFolder = facts.partitionNumber ? folderAbove(folder) : folder;
    bool valid = false;
    facts.diskSequence = sysfsText(wholeFolder + "/diskseq").toULongLong(&valid);
    if (!valid)
        return std::nullopt;
    facts.logicalBlockSize = sysfsText(wholeFolder + "/queue/logical_block_size").toLongLong();
    facts.bsdName = u"disk%1"_s.arg(facts.diskSequence);
    if (facts.partitionNumber)
        facts.bsdName += u"s%1"_s.arg(facts.partitionNumber);
    return facts;
}

QString kernelDeviceName(const QString &deviceNode)
{
    return QString::fromUtf8(nameOf(sysfsFolder(deviceNode)));
}

bool isSystemDevice(const QString &deviceNode)
{
    const QByteArray name = nameOf(sysfsFolder(deviceNode));
    return !name.isEmpty() && systemDeviceNames().contains(name);
}
