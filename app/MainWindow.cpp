// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/WindowGrid.h"
#include "app/ZorvexDiskManagerAppDelegate.h"
#include "platform/Localization.h"
#include "ui/FlippedOutlineView.h"
#include "ui/ImageAndTextCell.h"
#include "ui/InterfaceStyle.h"
#include "ui/MenuToolTips.h"
#include "ui/panel_rules.h"
#include "ui/StatusRow.h"

#include "ui_MainWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QLayout>
#include <QMainWindow>
#include <QSessionManager>
#include <QShortcut>

#include <utility>

namespace {

constexpr int initialTreeWidth = 232;

// The mirrored layout uses another outline view than the plain one.
OutlineView *outlineViewFor(bool isRightToLeft, const Ui::MainWindow &ui)
{
    if (!isRightToLeft) {
        ui.leftOutlineView->setDataCell(std::make_unique<ImageAndTextCell>());
        return ui.leftOutlineView;
    }
    auto *flipped = new FlippedOutlineView(ui.outlineViewScrollContainer);
    flipped->setObjectName(ui.leftOutlineView->objectName());
    flipped->setAccessibleName(ui.leftOutlineView->accessibleName());
    flipped->setFrameShape(ui.leftOutlineView->frameShape());
    auto cell = std::make_unique<ImageAndTextCellFlipped>();
    flipped->setDataCell(std::move(cell));
    QWidget::setTabOrder(ui.leftOutlineView, flipped);
    delete ui.outlineViewScrollContainerLayout->replaceWidget(ui.leftOutlineView, flipped);
    delete ui.leftOutlineView;
    return flipped;
}

void setOutlets(ZorvexDiskManagerAppDelegate &controller, QMainWindow *window, const Ui::MainWindow &ui)
{
    controller.window = window;
    controller.mainSplitView = ui.mainSplitView;
    controller.rightTabView = ui.rightTabView;
    controller.infoTab = ui.infoTab;
    controller.formatTab = ui.formatTab;
    controller.maintenanceTab = ui.maintenanceTab;
    controller.leftOutlineView = outlineViewFor(controller.isRightToLeftLocalization(), ui);
    controller.outlineViewContainer = ui.outlineViewContainer;
    controller.outlineViewScrollContainer = ui.outlineViewScrollContainer;
    controller.mountUnmountButton = ui.mountUnmountButton;
    controller.infoBigImageField = ui.infoBigImageField;
    controller.infoNameLabel = ui.infoNameLabel;
    controller.infoDiskSpaceLabel = ui.infoDiskSpaceLabel;
    controller.infoPlaceLabel = ui.infoPlaceLabel;
    controller.infoColumn = ui.infoColumn;
    controller.infoHeaderLayout = ui.infoHeaderLayout;
    controller.infoDetails = ui.infoDetails;
    controller.infoUsageBar = ui.infoUsageBar;
    controller.infoDiskMap = ui.infoDiskMap;
    controller.infoStatusLabel = ui.infoStatusLabel;
    controller.goToFormatLink = ui.goToFormatCaption;
    controller.infoFormLayout = ui.infoFormLayout;
    controller.mountedPathGloss = ui.mountedPathGloss;
    controller.filesystemGloss = ui.filesystemGloss;
    controller.contentGloss = ui.contentGloss;
    controller.formatHeader = ui.formatHeader;
    controller.maintenanceHeader = ui.maintenanceHeader;
    controller.serviceCommandField = ui.serviceCommandField;
    controller.infoMountedPathView = ui.infoMountedPathView;
    controller.filesystemLabel = ui.filesystemLabel;
    controller.bsdNameLabel = ui.bsdNameLabel;
    controller.deviceNodeLabel = ui.deviceNodeLabel;
    controller.wholeDeviceLabel = ui.wholeDeviceLabel;
    controller.removableLabel = ui.removableLabel;
    controller.contentHintLabel = ui.contentHintLabel;
    controller.ejectableLabel = ui.ejectableLabel;
    controller.preferredBlockSizeLabel = ui.preferredBlockSizeLabel;
    controller.formatFilesystemsPopupButton = ui.formatFilesystemsPopupButton;
    controller.formatVolumeLabelField = ui.formatVolumeLabelField;
    controller.formatButton = ui.formatButton;
    controller.checkRepairOutputView = ui.checkRepairOutputView;
    controller.checkButton = ui.checkButton;
    controller.repairButton = ui.repairButton;
    controller.formatStatusRow = ui.formatStatusRow;
    controller.maintenanceStatusRow = ui.maintenanceStatusRow;
    controller.formatRemarkLabel = ui.formatRemarkLabel;
}

using Click = void (ZorvexDiskManagerAppDelegate::*)(QObject *sender);

void connectButton(QPushButton *button, ZorvexDiskManagerAppDelegate &controller, Click click)
{
    QObject::connect(button, &QPushButton::clicked, &controller,
        [button, &controller, click] { (controller.*click)(button); });
}

void connectAction(QAction *action, ZorvexDiskManagerAppDelegate &controller, Click click)
{
    QObject::connect(action, &QAction::triggered, &controller,
        [action, &controller, click] { (controller.*click)(action); });
}

// A menu item presses the button of the same name, on the page where the operation shows its progress.
void connectToButton(QAction *action, QPushButton *button, QTabWidget *tabs, QWidget *page)
{
    QObject::connect(action, &QAction::triggered, button, [button, tabs, page] {
        tabs->setCurrentWidget(page);
        button->click();
    });
}

// Formatting begins with the choice of a file system: its menu item leads there.
void connectFormatAction(const Ui::MainWindow &ui)
{
    QObject::connect(ui.actionFormat, &QAction::triggered, ui.formatTab, [ui] {
        ui.rightTabView->setCurrentWidget(ui.formatTab);
        ui.formatFilesystemsPopupButton->setFocus(Qt::ShortcutFocusReason);
    });
}

// A menu item can do what its button can do while the button's page is there.
void enableAsButton(QAction *action, const QPushButton *button, const QTabWidget *tabs, const QWidget *page)
{
    action->setEnabled(button->isEnabled() && tabs->indexOf(page) >= 0);
    action->setToolTip(button->toolTip());
}

// A menu item without a button, with the string key of the reason why it is disabled; null when it is not.
void enableUnlessReason(QAction *action, const char *reasonKey)
{
    action->setEnabled(!reasonKey);
    action->setToolTip(reasonKey ? localizedString(reasonKey) : QString());
}

// The item that ejects is left out where the one above it does so already.
void followDisk(QAction *eject, const ZorvexDiskManagerDisk *disk)
{
    eject->setVisible(!disk || !PanelRules::isEjectable(*disk));
    enableUnlessReason(eject, disk ? PanelRules::ejectReasonKey(*disk) : "SELECT_A_DISK_TEXT");
}

// What the menus offer for the disk that the panel shows.
void followPanel(
    const ZorvexDiskManagerAppDelegate &controller, const DiskRecord &disk, const Ui::MainWindow &ui)
{
    followDisk(ui.actionEject, disk.get());
    ui.actionMountUnmount->setText(ui.mountUnmountButton->text());
    enableAsButton(ui.actionMountUnmount, ui.mountUnmountButton, ui.rightTabView, ui.infoTab);
    enableAsButton(ui.actionFormat, ui.formatButton, ui.rightTabView, ui.formatTab);
    const QString deviceNode = disk ? disk->deviceNode() : QString();
    ui.actionCopyDevicePath->setData(deviceNode);
    ui.actionCopyDevicePath->setEnabled(!deviceNode.isEmpty());
    enableUnlessReason(
        ui.actionEraseDisk, disk ? controller.eraseDiskReasonKey(*disk) : "SELECT_A_DISK_TEXT");
    enableAsButton(ui.actionCheck, ui.checkButton, ui.rightTabView, ui.maintenanceTab);
    enableAsButton(ui.actionRepair, ui.repairButton, ui.rightTabView, ui.maintenanceTab);
}

void connectToPanel(const ZorvexDiskManagerAppDelegate &controller, const Ui::MainWindow &ui)
{
    QObject::connect(&controller, &ZorvexDiskManagerAppDelegate::panelDidChange, ui.rightTabView,
        [&controller, ui, shown = DiskRecord()](const DiskRecord &disk) mutable {
            followPanel(controller, disk, ui);
            // A menu that was opened for one disk does nothing to another.
            if (disk != std::exchange(shown, disk)) {
                ui.diskMenu->close();
                ui.rowMenu->close();
            }
        });
}

// The text with the focus copies or selects itself. A label does this only for a key press, so it is done
// here. A label without a selection is copied as a whole.
void connectEditAction(QAction *action, const char *slot, void (*onLabel)(QLabel *label) = nullptr)
{
    QObject::connect(action, &QAction::triggered, action, [slot, onLabel] {
        QWidget *const focused = QApplication::focusWidget();
        if (auto *label = qobject_cast<QLabel *>(focused)) {
            if (onLabel)
                onLabel(label);
        } else if (focused && focused->metaObject()->indexOfSlot(slot) >= 0) {
            QMetaObject::invokeMethod(focused, QByteArray(slot).chopped(2).constData());
        }
    });
}

void copyLabel(QLabel *label)
{
    QGuiApplication::clipboard()->setText(label->hasSelectedText() ? label->selectedText() : label->text());
}

void selectLabel(QLabel *label)
{
    label->setSelection(0, static_cast<int>(label->text().size()));
}

// What changes a text is offered while it can: of all texts of the window, only the label can be changed.
// Its keys work without the menu.
void connectEditMenu(const Ui::MainWindow &ui)
{
    connectEditAction(ui.actionUndo, "undo()");
    connectEditAction(ui.actionCut, "cut()");
    connectEditAction(ui.actionCopy, "copy()", &copyLabel);
    connectEditAction(ui.actionPaste, "paste()");
    connectEditAction(ui.actionSelectAll, "selectAll()", &selectLabel);
    QObject::connect(ui.editMenu, &QMenu::aboutToShow, ui.editMenu, [ui] {
        const auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        ui.actionUndo->setEnabled(field && field->isUndoAvailable());
        ui.actionCut->setEnabled(field && field->hasSelectedText());
        ui.actionPaste->setEnabled(field && !QGuiApplication::clipboard()->text().isEmpty());
    });
}

// Ctrl+1 and so on show the pages, those that are there for the selected disk.
void connectPageKeys(QMainWindow *window, const Ui::MainWindow &ui)
{
    int key = Qt::Key_1;
    for (QWidget *page : { ui.infoTab, ui.formatTab, ui.maintenanceTab }) {
        auto *shortcut = new QShortcut(QKeyCombination(Qt::ControlModifier, Qt::Key(key++)), window);
        QObject::connect(shortcut, &QShortcut::activated, ui.rightTabView,
            [tabs = ui.rightTabView, page] { tabs->setCurrentWidget(page); });
    }
}

// While the page has the focus.
void connectStopKey(const Ui::MainWindow &ui)
{
    auto *shortcut = new QShortcut(Qt::Key_Escape, ui.maintenanceTab);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortcut, &QShortcut::activated, ui.maintenanceStatusRow, &StatusRow::stop);
}

