// SPDX-License-Identifier: MIT
#include "ui/color_rules.h"

#include <QTest>

class TestColorRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contrastIsMeasured();
    void colorsCanBeToldApart_data();
    void colorsCanBeToldApart();
};

namespace {

QPalette paletteOf(const QColor &window, const QColor &text, const QColor &highlight)
{
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Highlight, highlight);
    return palette;
}

} // namespace

void TestColorRules::contrastIsMeasured()
{
    QCOMPARE(qRound(ColorRules::contrast(Qt::black, Qt::white)), 21);
    QCOMPARE(ColorRules::contrast(Qt::red, Qt::red), 1);
}

void TestColorRules::colorsCanBeToldApart_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("highlight");
    QTest::newRow("light") << QColor(0xef, 0xf0, 0xf1) << QColor(0x23, 0x26, 0x29)
                           << QColor(0x30, 0x80, 0xc0);
    QTest::newRow("dark") << QColor(0x2a, 0x2e, 0x32) << QColor(0xfc, 0xfc, 0xfc) << QColor(0x3d, 0xae, 0xe9);
    QTest::newRow("pale highlight") << QColor(Qt::white) << QColor(Qt::black) << QColor(0xf0, 0xf0, 0xe0);
    QTest::newRow("grey text") << QColor(Qt::white) << QColor(0x70, 0x70, 0x70) << QColor(Qt::blue);
    QTest::newRow("high contrast") << QColor(Qt::black) << QColor(Qt::white) << QColor(Qt::yellow);
}

void TestColorRules::colorsCanBeToldApart()
{
    QFETCH(const QColor, window);
    QFETCH(const QColor, text);
    QFETCH(const QColor, highlight);
    const QPalette palette = paletteOf(window, text, highlight);
    QVERIFY(ColorRules::contrast(ColorRules::quietText(palette), window) >= 4.5);
    QVERIFY(ColorRules::contrast(ColorRules::filled(palette), ColorRules::track(palette)) >= 3);
}

QTEST_APPLESS_MAIN(TestColorRules)
#include "tst_colorrules.moc"
