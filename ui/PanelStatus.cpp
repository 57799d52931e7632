// SPDX-License-Identifier: MIT
//
// What the pages say of the selected disk beside its values: where it is, how it is, and what its values
// mean.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/FormatTarget.h"
#include "platform/Localization.h"
#include "ui/DiskMap.h"
#include "ui/ElidingLabel.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/PageHeader.h"
#include "ui/panel_rules.h"
#include "ui/status_rules.h"
#include "ui/Units.h"
#include "ui/UsageBar.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QLineEdit>
#include <QLocale>

#include <algorithm>
#include <map>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

using StatusRules::Status;

// Partition tables and the gaps between partitions are no news.
constexpr qint64 leastUnused = 100'000'000; // bytes

// Nor is the place where a table notes the partitions inside of another one.
constexpr qint64 leastHidden = 1'000'000; // bytes

constexpr int mountedPathRow = 0; // of the form on the Info page
constexpr int filesystemRow = 1;

// Calls the function with each node of the ring.
template <typename Function> void forEachNode(const ZorvexDiskManagerDiskListItem *first, Function function)
{
    for (const auto *node = first; node; node = node->next == first ? nullptr : node->next)
        function(*node);
}

qint64 sizeOf(const ZorvexDiskManagerDisk &disk)
{
    return disk.mediaSize ? disk.mediaSize->longLongValue() : 0;
}

QString withCapital(QString text)
{
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

QString statusGlyph(Status status)
{
    switch (status) {
    case Status::AlmostFull:
        return u"state_warning.png"_s;
    case Status::Locked:
        return u"state_locked.png"_s;
    default:
        return {};
    }
}

} // namespace

DiskRecord PanelStatus::wholeDiskOf(const ZorvexDiskManagerDisk &disk) const
{
    DiskRecord found;
    forEachNode(m_controller.disk_list, [&](const ZorvexDiskManagerDiskListItem &top) {
        bool isBelow = top.disk.get() == &disk;
        forEachNode(top.children, [&](const ZorvexDiskManagerDiskListItem &child) {
            isBelow = isBelow || child.disk.get() == &disk;
        });
        if (isBelow)
            found = top.disk;
    });
    return found;
}

void PanelStatus::showAsEmpty(bool isEmpty)
{
    // The same widgets, in the middle of the page.
    m_controller.infoHeaderLayout->setDirection(isEmpty ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QWidget *widget : { static_cast<QWidget *>(m_controller.infoBigImageField),
             static_cast<QWidget *>(m_controller.mountUnmountButton) })
        m_controller.infoHeaderLayout->setAlignment(widget, isEmpty ? Qt::AlignHCenter : Qt::AlignVCenter);
    const Qt::Alignment leading = m_controller.isRightToLeftLocalization() ? Qt::AlignRight : Qt::AlignLeft;
    const Qt::Alignment side = isEmpty ? Qt::AlignCenter : leading | Qt::AlignVCenter | Qt::AlignAbsolute;
    m_controller.infoNameLabel->setAlignment(side);
    m_controller.infoPlaceLabel->setAlignment(side);
    m_controller.infoPlaceLabel->setWordWrap(isEmpty);
    auto *column = qobject_cast<QBoxLayout *>(m_controller.infoColumn->layout());
    column->setStretch(0, isEmpty ? 1 : 0);
    column->setStretch(column->count() - 1, 1);
    m_controller.infoDetails->setVisible(!isEmpty);
    m_controller.infoBigImageField->setEnabled(!isEmpty);
    const QString hint
        = localizedString(m_isServiceAvailable ? "SELECT_A_DISK_HINT_TEXT" : "NO_SERVICE_HINT_TEXT");
    if (isEmpty)
        m_controller.infoPlaceLabel->setText(hint);
    const bool showsCommand = isEmpty && !m_isServiceAvailable;
    m_controller.infoPlaceLabel->setContentsMargins(0, 0, 0, showsCommand ? units(10) : 0);
    m_controller.serviceCommandField->setVisible(showsCommand);
    m_controller.serviceCommandField->setAccessibleName(hint);
}

QString PanelStatus::placeTextOf(const ZorvexDiskManagerDisk &disk) const
{
    const DiskRecord whole = wholeDiskOf(disk);
    if (!whole)
        return {};
    QString medium = localizedString(StatusRules::mediumKey(StatusRules::mediumOf(*whole)));
    if (whole.get() == &disk)
        return medium;
    const QString on = formatLocalized(
        localizedString("PLACE_VOLUME_ON_FMT"), { m_controller.getDisplayNameForDisk(*whole) });
    return on + u" · " + medium;
}

