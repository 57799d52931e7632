// SPDX-License-Identifier: MIT
#include "platform/KernelPartitions.h"

#include "platform/BlockDevice.h"
#include "platform/DeviceUse.h"
#include "platform/FileDescriptor.h"

#include <QFile>

#include <fcntl.h>
#include <linux/blkpg.h>
#include <sys/ioctl.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 sectorSize = 512; // the unit of sysfs, whatever the disk's is

bool tellKernel(const FileDescriptor &disk, int operation, blkpg_partition partition)
{
    blkpg_ioctl_arg argument { operation, 0, sizeof partition, &partition };
    return ioctl(disk.number(), BLKPG, &argument) == 0;
}

bool isAt(const QString &partitionNode, qint64 start, qint64 size)
{
    const auto identity = readDeviceIdentity(partitionNode);
    return identity && identity->start == static_cast<quint64>(start / sectorSize)
        && identity->size == static_cast<quint64>(size / sectorSize);
}

// The number at the end of its name.
int numberOf(const QString &partitionNode)
{
    qsizetype begin = partitionNode.size();
    while (begin > 0 && partitionNode.at(begin - 1).isDigit())
        --begin;
    return partitionNode.mid(begin).toInt();
}

} // namespace

bool takesPartitions(const QString &diskNode)
{
    return !kernelDeviceName(diskNode).startsWith("dm-"_L1);
}

bool makeOnlyPartition(const QString &diskNode, qint64 start, qint64 size)
{
    const auto isDone = [&] {
        const QStringList nodes = partitionNodes(diskNode);
        return nodes.size() == 1 && numberOf(nodes.constFirst()) == 1
            && isAt(nodes.constFirst(), start, size);
    };
    if (isDone())
        return true;
    const FileDescriptor disk(
        open(QFile::encodeName(diskNode).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!disk.isOpen())
        return false;
    for (const QString &node : partitionNodes(diskNode)) {
        blkpg_partition old {};
        old.pno = numberOf(node);
        if (!isAt(node, start, size) || old.pno != 1)
            tellKernel(disk, BLKPG_DEL_PARTITION, old);
    }
    blkpg_partition only {};
    only.start = start;
    only.length = size;
    only.pno = 1;
    tellKernel(disk, BLKPG_ADD_PARTITION, only);
    return isDone();
}
