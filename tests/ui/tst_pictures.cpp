// SPDX-License-Identifier: MIT
//
// Pictures of the window in every language, light and dark. No text is cut off, not even in a large font or
// in the smallest window.
#include "tests/support/TestController.h"

#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/ElidingLabel.h"
#include "ui/EraseDiskSheet.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/StatusRow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QPalette darkPalette()
{
    const QColor window(0x2b, 0x2b, 0x2b);
    const QColor base(0x1e, 0x1e, 0x1e);
    const QColor text(0xee, 0xee, 0xee);
    QPalette palette(window);
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xff));
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, QColor(0x90, 0x90, 0x90));
    return palette;
}

QPalette contrastPalette()
{
    QPalette palette(Qt::black);
    for (const QPalette::ColorRole role : { QPalette::Window, QPalette::Base, QPalette::Button })
        palette.setColor(role, Qt::black);
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Highlight, Qt::yellow);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Link, Qt::yellow);
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, QColor(0x3f, 0xf2, 0x3f));
    return palette;
}

// A machine with a disk of two volumes and a stick, some of it mounted; the second volume is selected.
void showDisks(TestController &test)
{
    test.platform().filesystemDirectories
        = { QStringLiteral(ZORVEX_FILESYSTEMS "/System"), QStringLiteral(ZORVEX_FILESYSTEMS "/Local") };
    test.platform().isSystemDevice = [](const QString &) { return false; };
    // One that starts the computer has no row.
    test.platform().partitionNodes = [](const QString &) { return QStringList(u"/dev/nvme0n1p9"_s); };
    test.platform().readDeviceIdentity
        = [](const QString &) { return std::optional(DeviceIdentity { 1, 1, 4'000'000, 2'000'000 }); };
    test.launch();
    const MemoryDiskRef whole = makeDisk(u"disk2"_s);
    whole->description->insert(DAKey::mediaName, u"Samsung SSD 980 PRO"_s);
    whole->description->insert(DAKey::mediaLeaf, false);
    test.add(whole);
    const MemoryDiskRef system = makePartition(u"disk2s1"_s, 1048576, u"System"_s);
    test.add(system);
    const MemoryDiskRef data = makePartition(u"disk2s2"_s, 2097152, u"DATA"_s);
    data->node = u"/dev/nvme0n1p2"_s;
    data->description->insert(DAKey::volumeKind, u"msdos"_s);
    data->description->insert(DAKey::mediaContent, u"DOS_FAT_32"_s);
    test.mount(data, u"/media/anna/DATA"_s, 98304000);
    test.add(data);
    test.add(makeDisk(u"disk3"_s));
    test.select(u"disk2s2"_s);
}

QString described(const QWidget *widget, const QString &text)
{
    const QSize hint = widget->sizeHint();
    return u"%1 \"%2\" has %3x%4, would like %5x%6"_s.arg(widget->objectName(), text)
        .arg(widget->width())
        .arg(widget->height())
        .arg(hint.width())
        .arg(hint.height());
}

// Whether the widget's whole area is inside of every widget that holds it.
bool isInsideOfAncestors(const QWidget *widget)
{
    for (const QWidget *holder = widget->parentWidget(); holder && !widget->isWindow();
        holder = holder->isWindow() ? nullptr : holder->parentWidget()) {
        if (!holder->rect().contains(QRect(widget->mapTo(holder, QPoint()), widget->size())))
            return false;
    }
    return true;
}

// The system's name of a disk may be any length: it ends in dots, with the whole in a tool tip. What only
// explains a value goes when there is no room for it. Every other text is short enough here.
bool mayBeCut(const QLabel &label)
{
    const QString name = label.objectName();
    const bool isPlace = label.parentWidget()->objectName() == "infoPlaceLabel"_L1 && !label.wordWrap();
    return isPlace || name == "deviceNodeLabel"_L1 || name == "pageDetails"_L1 || name.endsWith("Gloss"_L1);
}