// The context menu of a row of the tree.
void connectContextMenu(OutlineView *view, QMenu *menu)
{
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(view, &QWidget::customContextMenuRequested, menu, [view, menu](const QPoint &position) {
        const QModelIndex index = view->indexAt(position);
        if (!index.isValid())
            return;
        view->setCurrentIndex(index);
        menu->popup(view->viewport()->mapToGlobal(position));
    });
}

void connectActions(ZorvexDiskManagerAppDelegate &controller, QMainWindow *window, const Ui::MainWindow &ui)
{
    using Controller = ZorvexDiskManagerAppDelegate;
    connectButton(ui.mountUnmountButton, controller, &Controller::clickMountUnmountButton);
    connectButton(ui.formatButton, controller, &Controller::clickFormatButton);
    connectButton(ui.checkButton, controller, &Controller::clickCheckButton);
    connectButton(ui.repairButton, controller, &Controller::clickRepairButton);
    QObject::connect(ui.maintenanceStatusRow, &StatusRow::stopClicked, &controller, &Controller::stopCheck);
    connectToButton(ui.actionMountUnmount, ui.mountUnmountButton, ui.rightTabView, ui.infoTab);
    connectAction(ui.actionEject, controller, &Controller::clickEjectMenuItem);
    connectFormatAction(ui);
    connectAction(ui.actionEraseDisk, controller, &Controller::clickEraseDiskMenuItem);
    connectToButton(ui.actionCheck, ui.checkButton, ui.rightTabView, ui.maintenanceTab);
    connectToButton(ui.actionRepair, ui.repairButton, ui.rightTabView, ui.maintenanceTab);
    connectToPanel(controller, ui);
    QObject::connect(ui.goToFormatCaption, &QLabel::linkActivated, ui.formatTab,
        [ui] { ui.rightTabView->setCurrentWidget(ui.formatTab); });
    for (QMenu *menu : { ui.diskMenu, ui.rowMenu })
        showToolTipsOf(menu); // why an item is disabled
    connectContextMenu(controller.leftOutlineView, ui.rowMenu);
    connectAction(ui.actionManual, controller, &Controller::clickHelpMenuItem);
    connectAction(ui.actionAbout, controller, &Controller::clickAboutButton);
    connectEditMenu(ui);
    connectPageKeys(window, ui);
    connectStopKey(ui);
    ui.actionRefresh->setShortcuts({ Qt::Key_F5, Qt::CTRL | Qt::Key_R });
    connectAction(ui.actionRefresh, controller, &Controller::clickRefreshMenuItem);
    QObject::connect(ui.actionCopyDevicePath, &QAction::triggered, ui.actionCopyDevicePath,
        [action = ui.actionCopyDevicePath] {
            QGuiApplication::clipboard()->setText(action->data().toString());
        });
    QObject::connect(
        ui.actionShowInFileManager, &QAction::triggered, &controller, &Controller::showInFileManager);
    QObject::connect(ui.infoMountedPathView, &LinkTextView::hasLinkChanged, ui.actionShowInFileManager,
        &QAction::setEnabled);
    QObject::connect(ui.actionClose, &QAction::triggered, window, &QWidget::close);
    QObject::connect(ui.actionQuit, &QAction::triggered, qApp, &QCoreApplication::quit);
}

} // namespace

