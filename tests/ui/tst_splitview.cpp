// SPDX-License-Identifier: MIT
//
// The divider and the panes of a real split view.
#include "tests/support/TestController.h"

#include <QApplication>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSplitView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void narrowViewGivesTheTabsTheirMinimum();
    void widerViewKeepsTheShare();
    void windowResizedInSmallStepsKeepsTheShare();
    void dividerStopsAtItsLimits_data();
    void dividerStopsAtItsLimits();
    void keyboardMovesTheDivider();
    void dividerShowsThatItHasTheFocus();
};

namespace {

// A split view of two plain panes with the controller's rules.
struct PlainView
{
    explicit PlainView(TestController &test, int width, int firstWidth)
    {
        for (int i = 0; i < 2; ++i) {
            auto *const pane = new QWidget(&view);
            pane->setMinimumSize(1, 1);
        }
        view.setDelegate(&test.controller());
        view.resize(width, 300);
        view.show();
        view.setFirstPaneWidth(firstWidth);
    }

    SplitView view;
};

void drag(SplitView *view, int distance)
{
    QWidget *const divider = view->handle(1);
    const QPoint start = divider->rect().center();
    QTest::mousePress(divider, Qt::LeftButton, {}, start);
    const QPoint end = start + QPoint(distance, 0);
    QMouseEvent move(QEvent::MouseMove, end, divider->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(divider, &move);
    QTest::mouseRelease(divider, Qt::LeftButton, {}, start);
}

} // namespace

void TestSplitView::narrowViewGivesTheTabsTheirMinimum()
{
    TestController test;
    test.launch();
    PlainView plain(test, 800, 200);
    plain.view.resize(500, 300);
    QCOMPARE(plain.view.widget(0)->geometry(), QRect(0, 0, 100, 300));
    QCOMPARE(plain.view.widget(1)->geometry(), QRect(108, 0, 392, 300));
    QCOMPARE(plain.view.handle(1)->x(), 100);
    QCOMPARE(plain.view.handle(1)->width(), 8);
}

void TestSplitView::widerViewKeepsTheShare()
{
    TestController test;
    test.launch();
    PlainView plain(test, 800, 200);
    plain.view.resize(1000, 320);
    QCOMPARE(plain.view.widget(0)->geometry(), QRect(0, 0, 250, 320));
    QCOMPARE(plain.view.widget(1)->geometry(), QRect(258, 0, 742, 320));
}

void TestSplitView::windowResizedInSmallStepsKeepsTheShare()
{
    for (const QString &localization : { u"en"_s, u"ar"_s }) {
        TestController test(localization);
        test.launch();
        QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
        const auto width = [&test] { return test.controller().outlineViewContainer->width(); };
        QCOMPARE(width(), 232);
        for (int windowWidth = 801; windowWidth <= 1000; ++windowWidth) {
            test.window().resize(windowWidth, 450);
            QTRY_COMPARE(test.controller().mainSplitView->width(), windowWidth);
        }
        // The first pane has its share of the whole; the second what the divider leaves.
        QCOMPARE(width(), localization == u"en"_s ? 290 : 1000 - 700 - 8);
    }
}

void TestSplitView::dividerStopsAtItsLimits_data()
{
    QTest::addColumn<QString>("localization");
    QTest::addColumn<int>("distance");
    QTest::addColumn<int>("position");
    QTest::newRow("en, left") << u"en"_s << -150 << 200;
    QTest::newRow("en, right") << u"en"_s << 400 << 400;
    QTest::newRow("en, between") << u"en"_s << 30 << 262;
    QTest::newRow("ar, left") << u"ar"_s << -300 << 400;
    QTest::newRow("ar, right") << u"ar"_s << 200 << 600;
    QTest::newRow("ar, between") << u"ar"_s << -30 << 530;
}

void TestSplitView::dividerStopsAtItsLimits()
{
    QFETCH(QString, localization);
    QFETCH(int, distance);
    TestController test(localization);
    test.launch();
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    SplitView *const view = test.controller().mainSplitView;
    drag(view, distance);
    QTEST(view->handle(1)->x(), "position");
}

void TestSplitView::keyboardMovesTheDivider()
{
    for (const QString &localization : { u"en"_s, u"ar"_s }) {
        TestController test(localization);
        test.launch();
        QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
        QWidget *const divider = test.controller().mainSplitView->handle(1);
        const bool isMirrored = localization == u"ar"_s;
        const int start = isMirrored ? 560 : 232;
        QCOMPARE(divider->x(), start);
        QTest::keyClick(divider, Qt::Key_Right);
        QCOMPARE(divider->x(), start + 10);
        for (int i = 0; i < 50; ++i)
            QTest::keyClick(divider, Qt::Key_Right);
        QCOMPARE(divider->x(), isMirrored ? 600 : 400);
        for (int i = 0; i < 50; ++i)
            QTest::keyClick(divider, Qt::Key_Left);
        QCOMPARE(divider->x(), isMirrored ? 400 : 200);
    }
}

void TestSplitView::dividerShowsThatItHasTheFocus()
{
    QApplication::setStyle(u"Fusion"_s);
    TestController test;
    test.launch();
    test.window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QWidget *const divider = test.controller().mainSplitView->handle(1);
    const QImage plain = divider->grab().toImage();
    divider->setFocus(Qt::TabFocusReason);
    // The keyboard is in use: only then a style marks the focus.
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), divider);
    QVERIFY(divider->grab().toImage() != plain);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QVERIFY(!divider->hasFocus());
    QCOMPARE(divider->grab().toImage(), plain);
}

QTEST_MAIN(TestSplitView)
#include "tst_splitview.moc"
