// SPDX-License-Identifier: MIT
//
// The information panel: what it shows of the selected medium.
#include "platform/Localization.h"
#include "tests/support/TestController.h"
#include "ui/DiskMap.h"
#include "ui/ElidingLabel.h"
#include "ui/GlyphLabel.h"
#include "ui/ImageAndTextCell.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/UsageBar.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLabelOfAMountedVolume();
    void missingValues();
    void freeSpaceThatIsUnknownIsLeftOut();
    void failingFreeSpaceIsLogged();
    void subtypeOfTheMountTableNamesTheVolume();
    void subtypeIsKeptWhenTheVolumeIsNotFound();
    void rowAsksForTheSubtypeAsThePanelDoes();
    void contentThatIsNoFilesystem_data();
    void contentThatIsNoFilesystem();
    void unknownKindIsShownAsItIs();
    void diskWithPartitions();
    void readOnlyVolumeCanBeChecked();
    void deselectingKeepsTheBigIcon();
    void clickOnEmptySpaceDeselects();
    void labelFieldIsNotTouchedWhileBusy();
    void longNamesDoNotWidenTheWindow();
    void hostileNamesArePlain();
    void menuFollowsTheSelectedSize();
    void menuStaysWhenTheBundlesCannotBeRead();
    void outputHasTheFixedPitchFont();
    void rowHasTheSmallIconAndThePanelTheBigOne_data();
    void rowHasTheSmallIconAndThePanelTheBigOne();
    void pictureOfTheButton();
    void missingImageIsNone();
    void nameOfAMedium_data();
    void nameOfAMedium();
    void volumeDataThatIsNotAskedForIsNotRead();
    void tabStaysWhenAnotherVolumeIsSelected();
    void disabledButtonsSayWhy();
    void mapShowsTheVolumesOfADisk();
    void usageIsABarAndASentence();
    void sentenceOfAnUnmountedVolume();
    void labelLimitFollowsTheFilesystem();
    void missingPackagesAreNamed();

private:
    static MemoryDiskRef makeVolume(const QString &name);
};

MemoryDiskRef TestPanel::makeVolume(const QString &name)
{
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, name);
    volume->description->insert(DAKey::volumeKind, u"msdos"_s);
    volume->description->insert(DAKey::mediaContent, u"DOS_FAT_32"_s);
    return volume;
}