std::unique_ptr<QMainWindow> loadMainWindow(ZorvexDiskManagerAppDelegate &controller)
{
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &controller,
        &ZorvexDiskManagerAppDelegate::applicationWillTerminate);
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, &controller,
        [&controller](QSessionManager &manager) {
            controller.closeQuestion.sessionWillEnd({ [&manager] { return manager.allowsInteraction(); },
                [&manager] { manager.cancel(); }, [&manager] { manager.release(); } });
        },
        Qt::DirectConnection);
    QApplication::setLayoutDirection(
        controller.isRightToLeftLocalization() ? Qt::RightToLeft : Qt::LeftToRight);
    InterfaceStyle::install();
    auto window = std::make_unique<QMainWindow>();
    Ui::MainWindow ui;
    ui.setupUi(window.get());
    ui.maintenanceStatusRow->placeStopBehind(ui.repairButton);
    window->layout()->setGeometry(QRect(QPoint(), window->size()));
    window->centralWidget()->layout()->activate();
    ui.mainSplitView->setFirstPaneWidth(initialTreeWidth);
    WindowGrid::install(ui, window.get());
    setOutlets(controller, window.get(), ui);
    connectActions(controller, window.get(), ui);
    controller.awakeFromNib();
    followPanel(controller, nullptr, ui);
    controller.leftOutlineView->setFocus(); // the keyboard begins in the tree
    return window;
}
