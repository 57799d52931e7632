// SPDX-License-Identifier: MIT
//
// Encrypted volumes: the question for a passphrase, and locking what has been unmounted.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/MountCallbacks.h"
#include "platform/Localization.h"
#include "ui/PassphraseSheet.h"

#include <QMainWindow>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

// The BSD name of the whole disk that the medium of this BSD name is on, or is.
QString nameOfWholeDisk(const QString &bsdName)
{
    static const QRegularExpression partition(u"s\\d+$"_s);
    return QString(bsdName).remove(partition);
}

} // namespace

QString ZorvexDiskManagerAppDelegate::lockedVolumeText(const ZorvexDiskManagerDisk &volume)
{
    const ZorvexDiskManagerDiskListItem *const item
        = disk_list_find(&disk_list, nameOfWholeDisk(volume.description())).item;
    const QString size = volume.mediaSize ? getSizeString(volume.mediaSize->longLongValue()) : QString();
    return formatLocalized(localizedString("UNLOCK_DIALOG_TEXT_FMT"),
        { size, getDisplayNameForDisk(item ? *item->disk : volume), volume.deviceNode() });
}

void ZorvexDiskManagerAppDelegate::askForPassphrase(
    const DADiskRef &disk, bool isRetry, PassphraseAnswer answer)
{
    ZorvexDiskManagerDisk volume;
    zorvex_disk_manager_update_disk_description(disk, volume);
    auto *sheet = new PassphraseSheet(lockedVolumeText(volume), isRetry);
    connect(
        this, &ZorvexDiskManagerAppDelegate::diskWillDisappear, sheet, [sheet, disk](const DADiskRef &gone) {
            if (gone == disk)
                sheet->reject();
        });
    const ZorvexDiskManagerDiskListItem *const item = disk_list_find(&disk_list, volume.description()).item;
    const DiskRecord record = item ? item->disk : nullptr;
    sheet->beginSheetModalForWindow(
        window, [this, record, answer = std::move(answer)](std::optional<Passphrase> passphrase) {
            if (record)
                setWaitsForAnswer(record, false);
            answer(std::move(passphrase));
        });
    if (record)
        setWaitsForAnswer(record, true);
}

void ZorvexDiskManagerAppDelegate::finishUnmount(const DADiskRef &disk, const DiskRecord &record)
{
    if (disk->encryption() == DADisk::Encryption::Unlocked)
        session->lock(disk, completionWithContext(zorvex_disk_manager_da_disk_did_unmount, record));
    else
        zorvex_disk_manager_da_disk_did_unmount(disk, nullptr, record);
}
