// SPDX-License-Identifier: MIT
//
// The button that mounts, unmounts or ejects the selected disk, and the sheets that offer to use force.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/dissenter_rules.h"
#include "operations/MountCallbacks.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "ui/AlertSheet.h"
#include "ui/panel_rules.h"

#include <QFile>
#include <QMainWindow>
#include <QPointer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// Brings the record up to date after a request, reports, and lets go of the record.
void finishRequest(const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &record,
    const QString &verb,
    void (ZorvexDiskManagerAppDelegate::*report)(const DiskRecord &, const DADissenterRef &))
{
    if (zorvex_disk_manager_update_disk_description(disk, *record))
        systemLog(u"Error while updating disk description after %1."_s.arg(verb));
    (record->delegate->*report)(record, dissenter);
}

bool isMountedAt(const MountTable &table, const QString &path)
{
    const QByteArray mountPoint = QFile::encodeName(path);
    const std::vector<MountedFilesystem> mounted = table.mountedFilesystems();
    return std::any_of(mounted.begin(), mounted.end(),
        [&mountPoint](const MountedFilesystem &each) { return each.mountPoint == mountPoint; });
}

} // namespace

void zorvex_disk_manager_da_disk_did_mount(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context)
{
    finishRequest(
        disk, dissenter, context, u"mount"_s, &ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidMount);
}

void zorvex_disk_manager_da_disk_did_unmount(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context)
{
    finishRequest(
        disk, dissenter, context, u"unmount"_s, &ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidUnmount);
}

void zorvex_disk_manager_da_disk_did_eject(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context)
{
    finishRequest(
        disk, dissenter, context, u"eject"_s, &ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidEject);
}

void UnmountDidUnmountDisk(const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context)
{
    context->delegate->unmountDidUnmountDisk(disk, dissenter, context);
}

void UnmountDidForceUnmountDisk(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &context)
{
    if (dissenter)
        zorvex_disk_manager_da_disk_did_unmount(disk, dissenter, context);
    else
        context->delegate->finishUnmount(disk, context);
}

void EjectDidUnmountDisk(const DADiskRef &, const DADissenterRef &dissenter, const DiskRecord &context)
{
    context->delegate->ejectDidUnmountDisk(context, dissenter);
}

void EjectDidForceUnmountDisk(const DADiskRef &, const DADissenterRef &dissenter, const DiskRecord &context)
{
    context->delegate->ejectDidForceUnmountDisk(context, dissenter);
}

DADiskCompletion completionWithContext(DiskRequestCallback callback, const DiskRecord &record)
{
    return [callback, record](
               const DADiskRef &disk, const DADissenterRef &dissenter) { callback(disk, dissenter, record); };
}

void ZorvexDiskManagerAppDelegate::clickMountUnmountButton(QObject *)
{
    const DiskRecord disk = selectedDisk();
    if (!disk || disk->operationInProgress)
        return;
    const bool ejects = PanelRules::isEjectable(*disk);
    beginOperation(disk,
        disk->volumePath ? RunningOperation::Unmount
            : ejects     ? RunningOperation::Eject
                         : RunningOperation::Mount);
    if (disk->volumePath)
        session->unmount(
            disk->daDisk, kDADiskUnmountOptionDefault, completionWithContext(UnmountDidUnmountDisk, disk));
    else if (ejects)
        session->unmount(
            disk->daDisk, kDADiskUnmountOptionWhole, completionWithContext(EjectDidUnmountDisk, disk));
    else
        session->mount(disk->daDisk, kDADiskMountOptionDefault,
            completionWithContext(zorvex_disk_manager_da_disk_did_mount, disk));
}

void ZorvexDiskManagerAppDelegate::clickEjectMenuItem(QObject *)
{
    const DiskRecord disk = selectedDisk();
    if (!disk || disk->operationInProgress || !PanelRules::canBeEjected(*disk))
        return;
    beginOperation(disk, RunningOperation::Eject);
    session->unmount(
        disk->daDisk, kDADiskUnmountOptionWhole, completionWithContext(EjectDidUnmountDisk, disk));
}

// Shown directly and not as an alert: a force dialog neither waits for an alert nor keeps one away.
void ZorvexDiskManagerAppDelegate::showForceDialog(const DiskRecord &disk, const char *titleKey,
    const char *bodyKey, std::function<void(AlertSheet *, int)> didEnd)
{
    auto *alert = new AlertSheet(AlertSheet::Style::Informational);
    alert->addButtonWithTitle(localizedString("FORCE_UNMOUNT_BUTTON_TITLE"));
    alert->addButtonWithTitle(localizedString("CANCEL_UNMOUNT_BUTTON_TITLE"));
    alert->setMessageText(localizedString(titleKey));
    alert->setInformativeText(formatLocalized(localizedString(bodyKey), { disk->description() }));
    // Force can cost the user data; Return alone must not choose it.
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->beginSheetModalForWindow(window, [this, alert, disk, didEnd = std::move(didEnd)](int returnCode) {
        setWaitsForAnswer(disk, false);
        didEnd(alert, returnCode);
    });
    setWaitsForAnswer(disk, true);
}

void ZorvexDiskManagerAppDelegate::unmountDidUnmountDisk(
    const DADiskRef &disk, const DADissenterRef &dissenter, const DiskRecord &daDisk)
{
    if (!dissenter) {
        finishUnmount(disk, daDisk);
        return;
    }
    if (dissenter->isDeclined) {
        finishOperation(daDisk);
        return;
    }
    showForceDialog(daDisk, QT_TRID_NOOP("FAILED_TO_UNMOUNT_VOLUME_TITLE"),
        QT_TRID_NOOP("FAILED_TO_UNMOUNT_VOLUME_BODY_FMT"), [this, daDisk](AlertSheet *alert, int returnCode) {
            unmountForceUnmountDialogDidEnd(alert, returnCode, daDisk);
        });
}

