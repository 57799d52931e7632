// SPDX-License-Identifier: MIT
#include "operations/erase_disk_rules.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace EraseDiskRules {

namespace {

qint64 sizeOf(const ZorvexDiskManagerDisk &disk)
{
    return disk.mediaSize ? disk.mediaSize->longLongValue() : 0;
}

} // namespace

bool canErase(const ZorvexDiskManagerDisk &disk)
{
    return disk.whole && disk.writable && !disk.operationInProgress && sizeOf(disk) > 0;
}

PartitionScheme firstScheme(const ZorvexDiskManagerDisk &disk)
{
    return DiskLayoutRules::usualScheme(disk.removable, sizeOf(disk));
}

QString contentText(const QStringList &volumes, const QString &withoutVolumes)
{
    return volumes.isEmpty() ? withoutVolumes : u"\n– "_s + volumes.join(u"\n– "_s);
}

QString eraseDiskArguments(
    const QString &personality, const QString &label, PartitionScheme scheme, const QString &bsdName)
{
    return u"'%1' '%2' '%3' '/dev/%4'"_s.arg(
        personality, label, scheme == PartitionScheme::Gpt ? u"GPT"_s : u"MBR"_s, bsdName);
}

QString newVolumeOf(const QString &bsdName)
{
    return bsdName + u"s1"_s;
}

} // namespace EraseDiskRules
