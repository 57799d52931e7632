// SPDX-License-Identifier: MIT
//
// The window on other screens: two of different fineness, or a single one that is small.
#include "tests/support/TestController.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStyle>
#include <QTabWidget>
#include <QTest>
#include <QWindow>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// The first one of this pixel ratio; null when there is none.
QScreen *screenOf(qreal ratio)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(),
        [ratio](const QScreen *screen) { return qFuzzyCompare(screen->devicePixelRatio(), ratio); });
    return found == screens.end() ? nullptr : *found;
}

} // namespace

class TestScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void picturesFollowTheScreen();
    void picturesGrowWithTheText();
    void windowFitsTheScreen();

private:
    static void useFontOf(qreal points);
};

void TestScreens::useFontOf(qreal points)
{
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    QApplication::setFont(font);
}

void TestScreens::init()
{
    useFontOf(10);
}

void TestScreens::picturesFollowTheScreen()
{
    if (!screenOf(2))
        QSKIP("There is one screen.");
    TestController test;
    test.launch();
    const auto &panel = test.controller();
    QWindow *const window = test.window().windowHandle();
    const auto pictureRatio = [&panel] { return panel.infoBigImageField->pixmap().devicePixelRatio(); };
    QCOMPARE(pictureRatio(), 1.0);
    window->setScreen(screenOf(2));
    if (!qFuzzyCompare(window->devicePixelRatio(), 2.0))
        QSKIP("Qt 6.8 keeps the ratio of a window that has no real display.");
    QTRY_COMPARE(pictureRatio(), 2.0); // also that of no disk
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    panel.formatVolumeLabelField->setText(u"typed"_s);
    const auto buttonSize = [&panel] { return panel.mountUnmountButton->icon().actualSize({ 64, 64 }); };
    QCOMPARE(buttonSize(), QSize(32, 32)); // in pixels of the screen
    window->setScreen(screenOf(1));
    QTRY_COMPARE(pictureRatio(), 1.0);
    QCOMPARE(buttonSize(), QSize(16, 16));
    QCOMPARE(panel.formatVolumeLabelField->text(), u"typed"_s);
}

void TestScreens::picturesGrowWithTheText()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    const auto &panel = test.controller();
    const auto size = [&panel] { return panel.infoBigImageField->pixmap().deviceIndependentSize().toSize(); };
    QCOMPARE(size(), QSize(64, 64));
    useFontOf(13);
    QTRY_COMPARE(size(), QSize(80, 80));
    QCOMPARE(panel.mountUnmountButton->iconSize(), QSize(20, 20));
    QVERIFY(panel.infoBigImageField->width() >= 80);
}

// With its menus and, as far as it is known, its frame. What the pages have no room for is scrolled.
void TestScreens::windowFitsTheScreen()
{
    useFontOf(13);
    TestController test(u"de"_s);
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    const QSize room = test.window().screen()->availableSize();
    const int title = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    QVERIFY2(test.window().height() + title <= room.height() && test.window().width() <= room.width(),
        qPrintable(u"%1 x %2"_s.arg(test.window().width()).arg(test.window().height())));
    QVERIFY(test.window().minimumSizeHint().height() + title <= room.height());
    QVERIFY(test.window().minimumSizeHint().width() <= room.width());
}

QTEST_MAIN(TestScreens)
#include "tst_screens.moc"
