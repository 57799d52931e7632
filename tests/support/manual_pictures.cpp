// SPDX-License-Identifier: MIT
//
// manual_pictures SOURCE_FOLDER PICTURE_FOLDER
//
// Takes the pictures of the manual and of the README: the real window, on disks that are kept in memory. To
// be run with QT_QPA_PLATFORM=offscreen and QT_SCALE_FACTOR=2.
#include "tests/support/TestController.h"

#include "app/ZorvexDiskManagerAppDelegate.h"
#include "ui/AlertSheet.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMainWindow>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto checkerOutput = R"(#!/bin/sh
cat <<'OUTPUT'
Started file system verification on disk5s1
Unmounting disk5s1
Mounting volume... OK
Processing of $MFT and $MFTMirr completed successfully.
Checking the alternate boot sector... OK
NTFS volume version is 3.1.
NTFS partition /dev/sdb1 was processed successfully.
The volume on disk5s1 appears to be OK
Mounting disk5s1
Finished file system verification on disk5s1
OUTPUT
)";

MemoryDiskRef volume(
    const QString &bsdName, qint64 offset, const QString &name, const QString &kind, qint64 size)
{
    const MemoryDiskRef disk = makePartition(bsdName, offset, name);
    disk->description->insert(DAKey::volumeKind, kind);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(size));
    return disk;
}

MemoryDiskRef wholeDisk(const QString &bsdName, const QString &name, qint64 size, bool isRemovable)
{
    const MemoryDiskRef disk = makeDisk(bsdName);
    disk->description->insert(DAKey::mediaName, name);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(size));
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::mediaRemovable, isRemovable);
    disk->description->insert(DAKey::mediaEjectable, isRemovable);
    disk->description->insert(DAKey::mediaContent, u"GUID_partition_scheme"_s);
    return disk;
}

void addDisks(TestController &test)
{
    test.add(wholeDisk(u"disk1"_s, u"Solid-state drive"_s, 512110190592, false));
    const MemoryDiskRef system = volume(u"disk1s2"_s, 1048576, u"Linux"_s, u"ext4"_s, 511000000000);
    test.mount(system, u"/"_s, 301000000000);
    test.add(system);
    test.add(wholeDisk(u"disk5"_s, u"Blue Stick"_s, 64023257088, true));
    const MemoryDiskRef photos = volume(u"disk5s1"_s, 1048576, u"Photos"_s, u"zorvex_ntfs"_s, 48000000000);
    photos->node = u"/dev/sdb1"_s;
    test.mount(photos, u"/media/anna/Photos"_s, 21500000000);
    photos->description->insert(DAKey::mediaContent, u"Windows_NTFS"_s);
    test.add(photos);
    const MemoryDiskRef transfer = volume(u"disk5s2"_s, 48001048576, u"TRANSFER"_s, u"msdos"_s, 16000000000);
    transfer->node = u"/dev/sdb2"_s;
    transfer->subtype = 3; // FAT32
    test.add(transfer);
}

void save(TestController &test, const QString &folder, const QString &name)
{
    QTest::qWait(300); // until the style's animations have ended
    QPixmap picture = test.window().grab();
    QPainter painter(&picture);
    for (AlertSheet *sheet : test.sheets()) {
        const QPixmap dialog = sheet->window()->grab();
        const QSizeF size = dialog.deviceIndependentSize();
        painter.drawPixmap(
            QPointF((test.window().width() - size.width()) / 2, (test.window().height() - size.height()) / 3),
            dialog);
        painter.drawRect(QRectF(
            QPointF((test.window().width() - size.width()) / 2, (test.window().height() - size.height()) / 3),
            size));
    }
    painter.end();
    if (!picture.save(folder + u'/' + name))
        qFatal("%s cannot be written", qPrintable(name));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 3)
        qFatal("which folders?");
    const QString source = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
    const QString folder = QString::fromLocal8Bit(argv[2]);

    const QTemporaryDir tools;
    QFile checker(tools.filePath(u"diskutil"_s));
    if (!checker.open(QIODevice::WriteOnly) || checker.write(checkerOutput) < 0)
        qFatal("the tool's stand-in cannot be written");
    checker.close();
    checker.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    TestController test;
    test.diskutil = checker.fileName();
    test.platform().filesystemDirectories
        = { source + u"/resources/Filesystems/System"_s, source + u"/resources/Filesystems/Local"_s };
    test.launch();
    addDisks(test);
    ZorvexDiskManagerAppDelegate &controller = test.controller();

    test.select(u"disk5s1"_s);
    save(test, folder, u"info.png"_s);

    controller.rightTabView->setCurrentWidget(controller.maintenanceTab);
    controller.checkButton->click();
    if (!QTest::qWaitFor([&] { return controller.checkButton->isEnabled(); }))
        qFatal("the check does not end");
    controller.rightTabView->setCurrentWidget(controller.maintenanceTab);
    save(test, folder, u"maintenance.png"_s);

    test.select(u"disk5s2"_s);
    controller.rightTabView->setCurrentWidget(controller.formatTab);
    const int format = controller.formatFilesystemsPopupButton->findText(u"FAT32"_s, Qt::MatchContains);
    if (format < 0)
        qFatal("the format menu has no FAT32");
    controller.formatFilesystemsPopupButton->setCurrentIndex(format);
    controller.formatVolumeLabelField->setText(u"BACKUP"_s);
    controller.formatButton->click();
    save(test, folder, u"format-warning.png"_s);
    return EXIT_SUCCESS;
}
