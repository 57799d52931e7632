// SPDX-License-Identifier: MIT
//
// Erasing a whole disk: the sheet, the question, the worker, and the selection of the new volume.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/DiskutilRunner.h"
#include "operations/erase_disk_rules.h"
#include "operations/format_rules.h"
#include "operations/FormatTarget.h"
#include "platform/DisturbingCharacters.h"
#include "platform/KernelPartitions.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/EraseDiskSheet.h"
#include "ui/EraseSummary.h"
#include "ui/OutlineView.h"

#include <QComboBox>
#include <QMainWindow>
#include <QTabWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString eraseDiskVerb = u"eraseDisk"_s;

// The records of the disk and of all that is on it, as the tree has them; none when the disk has gone.
std::vector<DiskRecord> mediaOf(const ZorvexDiskManagerDisk &disk)
{
    std::vector<DiskRecord> media;
    if (disk.parent_item) {
        for (const ZorvexDiskManagerDiskListItem *node : disk_list_subtree(disk.parent_item))
            media.push_back(node->disk);
    }
    return media;
}

} // namespace

const char *ZorvexDiskManagerAppDelegate::eraseDiskReasonKey(const ZorvexDiskManagerDisk &disk) const
{
    const std::vector<DiskRecord> media = mediaOf(disk);
    if (std::any_of(
            media.begin(), media.end(), [](const DiskRecord &medium) { return medium->operationInProgress; }))
        return QT_TRID_NOOP("REASON_BUSY_TEXT");
    if (const char *const key = EraseDiskRules::reasonKey(disk))
        return key;
    const QString node = disk.deviceNode();
    if (!takesPartitions(node))
        return QT_TRID_NOOP("REASON_NO_PARTITIONS_TEXT");
    return m_platform.isSystemDevice(node) ? QT_TRID_NOOP("REASON_SYSTEM_TEXT") : nullptr;
}

void ZorvexDiskManagerAppDelegate::clickEraseDiskMenuItem(QObject *)
{
    const DiskRecord disk = selectedDisk();
    if (!disk || hasSelectionJustMoved() || eraseDiskReasonKey(*disk))
        return;
    const FormatMenuRules::FormatMenu menu = formatMenuFor(disk->mediaSize->longLongValue(),
        formatFilesystemsPopupButton->currentData().value<FilesystemBundleRef>());
    const QString name = getDisplayNameForDisk(*disk) + u" ("_s + disk->description() + u')';
    auto *sheet = new EraseDiskSheet(name, menu, EraseDiskRules::firstScheme(*disk));
    sheet->showRemarks([this](const EraseDiskChoice &choice) {
        return formatRemark(choice.filesystem.get(), choice.filesystemTitle);
    });
    sheet->beginSheetModalForWindow(
        window,
        [this](const EraseDiskChoice &choice) {
            return choice.label.isEmpty() ? std::nullopt
                                          : volumeLabelObjection(choice.label, *choice.filesystem);
        },
        [this, disk](const EraseDiskChoice &choice) {
            if (!refusesToEraseDisk(*disk))
                confirmEraseDisk(disk, choice);
        });
}

// Some media of a disk have no row: what the kernel tells of their use is told in their device's name.
bool ZorvexDiskManagerAppDelegate::refusesToEraseDisk(const ZorvexDiskManagerDisk &disk)
{
    QStringList withoutRow = m_platform.partitionNodes(disk.deviceNode());
    for (const DiskRecord &medium : mediaOf(disk)) {
        if (refusesToFormat(*medium))
            return true;
        withoutRow.removeAll(medium->deviceNode());
    }
    for (const QString &node : std::as_const(withoutRow)) {
        if (const char *const key = formatRefusalKey(m_platform.readDeviceUse(node),
                m_platform.isSystemDevice(node), ProbedContent::Kind::Nothing)) {
            refuseToErase(key, node);
            return true;
        }
    }
    return false;
}

// All that is on the disk, a line for each volume. The tree tells what the user sees.
SummaryBlock ZorvexDiskManagerAppDelegate::eraseTargetBlock(const ZorvexDiskManagerDisk &disk) const
{
    QStringList volumes;
    for (const DiskRecord &medium : mediaOf(disk)) {
        if (medium.get() == &disk)
            continue;
        const QString size = medium->mediaSize
            ? getDiskSpaceStringWithDiskSize(medium->mediaSize->longLongValue(), nullptr)
            : QString();
        volumes.append(QStringList({ getDisplayNameForDisk(*medium), contentTextOf(*medium), size })
                .join(localizedString("LIST_SEPARATOR_TEXT")));
    }
    return formatTargetBlock(disk, EraseDiskRules::contentText(volumes, contentTextOf(disk)));
}

std::vector<FormatTarget> ZorvexDiskManagerAppDelegate::eraseTargetsOf(
    const ZorvexDiskManagerDisk &disk) const
{
    std::vector<FormatTarget> targets;
    for (const DiskRecord &medium : mediaOf(disk))
        targets.push_back(formatTargetOf(*medium));
    return targets;
}

void ZorvexDiskManagerAppDelegate::confirmEraseDisk(const DiskRecord &disk, EraseDiskChoice choice)
{
    if (choice.label.isEmpty())
        choice.label = FormatRules::defaultLabel(choice.filesystem->bundleName);
    const NewVolume newVolume { choice.filesystemTitle, choice.label, choice.schemeTitle };
    askBeforeErase(eraseTargetBlock(*disk), newVolume,
        [this, disk, choice, targets = eraseTargetsOf(*disk)](AlertSheet *, int returnCode) {
            if (returnCode != AlertSheet::firstButtonReturn)
                return;
            // Only what the question showed is erased.
            if (eraseTargetsOf(*disk) != targets)
                reportNothingErased(*disk);
            else
                beginEraseDisk(disk, choice);
        });
}

void ZorvexDiskManagerAppDelegate::beginEraseDisk(const DiskRecord &disk, const EraseDiskChoice &choice)
{
    beginOperation(disk, RunningOperation::Format);
    if (selectedDisk() == disk)
        rightTabView->setCurrentWidget(formatTab); // its bar shows that the disk is being erased

    const std::shared_ptr<ShellPipe> pipe = createPipeFor(disk);
    const QString arguments = EraseDiskRules::eraseDiskArguments(
        choice.filesystem->fsPersonality, choice.label, choice.scheme, disk->description());
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