namespace {

void mount(TestController &test, const MemoryDiskRef &volume, std::optional<quint32> subtype = {})
{
    test.mount(volume, u"/media/A"_s, 40'000'000);
    test.mountTable->mounted.back().subtype = subtype;
}

QImage pictureOf(const QPixmap &pixmap)
{
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// The file as it is among the program's resources.
QImage pictureFile(const QString &name)
{
    return QImage(u":/images/"_s + name).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QByteArray subtypeXml(int subtype)
{
    return "<key>FSSubType</key><integer>" + QByteArray::number(subtype) + "</integer>";
}

// A bundle with a name for any FAT and one for a subtype.
void writeFatBundle(const QString &directory, int subtype)
{
    writeBundle(directory, u"msdos"_s,
        "<key>CFBundleIdentifier</key><string>i</string><key>FSPersonalities</key><dict>"
        "<key>Plain</key><dict><key>FSName</key><string>Plain</string></dict>"
        "<key>FAT32</key><dict><key>FSName</key><string>FAT32</string>"
            + subtypeXml(subtype) + "</dict></dict>");
}

} // namespace

void TestPanel::everyLabelOfAMountedVolume()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"MS-DOS FAT"_s);
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->node = u"/dev/sdb1"_s;
    volume->description->insert(DAKey::mediaRemovable, true);
    mount(test, volume);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    QCOMPARE(panel.infoNameLabel->text(), u"DATA"_s);
    QCOMPARE(panel.infoDiskSpaceLabel->text(), u"40 MB free of 100 MB"_s);
    QCOMPARE(panel.infoDiskSpaceLabel->toolTip(), u"40 000 000 bytes free of 100 000 000 bytes"_s);
    QVERIFY(panel.infoMountedPathView->toPlainText().contains(u"/media/A"_s));
    QCOMPARE(panel.filesystemLabel->text(), u"MS-DOS FAT"_s);
    QCOMPARE(panel.bsdNameLabel->text(), u"disk2s1"_s);
    QVERIFY(panel.bsdNameLabel->toolTip().contains(u"/dev/sdb1"_s));
    QCOMPARE(panel.wholeDeviceLabel->text(), u"No"_s);
    QCOMPARE(panel.removableLabel->text(), u"Yes"_s);
    QCOMPARE(panel.ejectableLabel->text(), u"No"_s);
    QCOMPARE(panel.contentHintLabel->text(), u"DOS_FAT_32"_s);
    QCOMPARE(panel.preferredBlockSizeLabel->text(), u"512 bytes"_s);
    QCOMPARE(panel.mountUnmountButton->text(), localizedString("UNMOUNT_BUTTON_TITLE"));
    QVERIFY(!panel.infoBigImageField->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(panel.infoNameLabel->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    QCOMPARE(panel.formatVolumeLabelField->text(), u"DATA"_s);
    QCOMPARE(panel.rightTabView->widget(1), panel.formatTab);
    QCOMPARE(panel.rightTabView->widget(2), panel.maintenanceTab);
    for (const QWidget *control : { static_cast<QWidget *>(panel.mountUnmountButton),
             static_cast<QWidget *>(panel.formatFilesystemsPopupButton),
             static_cast<QWidget *>(panel.formatVolumeLabelField), static_cast<QWidget *>(panel.formatButton),
             static_cast<QWidget *>(panel.checkButton), static_cast<QWidget *>(panel.repairButton) })
        QVERIFY2(control->isEnabled(), qPrintable(control->objectName()));
}

void TestPanel::missingValues()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024);
    volume->description->remove(DAKey::mediaSize);
    test.add(volume);
    const DiskRecord record = test.recordOf(u"disk2s1"_s);
    QVERIFY(record);
    record->content.reset();
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().infoNameLabel->text(), u"disk2s1"_s);
    QCOMPARE(test.controller().infoDiskSpaceLabel->text(), QString());
    QCOMPARE(test.controller().infoDiskSpaceLabel->toolTip(), QString());
    QCOMPARE(test.controller().filesystemLabel->text(), QString());
    QCOMPARE(test.controller().contentHintLabel->text(), u"(null)"_s);
    QCOMPARE(test.controller().formatVolumeLabelField->text(), QString());
}

void TestPanel::freeSpaceThatIsUnknownIsLeftOut()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume);
    test.mountTable->freeSpaces["/media/A"] = -1;
    test.add(volume);
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().infoDiskSpaceLabel->text(), u"100 MB"_s);
    QCOMPARE(test.controller().infoDiskSpaceLabel->toolTip(), u"100 000 000 bytes"_s);
}

void TestPanel::failingFreeSpaceIsLogged()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume);
    test.mountTable->freeSpaceError = EIO;
    test.add(volume);
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().infoDiskSpaceLabel->text(), u"100 MB"_s);
    QVERIFY(test.log.lines().contains(
        u"getattrlist returned error for \"/media/A\": %1 (5)"_s.arg(errnoText(EIO))));
}

void TestPanel::subtypeOfTheMountTableNamesTheVolume()
{
    TestController test;
    writeFatBundle(test.localDirectory(), 2);
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume, 2);
    test.add(volume);
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().filesystemLabel->text(), u"FAT32"_s);
    QCOMPARE(test.recordOf(u"disk2s1"_s)->subtype, 2);
    test.mountTable->mounted.front().subtype = 0xFFFE;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(test.recordOf(u"disk2s1"_s)->subtype, -2);
    QCOMPARE(test.controller().filesystemLabel->text(), u"Plain"_s);
}