std::vector<PanelStatus::Extent> PanelStatus::hiddenPartitionsOf(const ZorvexDiskManagerDisk &disk) const
{
    constexpr qint64 sectorSize = 512; // of the identity of a device
    QStringList nodes = m_controller.m_platform.partitionNodes(disk.deviceNode());
    forEachNode(disk.parent_item ? disk.parent_item->children : nullptr,
        [&](const ZorvexDiskManagerDiskListItem &child) { nodes.removeAll(child.disk->deviceNode()); });
    std::vector<Extent> extents;
    for (const QString &node : std::as_const(nodes)) {
        if (const auto identity = m_controller.m_platform.readDeviceIdentity(node))
            extents.push_back({ static_cast<qint64>(identity->start) * sectorSize,
                static_cast<qint64>(identity->size) * sectorSize });
    }
    return extents;
}

QString PanelStatus::partitionsTextOf(const ZorvexDiskManagerDisk &disk) const
{
    int count = 0;
    int mounted = 0;
    qint64 hidden = 0;
    for (const Extent &partition : hiddenPartitionsOf(disk))
        hidden += partition.size;
    qint64 unused = sizeOf(disk) - hidden;
    forEachNode(disk.parent_item ? disk.parent_item->children : nullptr,
        [&](const ZorvexDiskManagerDiskListItem &child) {
            ++count;
            mounted += child.disk->volumePath ? 1 : 0;
            unused -= sizeOf(*child.disk);
        });
    QStringList sentences { formatLocalized(localizedString("STATUS_PARTITIONS_FMT"),
        { QLocale().toString(count), QLocale().toString(mounted) }) };
    if (hidden >= leastHidden)
        sentences.append(
            formatLocalized(localizedString("STATUS_HIDDEN_FMT"), { m_controller.getSizeString(hidden) }));
    if (unused >= leastUnused)
        sentences.append(
            formatLocalized(localizedString("STATUS_UNUSED_FMT"), { m_controller.getSizeString(unused) }));
    return sentences.join(u' ');
}