bool isWhole(const QLabel &label)
{
    const QRect room = label.contentsRect();
    if (label.textFormat() == Qt::RichText)
        return label.width() >= label.sizeHint().width() && label.height() >= label.sizeHint().height();
    const int flags = Qt::TextShowMnemonic | (label.wordWrap() ? Qt::TextWordWrap : 0);
    const QRect needed
        = label.fontMetrics().boundingRect(QRect(0, 0, room.width(), 10000), flags, label.text());
    // Lines of several scripts differ in height: the label knows them.
    const int neededHeight = label.wordWrap() ? label.heightForWidth(label.width()) : needed.height();
    const int height = label.wordWrap() ? label.height() : room.height();
    // A line that was broken to fit can end in a fraction of a pixel, which is rounded up here.
    const int width = label.wordWrap() ? room.width() + 1 : room.width();
    return height >= neededHeight && (width >= needed.width() || mayBeCut(label));
}

// Of menus and fields: their middles are at one height.
bool captionsAreBesideFields(const QWidget &window)
{
    const auto middleOf
        = [&window](const QWidget *widget) { return widget->mapTo(&window, widget->rect().center()).y(); };
    for (const QLabel *caption : window.findChildren<QLabel *>()) {
        const QWidget *const field = caption->buddy();
        const bool isField = qobject_cast<const QComboBox *>(field) || qobject_cast<const QLineEdit *>(field);
        if (caption->isVisible() && isField && std::abs(middleOf(caption) - middleOf(field)) > 1)
            return false;
    }
    return true;
}

// Both end at one line, and not at the edge of a wide window.
bool isInColumn(const QWidget &row, const QWidget &button)
{
    const bool isMirrored = row.layoutDirection() == Qt::RightToLeft;
    const auto endOf = [&row, isMirrored](const QWidget &widget) {
        return widget.mapTo(row.window(), isMirrored ? QPoint() : QPoint(widget.width(), 0)).x();
    };
    return !row.isVisible() || endOf(row) == endOf(button);
}

QStringList cutLabels(const QWidget &window)
{
    QStringList cut;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (!label->isVisible() || label->text().isEmpty())
            continue;
        if (!isWhole(*label) || !isInsideOfAncestors(label))
            cut.append(described(label, label->text()));
    }
    return cut;
}

QStringList cutButtons(const QWidget &window)
{
    QStringList cut;
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (!button->isVisible())
            continue;
        QSize needed = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        if (!button->icon().isNull())
            needed.rwidth() += button->iconSize().width() + 6;
        if (button->width() < needed.width() || button->height() < needed.height()
            || !isInsideOfAncestors(button))
            cut.append(described(button, button->text()));
    }
    return cut;
}

QStringList cutBars(const QMainWindow &window, const QTabWidget &tabs)
{
    QStringList cut;
    for (const QToolButton *scroller : tabs.tabBar()->findChildren<QToolButton *>()) {
        if (scroller->isVisible())
            cut.append(u"the tabs need scrolling"_s);
    }
    for (int i = 0; i < tabs.count(); ++i) {
        const QSize needed = tabs.tabBar()->fontMetrics().size(Qt::TextShowMnemonic, tabs.tabText(i));
        if (tabs.tabBar()->tabRect(i).width() < needed.width())
            cut.append(described(tabs.tabBar(), tabs.tabText(i)));
    }
    const QMenuBar *menuBar = window.menuBar();
    for (const QAction *action : menuBar->actions()) {
        if (!menuBar->rect().contains(menuBar->actionGeometry(const_cast<QAction *>(action))))
            cut.append(described(menuBar, action->text()));
    }
    return cut;
}

QStringList cutMenu(const QComboBox &menu)
{
    if (!menu.isVisible())
        return {};
    QStyleOptionComboBox option;
    option.initFrom(&menu);
    option.frame = menu.hasFrame();
    const int room = menu.style()
                         ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &menu)
                         .width();
    QStringList cut;
    const auto check = [&](const QString &text, int iconWidth) {
        const int needed = menu.fontMetrics().horizontalAdvance(text) + iconWidth + 2;
        if (text.isEmpty() || room < needed)
            cut.append(u"\"%1\" has %2, needs %3"_s.arg(text).arg(room).arg(needed));
    };
    check(menu.placeholderText(), 0);
    for (int i = 0; i < menu.count(); ++i)
        check(menu.itemText(i), menu.itemIcon(i).isNull() ? 0 : menu.iconSize().width() + 4);
    return cut;
}