void TestPanel::subtypeIsKeptWhenTheVolumeIsNotFound()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume, 2);
    test.add(volume);
    test.select(u"disk2s1"_s);
    test.mountTable->mounted.clear();
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(test.recordOf(u"disk2s1"_s)->subtype, 2);
    QCOMPARE(test.controller().infoDiskSpaceLabel->text(), u"100 MB"_s);
}

void TestPanel::rowAsksForTheSubtypeAsThePanelDoes()
{
    TestController test;
    writeFatBundle(test.localDirectory(), 3);
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->subtype = 3;
    const DiskRecord record = test.add(volume);
    test.controller().leftOutlineView->selectRow(-1);
    const auto rowText = [&] {
        return test.controller().outlineView_accessibleTextByItem(test.controller().leftOutlineView, record);
    };
    QCOMPARE(rowText(), u"DATA, Plain, not mounted"_s);
    mount(test, volume);
    test.service.changeDisk(volume);
    QCOMPARE(rowText(), u"DATA, FAT32, mounted"_s);
    QCOMPARE(record->subtype, 0); // the panel's own
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().filesystemLabel->text(), u"FAT32"_s);
    QCOMPARE(test.controller().infoBigImageField->accessibleDescription(), rowText());
}

void TestPanel::contentThatIsNoFilesystem_data()
{
    using Kind = ProbedContent::Kind;
    QTest::addColumn<QString>("language");
    QTest::addColumn<ProbedContent::Kind>("kind");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << u"en"_s << Kind::Nothing << QString() << QString();
    QTest::newRow("encrypted") << u"en"_s << Kind::Encrypted << u"crypto_LUKS"_s << u"encrypted"_s;
    QTest::newRow("LVM") << u"en"_s << Kind::LvmMember << u"LVM2_member"_s << u"LVM member"_s;
    QTest::newRow("RAID") << u"en"_s << Kind::RaidMember << u"linux_raid_member"_s << u"RAID member"_s;
    QTest::newRow("swap") << u"en"_s << Kind::Swap << u"swap"_s << u"swap space"_s;
    QTest::newRow("swap in German") << u"de"_s << Kind::Swap << u"swap"_s << u"Auslagerungsspeicher"_s;
    QTest::newRow("something else") << u"en"_s << Kind::Other << u"jbd"_s << u"jbd"_s;
}

void TestPanel::contentThatIsNoFilesystem()
{
    QFETCH(const QString, language);
    QFETCH(const ProbedContent::Kind, kind);
    QFETCH(const QString, type);
    QFETCH(const QString, text);
    TestController test(language);
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024);
    volume->content = { kind, type };
    test.add(volume);
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().filesystemLabel->text(), text);
    QCOMPARE(test.controller().rightTabView->indexOf(test.controller().formatTab), 1);
    QVERIFY(!test.controller().checkButton->isEnabled() && !test.controller().repairButton->isEnabled());
}

void TestPanel::unknownKindIsShownAsItIs()
{
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().filesystemLabel->text(), u"msdos"_s);
    QVERIFY(!test.controller().checkButton->isEnabled());
}

void TestPanel::diskWithPartitions()
{
    for (const bool isInternal : { false, true }) {
        TestController test;
        test.launch();
        const MemoryDiskRef disk = makeDisk(u"disk2"_s);
        disk->description->insert(DAKey::mediaLeaf, false);
        disk->description->insert(DAKey::deviceInternal, isInternal);
        test.add(disk);
        test.select(u"disk2"_s);
        const auto &panel = test.controller();
        QCOMPARE(panel.mountUnmountButton->text(), localizedString("EJECT_BUTTON_TITLE"));
        QCOMPARE(panel.mountUnmountButton->isEnabled(), !isInternal);
        QVERIFY(!panel.formatButton->isEnabled() && !panel.checkButton->isEnabled()
            && !panel.repairButton->isEnabled());
        QCOMPARE(panel.rightTabView->count(), 1);
        QCOMPARE(panel.wholeDeviceLabel->text(), u"Yes"_s);
    }
}

