// SPDX-License-Identifier: MIT
#include "ui/panel_rules.h"

#include <QRegularExpression>

#include <algorithm>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace PanelRules {

namespace {

// More of an output's end is no line that a percentage stands in.
constexpr qsizetype longestProgressLine = 300;

enum class Match { None, General, Exact };

Match matchOf(const QString &volumeKind, qint32 subtype, const ZorvexDiskManagerFSBundle &bundle)
{
    if (bundle.bundleName != volumeKind)
        return Match::None;
    const PropertyNumber *const number = numberOf(bundle.fsSubtype);
    if (!number)
        return Match::General;
    return static_cast<qint16>(number->longLongValue()) == subtype ? Match::Exact : Match::None;
}

TabChange tabChange(const ZorvexDiskManagerDisk &disk, bool isOfUse, bool isShownByOperation)
{
    if (isOfUse || (disk.operationInProgress && isShownByOperation))
        return TabChange::Insert;
    return disk.operationInProgress ? TabChange::Keep : TabChange::Remove;
}

} // namespace

bool isEjectable(const ZorvexDiskManagerDisk &disk)
{
    return disk.whole && !disk.leaf;
}

bool canBeEjected(const ZorvexDiskManagerDisk &disk)
{
    return (disk.ejectable || isEjectable(disk)) && !disk.internal;
}

const char *buttonTitleKey(const ZorvexDiskManagerDisk &disk)
{
    if (isEjectable(disk))
        return QT_TRID_NOOP("EJECT_BUTTON_TITLE");
    return disk.volumePath ? QT_TRID_NOOP("UNMOUNT_BUTTON_TITLE") : QT_TRID_NOOP("MOUNT_BUTTON_TITLE");
}

const char *rowStateKey(const ZorvexDiskManagerDisk &disk)
{
    if (isEjectable(disk))
        return QT_TRID_NOOP("ROW_DISK_WITH_PARTITIONS_TEXT");
    return disk.volumePath ? QT_TRID_NOOP("ROW_MOUNTED_TEXT") : QT_TRID_NOOP("ROW_NOT_MOUNTED_TEXT");
}

bool isUnmountable(const ZorvexDiskManagerDisk &disk)
{
    return isEjectable(disk) || disk.volumePath;
}

const ZorvexDiskManagerFSBundle *namingBundle(
    const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &list)
{
    return disk.volumeKind ? namingBundle(*disk.volumeKind, disk.subtype, list) : nullptr;
}

const ZorvexDiskManagerFSBundle *namingBundle(
    const QString &volumeKind, qint32 subtype, const std::optional<FilesystemBundleList> &list)
{
    const ZorvexDiskManagerFSBundle *general = nullptr;
    for (const FilesystemBundleRef &bundle : list.value_or(FilesystemBundleList())) {
        switch (matchOf(volumeKind, subtype, *bundle)) {
        case Match::Exact:
            return bundle.get();
        case Match::General:
            general = general ? general : bundle.get();
            break;
        case Match::None:
            break;
        }
    }
    return general;
}

const char *contentKey(ProbedContent::Kind kind)
{
    switch (kind) {
    case ProbedContent::Kind::Encrypted:
        return QT_TRID_NOOP("CONTENT_ENCRYPTED_TEXT");
    case ProbedContent::Kind::LvmMember:
        return QT_TRID_NOOP("CONTENT_LVM_TEXT");
    case ProbedContent::Kind::RaidMember:
        return QT_TRID_NOOP("CONTENT_RAID_TEXT");
    case ProbedContent::Kind::Swap:
        return QT_TRID_NOOP("CONTENT_SWAP_TEXT");
    case ProbedContent::Kind::Nothing:
    case ProbedContent::Kind::Filesystem:
    case ProbedContent::Kind::Other:
        break;
    }
    return nullptr;
}

bool hasMatchingBundle(const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &list)
{
    return namingBundle(disk, list) != nullptr;
}

Abilities abilitiesOf(const ZorvexDiskManagerDisk &disk, const std::optional<FilesystemBundleList> &checkList,
    const std::optional<FilesystemBundleList> &repairList)
{
    if (disk.operationInProgress)
        return {};
    Abilities abilities;
    abilities.mountUnmount = !isEjectable(disk) || !disk.internal; // an internal disk is never ejected
    abilities.format = disk.writable && disk.leaf;
    const bool hasVolume = disk.mountable && disk.volumeKind;
    // A check needs only a leaf, a repair one that can be written.
    abilities.check = disk.leaf && hasVolume && hasMatchingBundle(disk, checkList);
    abilities.repair = abilities.format && hasVolume && hasMatchingBundle(disk, repairList);
    return abilities;
}

const char *mountReasonKey(const ZorvexDiskManagerDisk &disk)
{
    if (disk.operationInProgress)
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    return isEjectable(disk) && disk.internal ? QT_TRID_NOOP("REASON_INTERNAL_TEXT") : nullptr;
}

const char *ejectReasonKey(const ZorvexDiskManagerDisk &disk)
{
    if (disk.operationInProgress)
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    if (canBeEjected(disk))
        return nullptr;
    return disk.internal ? QT_TRID_NOOP("REASON_INTERNAL_TEXT") : QT_TRID_NOOP("REASON_NOT_EJECTABLE_TEXT");
}

const char *formatReasonKey(const ZorvexDiskManagerDisk &disk)
{
    if (disk.operationInProgress)
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    if (!disk.leaf)
        return QT_TRID_NOOP("REASON_PARTITIONS_TEXT");
    return disk.writable ? nullptr : QT_TRID_NOOP("REASON_READ_ONLY_TEXT");
}

const char *checkReasonKey(const ZorvexDiskManagerDisk &disk, const Abilities &abilities)
{
    if (disk.operationInProgress)
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    if (!disk.leaf)
        return QT_TRID_NOOP("REASON_PARTITIONS_TEXT");
    return abilities.check ? nullptr : QT_TRID_NOOP("REASON_NO_TOOL_TEXT");
}

const char *repairReasonKey(const ZorvexDiskManagerDisk &disk, const Abilities &abilities)
{
    if (const char *const key = formatReasonKey(disk))
        return key;
    return abilities.repair ? nullptr : QT_TRID_NOOP("REASON_NO_TOOL_TEXT");
}

TabChange formatTabChange(const ZorvexDiskManagerDisk &disk, bool canFormat)
{
    return tabChange(disk, canFormat && disk.mountable, disk.operationInProgressShowFormatTab);
}

TabChange maintenanceTabChange(const ZorvexDiskManagerDisk &disk)
{
    return tabChange(disk, disk.leaf && disk.mountable, disk.operationInProgressShowMaintenanceTab);
}

std::optional<int> percentageIn(const QByteArray &output)
{
    static const QRegularExpression number(u"(\\d{1,3})(?:[.,]\\d+)?\\s?%"_s);
    QByteArray line = output.right(longestProgressLine);
    line = line.mid(std::max(line.lastIndexOf('\n'), line.lastIndexOf('\r')) + 1);
    std::optional<int> percentage;
    auto matches = number.globalMatch(QString::fromUtf8(line));
    while (matches.hasNext()) {
        const int value = matches.next().capturedView(1).toInt();
        if (value <= 100)
            percentage = value;
    }
    return percentage;
}

} // namespace PanelRules