QStringList cutTexts(TestController &test)
{
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    return cutLabels(test.window()) + cutButtons(test.window())
        + cutBars(test.window(), *controller.rightTabView)
        + cutMenu(*controller.formatFilesystemsPopupButton);
}

// From the last tab to the first.
QStringList cutTextsOfEveryTab(TestController &test)
{
    QStringList cut;
    QTabWidget *const tabs = test.controller().rightTabView;
    for (int i = tabs->count() - 1; i >= 0; --i) {
        tabs->setCurrentIndex(i);
        TestController::handlePostedEvents();
        cut += cutTexts(test);
    }
    return cut;
}

// The sheet is as large as its texts, and not larger than the screen that it is shown on.
QStringList cutTextsOfSheet(TestController &test)
{
    const AlertSheet *const sheet = test.sheets().constFirst();
    TestController::handlePostedEvents();
    QStringList cut = cutLabels(*sheet) + cutButtons(*sheet);
    if (!sheet->screen()->availableGeometry().contains(sheet->geometry()))
        cut.append(described(sheet, sheet->text()));
    return cut;
}

// What the window can show: a selected disk and the operation that runs on it.
struct State
{
    const char *name;
    const char *disk; // empty for none
    RunningOperation operation = RunningOperation::None;
    bool hasVerdict = false; // of the last check
};

constexpr State states[] = {
    { "nothing", "" },
    { "disk", "disk2" },
    { "unmounted", "disk2s1" },
    { "mounted", "disk2s2" },
    { "formatting", "disk2s2", RunningOperation::Format },
    { "unmounting", "disk2s2", RunningOperation::Unmount },
    { "checking", "disk2s2", RunningOperation::Check },
    { "repairing", "disk2s2", RunningOperation::Repair },
    { "verdict", "disk2s2", RunningOperation::None, true },
};

void show(TestController &test, const State &state)
{
    const DiskRecord busy = test.recordOf(u"disk2s2"_s);
    const bool isBusy = state.operation != RunningOperation::None;
    busy->runningOperation = state.operation;
    busy->operationBegan = std::chrono::steady_clock::now() - std::chrono::seconds(42);
    busy->operationInProgress = isBusy;
    busy->operationInProgressShowFormatTab = isBusy;
    busy->operationInProgressShowMaintenanceTab = isBusy;
    busy->finishedRun.reset();
    busy->checkRepairOutput.reset();
    if (state.hasVerdict) {
        const QByteArray said = "Checking blocks and sizes\n/damaged: file has errors\n"_ba;
        busy->finishedRun = FinishedRun { false, FinishedRun::Outcome::Errors, QTime(13, 5), 42s };
        busy->checkRepairOutput.emplace();
        busy->checkRepairOutput->append(said.constData(), said.size());
    }
    test.controller().leftOutlineView->selectRow(-1);
    if (*state.disk)
        test.select(QLatin1String(state.disk));
}

QWidget *pageOf(const State &state, const ZorvexDiskManagerAppDelegate &controller)
{
    switch (state.operation) {
    case RunningOperation::Format:
        return controller.formatTab;
    case RunningOperation::Check:
    case RunningOperation::Repair:
        return controller.maintenanceTab;
    default:
        return state.hasVerdict ? controller.maintenanceTab : controller.infoTab;
    }
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void takesPictures_data();
    void takesPictures();
    void cutsNoText_data();
    void cutsNoText();
    void fitsEverySize_data();
    void fitsEverySize();
    void rowsLieAtTheSameDistance_data();
    void rowsLieAtTheSameDistance();
    void menuFits_data();
    void menuFits();
    void sheetsFit_data();
    void sheetsFit();
    void cleanup();

private:
    void useFontOf(int percentage) const;

    QPalette m_lightPalette;
    QFont m_font;
};

