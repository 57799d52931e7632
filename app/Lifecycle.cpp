// SPDX-License-Identifier: MIT
//
// How the controller is brought up and torn down.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "disks/DiskEvents.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "ui/DiskMap.h"
#include "ui/FormatMenuDelegate.h"
#include "ui/FreeSpaceReader.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/Units.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QScreen>
#include <QStyle>
#include <QTabWidget>
#include <QWindow>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

// Of the part of the window below its menus, at the usual text size.
constexpr QSize initialContentSize { 800, 450 };
constexpr QSize minimumContentSize { 720, 420 };

// The height of the menus in the window; 0 where the desktop shows them elsewhere.
int menuHeight(const QMainWindow &window)
{
    return window.layout()->totalMinimumSize().height() - window.layout()->minimumSize().height();
}

// So much room for a larger text, as far as the screen has it beside the menus and the window's frame.
QSize grownWithText(const QSize &usual, const QMainWindow &window)
{
    const QSize grown = usual * std::max(textScale(), 1.0);
    if (!window.screen())
        return grown;
    // The desktop draws the frame; it is not known before the window is shown.
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize room = window.screen()->availableSize().shrunkBy({ 0, menuHeight(window), 0, title });
    return grown.boundedTo(room.expandedTo(minimumContentSize));
}

// Whether pictures have to be drawn in another size now.
bool isChangeOfSize(QEvent::Type type)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    if (type == QEvent::DevicePixelRatioChange)
        return true;
#endif
    return type == QEvent::FontChange;
}

// A label draws a link in the colour that links had when it was given its text.
void drawLinkAgain(QLabel &label)
{
    const QString text = label.text();
    label.clear();
    label.setText(text);
}

void logNoSession()
{
    systemLog(u"Unable to create DASession."_s);
}

} // namespace

ZorvexDiskManagerAppDelegate::ZorvexDiskManagerAppDelegate(ApplicationPlatform platform)
    : m_platform(std::move(platform))
    , m_relay(MainThreadRelay::create())
    , m_freeSpaces(std::make_unique<FreeSpaceReader>(
          m_platform.mountTable, m_relay, [this] { refreshAfterStateChange(); }))
{
}

ZorvexDiskManagerAppDelegate::~ZorvexDiskManagerAppDelegate()
{
    m_relay->close();
}

bool ZorvexDiskManagerAppDelegate::isRightToLeftLocalization() const
{
    return isRightToLeftIdentifier(m_platform.preferredLocalizations, m_platform.localeIdentifier);
}

void ZorvexDiskManagerAppDelegate::swapPanes()
{
    const int count = mainSplitView->count();
    if (count == 2)
        mainSplitView->insertWidget(0, mainSplitView->widget(1));
    else
        systemLog(u"Unexpected subview count: %1"_s.arg(count));
}

void ZorvexDiskManagerAppDelegate::colorOutput()
{
    QPalette palette;
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        palette.setColor(group, QPalette::Text, window->palette().color(group, QPalette::WindowText));
    checkRepairOutputView->setPalette(palette);
}

void ZorvexDiskManagerAppDelegate::setLeastSize()
{
    window->centralWidget()->setMinimumSize(grownWithText(minimumContentSize, *window));
}

void ZorvexDiskManagerAppDelegate::awakeFromNib()
{
    colorOutput();
    formatVolumeLabelField->setPlaceholderText(localizedString("LABEL_PLACEHOLDER_TEXT"));
    checkRepairOutputView->setPlaceholderText(localizedString("OUTPUT_PLACEHOLDER_TEXT"));
    FormatMenuDelegate::install(formatFilesystemsPopupButton);
    connect(formatFilesystemsPopupButton, &QComboBox::currentIndexChanged, this,
        [this] { m_status.showFormatRemark(); });
    connect(infoDiskMap, &DiskMap::partChosen, this, &ZorvexDiskManagerAppDelegate::selectMedium);

    rightTabView->removeTab(rightTabView->indexOf(maintenanceTab));
    rightTabView->removeTab(rightTabView->indexOf(formatTab));
    showBigImage(u"drive_icon_big.png"_s);
    m_status.showAsEmpty(true);
    m_status.showReasonsOf(nullptr);

    if (isRightToLeftLocalization()) {
        swapPanes();
        // The split view itself is not mirrored, only what is in its panes.
        rightTabView->setLayoutDirection(Qt::RightToLeft);
        mountUnmountButton->setImagePosition(ImageButton::ImagePosition::Right);
        mountUnmountButton->setTextAlignment(Qt::AlignRight);
    }
    const int treeWidth = outlineViewContainer->width();

    connect(infoMountedPathView, &LinkTextView::selectionDidChange, this,
        &ZorvexDiskManagerAppDelegate::textViewDidChangeSelection);
    infoMountedPathView->installEventFilter(this);
    goToFormatLink->installEventFilter(this);
    window->installEventFilter(this);

    const int menus = menuHeight(*window);
    const QSize contentSize = grownWithText(initialContentSize, *window);
    setLeastSize();
    window->resize(contentSize.grownBy({ 0, menus, 0, 0 }));
    if (const QScreen *screen = window->screen())
        window->move(screen->availableGeometry().center() - window->rect().center());
    // A window that is not shown yet lays itself out later; the pane needs the new room now.
    window->layout()->setGeometry(QRect(QPoint(0, menus), contentSize));
    window->centralWidget()->layout()->activate();
    const int grownTreeWidth = treeWidth * contentSize.width() / initialContentSize.width();
    mainSplitView->setFirstPaneWidth(isRightToLeftLocalization()
            ? contentSize.width() - grownTreeWidth - mainSplitView->handleWidth()
            : grownTreeWidth);
}

