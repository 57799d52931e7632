// SPDX-License-Identifier: MIT
//
// Erasing a whole disk: the sheet, the question, the worker, and the selection of the new volume.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/DiskutilRunner.h"
#include "operations/erase_disk_rules.h"
#include "operations/format_rules.h"
#include "platform/DisturbingCharacters.h"
#include "platform/KernelPartitions.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/EraseDiskSheet.h"
#include "ui/OutlineView.h"

#include <QComboBox>
#include <QMainWindow>
#include <QTabWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString eraseDiskVerb = u"eraseDisk"_s;

} // namespace

bool ZorvexDiskManagerAppDelegate::canEraseDisk(const ZorvexDiskManagerDisk &disk) const
{
    const QString node = disk.deviceNode();
    return EraseDiskRules::canErase(disk) && takesPartitions(node) && !m_platform.isSystemDevice(node);
}

void ZorvexDiskManagerAppDelegate::clickEraseDiskMenuItem(QObject *)
{
    const DiskRecord disk = selectedDisk();
    if (!disk || !canEraseDisk(*disk))
        return;
    const FormatMenuRules::FormatMenu menu = FormatMenuRules::formatMenuItems(
        formatFilesystemBundlesList.value_or(FilesystemBundleList()), disk->mediaSize->longLongValue(),
        formatFilesystemsPopupButton->currentData().value<FilesystemBundleRef>(),
        [this](
            const ZorvexDiskManagerFSBundle &bundle) { return nameToShow(getFilesystemTypeString(bundle)); });
    const QString name = getDisplayNameForDisk(*disk) + u" ("_s + disk->description() + u')';
    auto *sheet = new EraseDiskSheet(name, menu, EraseDiskRules::firstScheme(*disk));
    sheet->beginSheetModalForWindow(window, [this, disk](const EraseDiskChoice &choice) {
        if (choice.label.isEmpty() || validateVolumeLabel(choice.label, *choice.filesystem))
            confirmEraseDisk(disk, choice);
    });
}

// The disk and all that is on it. The tree tells what the user sees.
QString ZorvexDiskManagerAppDelegate::eraseTargetText(const ZorvexDiskManagerDisk &disk) const
{
    const auto line = [](const char *captionKey, const QString &value) -> QString {
        return localizedString(captionKey) + u' ' + value + u'\n';
    };
    const auto size = [this](const ZorvexDiskManagerDisk &medium) {
        return medium.mediaSize ? getDiskSpaceStringWithDiskSize(medium.mediaSize->longLongValue(), nullptr)
                                : QString();
    };
    QStringList volumes;
    if (disk.parent_item) {
        for (const ZorvexDiskManagerDiskListItem *node : disk_list_subtree(disk.parent_item)) {
            if (node != disk.parent_item)
                volumes.append(QStringList(
                    { getDisplayNameForDisk(*node->disk), contentTextOf(*node->disk), size(*node->disk) })
                        .join(localizedString("LIST_SEPARATOR_TEXT")));
        }
    }
    const QString device = disk.description() + u" ("_s + disk.deviceNode() + u')';
    const QString text = line(QT_TRID_NOOP("FORMAT_TARGET_NAME_CAPTION"), getDisplayNameForDisk(disk))
        + line(QT_TRID_NOOP("FORMAT_TARGET_SIZE_CAPTION"), size(disk))
        + line(QT_TRID_NOOP("FORMAT_TARGET_DEVICE_CAPTION"), leftToRightInWindow(device))
        + line(QT_TRID_NOOP("FORMAT_TARGET_CONTENT_CAPTION"),
            EraseDiskRules::contentText(volumes, contentTextOf(disk)));
    return text.trimmed();
}

void ZorvexDiskManagerAppDelegate::confirmEraseDisk(const DiskRecord &disk, const EraseDiskChoice &choice)
{
    const QString shown = eraseTargetText(*disk);
    auto *alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT"));
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"));
    alert->setMessageText(localizedString("CONFIRM_FORMAT_DIALOG_TITLE"));
    alert->setInformativeText(localizedString("CONFIRM_FORMAT_DIALOG_BODY"));
    alert->setAccessoryText(shown);
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->beginSheetModalForWindow(window, [this, disk, choice, shown](int returnCode) {
        if (returnCode != AlertSheet::firstButtonReturn || disk->operationInProgress)
            return;
        // Only what was shown is erased: another content is another question.
        if (eraseTargetText(*disk) != shown)
            confirmEraseDisk(disk, choice);
        else
            beginEraseDisk(disk, choice);
    });
}

void ZorvexDiskManagerAppDelegate::beginEraseDisk(const DiskRecord &disk, const EraseDiskChoice &choice)
{
    const QString bundleName = choice.filesystem->bundleName;
    const QString label = choice.label.isEmpty() ? FormatRules::defaultLabel(bundleName) : choice.label;
    beginOperation(disk, RunningOperation::Format);
    if (selectedDisk() == disk)
        rightTabView->setCurrentWidget(formatTab); // its bar shows that the disk is being erased

    const std::shared_ptr<ShellPipe> pipe = m_platform.createShellPipe();
    const QString arguments = EraseDiskRules::eraseDiskArguments(
        choice.filesystem->fsPersonality, label, choice.scheme, disk->description());
    const int error = m_platform.startThread(
        [disk, arguments, relay = m_relay, pipe] { doEraseDisk(disk, arguments, relay, *pipe); });
    if (error != 0) {
        errorMessage(diskutilNotInvokedMessage(eraseDiskVerb, error));
        finishOperation(disk);
    }
}

void ZorvexDiskManagerAppDelegate::doEraseDisk(const DiskRecord &disk, const QString &arguments,
    const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe)
{
    std::optional<QString> message;
    invokeDiskutilWithVerb(eraseDiskVerb, arguments, nullptr, nullptr, message, pipe);
    if (message)
        relay->performAndWait([&] { disk->delegate->errorMessage(*message); });
    relay->perform(
        [disk, hasFailed = message.has_value()] { disk->delegate->eraseDiskFinished(disk, hasFailed); });
}

void ZorvexDiskManagerAppDelegate::eraseDiskFinished(const DiskRecord &disk, bool hasFailed)
{
    const bool isStillSelected = selectedDisk() == disk;
    finishOperation(disk);
    if (hasFailed || !isStillSelected || !disk->bsdName)
        return;
    const DiskListPosition volume = disk_list_find(&disk_list, EraseDiskRules::newVolumeOf(*disk->bsdName));
    if (volume.item)
        leftOutlineView->selectRow(leftOutlineView->rowForItem(volume.item->disk));
}