void TestPanel::readOnlyVolumeCanBeChecked()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->description->insert(DAKey::mediaWritable, false);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    QVERIFY(panel.checkButton->isEnabled());
    QVERIFY(!panel.repairButton->isEnabled() && !panel.formatButton->isEnabled());
    QCOMPARE(panel.rightTabView->indexOf(panel.formatTab), -1);
    QCOMPARE(panel.rightTabView->indexOf(panel.maintenanceTab), 1);
}

void TestPanel::deselectingKeepsTheBigIcon()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    const qint64 icon = panel.infoBigImageField->pixmap(Qt::ReturnByValue).cacheKey();
    const qint64 buttonIcon = panel.mountUnmountButton->icon().cacheKey();
    QVERIFY(!panel.mountUnmountButton->icon().isNull());
    panel.leftOutlineView->selectRow(-1);
    QCOMPARE(panel.infoBigImageField->pixmap(Qt::ReturnByValue).cacheKey(), icon);
    QCOMPARE(panel.mountUnmountButton->icon().cacheKey(), buttonIcon);
    QCOMPARE(panel.infoNameLabel->text(), localizedString("SELECT_A_DISK_TEXT"));
    QCOMPARE(panel.infoNameLabel->textInteractionFlags(), Qt::NoTextInteraction);
    for (const QLabel *label : { panel.infoDiskSpaceLabel, panel.filesystemLabel, panel.bsdNameLabel,
             panel.wholeDeviceLabel, panel.removableLabel, panel.contentHintLabel, panel.ejectableLabel,
             panel.preferredBlockSizeLabel }) {
        QCOMPARE(label->text(), QString());
        QCOMPARE(label->toolTip(), QString());
    }
    QCOMPARE(panel.infoMountedPathView->toPlainText(), QString());
    QCOMPARE(panel.checkRepairOutputView->toPlainText(), QString());
    QCOMPARE(panel.mountUnmountButton->text(), localizedString("MOUNT_BUTTON_TITLE"));
    QVERIFY(!panel.mountUnmountButton->isEnabled() && !panel.formatFilesystemsPopupButton->isEnabled()
        && !panel.formatVolumeLabelField->isEnabled() && !panel.formatButton->isEnabled()
        && !panel.checkButton->isEnabled() && !panel.repairButton->isEnabled());
    QCOMPARE(panel.rightTabView->count(), 1);
}

void TestPanel::clickOnEmptySpaceDeselects()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk2"_s));
    test.select(u"disk2"_s);
    const OutlineView *const view = test.controller().leftOutlineView;
    QTest::mouseClick(
        view->viewport(), Qt::LeftButton, {}, view->viewport()->rect().bottomRight() - QPoint(20, 20));
    QCOMPARE(view->selectedRow(), -1);
    QCOMPARE(test.controller().infoNameLabel->text(), localizedString("SELECT_A_DISK_TEXT"));
}

void TestPanel::labelFieldIsNotTouchedWhileBusy()
{
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    test.controller().formatVolumeLabelField->setText(u"typed"_s);
    test.recordOf(u"disk2s1"_s)->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(test.controller().formatVolumeLabelField->text(), u"typed"_s);
    test.recordOf(u"disk2s1"_s)->operationInProgress = false;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(test.controller().formatVolumeLabelField->text(), u"DATA"_s);
}

void TestPanel::longNamesDoNotWidenTheWindow()
{
    TestController test;
    test.launch();
    const QString name = u"W"_s.repeated(1000);
    const MemoryDiskRef volume = makeVolume(name);
    volume->description->insert(DAKey::volumeKind, name);
    volume->description->insert(DAKey::mediaContent, name);
    setMounted(volume, QString(u"/media/"_s + name));
    test.add(volume);
    test.select(u"disk2s1"_s);
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    QCOMPARE(test.window().centralWidget()->size(), QSize(800, 450));
    QVERIFY(test.window().minimumSizeHint().width() <= 720);
    QCOMPARE(test.controller().outlineViewContainer->width(), 232);
}