void TestPictures::initTestCase()
{
    QApplication::setStyle(u"Fusion"_s);
    m_lightPalette = QApplication::style()->standardPalette();
    m_font = QApplication::font();
    QCOMPARE(bundleLocalizations().size(), 12);
}

void TestPictures::cleanup()
{
    QApplication::setPalette(m_lightPalette);
    QApplication::setFont(m_font);
}

// The font that users have, in this share of its size.
void TestPictures::useFontOf(int percentage) const
{
    QFont font = m_font;
    font.setPointSizeF(m_font.pointSizeF() * percentage / 100);
    QApplication::setFont(font);
}

void TestPictures::takesPictures_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isDark");
    for (const QString &language : bundleLocalizations()) {
        QTest::addRow("%s-light", qPrintable(language)) << language << false;
        QTest::addRow("%s-dark", qPrintable(language)) << language << true;
    }
}

void TestPictures::takesPictures()
{
    QFETCH(const QString, language);
    QFETCH(const bool, isDark);
    QApplication::setPalette(isDark ? darkPalette() : m_lightPalette);
    TestController test(language);
    showDisks(test);
    QTabWidget *const tabs = test.controller().rightTabView;
    QCOMPARE(tabs->count(), 3);
    const QDir folder(QStringLiteral(ZORVEX_PICTURES));
    QVERIFY(folder.mkpath(u"."_s));
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        TestController::handlePostedEvents();
        const QPixmap picture = test.window().grab();
        QCOMPARE(picture.size(), test.window().size() * test.window().devicePixelRatio());
        const bool isDarkBackground
            = picture.toImage().pixelColor(picture.width() - 3, picture.height() - 3).lightness() < 128;
        QCOMPARE(isDarkBackground, isDark);
        const QString name
            = u"%1-%2@%3x.png"_s
                  .arg(QString::fromLatin1(QTest::currentDataTag()), tabs->currentWidget()->objectName())
                  .arg(test.window().devicePixelRatio());
        QVERIFY(picture.save(folder.filePath(name)));
    }
    for (const State &state : states) {
        show(test, state);
        tabs->setCurrentWidget(pageOf(state, test.controller()));
        TestController::handlePostedEvents();
        // What has changed on a page that was not to be seen has its room.
        const QStringList cut = cutLabels(test.window());
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
        const QString name
            = u"%1-%2@%3x.png"_s.arg(QString::fromLatin1(QTest::currentDataTag()), QLatin1String(state.name))
                  .arg(test.window().devicePixelRatio());
        QVERIFY(test.window().grab().save(folder.filePath(name)));
    }
    for (const bool isAvailable : { false, true }) { // nothing is listed either way
        test.service.setAvailable(isAvailable);
        TestController::handlePostedEvents();
        const QStringList cut = cutLabels(test.window());
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
        const QString name = u"%1-%2@%3x.png"_s
                                 .arg(QString::fromLatin1(QTest::currentDataTag()),
                                     isAvailable ? u"no-disks"_s : u"no-service"_s)
                                 .arg(test.window().devicePixelRatio());
        QVERIFY(test.window().grab().save(folder.filePath(name)));
    }
}

void TestPictures::cutsNoText_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("percentage"); // of the font's usual size
    for (const QString &language : bundleLocalizations()) {
        QTest::addRow("%s", qPrintable(language)) << language << 100;
        QTest::addRow("%s, large text", qPrintable(language)) << language << 150;
    }
}

