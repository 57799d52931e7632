// SPDX-License-Identifier: MIT
//
// The cell of a row, drawn.
#include "platform/SystemLog.h"
#include "platform/SystemRelease.h"
#include "ui/ImageAndTextCell.h"

#include <QLineEdit>
#include <QPainter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imageIsDrawnAtTheLeft();
    void mirroredImageIsDrawnAtTheRight();
    void mirroredCellOfAnOldSystemIsPlain_data();
    void mirroredCellOfAnOldSystemIsPlain();
    void imageFrames();
    void cellIsWiderByItsStrip();
    void titleBeginsFurtherIn();
    void backgroundFillsTheStrip();
    void withoutAnImageTheTextHasTheWholeFrame();
    void textColors_data();
    void textColors();
    void textIsDrawnInItsPlaceAndColor_data();
    void textIsDrawnInItsPlaceAndColor();
    void disabledTextOfAnOldSystemIsDrawnLightGray();
    void noHighlightIsPainted();
    void copyKeepsTheImage();
    void editorLeavesOutTheStrip();
    void imageIsResized();
};

namespace {

constexpr QRect frame { 10, 0, 150, 20 };

QPixmap redImage()
{
    QPixmap image(16, 16);
    image.fill(Qt::red);
    return image;
}

QImage drawn(const ImageAndTextCell &cell)
{
    QImage canvas(200, 30, QImage::Format_RGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    cell.drawWithFrame(frame, nullptr, painter);
    return canvas;
}

// The rectangle that holds all pixels of this colour.
QRect extentOf(const QImage &image, const QColor &color)
{
    QRect extent;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

} // namespace

void TestCells::imageIsDrawnAtTheLeft()
{
    ImageAndTextCell cell;
    cell.setImage(redImage());
    QCOMPARE(extentOf(drawn(cell), Qt::red), QRect(13, 2, 16, 16));
}

void TestCells::mirroredImageIsDrawnAtTheRight()
{
    ImageAndTextCellFlipped cell;
    cell.setImage(redImage());
    QCOMPARE(extentOf(drawn(cell), Qt::red), QRect(144, 2, 16, 16));
}

void TestCells::mirroredCellOfAnOldSystemIsPlain_data()
{
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<int>("error");
    QTest::newRow("8.11.1") << QByteArray("8.11.1") << 0;
    QTest::newRow("unknown") << QByteArray() << EIO;
}

void TestCells::mirroredCellOfAnOldSystemIsPlain()
{
    QFETCH(QByteArray, release);
    QFETCH(int, error);
    QStringList lines;
    const SystemLogRedirection log([&lines](const QString &line) { lines.append(line); });
    const SystemReleaseOverride system(release, error);
    ImageAndTextCellFlipped cell;
    cell.setImage(redImage());
    QCOMPARE(extentOf(drawn(cell), Qt::red), QRect(13, 2, 16, 16));
    QCOMPARE(cell.imageFrameForCellFrame(frame), QRectF(13, 2, 16, 16));
    const QString line = u"Error while issuing 'utsname': %1 (%2)"_s.arg(errnoText(EIO)).arg(EIO);
    QCOMPARE(lines.contains(line), error != 0);
}

void TestCells::imageFrames()
{
    ImageAndTextCell plain;
    QCOMPARE(plain.imageFrameForCellFrame(frame), QRectF());
    plain.setImage(redImage());
    QCOMPARE(plain.imageFrameForCellFrame(frame), QRectF(13, 2, 16, 16));
    ImageAndTextCellFlipped mirrored;
    QCOMPARE(mirrored.imageFrameForCellFrame(frame), QRectF());
    mirrored.setImage(redImage());
    QCOMPARE(mirrored.imageFrameForCellFrame(frame), QRectF(131, 2, 16, 16));
}

void TestCells::cellIsWiderByItsStrip()
{
    TextFieldCell base;
    ImageAndTextCell cell;
    base.stringValue = cell.stringValue = u"Some volume"_s;
    QCOMPARE(cell.cellSize(), base.cellSize() + QSizeF(3, 0));
    cell.setImage(redImage());
    QCOMPARE(cell.cellSize(), base.cellSize() + QSizeF(19, 0));
}

void TestCells::titleBeginsFurtherIn()
{
    TextFieldCell base;
    ImageAndTextCell cell;
    base.stringValue = cell.stringValue = u"Some volume"_s;
    const QRectF bounds(10, 40, 131, 60);
    const QRectF title = cell.titleRectForBounds(bounds);
    QCOMPARE(title.x(), base.titleRectForBounds(bounds).x() + 3);
    QCOMPARE(title.right(), bounds.right());
    QCOMPARE(title.center().y(), bounds.center().y());
    QVERIFY(title.height() < 60);
}

void TestCells::backgroundFillsTheStrip()
{
    ImageAndTextCell plain;
    ImageAndTextCellFlipped mirrored;
    for (ImageAndTextCell *cell : { &plain, static_cast<ImageAndTextCell *>(&mirrored) }) {
        cell->setImage(redImage());
        cell->drawsBackground = true;
        cell->backgroundColor = Qt::green;
        const QImage image = drawn(*cell);
        QCOMPARE(extentOf(image, Qt::green), frame);
        // Above the image and below it, and in the margin before it.
        const int x = cell == &plain ? 13 : 144;
        for (const QPoint &point : { QPoint(x, 0), QPoint(x + 15, 19), QPoint(x - 1, 10) })
            QCOMPARE(image.pixelColor(point), QColor(Qt::green));
    }
}

void TestCells::withoutAnImageTheTextHasTheWholeFrame()
{
    // The base cell's frame begins at the frame's left edge and its text where the title does.
    ImageAndTextCell plain;
    ImageAndTextCellFlipped mirrored;
    for (ImageAndTextCell *cell : { &plain, static_cast<ImageAndTextCell *>(&mirrored) }) {
        cell->drawsBackground = true;
        cell->backgroundColor = Qt::green;
        cell->palette.setColor(QPalette::Text, Qt::blue);
        QCOMPARE(extentOf(drawn(*cell), Qt::green), frame);
        cell->drawsBackground = false;
        cell->stringValue = QString(200, QChar(0x2588)); // full blocks, more than fit
        const QRect text = extentOf(drawn(*cell), Qt::blue);
        QVERIFY2(text.left() <= 14 && text.right() > 140,
            qPrintable(u"%1 to %2"_s.arg(text.left()).arg(text.right())));
    }
}

void TestCells::textColors_data()
{
    QTest::addColumn<QByteArray>("release"); // empty for one that cannot be had
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("highlighted");
    QTest::addColumn<QColor>("color");
    const QPalette palette;
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor selected = palette.color(QPalette::Active, QPalette::HighlightedText);
    QTest::newRow("old, disabled") << QByteArray("8.11.1") << false << false << QColor(Qt::lightGray);
    QTest::newRow("old, enabled") << QByteArray("8.11.1") << true << false << text;
    QTest::newRow("new, disabled") << QByteArray("9.0.0") << false << false << text;
    QTest::newRow("new, enabled") << QByteArray("9.0.0") << true << false << text;
    QTest::newRow("unknown, disabled") << QByteArray() << false << false << QColor(Qt::lightGray);
    QTest::newRow("highlighted") << QByteArray("9.0.0") << true << true << selected;
    QTest::newRow("highlighted, old, disabled") << QByteArray("8.11.1") << false << true << selected;
}

void TestCells::textColors()
{
    QFETCH(QByteArray, release);
    QFETCH(bool, enabled);
    QFETCH(bool, highlighted);
    const SystemLogRedirection log([](const QString &) { });
    const SystemReleaseOverride system(release, release.isEmpty() ? EIO : 0);
    ImageAndTextCell cell;
    cell.enabled = enabled;
    cell.highlighted = highlighted;
    QTEST(cell.textColor(), "color");
}

void TestCells::textIsDrawnInItsPlaceAndColor_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("highlighted");
    QTest::addColumn<QColor>("highlightedText");
    QTest::addColumn<QColor>("color");
    const QColor blue(0, 0, 255);
    const QColor green(0, 255, 0);
    const QColor dimmed(115, 115, 255); // 45 in 100 of the white behind it
    QTest::newRow("enabled") << true << false << green << blue;
    QTest::newRow("disabled") << false << false << green << dimmed;
    QTest::newRow("highlighted") << true << true << green << green;
    QTest::newRow("disabled, highlighted") << false << true << green << green;
    QTest::newRow("disabled, highlighted in the text's colour") << false << true << blue << blue;
}

void TestCells::textIsDrawnInItsPlaceAndColor()
{
    QFETCH(bool, enabled);
    QFETCH(bool, highlighted);
    QFETCH(QColor, highlightedText);
    QFETCH(QColor, color);
    ImageAndTextCell plain;
    ImageAndTextCellFlipped mirrored;
    mirrored.direction = Qt::RightToLeft;
    for (ImageAndTextCell *cell : { &plain, static_cast<ImageAndTextCell *>(&mirrored) }) {
        cell->setImage(redImage());
        cell->enabled = enabled;
        cell->highlighted = highlighted;
        cell->palette.setColor(QPalette::Text, QColor(0, 0, 255));
        cell->palette.setColor(QPalette::HighlightedText, highlightedText);
        cell->palette.setColor(QPalette::Base, Qt::white);
        for (const int length : { 4, 200 }) { // one that fits and one that is cut
            cell->stringValue = QString(length, QChar(0x2588)); // full blocks
            // Fully painted pixels: an edge may lie between two.
            const QRect text = extentOf(drawn(*cell), color);
            QVERIFY(text.width() > 20 && text.height() > 5);
            // From 10 on, the strip of 19 and 3 more; mirrored, 3 and the rest of the frame's 131.
            const QRect room = cell == &plain ? QRect(32, 0, 128, 20) : QRect(13, 0, 128, 20);
            QVERIFY2(room.contains(text), qPrintable(u"%1 to %2"_s.arg(text.left()).arg(text.right())));
            if (length == 4)
                QVERIFY(cell == &plain ? text.left() - room.left() <= 1 : room.right() - text.right() <= 1);
        }
    }
}

void TestCells::disabledTextOfAnOldSystemIsDrawnLightGray()
{
    ImageAndTextCell cell;
    cell.enabled = false;
    const QColor text = cell.palette.color(QPalette::Active, QPalette::Text);
    QVERIFY(cell.attributedStringValue().color != text); // dimmed
    const SystemReleaseOverride system("8.11.1");
    QCOMPARE(cell.attributedStringValue().color, QColor(Qt::lightGray));
}

void TestCells::noHighlightIsPainted()
{
    ImageAndTextCell cell;
    cell.highlighted = true;
    QVERIFY(!cell.highlightColorWithFrame(frame, nullptr).isValid());
    QImage blank(200, 30, QImage::Format_RGB32);
    blank.fill(Qt::white);
    QCOMPARE(drawn(cell), blank);
    QVERIFY(cell.isEditable());
}

void TestCells::copyKeepsTheImage()
{
    auto cell = std::make_unique<ImageAndTextCellFlipped>();
    cell->setImage(redImage());
    cell->stringValue = u"DATA"_s;
    const qint64 key = cell->image()->cacheKey();
    const std::unique_ptr<TextFieldCell> copy = cell->copyWithZone();
    cell.reset();
    const auto *const imageCopy = dynamic_cast<const ImageAndTextCellFlipped *>(copy.get());
    QVERIFY(imageCopy);
    QCOMPARE(imageCopy->image()->cacheKey(), key); // shared, not duplicated
    QCOMPARE(imageCopy->stringValue, u"DATA"_s);
    QCOMPARE(extentOf(drawn(*imageCopy), Qt::red), QRect(144, 2, 16, 16));
}

void TestCells::editorLeavesOutTheStrip()
{
    QStringList lines;
    const SystemLogRedirection log([&lines](const QString &line) { lines.append(line); });
    QWidget view;
    QLineEdit editor(&view);
    ImageAndTextCell cell;
    cell.stringValue = u"DATA"_s;
    cell.editWithFrame(frame, &view, &editor);
    QCOMPARE(editor.geometry(), QRect(13, 0, 147, 20));
    QCOMPARE(lines, QStringList { u"editWithFrame"_s });
    cell.setImage(redImage());
    cell.selectWithFrame(frame, &view, &editor, 1, 2);
    QCOMPARE(editor.geometry(), QRect(29, 0, 131, 20));
    QCOMPARE(editor.selectedText(), u"AT"_s);
    QCOMPARE(lines.size(), 1);
}

void TestCells::imageIsResized()
{
    QPixmap none;
    QVERIFY(ImageAndTextCell::imageResize(none, QSize(4, 4)).isNull());
    QVERIFY(none.isNull());
    for (const qreal ratio : { 1.0, 2.0 }) {
        QPixmap source = redImage();
        source.setDevicePixelRatio(ratio);
        const QPixmap resized = ImageAndTextCell::imageResize(source, QSize(40, 20));
        QCOMPARE(resized.deviceIndependentSize(), QSizeF(40, 20));
        QCOMPARE(extentOf(resized.toImage(), Qt::red), QRect(QPoint(0, 0), QSize(40, 20) * ratio));
        // The source gets the size, too, and is another picture.
        QCOMPARE(source.deviceIndependentSize(), QSizeF(40, 20));
        QVERIFY(source.cacheKey() != resized.cacheKey());
    }
}

QTEST_MAIN(TestCells)
#include "tst_cells.moc"