void ZorvexDiskManagerAppDelegate::unmountForceUnmountDialogDidEnd(
    AlertSheet *, int returnCode, const DiskRecord &contextInfo)
{
    if (returnCode == AlertSheet::firstButtonReturn)
        session->unmount(contextInfo->daDisk, kDADiskUnmountOptionForce,
            completionWithContext(UnmountDidForceUnmountDisk, contextInfo));
    else
        finishOperation(contextInfo);
}

void ZorvexDiskManagerAppDelegate::ejectDidUnmountDisk(
    const DiskRecord &disk, const DADissenterRef &dissenter)
{
    if (!dissenter) {
        session->eject(disk->daDisk, kDADiskEjectOptionDefault,
            completionWithContext(zorvex_disk_manager_da_disk_did_eject, disk));
        return;
    }
    if (dissenter->isDeclined) {
        finishOperation(disk);
        return;
    }
    showForceDialog(disk, QT_TRID_NOOP("FAILED_TO_UNMOUNT_VOLUMES_TITLE"),
        QT_TRID_NOOP("FAILED_TO_UNMOUNT_VOLUMES_BODY_FMT"), [this, disk](AlertSheet *alert, int returnCode) {
            ejectForceUnmountDialogDidEnd(alert, returnCode, disk);
        });
}

void ZorvexDiskManagerAppDelegate::ejectForceUnmountDialogDidEnd(
    AlertSheet *, int returnCode, const DiskRecord &contextInfo)
{
    if (returnCode == AlertSheet::firstButtonReturn)
        session->unmount(contextInfo->daDisk, kDADiskUnmountOptionWhole | kDADiskUnmountOptionForce,
            completionWithContext(EjectDidForceUnmountDisk, contextInfo));
    else
        finishOperation(contextInfo);
}

void ZorvexDiskManagerAppDelegate::ejectDidForceUnmountDisk(
    const DiskRecord &disk, const DADissenterRef &dissenter)
{
    if (dissenter && dissenter->isDeclined) {
        finishOperation(disk);
        return;
    }
    // A refusal is not reported here: the eject that follows reports its own outcome.
    session->eject(disk->daDisk, kDADiskEjectOptionDefault,
        completionWithContext(zorvex_disk_manager_da_disk_did_eject, disk));
}

void ZorvexDiskManagerAppDelegate::reportOutcome(const DiskRecord &disk, const QString &format,
    const DADissenterRef &dissenter, const std::optional<QString> &reason)
{
    if (!dissenter || dissenter->isDeclined)
        return;
    const QString text = dissenterStatusToString(*dissenter);
    QString told = text;
    if (reason) {
        told = *reason;
    } else if (!DissenterRules::hasReason(*dissenter)) {
        systemLog(u"The disk service refused a request without a reason: %1"_s.arg(text));
        told = localizedString("DISK_SERVICE_GAVE_NO_REASON_TEXT");
    }
    errorMessage(formatLocalized(format, { disk->description(), told }));
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidMount(
    const DiskRecord &disk, const DADissenterRef &withDissenter)
{
    std::optional<QString> reason;
    if (withDissenter && withDissenter->status == static_cast<quint32>(DAReturn::Unsupported))
        reason = u"No supported file system found."_s;
    reportOutcome(disk, u"Error while mounting %@: %@"_s, withDissenter, reason);
    finishOperation(disk);
    if (!withDissenter)
        reportVolumeOutOfReach(*disk);
}

// Some versions of the disk service mount for the user only what that user may mount themselves.
// Of an encrypted medium, what is unlocked on it is mounted.
void ZorvexDiskManagerAppDelegate::reportVolumeOutOfReach(const ZorvexDiskManagerDisk &disk)
{
    const DADiskRef unlocked = session->unlockedDisk(disk.daDisk);
    ZorvexDiskManagerDisk volume;
    zorvex_disk_manager_update_disk_description(unlocked ? unlocked : disk.daDisk, volume);
    if (!volume.volumePath)
        return;
    const QStringList nameAndPath { getDisplayNameForDisk(volume), volume.volumePath->toLocalFile() };
    m_platform.workspace->findFolderAccess(
        nameAndPath.constLast(), [self = QPointer(this), nameAndPath](bool isOpen) {
            // The volume may have been unmounted before the look at its folder, which the kernel knows before
            // the disk service tells.
            if (self && !isOpen && isMountedAt(*self->m_platform.mountTable, nameAndPath.constLast()))
                self->infoMessageWithTitle(localizedString("VOLUME_OUT_OF_REACH_TITLE"),
                    formatLocalized(localizedString("VOLUME_OUT_OF_REACH_TEXT_FMT"), nameAndPath));
        });
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidUnmount(
    const DiskRecord &disk, const DADissenterRef &withDissenter)
{
    reportOutcome(disk, u"Error while unmounting %@: %@"_s, withDissenter);
    finishOperation(disk);
}

void ZorvexDiskManagerAppDelegate::diskArbitrationDiskDidEject(
    const DiskRecord &disk, const DADissenterRef &withDissenter)
{
    reportOutcome(disk, u"Error while ejecting %@: %@"_s, withDissenter);
    finishOperation(disk);
}

QString ZorvexDiskManagerAppDelegate::dissenterStatusToString(const DADissenter &dissenter)
{
    return DissenterRules::textOf(dissenter);
}
