// SPDX-License-Identifier: MIT
//
// The right-hand side of the window: rebuilt whole from the selected disk, and nowhere else.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/direction_rules.h"
#include "ui/font_rules.h"
#include "ui/icon_rules.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/panel_rules.h"

#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include <array>

using namespace Qt::Literals::StringLiterals;

struct ZorvexDiskManagerAppDelegate::PanelTexts
{
    QString name;
    QString space;
    QString spaceToolTip;
    std::optional<qint64> freeSpace; // bytes
    QString filesystem;
    QString bsdName;
    QString deviceNode;
    QString deviceNodeToolTip; // of the BSD name
    QString wholeDevice;
    QString removable;
    QString contentHint;
    QString ejectable;
    QString preferredBlockSize;
};

namespace {

QString yesOrNo(qint32 value)
{
    return localizedString(value ? "BOOLEAN_VALUE_YES_TEXT" : "BOOLEAN_VALUE_NO_TEXT");
}

void setSelectable(QLabel *label, bool selectable)
{
    label->setTextInteractionFlags(
        selectable ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard : Qt::NoTextInteraction);
}

// A value that can be selected can be reached with Tab, an empty one is passed by.
void setValue(QLabel *label, const QString &text)
{
    label->setText(text);
    const bool isSelectable = label->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(isSelectable && !text.isEmpty() ? Qt::StrongFocus : Qt::NoFocus);
}

FontRules::FontSource systemFonts()
{
    return {
        [](int pointSize) -> std::optional<QFont> {
            QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
            font.setWeight(QFont::Normal);
            return FontRules::withPointSize(font, pointSize, QApplication::font());
        },
        [](const QString &name, int pointSize) -> std::optional<QFont> {
            if (!QFontDatabase::hasFamily(name))
                return std::nullopt;
            return FontRules::withPointSize(QFont(name), pointSize, QApplication::font());
        },
    };
}

} // namespace

void ZorvexDiskManagerAppDelegate::outlineViewSelectionIsChanging()
{
}

QString ZorvexDiskManagerAppDelegate::filesystemTextOf(
    const ZorvexDiskManagerDisk &disk, qint32 subtype) const
{
    if (!disk.volumeKind) {
        const ProbedContent content = disk.daDisk ? disk.daDisk->probedContent() : ProbedContent();
        const char *const key = PanelRules::contentKey(content.kind);
        return key ? localizedString(key) : nameToShow(content.type);
    }
    const ZorvexDiskManagerFSBundle *bundle
        = PanelRules::namingBundle(*disk.volumeKind, subtype, allFilesystemBundlesList);
    return nameToShow(bundle ? getFilesystemTypeString(*bundle) : *disk.volumeKind);
}

QString ZorvexDiskManagerAppDelegate::leftToRightInWindow(const QString &text) const
{
    return isRightToLeftLocalization() ? DirectionRules::leftToRight(text) : text;
}

QString ZorvexDiskManagerAppDelegate::deviceNodeTextOf(const ZorvexDiskManagerDisk &disk) const
{
    const QString node = disk.deviceNode();
    return node.isEmpty() ? QString()
                          : formatLocalized(localizedString("DEVICE_NODE_TOOL_TIP_FMT"), { node });
}