void TestPictures::cutsNoText()
{
    QFETCH(const QString, language);
    QFETCH(const int, percentage);
    useFontOf(percentage);
    TestController test(language);
    showDisks(test);
    const QSize smallest = test.window().centralWidget()->minimumSize();
    const QSize usual = test.window().centralWidget()->size();
    QVERIFY(percentage > 100 || (smallest == QSize(720, 420) && usual == QSize(800, 450)));
    const QDir folder(QStringLiteral(ZORVEX_PICTURES));
    QVERIFY(folder.mkpath(u"."_s));
    const QSize menus = test.window().size() - test.window().centralWidget()->size();
    for (const QSize &size : { usual, smallest }) {
        test.window().resize(size + menus);
        QCOMPARE(test.window().size(), size + menus);
        for (const State &state : states) {
            show(test, state);
            const QStringList cut = cutTextsOfEveryTab(test);
            QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
            // One look at the tightest case.
            if (size == smallest && percentage > 100 && state.operation == RunningOperation::None)
                test.window().grab().save(folder.filePath(
                    u"%1-smallest-%2-%3%.png"_s.arg(language, QLatin1String(state.name)).arg(percentage)));
        }
    }
}

void TestPictures::fitsEverySize_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("percentage");
    for (const char *language : { "de", "ru", "ar", "ja" }) {
        for (const QSize &size : { QSize(720, 420), QSize(1600, 1000) }) {
            for (const int percentage : { 100, 130 })
                QTest::addRow("%s, %d x %d, %d %%", language, size.width(), size.height(), percentage)
                    << QString::fromLatin1(language) << size << percentage;
        }
    }
}

// The smallest window and a large one, in colours of high contrast, with the longest translations, mirrored
// and in another script. With a larger text the smallest is larger.
void TestPictures::fitsEverySize()
{
    QFETCH(const QString, language);
    QFETCH(const QSize, size);
    QFETCH(const int, percentage);
    QApplication::setPalette(contrastPalette());
    useFontOf(percentage);
    TestController test(language);
    showDisks(test);
    const QSize menus = test.window().size() - test.window().centralWidget()->size();
    test.window().resize(size.expandedTo(test.window().centralWidget()->minimumSize()) + menus);
    for (const State &state : states) {
        show(test, state);
        test.controller().rightTabView->setCurrentWidget(pageOf(state, test.controller()));
        TestController::handlePostedEvents();
        const QStringList cut = cutTexts(test);
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
        QVERIFY(captionsAreBesideFields(test.window()));
        QVERIFY(isInColumn(*test.controller().maintenanceStatusRow, *test.controller().repairButton));
        const QString file = u"%1-%2-%3-%4@%5x.png"_s.arg(language, QLatin1String(state.name))
                                 .arg(size.width())
                                 .arg(percentage)
                                 .arg(test.window().devicePixelRatio());
        QVERIFY(test.window().grab().save(QDir(QStringLiteral(ZORVEX_PICTURES)).filePath(file)));
    }
}

void TestPictures::rowsLieAtTheSameDistance_data()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : bundleLocalizations())
        QTest::addRow("%s", qPrintable(language)) << language;
}

// In each group of values, also where a value is in another script than its caption.
void TestPictures::rowsLieAtTheSameDistance()
{
    QFETCH(const QString, language);
    TestController test(language);
    showDisks(test);
    TestController::handlePostedEvents();
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    const QList<QList<QLabel *>> groups { { controller.filesystemLabel, controller.contentHintLabel },
        { controller.bsdNameLabel, controller.preferredBlockSizeLabel },
        { controller.wholeDeviceLabel, controller.removableLabel, controller.ejectableLabel } };
    QList<int> distances;
    for (const QList<QLabel *> &rows : groups) {
        for (int i = 1; i < rows.size(); ++i) {
            distances.append(rows[i]->mapTo(&test.window(), rows[i]->rect().center()).y()
                - rows[i - 1]->mapTo(&test.window(), rows[i - 1]->rect().center()).y());
        }
    }
    const auto [least, most] = std::minmax_element(distances.begin(), distances.end());
    QVERIFY2(*most - *least <= 1, qPrintable(u"%1 to %2"_s.arg(*least).arg(*most)));
}

void TestPictures::menuFits_data()
{
    takesPictures_data();
}

