// SPDX-License-Identifier: MIT
//
// The widgets of the window that the controller works with. Set by the interface file's loader; the
// controller never makes them.
#pragma once

#include "ui/PanelStatus.h"

class ImageButton;
class LinkTextView;
class OutlineView;
class OutputView;
class QComboBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QPushButton;
class QTabWidget;
class QWidget;
class SplitView;

struct MainWindowOutlets : PanelStatusOutlets
{
    QMainWindow *window = nullptr;
    SplitView *mainSplitView = nullptr;
    QTabWidget *rightTabView = nullptr;
    QWidget *infoTab = nullptr;
    QWidget *formatTab = nullptr;
    QWidget *maintenanceTab = nullptr;
    OutlineView *leftOutlineView = nullptr;
    QWidget *outlineViewContainer = nullptr;
    QWidget *outlineViewScrollContainer = nullptr;
    ImageButton *mountUnmountButton = nullptr;
    QLabel *infoBigImageField = nullptr;
    QLabel *infoNameLabel = nullptr;
    QLabel *infoDiskSpaceLabel = nullptr;
    LinkTextView *infoMountedPathView = nullptr;
    QLabel *filesystemLabel = nullptr;
    QLabel *bsdNameLabel = nullptr;
    QLabel *deviceNodeLabel = nullptr;
    QLabel *wholeDeviceLabel = nullptr;
    QLabel *removableLabel = nullptr;
    QLabel *contentHintLabel = nullptr;
    QLabel *ejectableLabel = nullptr;
    QLabel *preferredBlockSizeLabel = nullptr;
    QComboBox *formatFilesystemsPopupButton = nullptr;
    QLineEdit *formatVolumeLabelField = nullptr;
    QPushButton *formatButton = nullptr;
    OutputView *checkRepairOutputView = nullptr;
    QPushButton *checkButton = nullptr;
    QPushButton *repairButton = nullptr;
};