void TestPanel::hostileNamesArePlain()
{
    TestController test;
    test.launch();
    const QString name = u"<b>x</b> & %1"_s;
    test.add(makeVolume(name));
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().infoNameLabel->text(), name);
    QCOMPARE(test.controller().infoNameLabel->textFormat(), Qt::PlainText);
    QCOMPARE(test.controller().filesystemLabel->textFormat(), Qt::PlainText);
}

void TestPanel::menuFollowsTheSelectedSize()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"aaa"_s, u"Any"_s);
    writeWholeBundle(test.localDirectory(), u"bbb"_s, u"Large"_s,
        "<key>FSFormatMinimumSize</key><integer>1000000000</integer>");
    test.launch();
    QComboBox *const menu = test.controller().formatFilesystemsPopupButton;
    const auto isEnabled = [menu](int row) {
        return qobject_cast<QStandardItemModel *>(menu->model())->item(row)->isEnabled();
    };
    QCOMPARE(menu->count(), 2);
    QCOMPARE(menu->currentIndex(), -1);
    QVERIFY(isEnabled(0) && isEnabled(1));
    test.add(makeDisk(u"disk3"_s));
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk3"_s);
    menu->setCurrentIndex(1);
    test.select(u"disk2s1"_s);
    QVERIFY(isEnabled(0) && !isEnabled(1));
    QCOMPARE(menu->currentIndex(), 0);
    // The title is as it was; the reason is at the end of the row, in the tip and spoken.
    QCOMPARE(menu->itemText(1), u"Large"_s);
    for (const int role : { Qt::ToolTipRole, Qt::AccessibleDescriptionRole }) {
        QCOMPARE(menu->itemData(1, role).toString(), u"for volumes of 1 GB or more"_s);
        QCOMPARE(menu->itemData(0, role).toString(), QString());
    }
    QVERIFY(menu->view()->sizeHintForColumn(0)
        > menu->fontMetrics().horizontalAdvance(u"Largefor volumes of 1 GB or more"_s) * 12 / 13);
    test.controller().leftOutlineView->selectRow(-1);
    QVERIFY(isEnabled(1));
    QCOMPARE(menu->itemData(1, Qt::AccessibleDescriptionRole).toString(), QString());
    QCOMPARE(menu->currentIndex(), 0);
}

void TestPanel::menuStaysWhenTheBundlesCannotBeRead()
{
    TestController test;
    bool hasMemory = true;
    test.platform().catalogueMemory.createList
        = [&hasMemory](std::size_t capacity) -> std::optional<FilesystemBundleList> {
        return hasMemory ? CatalogueMemory::createFilesystemBundleList(capacity) : std::nullopt;
    };
    writeWholeBundle(test.localDirectory(), u"aaa"_s, u"Any"_s);
    test.launch();
    QComboBox *const menu = test.controller().formatFilesystemsPopupButton;
    menu->setCurrentIndex(0);
    hasMemory = false;
    test.controller().refreshFilesystems();
    QCOMPARE(test.log.lines(), QStringList { u"Error while creating filesystem bundle lists."_s });
    QCOMPARE(menu->count(), 1);
    QCOMPARE(menu->currentIndex(), 0);
}

void TestPanel::outputHasTheFixedPitchFont()
{
    const QFont before = QApplication::font();
    const auto restore = qScopeGuard([&before] { QApplication::setFont(before); });
    QFont text = before;
    text.setPointSizeF(26);
    QApplication::setFont(text);
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    const auto outputFont = [&test] { return test.controller().checkRepairOutputView->font(); };
    test.select(u"disk2s1"_s);
    QVERIFY(outputFont().pointSizeF() > 23); // nothing is set where there is no output
    test.recordOf(u"disk2s1"_s)->checkRepairOutput.emplace();
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(outputFont().family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    QCOMPARE(outputFont().pointSizeF(), 22.0); // 11 of 13
    QCOMPARE(outputFont().weight(), QFont::Normal);
    // It follows the text.
    text.setPointSizeF(13);
    QApplication::setFont(text);
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(outputFont().pointSizeF(), 11.0);
}

void TestPanel::rowHasTheSmallIconAndThePanelTheBigOne_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("small");
    QTest::addColumn<QString>("big");
    QTest::newRow("other") << u"msdos"_s << u"drive_icon.png"_s << u"drive_icon_big.png"_s;
    QTest::newRow("own") << u"zorvex_exfat"_s << u"drive_icon_zvx.png"_s << u"drive_icon_big.png"_s;
    QTest::newRow("own NTFS") << u"zorvex_ntfs"_s << u"drive_icon_zvx.png"_s << u"drive_icon_zvx_big.png"_s;
}

