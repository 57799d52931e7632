// SPDX-License-Identifier: MIT
//
// What the pages say of the selected disk beside its values: where it is, how it is, and what its values
// mean.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/DiskMap.h"
#include "ui/ElidingLabel.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/PageHeader.h"
#include "ui/panel_rules.h"
#include "ui/status_rules.h"
#include "ui/StatusRow.h"
#include "ui/UsageBar.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using StatusRules::Status;

// Partition tables and the gaps between partitions are no news.
constexpr qint64 leastUnused = 100'000'000; // bytes

// What is done sooner is not told of.
constexpr std::chrono::milliseconds shortestActivity { 300 };

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

QString activityText(const ZorvexDiskManagerDisk &disk)
{
    const QStringList name { ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(disk) };
    switch (disk.runningOperation) {
    case RunningOperation::Mount:
        return localizedString("ACTIVITY_MOUNTING_TEXT");
    case RunningOperation::Unmount:
        return localizedString("ACTIVITY_UNMOUNTING_TEXT");
    case RunningOperation::Eject:
        return localizedString("ACTIVITY_EJECTING_TEXT");
    case RunningOperation::Format:
        return formatLocalized(localizedString("ACTIVITY_FORMATTING_FMT"), name);
    case RunningOperation::Check:
        return formatLocalized(localizedString("ACTIVITY_CHECKING_FMT"), name);
    case RunningOperation::Repair:
        return formatLocalized(localizedString("ACTIVITY_REPAIRING_FMT"), name);
    case RunningOperation::None:
        break;
    }
    return {};
}

std::chrono::milliseconds elapsedOf(const ZorvexDiskManagerDisk &disk)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - disk.operationBegan);
}

std::chrono::seconds secondsOf(const ZorvexDiskManagerDisk &disk)
{
    return std::chrono::duration_cast<std::chrono::seconds>(elapsedOf(disk));
}

std::optional<int> percentageOf(const ZorvexDiskManagerDisk &disk)
{
    const bool isTold = disk.runningOperation == RunningOperation::Check
        || disk.runningOperation == RunningOperation::Repair;
    return isTold && disk.checkRepairOutput ? PanelRules::percentageIn(disk.checkRepairOutput->bytes())
                                            : std::nullopt;
}

void giveReason(QWidget *control, const char *key)
{
    const QString reason = key && !control->isEnabled() ? localizedString(key) : QString();
    control->setToolTip(reason);
    control->setAccessibleDescription(reason);
}

const char *verdictKey(const FinishedRun &run)
{
    switch (run.outcome) {
    case FinishedRun::Outcome::Clean:
        return run.isRepair ? QT_TRID_NOOP("VERDICT_REPAIRED_FMT") : QT_TRID_NOOP("VERDICT_CLEAN_FMT");
    case FinishedRun::Outcome::Errors:
        return run.isRepair ? QT_TRID_NOOP("VERDICT_NOT_REPAIRED_FMT") : QT_TRID_NOOP("VERDICT_ERRORS_FMT");
    case FinishedRun::Outcome::Unfinished:
        break;
    }
    return QT_TRID_NOOP("VERDICT_UNFINISHED_FMT");
}

