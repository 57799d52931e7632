// SPDX-License-Identifier: MIT
//
// What the pages say of the selected disk beside its values: where it is, how it is, and what its values
// mean.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/Localization.h"
#include "ui/ElidingLabel.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageButton.h"
#include "ui/PageHeader.h"
#include "ui/panel_rules.h"
#include "ui/status_rules.h"
#include "ui/UsageBar.h"

#include <QBoxLayout>
#include <QFormLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using StatusRules::Status;

constexpr int mountedPathRow = 0; // of the form on the Info page
constexpr int filesystemRow = 1;

// Calls the function with each node of the ring.
template <typename Function> void forEachNode(const ZorvexDiskManagerDiskListItem *first, Function function)
{
    for (const auto *node = first; node; node = node->next == first ? nullptr : node->next)
        function(*node);
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

DiskRecord ZorvexDiskManagerAppDelegate::wholeDiskOf(const ZorvexDiskManagerDisk &disk) const
{
    DiskRecord found;
    forEachNode(disk_list, [&](const ZorvexDiskManagerDiskListItem &top) {
        bool isBelow = top.disk.get() == &disk;
        forEachNode(top.children, [&](const ZorvexDiskManagerDiskListItem &child) {
            isBelow = isBelow || child.disk.get() == &disk;
        });
        if (isBelow)
            found = top.disk;
    });
    return found;
}

void ZorvexDiskManagerAppDelegate::showAsEmpty(bool isEmpty)
{
    // The same widgets, in the middle of the page.
    infoHeaderLayout->setDirection(isEmpty ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QWidget *widget :
        { static_cast<QWidget *>(infoBigImageField), static_cast<QWidget *>(mountUnmountButton) })
        infoHeaderLayout->setAlignment(widget, isEmpty ? Qt::AlignHCenter : Qt::AlignVCenter);
    const Qt::Alignment leading = isRightToLeftLocalization() ? Qt::AlignRight : Qt::AlignLeft;
    const Qt::Alignment side = isEmpty ? Qt::AlignCenter : leading | Qt::AlignVCenter | Qt::AlignAbsolute;
    infoNameLabel->setAlignment(side);
    infoPlaceLabel->setAlignment(side);
    infoPlaceLabel->setWordWrap(isEmpty);
    auto *column = qobject_cast<QBoxLayout *>(infoColumn->layout());
    column->setStretch(0, isEmpty ? 1 : 0);
    column->setStretch(column->count() - 1, 1);
    infoDetails->setVisible(!isEmpty);
    infoBigImageField->setEnabled(!isEmpty);
    if (isEmpty)
        infoPlaceLabel->setText(localizedString("SELECT_A_DISK_HINT_TEXT"));
}

QString ZorvexDiskManagerAppDelegate::placeTextOf(const ZorvexDiskManagerDisk &disk) const
{
    const DiskRecord whole = wholeDiskOf(disk);
    if (!whole)
        return {};
    const QString medium = localizedString(StatusRules::mediumKey(StatusRules::mediumOf(*whole)));
    if (whole.get() == &disk)
        return medium;
    const QString on
        = formatLocalized(localizedString("PLACE_VOLUME_ON_FMT"), { getDisplayNameForDisk(*whole) });
    return on + u" · " + medium;
}

QString ZorvexDiskManagerAppDelegate::partitionsTextOf(const ZorvexDiskManagerDisk &disk) const
{
    int count = 0;
    int mounted = 0;
    qint64 unused = disk.mediaSize ? disk.mediaSize->longLongValue() : 0;
    forEachNode(disk.parent_item ? disk.parent_item->children : nullptr,
        [&](const ZorvexDiskManagerDiskListItem &child) {
            ++count;
            mounted += child.disk->volumePath ? 1 : 0;
            unused -= child.disk->mediaSize ? child.disk->mediaSize->longLongValue() : 0;
        });
    const QString volumes = formatLocalized(
        localizedString("STATUS_PARTITIONS_FMT"), { QString::number(count), QString::number(mounted) });
    // Partition tables and the gaps between partitions are no news.
    constexpr qint64 leastUnused = 100'000'000; // bytes
    if (unused < leastUnused)
        return volumes;
    return volumes + u' ' + formatLocalized(localizedString("STATUS_UNUSED_FMT"), { getSizeString(unused) });
}

QString ZorvexDiskManagerAppDelegate::statusTextOf(
    const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const
{
    const Status status = statusOf(disk, freeSpace);
    QString text;
    if (status == Status::Partitions) {
        text = partitionsTextOf(disk);
    } else if (status == Status::Usage || status == Status::AlmostFull) {
        const qint64 size = disk.mediaSize->longLongValue();
        text = formatLocalized(localizedString(StatusRules::statusKey(status)),
            { getSizeString(std::max<qint64>(size - *freeSpace, 0)),
                QString::number(StatusRules::usedPercentage(size, *freeSpace)) });
    } else {
        text = localizedString(StatusRules::statusKey(status));
    }
    if (StatusRules::tellsReadOnly(disk, status))
        text += u' ' + localizedString("STATUS_READ_ONLY_TEXT");
    return text;
}

StatusRules::Status ZorvexDiskManagerAppDelegate::statusOf(
    const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace) const
{
    StatusRules::Facts facts;
    facts.freeSpace = freeSpace;
    if (disk.daDisk) {
        facts.content = disk.daDisk->probedContent().kind;
        facts.isUnlocked = session && session->unlockedDisk(disk.daDisk) != nullptr;
    }
    return StatusRules::statusOf(disk, facts);
}

void ZorvexDiskManagerAppDelegate::showStatusOf(
    const ZorvexDiskManagerDisk &disk, std::optional<qint64> freeSpace)
{
    const DiskRecord whole = wholeDiskOf(disk);
    infoPlaceLabel->setText(
        placeTextOf(disk), whole ? StatusRules::mediumGlyph(StatusRules::mediumOf(*whole)) : QString());
    const Status status = statusOf(disk, freeSpace);
    const QString text = statusTextOf(disk, freeSpace);
    infoStatusLabel->setText(text, statusGlyph(status));
    infoUsageBar->setVisible(status != Status::Partitions);
    infoUsageBar->setAccessibleName(text);
    if (status == Status::Usage || status == Status::AlmostFull)
        infoUsageBar->showShare(StatusRules::usedPercentage(disk.mediaSize->longLongValue(), *freeSpace));
    else
        infoUsageBar->showUnknown();
    goToFormatLink->setText(u"<a href=\"format\">"_s + localizedString("GO_TO_FORMAT_TEXT") + u"</a>"_s);
    goToFormatLink->setVisible(status == Status::NotRecognized && disk.writable && disk.mountable);
}

void ZorvexDiskManagerAppDelegate::showGlossesOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem)
{
    const bool hasPartitions = PanelRules::isEjectable(disk);
    infoFormLayout->setRowVisible(mountedPathRow, !hasPartitions);
    infoFormLayout->setRowVisible(filesystemRow, !hasPartitions);
    mountedPathGloss->setVisible(!disk.volumePath);
    mountedPathGloss->setText(disk.volumePath ? QString() : localizedString("ROW_NOT_MOUNTED_TEXT"));
    filesystemGloss->setText(
        filesystem.isEmpty() ? localizedString("FORMAT_TARGET_NOTHING_TEXT") : QString());
    const QString content = disk.content.value_or(QString());
    const char *const meaning = StatusRules::contentMeaningKey(content);
    contentGloss->setText(
        meaning ? withCapital(localizedString(meaning)) : StatusRules::partitionTableName(content));
}

void ZorvexDiskManagerAppDelegate::showHeadersOf(const ZorvexDiskManagerDisk &disk, const QString &filesystem)
{
    const DiskRecord whole = wholeDiskOf(disk);
    const bool isPart = whole && whole.get() != &disk;
    QStringList details { disk.mediaSize ? getSizeString(disk.mediaSize->longLongValue()) : QString(),
        filesystem, leftToRightInWindow(disk.deviceNode()),
        isPart ? formatLocalized(localizedString("PLACE_VOLUME_ON_FMT"), { getDisplayNameForDisk(*whole) })
               : QString() };
    details.removeAll(QString());
    const QPixmap picture = getUIImageforDisk(disk, true).value_or(QPixmap());
    for (PageHeader *header : { formatHeader, maintenanceHeader })
        header->setMedium(
            picture, getDisplayNameForDisk(disk), details.join(localizedString("LIST_SEPARATOR_TEXT")));
}
