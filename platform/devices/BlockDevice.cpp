// SPDX-License-Identifier: MIT
#include "platform/BlockDevice.h"

#include "platform/devices/SysfsDevice.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray sysfsFolder(const QString &deviceNode, const SystemRoot &system)
{
    return sysfsFolder(blockDeviceNumber(QFile::encodeName(deviceNode), system), system);
}

} // namespace

std::optional<BlockDeviceFacts> readBlockDeviceFacts(const QString &deviceNode)
{
    const SystemRoot running;
    return readFactsOfDevice(blockDeviceNumber(QFile::encodeName(deviceNode), running), running);
}

std::optional<BlockDeviceFacts> readFactsOfDevice(std::optional<dev_t> device, const SystemRoot &system)
{
    const QByteArray folder = sysfsFolder(device, system);
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

QString kernelDeviceName(const QString &deviceNode, const SystemRoot &system)
{
    return QFile::decodeName(nameOfFolder(sysfsFolder(deviceNode, system)));
}
