// SPDX-License-Identifier: MIT
//
// Formatting a volume: button, confirmation, worker, and the rename, unmount and mount that follow for the
// program's own file systems.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/DiskutilRunner.h"
#include "operations/format_rules.h"
#include "operations/ZorvexDiskManagerFormatParams.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

using FormatParamsRef = std::shared_ptr<ZorvexDiskManagerFormatParams>;

const QString eraseVerb = u"eraseVolume"_s;

void PostFormatRenameCallback(
    const DADiskRef &, const DADissenterRef &dissenter, const FormatParamsRef &context)
{
    context->delegate->postFormatRenameFinished(context, dissenter);
}

void PostFormatRenameUnmountCallback(
    const DADiskRef &, const DADissenterRef &dissenter, const FormatParamsRef &context)
{
    context->delegate->postFormatRenameUnmountFinished(context, dissenter);
}

void PostFormatRenameMountCallback(
    const DADiskRef &, const DADissenterRef &dissenter, const FormatParamsRef &context)
{
    context->delegate->postFormatRenameMountFinished(context, dissenter);
}

DADiskCompletion completionWithParams(
    void (*callback)(const DADiskRef &, const DADissenterRef &, const FormatParamsRef &),
    const FormatParamsRef &params)
{
    return [callback, params](
               const DADiskRef &disk, const DADissenterRef &dissenter) { callback(disk, dissenter, params); };
}

// One line of what is about to be erased.
QString targetLine(const char *captionKey, const QString &value)
{
    return localizedString(captionKey) + u' ' + value + u'\n';
}

// What will be there instead.
QString newVolumeText(const QString &filesystem, const QString &label)
{
    return QString(targetLine(QT_TRID_NOOP("FORMAT_NEW_FILESYSTEM_CAPTION"), filesystem)
        + targetLine(QT_TRID_NOOP("FORMAT_NEW_LABEL_CAPTION"), nameToShow(label)))
        .trimmed();
}

} // namespace

void ZorvexDiskManagerAppDelegate::clickFormatButton(QObject *)
{
    const auto filesystem = formatFilesystemsPopupButton->currentData().value<FilesystemBundleRef>();
    const DiskRecord disk = selectedDisk();
    if (!disk || !filesystem) {
        errorMessage(FormatRules::nothingSelectedText(filesystem != nullptr, disk != nullptr));
        return;
    }
    const QString typed = formatVolumeLabelField->text();
    if (!typed.isEmpty()
        && (!validateVolumeLabel(typed, *filesystem) || !bundleAllowsLabel(typed, *filesystem)))
        return;
    if (refusesToFormat(*disk))
        return;

    const FormatRules::Labels labels = FormatRules::labelsFor(typed, filesystem->bundleName);
    const auto params = std::make_shared<ZorvexDiskManagerFormatParams>();
    params->delegate = this;
    params->disk = disk;
    params->filesystem = filesystem;
    params->target = formatTargetOf(*disk);
    params->callerRunLoop = m_relay;
    params->volumeLabel = labels.volumeLabel;
    params->postFormatLabel = labels.postFormatLabel;

    auto *alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT"));
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"));
    alert->setMessageText(localizedString("CONFIRM_FORMAT_DIALOG_TITLE"));
    alert->setInformativeText(localizedString("CONFIRM_FORMAT_DIALOG_BODY"));
    alert->setAccessoryText(formatTargetText(*disk)
        + newVolumeText(
            formatFilesystemsPopupButton->currentText(), typed.isEmpty() ? labels.volumeLabel : typed));
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->beginSheetModalForWindow(window,
        [this, alert, params](int returnCode) { formatWarningAlertDidEnd(alert, returnCode, params); });
}

bool ZorvexDiskManagerAppDelegate::refusesToFormat(const ZorvexDiskManagerDisk &disk)
{
    const DeviceUse use = m_platform.readDeviceUse(disk.deviceNode());
    const char *const key = formatRefusalKey(use, disk.daDisk->probedContent().kind);
    if (key)
        errorMessageWithTitle(localizedString("FORMAT_REFUSED_TITLE"),
            formatLocalized(localizedString(key), { getDisplayNameForDisk(disk) }));
    return key != nullptr;
}

FormatTarget ZorvexDiskManagerAppDelegate::formatTargetOf(const ZorvexDiskManagerDisk &disk) const
{
    const auto properties = disk.daDisk->copyIOMediaProperties();
    const PropertyNumber *const start = properties ? properties->number(IOMediaKey::base) : nullptr;
    return { disk.mediaSize ? disk.mediaSize->longLongValue() : 0, start ? start->longLongValue() : 0,
        disk.volumeName.value_or(QString()), disk.volumeKind.value_or(QString()),
        disk.daDisk->filesystemSubtype(), disk.daDisk->probedContent(),
        m_platform.readDeviceIdentity(disk.deviceNode()) };
}