void TestPanel::rowHasTheSmallIconAndThePanelTheBigOne()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, small);
    QFETCH(const QString, big);
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->description->insert(DAKey::volumeKind, kind);
    const DiskRecord record = test.add(volume);
    test.select(u"disk2s1"_s);
    OutlineView *const view = test.controller().leftOutlineView;
    QCOMPARE(pictureOf(view->preparedCell(record)->image().value_or(QPixmap())), pictureFile(small));
    QCOMPARE(pictureOf(test.controller().infoBigImageField->pixmap(Qt::ReturnByValue)), pictureFile(big));
}

void TestPanel::pictureOfTheButton()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume);
    test.add(volume);
    const auto picture = [&test] {
        return pictureOf(test.controller().mountUnmountButton->icon().pixmap(QSize(16, 16), 1));
    };
    QVERIFY(pictureFile(u"drive_mount.png"_s) != pictureFile(u"drive_unmount.png"_s));
    test.select(u"disk2s1"_s);
    QCOMPARE(picture(), pictureFile(u"drive_unmount.png"_s));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(picture(), pictureFile(u"drive_mount.png"_s));
    test.select(u"disk2"_s); // which is ejected
    QCOMPARE(picture(), pictureFile(u"drive_unmount.png"_s));
}

void TestPanel::missingImageIsNone()
{
    TestController test;
    test.launch();
    QVERIFY(test.controller().getImageNamed(u"drive_icon.png"_s));
    QVERIFY(!test.controller().getImageNamed(u"drive_icon_other.png"_s));
}

void TestPanel::nameOfAMedium_data()
{
    QTest::addColumn<std::optional<QString>>("volume");
    QTest::addColumn<std::optional<QString>>("media");
    QTest::addColumn<QString>("name");
    using Name = std::optional<QString>;
    QTest::newRow("volume") << Name(u"DATA"_s) << Name(u"Stick"_s) << u"DATA"_s;
    QTest::newRow("no volume") << Name() << Name(u"Stick"_s) << u"Stick"_s;
    QTest::newRow("volume without a name") << Name(QString()) << Name(u"Stick"_s) << u"Stick"_s;
    QTest::newRow("neither") << Name() << Name() << u"disk2s1"_s;
    QTest::newRow("neither has a name") << Name(QString()) << Name(QString()) << u"disk2s1"_s;
}

void TestPanel::nameOfAMedium()
{
    QFETCH(const std::optional<QString>, volume);
    QFETCH(const std::optional<QString>, media);
    ZorvexDiskManagerDisk disk;
    disk.volumeName = volume;
    disk.mediaName = media;
    disk.bsdName = u"disk2s1"_s;
    QTEST(ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(disk), "name");
}

void TestPanel::volumeDataThatIsNotAskedForIsNotRead()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume, 0xFFFE);
    const DiskRecord record = test.add(volume);
    qint16 subtype = 0;
    QVERIFY(test.controller().getVolumeData(*record, nullptr, &subtype));
    QCOMPARE(subtype, qint16 { -2 });
    QVERIFY(test.mountTable->queriedPaths.empty());
    QVERIFY(test.controller().getVolumeData(*record, nullptr, nullptr));
    qint64 freeSpace = 0;
    QVERIFY(test.controller().getVolumeData(*record, &freeSpace, nullptr));
    QCOMPARE(freeSpace, qint64 { 40'000'000 });
}

