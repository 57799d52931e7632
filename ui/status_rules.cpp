// SPDX-License-Identifier: MIT
#include "ui/status_rules.h"

#include "ui/panel_rules.h"

#include <QHash>

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace StatusRules {

namespace {

constexpr int almostFull = 90; // per cent

Status statusOfMounted(const ZorvexDiskManagerDisk &disk, const std::optional<qint64> &freeSpace)
{
    if (!freeSpace || !disk.mediaSize || disk.mediaSize->longLongValue() <= 0)
        return Status::SpaceUnknown;
    const bool isFull = usedPercentage(disk.mediaSize->longLongValue(), *freeSpace) >= almostFull;
    return isFull ? Status::AlmostFull : Status::Usage;
}

} // namespace

Status statusOf(const ZorvexDiskManagerDisk &disk, const Facts &facts)
{
    if (PanelRules::isEjectable(disk))
        return Status::Partitions;
    if (disk.volumePath)
        return statusOfMounted(disk, facts.freeSpace);
    switch (facts.content) {
    case ProbedContent::Kind::Encrypted:
        return facts.isUnlocked ? Status::Unlocked : Status::Locked;
    case ProbedContent::Kind::Swap:
        return Status::Swap;
    case ProbedContent::Kind::LvmMember:
        return Status::LvmMember;
    case ProbedContent::Kind::RaidMember:
        return Status::RaidMember;
    case ProbedContent::Kind::Nothing:
    case ProbedContent::Kind::Filesystem:
    case ProbedContent::Kind::Other:
        break;
    }
    if (disk.volumeKind)
        return Status::NotMounted;
    return facts.content == ProbedContent::Kind::Other ? Status::OtherContent : Status::NotRecognized;
}

const char *statusKey(Status status)
{
    switch (status) {
    case Status::Partitions:
        return QT_TRID_NOOP("STATUS_PARTITIONS_FMT");
    case Status::Usage:
        return QT_TRID_NOOP("USED_SPACE_FMT");
    case Status::AlmostFull:
        return QT_TRID_NOOP("ALMOST_FULL_FMT");
    case Status::SpaceUnknown:
        return QT_TRID_NOOP("STATUS_SPACE_UNKNOWN_TEXT");
    case Status::Locked:
        return QT_TRID_NOOP("STATUS_LOCKED_TEXT");
    case Status::Unlocked:
        return QT_TRID_NOOP("STATUS_UNLOCKED_TEXT");
    case Status::Swap:
        return QT_TRID_NOOP("STATUS_SWAP_TEXT");
    case Status::LvmMember:
        return QT_TRID_NOOP("STATUS_LVM_TEXT");
    case Status::RaidMember:
        return QT_TRID_NOOP("STATUS_RAID_TEXT");
    case Status::NotRecognized:
        return QT_TRID_NOOP("STATUS_NOT_RECOGNIZED_TEXT");
    case Status::OtherContent:
        return QT_TRID_NOOP("STATUS_OTHER_CONTENT_TEXT");
    case Status::NotMounted:
        break;
    }
    return QT_TRID_NOOP("STATUS_NOT_MOUNTED_TEXT");
}

bool tellsReadOnly(const ZorvexDiskManagerDisk &disk, Status status)
{
    const bool canBeChecked = status == Status::Usage || status == Status::AlmostFull
        || status == Status::SpaceUnknown || status == Status::NotMounted;
    return !disk.writable && canBeChecked;
}

int usedPercentage(qint64 size, qint64 freeSpace)
{
    const qint64 used = std::clamp<qint64>(size - freeSpace, 0, size);
    return static_cast<int>(static_cast<long double>(used) * 100 / size);
}

Medium mediumOf(const ZorvexDiskManagerDisk &wholeDisk)
{
    const QString node = wholeDisk.deviceNode();
    if (wholeDisk.daDisk && wholeDisk.daDisk->encryption() == DADisk::Encryption::Unlocked)
        return Medium::Unlocked;
    if (node.startsWith("/dev/loop"_L1))
        return Medium::Image;
    if (node.startsWith("/dev/sr"_L1))
        return Medium::Disc;
    if (wholeDisk.internal)
        return Medium::Internal;
    if (node.startsWith("/dev/mmcblk"_L1))
        return Medium::Card;
    return wholeDisk.removable ? Medium::Removable : Medium::External;
}

const char *mediumKey(Medium medium)
{
    switch (medium) {
    case Medium::External:
        return QT_TRID_NOOP("MEDIUM_EXTERNAL_TEXT");
    case Medium::Removable:
        return QT_TRID_NOOP("MEDIUM_REMOVABLE_TEXT");
    case Medium::Card:
        return QT_TRID_NOOP("MEDIUM_CARD_TEXT");
    case Medium::Disc:
        return QT_TRID_NOOP("MEDIUM_DISC_TEXT");
    case Medium::Image:
        return QT_TRID_NOOP("MEDIUM_IMAGE_TEXT");
    case Medium::Unlocked:
        return QT_TRID_NOOP("MEDIUM_UNLOCKED_TEXT");
    case Medium::Internal:
        break;
    }
    return QT_TRID_NOOP("MEDIUM_INTERNAL_TEXT");
}

QString mediumGlyph(Medium medium)
{
    switch (medium) {
    case Medium::Removable:
        return u"media_usb.png"_s;
    case Medium::Card:
        return u"media_card.png"_s;
    case Medium::Disc:
        return u"media_disc.png"_s;
    case Medium::Image:
        return u"media_image.png"_s;
    case Medium::Internal:
    case Medium::External:
    case Medium::Unlocked:
        break;
    }
    return u"media_drive.png"_s;
}

const char *contentMeaningKey(const QString &content)
{
    static const QHash<QString, const char *> meanings {
        { u"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"_s, QT_TRID_NOOP("CONTENT_BASIC_DATA_TEXT") },
        { u"0FC63DAF-8483-4772-8E79-3D69D8477DE4"_s, QT_TRID_NOOP("CONTENT_LINUX_TEXT") },
        { u"4F68BCE3-E8CD-4DB1-96E7-FBCAF984B709"_s, QT_TRID_NOOP("CONTENT_LINUX_TEXT") },
        { u"933AC7E1-2EB4-4F13-B844-0E14E2AEF915"_s, QT_TRID_NOOP("CONTENT_LINUX_TEXT") },
        { u"C12A7328-F81F-11D2-BA4B-00A0C93EC93B"_s, QT_TRID_NOOP("CONTENT_EFI_TEXT") },
        { u"DE94BBA4-06D1-4D40-A16A-BFD50179D6AC"_s, QT_TRID_NOOP("CONTENT_RECOVERY_TEXT") },
        { u"0657FD6D-A4AB-43C4-84E5-0933C84B4F4F"_s, QT_TRID_NOOP("CONTENT_SWAP_TEXT") },
        { u"E6D6D379-F507-44C2-A23C-238F2A3DF928"_s, QT_TRID_NOOP("CONTENT_LVM_TEXT") },
        { u"A19D880F-05FC-4D3B-A006-743F0F84911E"_s, QT_TRID_NOOP("CONTENT_RAID_TEXT") },
        { u"CA7D7CCB-63ED-4C53-861C-1742536059CC"_s, QT_TRID_NOOP("CONTENT_ENCRYPTED_TEXT") },
    };
    return meanings.value(content.toUpper());
}

QString partitionTableName(const QString &content)
{
    if (content == "GUID_partition_scheme"_L1)
        return u"GPT"_s;
    return content == "FDisk_partition_scheme"_L1 ? u"MBR"_s : QString();
}

} // namespace StatusRules