ZorvexDiskManagerAppDelegate::PanelTexts ZorvexDiskManagerAppDelegate::textsOf(ZorvexDiskManagerDisk &disk)
{
    qint64 freeSpace = 0;
    bool hasFreeSpace = false;
    if (disk.volumePath) {
        qint16 subtype = 0;
        if (getVolumeData(disk, &freeSpace, &subtype)) {
            hasFreeSpace = freeSpace != -1; // all ones: not known
            disk.subtype = subtype;
        }
    }

    PanelTexts texts;
    texts.name = getDisplayNameForDisk(disk);
    if (hasFreeSpace)
        texts.freeSpace = freeSpace;
    if (disk.mediaSize) {
        const qint64 size = disk.mediaSize->longLongValue();
        const qint64 *const space = hasFreeSpace ? &freeSpace : nullptr;
        texts.space = getDiskSpaceStringWithDiskSize(size, space);
        texts.spaceToolTip = getAlternateDiskSpaceStringWithDiskSize(size, space);
        if (isRightToLeftLocalization())
            texts.spaceToolTip = DirectionRules::withGroupedNumbersKept(texts.spaceToolTip);
    }
    texts.filesystem = filesystemTextOf(disk, disk.subtype);
    texts.bsdName = disk.description();
    texts.deviceNode = disk.deviceNode();
    texts.deviceNodeToolTip = deviceNodeTextOf(disk);
    texts.wholeDevice = yesOrNo(disk.whole);
    texts.removable = yesOrNo(disk.removable);
    texts.ejectable = yesOrNo(disk.ejectable);
    texts.contentHint = disk.content.value_or(u"(null)"_s);
    texts.preferredBlockSize
        = QString::number(disk.preferred_block_size) + u' ' + localizedString("BYTES_TEXT");
    return texts;
}

void ZorvexDiskManagerAppDelegate::showOutputOf(const ZorvexDiskManagerDisk &disk)
{
    checkRepairOutputView->setPlaceholderText(
        localizedString(disk.runningOperation == RunningOperation::Repair ? "OUTPUT_PLACEHOLDER_REPAIR_TEXT"
                                                                          : "OUTPUT_PLACEHOLDER_TEXT"));
    if (!disk.checkRepairOutput) {
        checkRepairOutputView->setOutput({});
        return;
    }
    const auto font = FontRules::outputFont(systemFonts());
    if (font && checkRepairOutputView->font() != *font)
        checkRepairOutputView->setFont(*font);
    checkRepairOutputView->setOutput(disk.checkRepairOutput->bytes());
}

void ZorvexDiskManagerAppDelegate::showMountPathOf(const ZorvexDiskManagerDisk *disk)
{
    infoMountedPathView->setVisible(disk && disk->volumePath);
    if (disk && disk->volumePath) {
        makeHyperlink(infoMountedPathView, disk->volumePath->toLocalFile(), *disk->volumePath);
        infoMountedPathView->setAccessibleDescription(localizedString("MOUNT_PATH_LINK_DESCRIPTION"));
    } else {
        infoMountedPathView->clearLink();
        infoMountedPathView->setAccessibleDescription({});
    }
}

bool ZorvexDiskManagerAppDelegate::enableControls(const ZorvexDiskManagerDisk &disk)
{
    const PanelRules::Abilities abilities
        = PanelRules::abilitiesOf(disk, checkFilesystemBundlesList, repairFilesystemBundlesList);
    mountUnmountButton->setEnabled(abilities.mountUnmount);
    formatFilesystemsPopupButton->setEnabled(abilities.format);
    formatVolumeLabelField->setEnabled(abilities.format);
    formatButton->setEnabled(abilities.format);
    checkButton->setEnabled(abilities.check);
    repairButton->setEnabled(abilities.repair);
    if (!disk.operationInProgress)
        formatVolumeLabelField->setText(disk.volumeName.value_or(QString()));
    return abilities.format;
}

void ZorvexDiskManagerAppDelegate::disableControls()
{
    mountUnmountButton->setEnabled(false);
    formatFilesystemsPopupButton->setEnabled(false);
    formatVolumeLabelField->setEnabled(false);
    formatButton->setEnabled(false);
    checkButton->setEnabled(false);
    repairButton->setEnabled(false);
}