void TestPanel::tabStaysWhenAnotherVolumeIsSelected()
{
    TestController test;
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.add(makePartition(u"disk2s2"_s, 2048, u"MORE"_s));
    const auto &panel = test.controller();
    for (QWidget *const tab : { panel.infoTab, panel.formatTab, panel.maintenanceTab }) {
        test.select(u"disk2s1"_s);
        panel.rightTabView->setCurrentWidget(tab);
        test.select(u"disk2s2"_s);
        QCOMPARE(panel.bsdNameLabel->text(), u"disk2s2"_s);
        QCOMPARE(panel.rightTabView->currentWidget(), tab);
    }
}

void TestPanel::disabledButtonsSayWhy()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.launch();
    const auto &panel = test.controller();
    QCOMPARE(panel.mountUnmountButton->toolTip(), localizedString("SELECT_A_DISK_TEXT"));
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::deviceInternal, true);
    test.add(disk);
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->description->insert(DAKey::mediaWritable, false);
    test.add(volume);
    test.select(u"disk2"_s);
    QCOMPARE(panel.mountUnmountButton->toolTip(), localizedString("REASON_INTERNAL_TEXT"));
    QCOMPARE(panel.mountUnmountButton->accessibleDescription(), panel.mountUnmountButton->toolTip());
    QCOMPARE(test.action(u"actionCheck"_s)->toolTip(), localizedString("REASON_PARTITIONS_TEXT"));
    test.select(u"disk2s1"_s);
    QCOMPARE(panel.mountUnmountButton->toolTip(), QString());
    QCOMPARE(panel.checkButton->toolTip(), QString());
    QCOMPARE(panel.repairButton->toolTip(), localizedString("REASON_READ_ONLY_TEXT"));
    panel.mountUnmountButton->click();
    QCOMPARE(panel.mountUnmountButton->toolTip(), localizedString("REASON_BUSY_TEXT"));
    test.service.completeRequest();
}

void TestPanel::mapShowsTheVolumesOfADisk()
{
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 1'000'000'000 }));
    test.add(disk);
    test.add(makeVolume(u"DATA"_s));
    test.add(makePartition(u"disk2s2"_s, 2048, u"MORE"_s));
    test.select(u"disk2"_s);
    const auto &panel = test.controller();
    QVERIFY(panel.infoUsageBar->isHidden() && !panel.infoDiskMap->isHidden());
    QCOMPARE(panel.infoDiskMap->parts().size(), std::size_t { 3 }); // and what belongs to none
    QCOMPARE(panel.infoStatusLabel->text(), u"Volumes: 2, mounted: 0. 800 MB belong to no volume."_s);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    const QList<DiskMapPart *> parts = panel.infoDiskMap->findChildren<DiskMapPart *>();
    QCOMPARE(QAccessible::queryAccessibleInterface(panel.infoDiskMap)->role(), QAccessible::List);
    QCOMPARE(QAccessible::queryAccessibleInterface(parts[0])->role(), QAccessible::ListItem);
    QVERIFY(parts[2]->width() > parts[0]->width());
    parts[0]->setFocus();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), parts[1]);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Return);
    QCOMPARE(panel.infoNameLabel->text(), u"MORE"_s);
    test.select(u"disk2"_s);
    QTest::mouseClick(panel.infoDiskMap->findChildren<DiskMapPart *>()[0], Qt::LeftButton);
    QCOMPARE(panel.infoNameLabel->text(), u"DATA"_s);
}

void TestPanel::usageIsABarAndASentence()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    mount(test, volume);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    QCOMPARE(panel.infoUsageBar->value(), 60);
    QCOMPARE(panel.infoStatusLabel->text(), u"60 MB used (60%)"_s);
    QCOMPARE(panel.infoUsageBar->accessibleName(), panel.infoStatusLabel->text());
    test.mountTable->freeSpaces["/media/A"] = 5'000'000;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(panel.infoStatusLabel->text(), u"95 MB used (95%), almost full"_s);
    test.mountTable->freeSpaces["/media/A"] = -1;
    test.controller().outlineViewSelectionDidChange();
    QVERIFY(panel.infoUsageBar->isUnknown());
    QCOMPARE(panel.infoStatusLabel->text(), localizedString("STATUS_SPACE_UNKNOWN_TEXT"));
}

