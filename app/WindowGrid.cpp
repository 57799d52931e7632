// SPDX-License-Identifier: MIT
#include "app/WindowGrid.h"

#include "ui/QuietText.h"
#include "ui/Units.h"

#include <QEvent>
#include <QFontDatabase>

namespace {

constexpr int margin = 18;
constexpr int columnWidth = 620;
constexpr int pictureSize = 64;
constexpr QSize leastButton { 80, 30 };
constexpr QSize commandField { 300, 30 };

QMargins pageMargins()
{
    const int room = units(margin);
    return { room, room, room, room };
}

void setHeight(QSpacerItem *spacer, int height)
{
    spacer->changeSize(0, height, QSizePolicy::Minimum, QSizePolicy::Fixed);
}

} // namespace

void WindowGrid::install(const Ui::MainWindow &ui, QWidget *window)
{
    auto *grid = new WindowGrid(ui, window);
    window->installEventFilter(grid);
    grid->layOut();
}

WindowGrid::WindowGrid(const Ui::MainWindow &ui, QWidget *window)
    : QObject(window)
    , m_ui(ui)
{
    for (QWidget *quiet : { static_cast<QWidget *>(ui.mountedPathCaption),
             static_cast<QWidget *>(ui.filesystemCaption), static_cast<QWidget *>(ui.contentHintCaption),
             static_cast<QWidget *>(ui.bsdNameCaption), static_cast<QWidget *>(ui.preferredBlockSizeCaption),
             static_cast<QWidget *>(ui.wholeDeviceCaption), static_cast<QWidget *>(ui.removableCaption),
             static_cast<QWidget *>(ui.ejectableCaption), static_cast<QWidget *>(ui.mountedPathGloss),
             static_cast<QWidget *>(ui.filesystemGloss), static_cast<QWidget *>(ui.contentGloss),
             static_cast<QWidget *>(ui.deviceNodeLabel), static_cast<QWidget *>(ui.formatFilesystemCaption),
             static_cast<QWidget *>(ui.formatLabelCaption), static_cast<QWidget *>(ui.formatRemarkLabel) })
        QuietText::apply(quiet);
    // The room above the first row belongs to the tree.
    ui.outlineViewContainer->setBackgroundRole(QPalette::Base);
    ui.outlineViewContainer->setAutoFillBackground(true);
    // The page shows what is below it, as the other pages do.
    for (QWidget *page : { ui.infoScrollArea->viewport(), ui.infoPage })
        page->setAutoFillBackground(false);
}

void WindowGrid::layOutInfoPage()
{
    m_ui.infoPageLayout->setContentsMargins(pageMargins());
    m_ui.infoBigImageField->setMinimumSize(units(pictureSize), units(pictureSize));
    m_ui.infoHeaderLayout->setSpacing(units(16));
    m_ui.serviceCommandField->setFixedSize(units(commandField.width()), units(commandField.height()));
    m_ui.serviceCommandField->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui.infoDetailsLayout->setContentsMargins(0, units(14), 0, 0);
    m_ui.infoDetailsLayout->setSpacing(units(6));
    setHeight(m_ui.infoValuesSpacer, units(4));
    m_ui.infoFormLayout->setHorizontalSpacing(units(12));
    m_ui.infoFormLayout->setVerticalSpacing(units(4));
    for (QHBoxLayout *pair :
        { m_ui.mountedPathLayout, m_ui.filesystemLayout, m_ui.contentHintLayout, m_ui.deviceLayout })
        pair->setSpacing(units(14));
    for (QSpacerItem *gap : { m_ui.deviceGroupSpacer, m_ui.kindGroupSpacer })
        setHeight(gap, units(4));
    m_ui.infoPageLayout->invalidate();
}

void WindowGrid::layOut()
{
    layOutInfoPage();
    m_ui.outlineViewContainerLayout->setContentsMargins(0, units(4), 0, 0);
    for (QLayout *page :
        { static_cast<QLayout *>(m_ui.formatPageLayout), static_cast<QLayout *>(m_ui.maintenanceLayout) })
        page->setContentsMargins(pageMargins());
    for (QWidget *column : { m_ui.infoColumn, m_ui.formatColumn, m_ui.maintenanceColumn,
             static_cast<QWidget *>(m_ui.maintenanceStatusRow) })
        column->setMaximumWidth(units(columnWidth));
    for (QWidget *button :
        { static_cast<QWidget *>(m_ui.mountUnmountButton), static_cast<QWidget *>(m_ui.formatButton),
            static_cast<QWidget *>(m_ui.checkButton), static_cast<QWidget *>(m_ui.repairButton) })
        button->setMinimumSize(units(leastButton.width()), units(leastButton.height()));
    for (QWidget *field : { static_cast<QWidget *>(m_ui.formatFilesystemsPopupButton),
             static_cast<QWidget *>(m_ui.formatVolumeLabelField),
             // A form puts a caption that is much lower than its field at the field's top.
             static_cast<QWidget *>(m_ui.formatFilesystemCaption),
             static_cast<QWidget *>(m_ui.formatLabelCaption) })
        field->setMinimumHeight(units(leastButton.height()));
    m_ui.maintenanceHeaderLayout->setSpacing(units(8));
    m_ui.formatButtonLayout->setSpacing(units(8));
    m_ui.formatFormLayout->setHorizontalSpacing(units(12));
    m_ui.formatFormLayout->setVerticalSpacing(units(8));
    m_ui.formatFormLayout->setContentsMargins(0, units(8), 0, 0);
}

bool WindowGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        layOut();
    return QObject::eventFilter(watched, event);
}
