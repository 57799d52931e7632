// SPDX-License-Identifier: MIT
//
// What runs on the selected disk and how it ended, and what can be done to the disk.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/Localization.h"
#include "ui/DiskMap.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageButton.h"
#include "ui/panel_rules.h"
#include "ui/StatusRow.h"
#include "ui/Units.h"
#include "ui/UsageBar.h"

#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocale>
#include <QMainWindow>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

// How often the time of what runs is shown again.
constexpr std::chrono::milliseconds activityInterval { 500 };

// What is done sooner is not told of.
constexpr std::chrono::milliseconds shortestActivity { 300 };

QString activityText(const ZorvexDiskManagerDisk &disk)
{
    const QStringList name { ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(disk) };
    if (disk.waitsForAnswer)
        return localizedString("ACTIVITY_WAITING_TEXT");
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

// Why the control is disabled, or what is to be known of an enabled one.
void giveReason(QWidget *control, const char *key, const QString &remark = {})
{
    const QString reason = control->isEnabled() ? remark : key ? localizedString(key) : QString();
    control->setToolTip(reason);
    control->setAccessibleDescription(reason);
}

// What is said of the disk comes after its name, and has to fit; the whole name stands above it.
QString shortNameOf(const ZorvexDiskManagerDisk &disk, const QWidget &window)
{
    constexpr int longestName = 140; // units
    return window.fontMetrics().elidedText(
        ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(disk), Qt::ElideRight, units(longestName));
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

PanelStatus::PanelStatus(ZorvexDiskManagerAppDelegate &controller)
    : m_controller(controller)
{
    m_timer.setInterval(activityInterval);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { updateActivity(); });
}

void PanelStatus::showReasonsOf(const ZorvexDiskManagerDisk *disk)
{
    if (!disk) {
        for (QWidget *control : { static_cast<QWidget *>(m_controller.mountUnmountButton),
                 static_cast<QWidget *>(m_controller.formatButton),
                 static_cast<QWidget *>(m_controller.checkButton),
                 static_cast<QWidget *>(m_controller.repairButton) })
            giveReason(control, "SELECT_A_DISK_TEXT");
        return;
    }
    const PanelRules::Abilities abilities = PanelRules::abilitiesOf(
        *disk, m_controller.checkFilesystemBundlesList, m_controller.repairFilesystemBundlesList);
    giveReason(m_controller.mountUnmountButton, PanelRules::mountReasonKey(*disk));
    for (QWidget *control : { static_cast<QWidget *>(m_controller.formatButton),
             static_cast<QWidget *>(m_controller.formatFilesystemsPopupButton) })
        giveReason(control, PanelRules::formatReasonKey(*disk));
    giveReason(m_controller.checkButton, PanelRules::checkReasonKey(*disk, abilities),
        m_controller.missingPackagesText(
            PanelRules::namingBundle(*disk, m_controller.checkFilesystemBundlesList)));
    giveReason(m_controller.repairButton, PanelRules::repairReasonKey(*disk, abilities),
        m_controller.missingPackagesText(
            PanelRules::namingBundle(*disk, m_controller.repairFilesystemBundlesList)));
}

void PanelStatus::showFormatRemark()
{
    const auto filesystem
        = m_controller.formatFilesystemsPopupButton->currentData().value<FilesystemBundleRef>();
    const QString remark = m_controller.formatRemark(
        filesystem.get(), m_controller.formatFilesystemsPopupButton->currentText());
    m_controller.formatRemarkLabel->setText(remark);
    m_controller.formatRemarkLabel->setVisible(!remark.isEmpty());
    m_controller.formatVolumeLabelField->setAccessibleDescription(remark);
}

bool PanelStatus::showsActivityOf(const ZorvexDiskManagerDisk &disk)
{
    return disk.operationInProgress && (disk.waitsForAnswer || elapsedOf(disk) >= shortestActivity);
}

void PanelStatus::showActivityOf(const ZorvexDiskManagerDisk &disk)
{
    const QString text = activityText(disk);
    m_controller.infoDiskMap->hide();
    m_controller.infoUsageBar->setVisible(true);
    m_controller.infoUsageBar->setAccessibleName(text);
    m_controller.goToFormatLink->hide();
    if (disk.waitsForAnswer) { // nothing moves
        m_controller.infoStatusLabel->setText(text);
        m_controller.infoUsageBar->showUnknown();
        return;
    }
    m_controller.infoStatusLabel->setText(text + u"\u00a0·\u00a0" + StatusRow::durationText(secondsOf(disk)));
    m_controller.infoUsageBar->showProgress(percentageOf(disk));
}

void PanelStatus::showFormatRowOf(const ZorvexDiskManagerDisk &disk)
{
    if (disk.runningOperation == RunningOperation::Format)
        m_controller.formatStatusRow->showOperation(activityText(disk), std::nullopt, secondsOf(disk), false);
    else
        m_controller.formatStatusRow->showHint(formatLocalized(localizedString("FORMAT_ERASES_FMT"),
                                                   { m_controller.getDisplayNameForDisk(disk) }),
            u"state_warning.png"_s);
}

void PanelStatus::showMaintenanceRowOf(const ZorvexDiskManagerDisk &disk)
{
    const bool runs = disk.runningOperation == RunningOperation::Check
        || disk.runningOperation == RunningOperation::Repair;
    if (runs) {
        m_controller.maintenanceStatusRow->showOperation(activityText(disk), percentageOf(disk),
            secondsOf(disk), disk.runningOperation == RunningOperation::Check);
    } else if (disk.finishedRun) {
        const FinishedRun &run = *disk.finishedRun;
        const QString when = formatLocalized(localizedString("VERDICT_TIME_FMT"),
            { QLocale().toString(run.ended, QLocale::ShortFormat), StatusRow::durationText(run.took) });
        m_controller.maintenanceStatusRow->showVerdict(
            formatLocalized(localizedString(verdictKey(run)), { shortNameOf(disk, *m_controller.window) }),
            verdictGlyph(run.outcome), when);
    } else {
        const QString reason
            = m_controller.checkButton->isEnabled() ? QString() : m_controller.checkButton->toolTip();
        m_controller.maintenanceStatusRow->showHint(
            reason.isEmpty() ? localizedString("CHECK_HINT_TEXT") : reason, u"state_info.png"_s);
    }
}

void PanelStatus::updateActivity()
{
    const DiskRecord disk = m_controller.selectedDisk();
    if (!disk) {
        m_timer.stop();
        return;
    }
    showFormatRowOf(*disk);
    showMaintenanceRowOf(*disk);
    if (!disk->operationInProgress)
        m_timer.stop();
    else if (showsActivityOf(*disk))
        showActivityOf(*disk);
    if (disk->operationInProgress && !m_timer.isActive())
        m_timer.start();
    layOutAgain();
}

// Parts of the page are told to show themselves while it is not to be seen. Qt does not make their layouts
// then, nor hears of a text in them that needs more lines. From the innermost, because an outer layout asks
// the inner ones for their sizes, and these then take themselves for up to date.
void PanelStatus::layOutAgain()
{
    const QList<QLayout *> layouts = m_controller.infoColumn->findChildren<QLayout *>();
    for (auto layout = layouts.rbegin(); layout != layouts.rend(); ++layout) {
        (*layout)->invalidate();
        (*layout)->activate();
    }
}