void TestPanel::sentenceOfAnUnmountedVolume()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->description->insert(DAKey::mediaContent, u"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"_s);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    QVERIFY(panel.infoUsageBar->isUnknown());
    QCOMPARE(panel.infoStatusLabel->text(), localizedString("STATUS_NOT_MOUNTED_TEXT"));
    QCOMPARE(panel.mountedPathGloss->text(), u"not mounted"_s);
    QCOMPARE(panel.contentGloss->text(), u"Basic data"_s);
    QVERIFY(panel.contentHintLabel->isVisible());
    volume->description->insert(DAKey::mediaContent, QString());
    test.service.changeDisk(volume);
    QCOMPARE(panel.contentGloss->text(), u"none"_s);
    QVERIFY(!panel.contentHintLabel->isVisible()); // the gloss stands in its place
    QVERIFY(panel.goToFormatLink->isHidden());
    const MemoryDiskRef blank = makePartition(u"disk2s2"_s, 2048);
    test.add(blank);
    test.select(u"disk2s2"_s);
    QVERIFY(!panel.goToFormatLink->isHidden());
    Q_EMIT panel.goToFormatLink->linkActivated({});
    QCOMPARE(panel.rightTabView->currentWidget(), panel.formatTab);
}

void TestPanel::labelLimitFollowsTheFilesystem()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"exfat"_s, u"exFAT"_s);
    writeWholeBundle(test.localDirectory(), u"other"_s, u"Other"_s);
    test.launch();
    test.add(makeVolume(u"DATA"_s));
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    QCOMPARE(panel.formatVolumeLabelField->placeholderText(), u"Untitled"_s);
    QComboBox *const popup = panel.formatFilesystemsPopupButton;
    popup->setCurrentIndex(popup->findText(u"exFAT"_s));
    QCOMPARE(panel.formatRemarkLabel->text(), localizedString("INVALID_EXFAT_VOLUME_NAME_TEXT"));
    popup->setCurrentIndex(popup->findText(u"Other"_s));
    QCOMPARE(panel.formatRemarkLabel->text(), QString());
}

void TestPanel::missingPackagesAreNamed()
{
    TestController test;
    writeBundle(test.localDirectory(), u"slow"_s, R"(
        <key>CFBundleIdentifier</key><string>org.test.slow</string>
        <key>FSLinuxTools</key><array><string>mkfs.slow</string><string>fsck.slow</string></array>
        <key>FSLinuxPackages</key><array><string>slow-progs</string></array>
        <key>FSPersonalities</key><dict><key>Slow</key><dict>
            <key>FSName</key><string>Slow</string>
            <key>FSFormatExecutable</key><string>format</string>
            <key>FSVerificationExecutable</key><string>verify</string>
            <key>FSRepairExecutable</key><string>repair</string>
        </dict></dict>)");
    test.launch();
    const MemoryDiskRef volume = makeVolume(u"DATA"_s);
    volume->description->insert(DAKey::volumeKind, u"slow"_s);
    test.add(volume);
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    panel.formatFilesystemsPopupButton->setCurrentText(u"Slow"_s);
    QCOMPARE(panel.formatRemarkLabel->text(), QString());
    QCOMPARE(panel.checkButton->toolTip(), QString());

    test.absentTools = { u"fsck.slow"_s };
    test.action(u"actionRefresh"_s)->trigger();
    const QString sentence = u"Needs a package that is not installed: slow-progs."_s;
    QCOMPARE(panel.formatRemarkLabel->text(), sentence);
    for (const QPushButton *button : { panel.checkButton, panel.repairButton }) {
        QVERIFY(button->isEnabled());
        QCOMPARE(button->toolTip(), sentence);
        QCOMPARE(button->accessibleDescription(), sentence);
    }
}

QTEST_MAIN(TestPanel)
#include "tst_panel.moc"