void TestPictures::menuFits()
{
    QFETCH(const QString, language);
    QFETCH(const bool, isDark);
    QApplication::setPalette(isDark ? darkPalette() : m_lightPalette);
    TestController test(language);
    showDisks(test);
    auto *menu = test.window().findChild<QMenu *>(u"rowMenu"_s);
    menu->popup(test.window().geometry().center());
    QVERIFY(menu->isVisible());
    for (QAction *action : menu->actions()) {
        const QRect place = menu->actionGeometry(action);
        const QString text = action->text() + action->shortcut().toString(QKeySequence::NativeText);
        QVERIFY2(menu->rect().contains(place), qPrintable(text));
        const int needed = menu->fontMetrics().size(Qt::TextHideMnemonic, text).width();
        QVERIFY2(action->isSeparator() || place.width() > needed, qPrintable(text));
    }
    QVERIFY(menu->grab().save(QDir(QStringLiteral(ZORVEX_PICTURES))
            .filePath(u"%1-menu@%2x.png"_s.arg(QString::fromLatin1(QTest::currentDataTag()))
                    .arg(menu->devicePixelRatio()))));
    menu->close();
}

void TestPictures::sheetsFit_data()
{
    cutsNoText_data();
}

// The question before a format, and the one whether to use force, for a volume and for a whole disk.
void TestPictures::sheetsFit()
{
    QFETCH(const QString, language);
    QFETCH(const int, percentage);
    useFontOf(percentage);
    TestController test(language);
    showDisks(test);
    ZorvexDiskManagerAppDelegate &controller = test.controller();
    const auto look = [&](const char *name) {
        const QStringList cut = cutTextsOfSheet(test);
        const QString file = u"%1-%2-%3%@%4x.png"_s.arg(language, QLatin1String(name))
                                 .arg(percentage)
                                 .arg(test.window().devicePixelRatio());
        test.sheets().constFirst()->grab().save(QDir(QStringLiteral(ZORVEX_PICTURES)).filePath(file));
        return cut;
    };
    QVERIFY(QDir().mkpath(QStringLiteral(ZORVEX_PICTURES)));

    QComboBox *const filesystems = controller.formatFilesystemsPopupButton;
    filesystems->setCurrentIndex(filesystems->findText(u"MS-DOS"_s, Qt::MatchStartsWith));
    controller.formatButton->click();
    QCOMPARE(test.sheets().size(), 1);
    QVERIFY(test.sheets().constFirst()->accessoryText().contains(u"/dev/nvme0n1p2"_s));
    QCOMPARE(look("format-question").join(u'\n'), QString());
    QTest::keyClick(test.sheets().constFirst(), Qt::Key_Escape);
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(!test.recordOf(u"disk2s2"_s)->operationInProgress);

    test.select(u"disk3"_s);
    test.action(u"actionEraseDisk"_s)->trigger();
    auto *const sheet = test.window().findChild<EraseDiskSheet *>();
    QVERIFY(sheet);
    TestController::handlePostedEvents();
    QCOMPARE((cutLabels(*sheet) + cutButtons(*sheet)).join(u'\n'), QString());
    QVERIFY(captionsAreBesideFields(*sheet));
    sheet->grab().save(QDir(QStringLiteral(ZORVEX_PICTURES))
            .filePath(
                u"%1-erase-disk-%2%@%3x.png"_s.arg(language).arg(percentage).arg(sheet->devicePixelRatio())));
    sheet->reject();

    for (const char *disk : { "disk2s2", "disk2" }) {
        test.recordOf(QLatin1String(disk))->internal = 0;
        test.select(QLatin1String(disk));
        controller.mountUnmountButton->click();
        QCOMPARE(test.service.requests().size(), std::size_t { 1 });
        test.service.completeRequest(makeDissenter(DAReturn::Busy));
        QCOMPARE(test.sheets().size(), 1);
        QVERIFY(test.sheets().constFirst()->informativeText().contains(QLatin1String(disk)));
        QCOMPARE(look(disk).join(u'\n'), QString());
        QTest::keyClick(test.sheets().constFirst(), Qt::Key_Escape);
        QTRY_VERIFY(test.sheets().isEmpty());
    }
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
