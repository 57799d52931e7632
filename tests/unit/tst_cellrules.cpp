// SPDX-License-Identifier: MIT
//
// The geometry of a row's cell, without a window.
#include "ui/cell_rules.h"

#include <QTest>

class TestCellRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainCellOf16PointImage();
    void mirroredCellOf16PointImage();
    void imageIsCentredRoundedUp();
    void mirroredImageFrameIsMeasuredFromZero();
    void noImageHasNoFrameButAStrip();
    void frameNarrowerThanTheStrip();
    void titleIsCentredInTheBounds();
    void titleHigherThanTheBoundsStays();
};

namespace {

constexpr QSizeF imageSize { 16, 16 };

} // namespace

void TestCellRules::plainCellOf16PointImage()
{
    const CellRules::Division division = CellRules::divide(QRectF(10, 40, 150, 20), imageSize.width());
    QCOMPARE(division.image, QRectF(10, 40, 19, 20));
    QCOMPARE(division.text, QRectF(29, 40, 131, 20));
    QCOMPARE(CellRules::drawnImageFrame(division, imageSize), QRectF(13, 42, 16, 16));
    QCOMPARE(CellRules::imageFrame(QRectF(10, 40, 150, 20), imageSize), QRectF(13, 42, 16, 16));
}

void TestCellRules::mirroredCellOf16PointImage()
{
    const CellRules::Division division = CellRules::divideFlipped(QRectF(0, 40, 150, 20), imageSize.width());
    QCOMPARE(division.text, QRectF(0, 40, 131, 20));
    QCOMPARE(division.image, QRectF(131, 40, 19, 20));
    QCOMPARE(CellRules::drawnImageFrame(division, imageSize), QRectF(134, 42, 16, 16));
    QCOMPARE(CellRules::imageFrameFlipped(QRectF(0, 40, 150, 20), imageSize), QRectF(131, 42, 16, 16));
}

void TestCellRules::imageIsCentredRoundedUp()
{
    QCOMPARE(CellRules::imageFrame(QRectF(0, 0, 150, 21), imageSize).y(), 3.0);
    QCOMPARE(CellRules::imageFrameFlipped(QRectF(0, 0, 150, 21), imageSize).y(), 3.0);
    const auto division = CellRules::divide(QRectF(0, 0, 150, 21), imageSize.width());
    QCOMPARE(CellRules::drawnImageFrame(division, imageSize).y(), 3.0);
}

void TestCellRules::mirroredImageFrameIsMeasuredFromZero()
{
    QCOMPARE(CellRules::imageFrameFlipped(QRectF(50, 0, 150, 20), imageSize).x(), 131.0);
    const auto division = CellRules::divideFlipped(QRectF(50, 0, 150, 20), imageSize.width());
    QCOMPARE(CellRules::drawnImageFrame(division, imageSize).x(), 184.0);
}

void TestCellRules::noImageHasNoFrameButAStrip()
{
    QCOMPARE(CellRules::imageFrame(QRectF(10, 40, 150, 20), QSizeF(0, 0)), QRectF());
    QCOMPARE(CellRules::imageFrameFlipped(QRectF(10, 40, 150, 20), QSizeF(0, 0)), QRectF());
    QCOMPARE(CellRules::imageStripWidth(0), 3.0);
    QCOMPARE(CellRules::divide(QRectF(10, 40, 150, 20), 0).text, QRectF(13, 40, 147, 20));
}

void TestCellRules::frameNarrowerThanTheStrip()
{
    const CellRules::Division plain = CellRules::divide(QRectF(5, 0, 10, 20), imageSize.width());
    QCOMPARE(plain.image.width(), 10.0);
    QCOMPARE(plain.text, QRectF(15, 0, 0, 20));
    const CellRules::Division mirrored = CellRules::divideFlipped(QRectF(5, 0, 10, 20), imageSize.width());
    QCOMPARE(mirrored.text.width(), 0.0);
    QCOMPARE(mirrored.image, QRectF(5, 0, 10, 20));
}

void TestCellRules::titleIsCentredInTheBounds()
{
    // The base rectangle stands lower than the bounds; it is the bounds that count, and nothing is rounded.
    const QRectF title = CellRules::titleRect(QRectF(10, 44, 100, 18), QRectF(10, 40, 100, 20), 15);
    QCOMPARE(title, QRectF(13, 42.5, 97, 15));
}

void TestCellRules::titleHigherThanTheBoundsStays()
{
    const QRectF bounds(10, 40, 100, 12);
    QCOMPARE(CellRules::titleRect(bounds, bounds, 15), QRectF(13, 40, 97, 12));
    QCOMPARE(CellRules::titleRect(bounds, bounds, 12), QRectF(13, 40, 97, 12));
}

QTEST_APPLESS_MAIN(TestCellRules)
#include "tst_cellrules.moc"
