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

const char *reasonKey(const ZorvexDiskManagerDisk &disk)
{
    if (disk.operationInProgress)
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    if (!disk.whole)
        return QT_TRID_NOOP("REASON_NOT_WHOLE_TEXT");
    if (!disk.writable)
        return QT_TRID_NOOP("REASON_READ_ONLY_TEXT");
    return sizeOf(disk) > 0 ? nullptr : QT_TRID_NOOP("REASON_NO_PARTITIONS_TEXT");
}

PartitionScheme firstScheme(const ZorvexDiskManagerDisk &disk)
{
    return DiskLayoutRules::usualScheme(disk.removable, sizeOf(disk));
}

QString contentText(const QStringList &volumes, const QString &withoutVolumes)
{
    return volumes.isEmpty() ? withoutVolumes : volumes.join(u'\n');
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
