// SPDX-License-Identifier: MIT
//
// Frames of the mirrored outline view and widths of the panes, without a window.
#include "ui/outline_rules.h"

#include <QTest>

class TestOutlineRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secondPaneWinsWhereThereIsNoRoom();
    void firstPaneKeepsItsShare();
    void firstPaneIsNotNarrowerThanItsMinimum();
    void mirroredMinimumsAreSwapped();
    void splitViewWithoutOldWidthKeepsTheFirstPane();
    void shareSurvivesManySmallSteps();
    void dividerLimits();
    void framesMoveFromTheNinthGenerationOn_data();
    void framesMoveFromTheNinthGenerationOn();
};

using namespace OutlineRules;

void TestOutlineRules::secondPaneWinsWhereThereIsNoRoom()
{
    const PaneWidths widths = resizedPaneWidths(800, 500, 200, false);
    QCOMPARE(widths.first, 100.0);
    QCOMPARE(widths.second, 392.0);
}

void TestOutlineRules::firstPaneKeepsItsShare()
{
    const PaneWidths widths = resizedPaneWidths(800, 1000, 200, false);
    QCOMPARE(widths.first, 250.0);
    QCOMPARE(widths.second, 742.0);
}

void TestOutlineRules::firstPaneIsNotNarrowerThanItsMinimum()
{
    QCOMPARE(resizedPaneWidths(1000, 720, 250, false).first, 200.0);
    QCOMPARE(resizedPaneWidths(1000, 900, 800, false).first, 500.0);
}

void TestOutlineRules::mirroredMinimumsAreSwapped()
{
    const PaneWidths narrow = resizedPaneWidths(800, 500, 552, true);
    QCOMPARE(narrow.first, 300.0);
    QCOMPARE(narrow.second, 192.0);
    const PaneWidths wide = resizedPaneWidths(1000, 800, 400, true);
    QCOMPARE(wide.first, 400.0);
    QCOMPARE(wide.second, 392.0);
}

void TestOutlineRules::splitViewWithoutOldWidthKeepsTheFirstPane()
{
    QCOMPARE(resizedPaneWidths(0, 800, 240, false).first, 240.0);
}

void TestOutlineRules::shareSurvivesManySmallSteps()
{
    auto first = resizedPaneWidths(800, 800, 300, false).first;
    for (int width = 801; width <= 1600; ++width)
        first = resizedPaneWidths(width - 1, width, first, false).first;
    QVERIFY2(qAbs(first - 600) < 0.5, qPrintable(QString::number(first)));
}

void TestOutlineRules::dividerLimits()
{
    QCOMPARE(minimumDividerPosition(false), 200);
    QCOMPARE(minimumDividerPosition(true), 400);
    QCOMPARE(maximumDividerPosition(800, false), 400);
    QCOMPARE(maximumDividerPosition(800, true), 600);
    QCOMPARE(maximumDividerPosition(0, false), -400);
    QCOMPARE(dividerThickness, 8);
}

void TestOutlineRules::framesMoveFromTheNinthGenerationOn_data()
{
    QTest::addColumn<int>("generation"); // -1 for one that is not known
    QTest::addColumn<bool>("moves");
    QTest::newRow("unknown") << -1 << false;
    QTest::newRow("8") << 8 << false;
    QTest::newRow("9") << 9 << true;
    QTest::newRow("10") << 10 << true;
}

void TestOutlineRules::framesMoveFromTheNinthGenerationOn()
{
    QFETCH(int, generation);
    QFETCH(bool, moves);
    const auto known = generation < 0 ? std::nullopt
                                      : std::optional<unsigned long>(static_cast<unsigned long>(generation));
    QCOMPARE(mirrorsFrames(known), moves);
    const QRect triangle(0, 24, 20, 24);
    QCOMPARE(flippedTriangleFrame(triangle, 240, known), moves ? QRect(214, 24, 20, 24) : triangle);
    const QRect cell(40, 24, 200, 24);
    QCOMPARE(flippedCellFrame(cell, known), moves ? QRect(0, 24, 200, 24) : cell);
}

QTEST_APPLESS_MAIN(TestOutlineRules)
#include "tst_outlinerules.moc"