QString PanelStatus::statusTextOf(const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const
{
    const Status status = statusOf(disk, freeSpace);
    QString text;
    if (status == Status::Partitions) {
        text = partitionsTextOf(disk);
    } else if (status == Status::Usage || status == Status::AlmostFull) {
        const qint64 size = disk.mediaSize->longLongValue();
        text = formatLocalized(localizedString(StatusRules::statusKey(status)),
            { m_controller.getSizeString(std::max<qint64>(size - *freeSpace, 0)),
                QLocale().toString(StatusRules::usedPercentage(size, *freeSpace)) });
    } else {
        text = localizedString(StatusRules::statusKey(status));
    }
    const PanelRules::Abilities abilities = PanelRules::abilitiesOf(
        disk, m_controller.checkFilesystemBundlesList, m_controller.repairFilesystemBundlesList);
    if (StatusRules::tellsReadOnly(disk, status) && abilities.check)
        text += u' ' + localizedString("STATUS_READ_ONLY_TEXT");
    return text;
}

StatusRules::Status PanelStatus::statusOf(
    const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const
{
    StatusRules::Facts facts;
    facts.freeSpace = freeSpace;
    if (disk.daDisk) {
        facts.content = disk.daDisk->probedContent().kind;
        facts.isUnlocked = m_controller.session && m_controller.session->unlockedDisk(disk.daDisk) != nullptr;
    }
    return StatusRules::statusOf(disk, facts);
}

DiskMap::Part PanelStatus::mapPartOf(const DiskRecord &volume) const
{
    DiskMap::Part part;
    part.id = volume->bsdName.value_or(QString());
    part.name = m_controller.getDisplayNameForDisk(*volume);
    part.bytes = sizeOf(*volume);
    part.size = m_controller.getSizeString(part.bytes);
    part.isLocked = statusOf(*volume, {}) == Status::Locked;
    QStringList told { m_controller.outlineView_accessibleTextByItem(m_controller.leftOutlineView, volume),
        part.size };
    qint64 freeSpace = -1;
    if (volume->volumePath && part.bytes > 0 && m_controller.getVolumeData(*volume, &freeSpace, nullptr)
        && freeSpace >= 0) {
        part.used = StatusRules::usedPercentage(part.bytes, freeSpace);
        told.append(statusTextOf(*volume, freeSpace));
    }
    part.toolTip = told.join(localizedString("LIST_SEPARATOR_TEXT"));
    return part;
}

void PanelStatus::showMapOf(const ZorvexDiskManagerDisk &disk)
{
    std::multimap<qint64, DiskMap::Part> inPlace; // by where they begin
    forEachNode(disk.parent_item ? disk.parent_item->children : nullptr,
        [&](const ZorvexDiskManagerDiskListItem &child) {
            inPlace.emplace(m_controller.formatTargetOf(*child.disk).start, mapPartOf(child.disk));
        });
    for (const Extent &hidden : hiddenPartitionsOf(disk)) {
        if (hidden.size < leastHidden)
            continue;
        DiskMap::Part part;
        part.kind = DiskMap::Part::Kind::NotListed;
        part.bytes = hidden.size;
        part.toolTip
            = formatLocalized(localizedString("MAP_HIDDEN_FMT"), { m_controller.getSizeString(hidden.size) });
        inPlace.emplace(hidden.start, part);
    }
    std::vector<DiskMap::Part> parts;
    const auto addUnused = [&](qint64 size) {
        if (size < leastUnused)
            return;
        DiskMap::Part gap;
        gap.kind = DiskMap::Part::Kind::Unused;
        gap.bytes = size;
        gap.toolTip
            = formatLocalized(localizedString("STATUS_UNUSED_FMT"), { m_controller.getSizeString(size) });
        parts.push_back(gap);
    };
    qint64 end = 0;
    for (const auto &[start, part] : inPlace) {
        addUnused(start - end);
        parts.push_back(part);
        end = std::max(end, start + part.bytes);
    }
    addUnused(sizeOf(disk) - end);
    m_controller.infoDiskMap->setParts(parts);
}

void PanelStatus::showStatusOf(const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace)
{
    const DiskRecord whole = wholeDiskOf(disk);
    m_controller.infoPlaceLabel->setText(
        placeTextOf(disk), whole ? StatusRules::mediumGlyph(StatusRules::mediumOf(*whole)) : QString());
    if (showsActivityOf(disk))
        return;
    const Status status = statusOf(disk, freeSpace);
    const QString text = statusTextOf(disk, freeSpace);
    m_controller.infoStatusLabel->setText(text, statusGlyph(status));
    m_controller.infoUsageBar->setVisible(status != Status::Partitions);
    m_controller.infoDiskMap->setVisible(status == Status::Partitions);
    if (status == Status::Partitions)
        showMapOf(disk);
    m_controller.infoUsageBar->setAccessibleName(text);
    if (status == Status::Usage || status == Status::AlmostFull)
        m_controller.infoUsageBar->showShare(
            StatusRules::usedPercentage(disk.mediaSize->longLongValue(), *freeSpace));
    else
        m_controller.infoUsageBar->showUnknown();
    m_controller.goToFormatLink->setText(
        u"<a href=\"format\">"_s + localizedString("GO_TO_FORMAT_TEXT") + u"</a>"_s);
    m_controller.goToFormatLink->setVisible(
        status == Status::NotRecognized && disk.writable && disk.mountable);
}

void PanelStatus::showGlossesOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem)
{
    const bool hasPartitions = PanelRules::isEjectable(disk);
    m_controller.infoFormLayout->setRowVisible(mountedPathRow, !hasPartitions);
    m_controller.infoFormLayout->setRowVisible(filesystemRow, !hasPartitions);
    m_controller.mountedPathGloss->setVisible(!hasPartitions && !disk.volumePath);
    m_controller.mountedPathGloss->setText(
        disk.volumePath ? QString() : localizedString("ROW_NOT_MOUNTED_TEXT"));
    m_controller.filesystemGloss->setText(
        filesystem.isEmpty() ? localizedString("FORMAT_TARGET_NOTHING_TEXT") : QString());
    const QString content = disk.content.value_or(QString());
    const char *const meaning = StatusRules::contentMeaningKey(content);
    if (content.isEmpty())
        m_controller.contentGloss->setText(localizedString("ROW_NO_CONTENT_TEXT"));
    else
        m_controller.contentGloss->setText(
            meaning ? withCapital(localizedString(meaning)) : StatusRules::partitionTableName(content));
}

void PanelStatus::showHeadersOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem)
{
    const DiskRecord whole = wholeDiskOf(disk);
    const bool isPart = whole && whole.get() != &disk;
    QStringList details { disk.mediaSize ? m_controller.getSizeString(disk.mediaSize->longLongValue())
                                         : QString(),
        filesystem, m_controller.leftToRightInWindow(disk.deviceNode()),
        isPart ? formatLocalized(
                     localizedString("PLACE_VOLUME_ON_FMT"), { m_controller.getDisplayNameForDisk(*whole) })
               : QString() };
    details.removeAll(QString());
    const QPixmap picture = m_controller.getUIImageforDisk(disk, true).value_or(QPixmap());
    for (PageHeader *header : { m_controller.formatHeader, m_controller.maintenanceHeader })
        header->setMedium(picture, m_controller.getDisplayNameForDisk(disk),
            details.join(localizedString("LIST_SEPARATOR_TEXT")));
}