QString verdictGlyph(FinishedRun::Outcome outcome)
{
    switch (outcome) {
    case FinishedRun::Outcome::Clean:
        return u"state_ok.png"_s;
    case FinishedRun::Outcome::Errors:
        return u"state_warning.png"_s;
    case FinishedRun::Outcome::Unfinished:
        break;
    }
    return u"state_info.png"_s;
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

void ZorvexDiskManagerAppDelegate::showMapOf(const ZorvexDiskManagerDisk &disk)
{
    std::vector<DiskMap::Part> parts;
    qint64 unused = disk.mediaSize ? disk.mediaSize->longLongValue() : 0;
    forEachNode(disk.parent_item ? disk.parent_item->children : nullptr,
        [&](const ZorvexDiskManagerDiskListItem &child) {
            const ZorvexDiskManagerDisk &volume = *child.disk;
            DiskMap::Part part;
            part.id = volume.bsdName.value_or(QString());
            part.name = getDisplayNameForDisk(volume);
            part.bytes = volume.mediaSize ? volume.mediaSize->longLongValue() : 0;
            part.size = getSizeString(part.bytes);
            part.toolTip = outlineView_accessibleTextByItem(leftOutlineView, child.disk)
                + localizedString("LIST_SEPARATOR_TEXT") + part.size;
            part.isLocked = statusOf(volume, {}) == Status::Locked;
            unused -= part.bytes;
            parts.push_back(part);
        });
    if (unused >= leastUnused) {
        DiskMap::Part rest;
        rest.bytes = unused;
        rest.toolTip = formatLocalized(localizedString("STATUS_UNUSED_FMT"), { getSizeString(unused) });
        parts.push_back(rest);
    }
    infoDiskMap->setParts(parts);
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
    infoDiskMap->setVisible(status == Status::Partitions);
    if (status == Status::Partitions)
        showMapOf(disk);
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
    mountedPathGloss->setVisible(!hasPartitions && !disk.volumePath);
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

void ZorvexDiskManagerAppDelegate::showReasonsOf(const ZorvexDiskManagerDisk *disk)
{
    if (!disk) {
        for (QWidget *control :
            { static_cast<QWidget *>(mountUnmountButton), static_cast<QWidget *>(formatButton),
                static_cast<QWidget *>(checkButton), static_cast<QWidget *>(repairButton) })
            giveReason(control, "SELECT_A_DISK_TEXT");
        return;
    }
    const PanelRules::Abilities abilities
        = PanelRules::abilitiesOf(*disk, checkFilesystemBundlesList, repairFilesystemBundlesList);
    giveReason(mountUnmountButton, PanelRules::mountReasonKey(*disk));
    giveReason(formatButton, PanelRules::formatReasonKey(*disk));
    giveReason(checkButton, PanelRules::checkReasonKey(*disk, abilities));
    giveReason(repairButton, PanelRules::repairReasonKey(*disk, abilities));
}

void ZorvexDiskManagerAppDelegate::showLabelLimit()
{
    const auto filesystem = formatFilesystemsPopupButton->currentData().value<FilesystemBundleRef>();
    const QString limit
        = filesystem ? labelLimitText(*filesystem, formatFilesystemsPopupButton->currentText()) : QString();
    labelLimitLabel->setText(limit);
    labelLimitLabel->setVisible(!limit.isEmpty());
    formatVolumeLabelField->setAccessibleDescription(limit);
}

void ZorvexDiskManagerAppDelegate::showActivityOf(const ZorvexDiskManagerDisk &disk, const QString &text)
{
    infoStatusLabel->setText(text + u" · " + StatusRow::durationText(secondsOf(disk)));
    infoDiskMap->hide();
    infoUsageBar->setVisible(true);
    infoUsageBar->setAccessibleName(text);
    infoUsageBar->showProgress(percentageOf(disk));
    goToFormatLink->hide();
}

void ZorvexDiskManagerAppDelegate::showFormatRowOf(const ZorvexDiskManagerDisk &disk)
{
    if (disk.runningOperation == RunningOperation::Format)
        formatStatusRow->showOperation(activityText(disk), std::nullopt, secondsOf(disk));
    else
        formatStatusRow->showHint(
            formatLocalized(localizedString("FORMAT_ERASES_FMT"), { getDisplayNameForDisk(disk) }),
            u"state_warning.png"_s);
}

void ZorvexDiskManagerAppDelegate::showMaintenanceRowOf(const ZorvexDiskManagerDisk &disk)
{
    const bool runs = disk.runningOperation == RunningOperation::Check
        || disk.runningOperation == RunningOperation::Repair;
    if (runs) {
        maintenanceStatusRow->showOperation(activityText(disk), percentageOf(disk), secondsOf(disk));
    } else if (disk.finishedRun) {
        const FinishedRun &run = *disk.finishedRun;
        const QString when = formatLocalized(localizedString("VERDICT_TIME_FMT"),
            { QLocale().toString(run.ended, QLocale::ShortFormat), StatusRow::durationText(run.took) });
        maintenanceStatusRow->showVerdict(
            formatLocalized(localizedString(verdictKey(run)), { getDisplayNameForDisk(disk) }),
            verdictGlyph(run.outcome), when);
    } else {
        const QString reason = checkButton->isEnabled() ? QString() : checkButton->toolTip();
        maintenanceStatusRow->showHint(
            reason.isEmpty() ? localizedString("CHECK_HINT_TEXT") : reason, u"state_info.png"_s);
    }
}

void ZorvexDiskManagerAppDelegate::updateActivity()
{
    const DiskRecord disk = selectedDisk();
    if (!disk) {
        m_activityTimer.stop();
        return;
    }
    showFormatRowOf(*disk);
    showMaintenanceRowOf(*disk);
    if (!disk->operationInProgress)
        m_activityTimer.stop();
    else if (elapsedOf(*disk) >= shortestActivity)
        showActivityOf(*disk, activityText(*disk));
    if (disk->operationInProgress && !m_activityTimer.isActive())
        m_activityTimer.start();
}
