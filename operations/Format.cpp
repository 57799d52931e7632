// SPDX-License-Identifier: MIT
//
// Formatting a volume: button, confirmation, worker, and the rename, unmount and mount that follow for the
// program's own file systems.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/DiskutilRunner.h"
#include "operations/format_rules.h"
#include "operations/ZorvexDiskManagerFormatParams.h"
#include "ui/AlertSheet.h"
#include "ui/EraseSummary.h"

#include <QComboBox>
#include <QLineEdit>

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

} // namespace

void ZorvexDiskManagerAppDelegate::clickFormatButton(QObject *)
{
    if (hasSelectionJustMoved())
        return;
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

    const NewVolume newVolume { formatFilesystemsPopupButton->currentText(),
        typed.isEmpty() ? labels.volumeLabel : typed, {} };
    askBeforeErase(formatTargetBlock(*disk, contentTextOf(*disk)), newVolume,
        [this, params](
            AlertSheet *alert, int returnCode) { formatWarningAlertDidEnd(alert, returnCode, params); });
}

void ZorvexDiskManagerAppDelegate::formatWarningAlertDidEnd(
    AlertSheet *, int returnCode, const FormatParamsRef &contextInfo)
{
    if (returnCode != AlertSheet::firstButtonReturn)
        return;
    const ZorvexDiskManagerDisk &disk = *contextInfo->disk;
    // Only what the question showed is erased. A medium that has gone has no node any more.
    if (!disk.parent_item || formatTargetOf(disk) != contextInfo->target) {
        reportNothingErased(disk);
        return;
    }
    beginOperation(contextInfo->disk, RunningOperation::Format);

    const std::shared_ptr<ShellPipe> pipe = createPipeFor(contextInfo->disk);
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
