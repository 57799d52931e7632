// SPDX-License-Identifier: MIT
//
// Sizes, names and icons of disks.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/Localization.h"
#include "ui/FreeSpaceReader.h"
#include "ui/icon_rules.h"
#include "ui/ImageButton.h"
#include "ui/ImageResources.h"
#include "ui/MountedVolume.h"
#include "ui/OutlineView.h"
#include "ui/size_rules.h"

#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

QString exactSize(qint64 bytes)
{
    return SizeRules::groupedNumber(bytes) + u' ' + localizedString("BYTES_TEXT");
}

QString withFreeSpace(const QString &freeSpace, const QString &total)
{
    return formatLocalized(localizedString("AVAILABLE_SPACE_FMT"), { freeSpace, total });
}

} // namespace

QString ZorvexDiskManagerAppDelegate::getSizeString(qint64 size) const
{
    const SizeRules::ShortSize shortSize = SizeRules::shortSize(size);
    return shortSize.number + u' ' + localizedString(shortSize.unitKey);
}

QString ZorvexDiskManagerAppDelegate::getDiskSpaceStringWithDiskSize(
    qint64 diskSize, const qint64 *freeSpace) const
{
    const QString total = getSizeString(diskSize);
    return freeSpace ? withFreeSpace(getSizeString(*freeSpace), total) : total;
}

QString ZorvexDiskManagerAppDelegate::getAlternateDiskSpaceStringWithDiskSize(
    qint64 diskSize, const qint64 *freeSpace) const
{
    const QString total = exactSize(diskSize);
    return freeSpace ? withFreeSpace(exactSize(*freeSpace), total) : total;
}

bool ZorvexDiskManagerAppDelegate::getVolumeData(
    const ZorvexDiskManagerDisk &disk, qint64 *freeSpace, qint16 *subType) const
{
    const std::vector<MountedFilesystem> mounted = m_platform.mountTable->mountedFilesystems();
    const MountedFilesystem *volume = VolumeRules::findVolume(mounted, disk.bsdName.value_or(QString()));
    if (!volume)
        return false;
    if (freeSpace)
        *freeSpace = m_freeSpaces->freeSpaceOf(*volume, mounted);
    if (subType) {
        const auto known = disk.daDisk ? disk.daDisk->filesystemSubtype() : std::nullopt;
        *subType = volume->subtype ? static_cast<qint16>(*volume->subtype) : known.value_or(0);
    }
    return true;
}

QString ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(const ZorvexDiskManagerDisk &disk)
{
    if (disk.volumeName && !disk.volumeName->isEmpty())
        return *disk.volumeName;
    if (disk.mediaName && !disk.mediaName->isEmpty())
        return *disk.mediaName;
    return disk.bsdName.value_or(QString());
}

std::optional<QPixmap> ZorvexDiskManagerAppDelegate::getUIImageforDisk(
    const ZorvexDiskManagerDisk &disk, bool needBigImage) const
{
    return getImageNamed(IconRules::diskIconName(disk.volumeKind, needBigImage));
}

std::optional<QPixmap> ZorvexDiskManagerAppDelegate::getImageNamed(const QString &name) const
{
    return imageNamed(name, window->devicePixelRatio());
}

void ZorvexDiskManagerAppDelegate::showBigImage(const QString &name)
{
    m_bigImageName = name;
    infoBigImageField->setPixmap(getImageNamed(name).value_or(QPixmap()));
}

void ZorvexDiskManagerAppDelegate::redrawPictures()
{
    const QString typed = formatVolumeLabelField->text();
    outlineViewSelectionDidChange();
    formatVolumeLabelField->setText(typed);
    showBigImage(m_bigImageName);
    leftOutlineView->viewport()->update();
}

void ZorvexDiskManagerAppDelegate::setMountImageWithIsUnmountable(bool isUnmountable)
{
    const auto image = getImageNamed(isUnmountable ? u"drive_unmount.png"_s : u"drive_mount.png"_s);
    mountUnmountButton->setIcon(image ? QIcon(*image) : QIcon());
    if (image)
        mountUnmountButton->setIconSize(image->deviceIndependentSize().toSize());
}