QString ZorvexDiskManagerAppDelegate::formatTargetText(const ZorvexDiskManagerDisk &disk) const
{
    const QString size = disk.mediaSize
        ? getDiskSpaceStringWithDiskSize(disk.mediaSize->longLongValue(), nullptr)
        : QString();
    const QString node = disk.deviceNode();
    const QString device
        = node.isEmpty() ? disk.description() : QString(disk.description() + u" (" + node + u')');
    return targetLine(QT_TRID_NOOP("FORMAT_TARGET_NAME_CAPTION"), getDisplayNameForDisk(disk))
        + targetLine(QT_TRID_NOOP("FORMAT_TARGET_SIZE_CAPTION"), size)
        + targetLine(QT_TRID_NOOP("FORMAT_TARGET_DEVICE_CAPTION"), leftToRightInWindow(device))
        + targetLine(QT_TRID_NOOP("FORMAT_TARGET_CONTENT_CAPTION"), contentTextOf(disk));
}

// The variant is named for a volume that is not mounted as well: it is what will be lost.
QString ZorvexDiskManagerAppDelegate::contentTextOf(const ZorvexDiskManagerDisk &disk) const
{
    const QString content = filesystemTextOf(
        disk, disk.daDisk->filesystemSubtype().value_or(static_cast<qint16>(disk.subtype)));
    return content.isEmpty() ? localizedString("FORMAT_TARGET_NOTHING_TEXT") : content;
}

void ZorvexDiskManagerAppDelegate::formatWarningAlertDidEnd(
    AlertSheet *, int returnCode, const FormatParamsRef &contextInfo)
{
    if (returnCode != AlertSheet::firstButtonReturn)
        return;
    const ZorvexDiskManagerDisk &disk = *contextInfo->disk;
    // Only what the question showed is erased. A medium that has gone has no node any more.
    if (!disk.parent_item || formatTargetOf(disk) != contextInfo->target) {
        errorMessageWithTitle(localizedString("FORMAT_TARGET_CHANGED_TITLE"),
            formatLocalized(localizedString("FORMAT_TARGET_CHANGED_FMT"), { getDisplayNameForDisk(disk) }));
        return;
    }
    beginOperation(contextInfo->disk, RunningOperation::Format);

    const std::shared_ptr<ShellPipe> pipe = m_platform.createShellPipe();
    // The name is taken here: the record belongs to this thread.
    const int error
        = m_platform.startThread([contextInfo, bsdName = contextInfo->disk->description(), relay = m_relay,
                                     pipe] { doFormat(contextInfo, bsdName, relay, *pipe); });
    if (error != 0) {
        // Nothing was tried: the volume keeps its name, too.
        errorMessage(diskutilNotInvokedMessage(eraseVerb, error));
        postFormatRenameMountFinished(contextInfo, nullptr);
    }
}

void ZorvexDiskManagerAppDelegate::doFormat(const FormatParamsRef &params, const QString &bsdName,
    const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe)
{
    const QString arguments
        = FormatRules::eraseArguments(params->filesystem->fsPersonality, params->volumeLabel, bsdName);
    std::optional<QString> message;
    invokeDiskutilWithVerb(eraseVerb, arguments, nullptr, nullptr, message, pipe);
    if (message)
        relay->performAndWait([&] { params->delegate->errorMessage(*message); });
    relay->perform([params] { params->delegate->formatFinished(params); });
}

void ZorvexDiskManagerAppDelegate::formatFinished(const FormatParamsRef &params)
{
    // The steps are tried even when the erase has failed.
    if (params->postFormatLabel)
        session->rename(params->disk->daDisk, *params->postFormatLabel, kDADiskRenameOptionDefault,
            completionWithParams(PostFormatRenameCallback, params));
    else
        postFormatRenameMountFinished(params, nullptr);
}

void ZorvexDiskManagerAppDelegate::postFormatRenameFinished(
    const FormatParamsRef &params, const DADissenterRef &dissenter)
{
    reportOutcome(params->disk, u"Error while renaming %@: %@"_s, dissenter);
    session->unmount(params->disk->daDisk, kDADiskUnmountOptionDefault,
        completionWithParams(PostFormatRenameUnmountCallback, params));
}

void ZorvexDiskManagerAppDelegate::postFormatRenameUnmountFinished(
    const FormatParamsRef &params, const DADissenterRef &dissenter)
{
    reportOutcome(params->disk, u"Error while unmounting %@: %@"_s, dissenter);
    session->mount(params->disk->daDisk, kDADiskMountOptionDefault,
        completionWithParams(PostFormatRenameMountCallback, params));
}

void ZorvexDiskManagerAppDelegate::postFormatRenameMountFinished(
    const FormatParamsRef &params, const DADissenterRef &dissenter)
{
    reportOutcome(params->disk, u"Error while mounting %@: %@"_s, dissenter);
    finishOperation(params->disk);
    if (!dissenter && !alertInProgress)
        reportVolumeOutOfReach(*params->disk);
}