void ZorvexDiskManagerAppDelegate::serviceDidChange(bool isAvailable)
{
    leftOutlineView->setEmptyState(isAvailable
            ? EmptyState { u"media_drive.png"_s, localizedString("NO_DISKS_TITLE"),
                  localizedString("NO_DISKS_TEXT") }
            : EmptyState { u"state_warning.png"_s, localizedString("NO_SERVICE_TITLE"),
                  localizedString("NO_SERVICE_TEXT") });
    m_status.setServiceAvailable(isAvailable);
    if (!selectedDisk())
        m_status.showAsEmpty(true);
}

void ZorvexDiskManagerAppDelegate::applicationDidFinishLaunching()
{
    // A combo box never disables its items by itself.
    refreshFilesystems();

    session = m_platform.createSession();
    if (!session) {
        logNoSession();
        serviceDidChange(false);
    } else {
        session->registerDiskPeekCallback(
            [this](const DADiskRef &disk) { zorvex_disk_manager_da_disk_peek(disk, this); }, 0);
        session->registerDiskAppearedCallback(
            [this](const DADiskRef &disk) { zorvex_disk_manager_da_disk_appeared(disk, this); });
        session->registerDiskDisappearedCallback(
            [this](const DADiskRef &disk) { zorvex_disk_manager_da_disk_disappeared(disk, this); });
        session->registerDiskDescriptionChangedCallback(
            [this](const DADiskRef &disk, const QStringList &keys) {
                zorvex_disk_manager_da_disk_description_changed(disk, keys, this);
            });
        session->setBurstCallback([this](const auto &report) { followBurst(report); });
        session->setPassphraseQuestion([this](const DADiskRef &disk, bool isRetry, PassphraseAnswer answer) {
            askForPassphrase(disk, isRetry, std::move(answer));
        });
        // A session without its service counts as none. It stays, for a service that comes later.
        session->setInitialListingCallback([](bool serviceAvailable) {
            if (!serviceAvailable)
                logNoSession();
        });
        session->setServiceCallback([this](bool isAvailable) { serviceDidChange(isAvailable); });
        session->scheduleWithRunLoop();
    }

    leftOutlineView->setDataSource(this);
    leftOutlineView->setDelegate(this);
    leftOutlineView->selectRow(std::numeric_limits<int>::max()); // a row that never exists: no selection
    mainSplitView->setDelegate(this);
    leftOutlineView->expandAllItems();
}

void ZorvexDiskManagerAppDelegate::applicationWillTerminate()
{
    m_relay->close();
    if (session) {
        session->unscheduleFromRunLoop();
        session.reset();
    }
    repairFilesystemBundlesList.reset();
    checkFilesystemBundlesList.reset();
    formatFilesystemBundlesList.reset();
    allFilesystemBundlesList.reset();
}

void ZorvexDiskManagerAppDelegate::windowDidBecomeKey()
{
    refreshFilesystems();
}

void ZorvexDiskManagerAppDelegate::windowWillClose()
{
    QCoreApplication::quit();
}

bool ZorvexDiskManagerAppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window && event->type() == QEvent::WindowActivate)
        windowDidBecomeKey();
    else if (watched == window && event->type() == QEvent::Close && !closeQuestion.windowShouldClose()) {
        event->ignore();
        return true;
    } else if (watched == window && event->type() == QEvent::Close)
        windowWillClose();
    else if (watched == goToFormatLink && event->type() == QEvent::PaletteChange)
        drawLinkAgain(*goToFormatLink);
    else if (watched == window && event->type() == QEvent::Show)
        connect(window->windowHandle(), &QWindow::screenChanged, this,
            &ZorvexDiskManagerAppDelegate::redrawPictures, Qt::UniqueConnection);
    else if (watched == window && isChangeOfSize(event->type())) {
        setLeastSize();
        redrawPictures();
    }
    // The theme can change while the program runs.
    else if (watched == window && event->type() == QEvent::PaletteChange)
        colorOutput();
    else if (watched == infoMountedPathView && event->type() == QEvent::PaletteChange)
        showMountPathOf(selectedDisk().get());
    return QObject::eventFilter(watched, event);
}
