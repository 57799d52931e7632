// SPDX-License-Identifier: MIT
//
// Before anything is erased: what a format and the erase of a disk refuse, ask, and compare with what they
// asked.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/FormatTarget.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/EraseSummary.h"

#include <QMainWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

SummaryBlock newVolumeBlock(const NewVolume &volume)
{
    SummaryBlock block { { localizedString("FORMAT_NEW_FILESYSTEM_CAPTION"), volume.filesystem, true },
        { localizedString("FORMAT_NEW_LABEL_CAPTION"), nameToShow(volume.label), true } };
    if (!volume.scheme.isEmpty())
        block.push_back({ localizedString("FORMAT_NEW_SCHEME_CAPTION"), volume.scheme });
    return block;
}

} // namespace

void ZorvexDiskManagerAppDelegate::refuseToErase(const char *key, const QString &name)
{
    errorMessageWithTitle(
        localizedString("FORMAT_REFUSED_TITLE"), formatLocalized(localizedString(key), { name }));
}

bool ZorvexDiskManagerAppDelegate::refusesToFormat(const ZorvexDiskManagerDisk &disk)
{
    const QString node = disk.deviceNode();
    const char *const key = formatRefusalKey(
        m_platform.readDeviceUse(node), m_platform.isSystemDevice(node), disk.daDisk->probedContent().kind);
    if (key)
        refuseToErase(key, getDisplayNameForDisk(disk));
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

SummaryBlock ZorvexDiskManagerAppDelegate::formatTargetBlock(
    const ZorvexDiskManagerDisk &disk, const QString &content) const
{
    const QString size = disk.mediaSize
        ? getDiskSpaceStringWithDiskSize(disk.mediaSize->longLongValue(), nullptr)
        : QString();
    const QString node = disk.deviceNode();
    const QString device
        = node.isEmpty() ? disk.description() : QString(disk.description() + u" (" + node + u')');
    // A name that ends in "!" or ")" keeps it at its end among letters of the other direction.
    const QString name = getDisplayNameForDisk(disk);
    const QString nameApart
        = isRightToLeftLocalization() ? QString(QChar(0x2068) + name + QChar(0x2069)) : name;
    return { { localizedString("FORMAT_TARGET_NAME_CAPTION"), nameApart, true },
        { localizedString("FORMAT_TARGET_SIZE_CAPTION"), size },
        { localizedString("FORMAT_TARGET_DEVICE_CAPTION"), leftToRightInWindow(device) },
        { localizedString("FORMAT_TARGET_CONTENT_CAPTION"), content } };
}

// The variant is named for a volume that is not mounted as well: it is what will be lost.
QString ZorvexDiskManagerAppDelegate::contentTextOf(const ZorvexDiskManagerDisk &disk) const
{
    const QString content = filesystemTextOf(
        disk, disk.daDisk->filesystemSubtype().value_or(static_cast<qint16>(disk.subtype)));
    return content.isEmpty() ? localizedString("FORMAT_TARGET_NOTHING_TEXT") : content;
}

void ZorvexDiskManagerAppDelegate::askBeforeErase(const SummaryBlock &target, const NewVolume &newVolume,
    std::function<void(AlertSheet *alert, int returnCode)> didEnd)
{
    auto *alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CONTINUE_BUTTON_TEXT"));
    alert->addButtonWithTitle(localizedString("CONFIRM_FORMAT_DIALOG_CANCEL_BUTTON_TEXT"));
    alert->setMessageText(localizedString("CONFIRM_FORMAT_DIALOG_TITLE"));
    alert->setInformativeText(localizedString("CONFIRM_FORMAT_DIALOG_BODY"));
    auto *summary = new EraseSummary(target, newVolumeBlock(newVolume));
    alert->setAccessory(summary, summary->text());
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->beginSheetModalForWindow(
        window, [alert, didEnd = std::move(didEnd)](int returnCode) { didEnd(alert, returnCode); });
}

void ZorvexDiskManagerAppDelegate::reportNothingErased(const ZorvexDiskManagerDisk &disk)
{
    errorMessageWithTitle(localizedString("FORMAT_TARGET_CHANGED_TITLE"),
        formatLocalized(localizedString("FORMAT_TARGET_CHANGED_FMT"), { getDisplayNameForDisk(disk) }));
}