void ZorvexDiskManagerAppDelegate::updateTabs(const ZorvexDiskManagerDisk *disk, bool canFormat)
{
    using PanelRules::TabChange;
    struct OptionalTab
    {
        QWidget *page;
        const char *titleKey;
        TabChange change;
    };
    // In the order in which they stand, behind the tab that is always there.
    const std::array tabs {
        OptionalTab { formatTab, QT_TRID_NOOP("FORMAT_TAB_TITLE"),
            disk ? PanelRules::formatTabChange(*disk, canFormat) : TabChange::Remove },
        OptionalTab { maintenanceTab, QT_TRID_NOOP("MAINTENANCE_TAB_TITLE"),
            disk ? PanelRules::maintenanceTabChange(*disk) : TabChange::Remove },
    };
    const auto placeOf = [this](const OptionalTab &tab) { return rightTabView->indexOf(tab.page); };
    for (auto tab = tabs.rbegin(); tab != tabs.rend(); ++tab) {
        if (tab->change == TabChange::Remove && placeOf(*tab) >= 0)
            rightTabView->removeTab(placeOf(*tab));
    }
    int place = rightTabView->indexOf(infoTab) + 1;
    for (const OptionalTab &tab : tabs) {
        if (tab.change == TabChange::Insert && placeOf(tab) < 0)
            rightTabView->insertTab(place, tab.page, localizedString(tab.titleKey));
        if (placeOf(tab) >= 0)
            ++place;
    }
}

void ZorvexDiskManagerAppDelegate::outlineViewSelectionDidChange()
{
    const DiskRecord disk = selectedDisk();
    PanelTexts texts;
    bool canFormat = false;
    setSelectable(infoNameLabel, disk != nullptr);
    setSelectable(infoDiskSpaceLabel, disk != nullptr);
    // A name may be cut, the hint what to do first may not.
    infoNameLabel->setWordWrap(!disk);
    infoDiskSpaceLabel->setVisible(disk != nullptr);
    m_status.showAsEmpty(!disk);
    if (disk) {
        texts = textsOf(*disk);
        showBigImage(IconRules::diskIconName(disk->volumeKind, true));
        infoBigImageField->setAccessibleDescription(rowTextOf(*disk, texts.filesystem));
        mountUnmountButton->setText(localizedString(PanelRules::buttonTitleKey(*disk)));
        setMountImageWithIsUnmountable(PanelRules::isUnmountable(*disk));
        m_status.showStatusOf(*disk, texts.freeSpace);
        m_status.showGlossesOf(*disk, texts.filesystem);
        m_status.showHeadersOf(*disk, texts.filesystem);
        showOutputOf(*disk);
        canFormat = enableControls(*disk);
    } else {
        texts.name = localizedString("SELECT_A_DISK_TEXT");
        mountUnmountButton->setText(localizedString("MOUNT_BUTTON_TITLE"));
        infoBigImageField->setAccessibleDescription({}); // the image is that of the last disk
        checkRepairOutputView->setOutput({});
        disableControls();
    }

    setValue(infoNameLabel, texts.name);
    setValue(infoDiskSpaceLabel, texts.space);
    infoDiskSpaceLabel->setToolTip(texts.spaceToolTip);
    showMountPathOf(disk.get());
    updateTabs(disk.get(), canFormat);
    setValue(filesystemLabel, texts.filesystem);
    filesystemLabel->setVisible(!texts.filesystem.isEmpty()); // its gloss stands in its place
    setValue(bsdNameLabel, texts.bsdName);
    bsdNameLabel->setToolTip(texts.deviceNodeToolTip);
    setValue(deviceNodeLabel, texts.deviceNode);
    deviceNodeLabel->setAccessibleName(texts.deviceNodeToolTip);
    setValue(wholeDeviceLabel, texts.wholeDevice);
    setValue(removableLabel, texts.removable);
    setValue(contentHintLabel, texts.contentHint);
    contentHintLabel->setVisible(!texts.contentHint.isEmpty());
    setValue(ejectableLabel, texts.ejectable);
    setValue(preferredBlockSizeLabel, texts.preferredBlockSize);
    refreshFilesystems();
    m_status.showFormatRemark();
    m_status.showReasonsOf(disk.get());
    m_status.updateActivity();
    Q_EMIT panelDidChange(disk);
}
