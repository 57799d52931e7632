// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/ZorvexDiskManagerAppDelegate.h"
#include "ui/FlippedOutlineView.h"
#include "ui/ImageAndTextCell.h"

#include "ui_MainWindow.h"

#include <QApplication>
#include <QMainWindow>

namespace {

constexpr int treePaneWidth = 240;

// The mirrored layout has an outline view of its own in the place of the plain one.
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
    controller.infoMountedPathView = ui.infoMountedPathView;
    controller.filesystemLabel = ui.filesystemLabel;
    controller.bsdNameLabel = ui.bsdNameLabel;
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
    controller.formatOperationBar = ui.formatOperationBar;
    controller.maintenanceOperationBar = ui.maintenanceOperationBar;
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

// A menu item presses the button of its name, and like it does nothing while that is disabled.
void connectToButton(QAction *action, QPushButton *button)
{
    QObject::connect(action, &QAction::triggered, button, &QPushButton::click);
}

// The text that has the focus copies or selects itself.
void connectEditAction(QAction *action, const char *slot)
{
    QObject::connect(action, &QAction::triggered, action, [slot] {
        QWidget *const focused = QApplication::focusWidget();
        if (focused && focused->metaObject()->indexOfSlot(slot) >= 0)
            QMetaObject::invokeMethod(focused, QByteArray(slot).chopped(2).constData());
    });
}

void connectActions(ZorvexDiskManagerAppDelegate &controller, QMainWindow *window, const Ui::MainWindow &ui)
{
    using Controller = ZorvexDiskManagerAppDelegate;
    connectButton(ui.mountUnmountButton, controller, &Controller::clickMountUnmountButton);
    connectButton(ui.formatButton, controller, &Controller::clickFormatButton);
    connectButton(ui.checkButton, controller, &Controller::clickCheckButton);
    connectButton(ui.repairButton, controller, &Controller::clickRepairButton);
    connectToButton(ui.actionMountUnmount, ui.mountUnmountButton);
    connectToButton(ui.actionFormat, ui.formatButton);
    connectToButton(ui.actionCheck, ui.checkButton);
    connectToButton(ui.actionRepair, ui.repairButton);
    connectAction(ui.actionManual, controller, &Controller::clickHelpMenuItem);
    connectAction(ui.actionAbout, controller, &Controller::clickAboutButton);
    connectEditAction(ui.actionCopy, "copy()");
    connectEditAction(ui.actionSelectAll, "selectAll()");
    QObject::connect(
        ui.actionShowInFileManager, &QAction::triggered, &controller, &Controller::showInFileManager);
    QObject::connect(ui.actionClose, &QAction::triggered, window, &QWidget::close);
    QObject::connect(ui.actionQuit, &QAction::triggered, qApp, &QCoreApplication::quit);
}

} // namespace

std::unique_ptr<QMainWindow> loadMainWindow(ZorvexDiskManagerAppDelegate &controller)
{
    QApplication::setLayoutDirection(
        controller.isRightToLeftLocalization() ? Qt::RightToLeft : Qt::LeftToRight);
    auto window = std::make_unique<QMainWindow>();
    Ui::MainWindow ui;
    ui.setupUi(window.get());
    // Panes have widths only within a size, and the window has not been laid out.
    ui.mainSplitView->resize(window->size());
    ui.mainSplitView->setFirstPaneWidth(treePaneWidth);
    setOutlets(controller, window.get(), ui);
    connectActions(controller, window.get(), ui);
    controller.awakeFromNib();
    return window;
}
