// SPDX-License-Identifier: MIT
#include "platform/BlockDevice.h"

#include "platform/devices/SwapTable.h"
#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <climits>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray sysfsFolder(const QString &deviceNode, const SystemRoot &system)
{
    return sysfsFolder(blockDeviceNumber(QFile::encodeName(deviceNode), system), system);
}

// Adds the device with this folder and everything that it stands on.
void addWithFoundations(QSet<QByteArray> &folders, const QByteArray &folder)
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

// The folders of the devices that the running system stands on.
QSet<QByteArray> systemFolders(const SystemRoot &system)
{
    static const QSet<QByteArray> systemMountPoints { "/", "/boot", "/boot/efi", "/usr" };
    QSet<QByteArray> folders;
    for (const KernelMount &mount : readKernelMounts(system)) {
        if (systemMountPoints.contains(mount.mountPoint))
            addWithFoundations(folders, sysfsFolder(mountedDevice(mount, system), system));
    }
    for (const SwapSpace &space : readSwapSpaces(system))
        addWithFoundations(folders, sysfsFolder(space.device, system));
    return folders;
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

bool isSystemDevice(const QString &deviceNode, const SystemRoot &system)
{
    const QByteArray folder = sysfsFolder(deviceNode, system);
    return !folder.isEmpty() && systemFolders(system).contains(folder);
}
