// SPDX-License-Identifier: MIT
//
// Which font shows a tool's output.
#include "ui/font_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestFontRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstFontThatThereIsIsTaken_data();
    void firstFontThatThereIsIsTaken();
    void sizeFollowsTheText_data();
    void sizeFollowsTheText();
};

void TestFontRules::firstFontThatThereIsIsTaken_data()
{
    QTest::addColumn<QStringList>("installed"); // "system" for the system's own
    QTest::addColumn<QString>("font"); // empty for none
    QTest::addColumn<QString>("asked");
    QTest::newRow("system") << QStringList { u"system"_s, u"SF Mono"_s, u"Menlo"_s, u"Monaco"_s }
                            << u"system 11"_s << u"system 11"_s;
    QTest::newRow("SF Mono") << QStringList { u"SF Mono"_s, u"Menlo"_s, u"Monaco"_s } << u"SF Mono 11"_s
                             << u"system 11, SF Mono 11"_s;
    QTest::newRow("Menlo") << QStringList { u"Menlo"_s, u"Monaco"_s } << u"Menlo 11"_s
                           << u"system 11, SF Mono 11, Menlo 11"_s;
    QTest::newRow("Monaco is smaller")
        << QStringList { u"Monaco"_s } << u"Monaco 10"_s << u"system 11, SF Mono 11, Menlo 11, Monaco 10"_s;
    QTest::newRow("none") << QStringList() << u""_s << u"system 11, SF Mono 11, Menlo 11, Monaco 10"_s;
}

void TestFontRules::firstFontThatThereIsIsTaken()
{
    QFETCH(QStringList, installed);
    QStringList asked;
    const auto fontNamed = [&](const QString &name, int pointSize) -> std::optional<QFont> {
        asked += name + u' ' + QString::number(pointSize);
        return installed.contains(name) ? std::optional<QFont>(QFont(name, pointSize)) : std::nullopt;
    };
    const auto font = FontRules::outputFont(
        { [&](int pointSize) { return fontNamed(u"system"_s, pointSize); }, fontNamed });
    QTEST(font ? QString(font->family() + u' ' + QString::number(font->pointSize())) : QString(), "font");
    QTEST(asked.join(u", "_s), "asked");
}

void TestFontRules::sizeFollowsTheText_data()
{
    QTest::addColumn<QFont>("text");
    QTest::addColumn<qreal>("points");
    QTest::addColumn<int>("pixels"); // -1 where the size is in points
    QFont inPoints;
    inPoints.setPointSizeF(13);
    QTest::newRow("standard") << inPoints << 11.0 << -1;
    inPoints.setPointSizeF(26);
    QTest::newRow("large") << inPoints << 22.0 << -1;
    inPoints.setPointSizeF(6.5);
    QTest::newRow("small") << inPoints << 5.5 << -1;
    QFont inPixels;
    inPixels.setPixelSize(26);
    QTest::newRow("in pixels") << inPixels << -1.0 << 22;
}

void TestFontRules::sizeFollowsTheText()
{
    QFETCH(QFont, text);
    QFont before(u"Menlo"_s, 40);
    before.setWeight(QFont::Normal);
    const QFont font = FontRules::withPointSize(before, 11, text);
    QTEST(font.pointSizeF(), "points");
    QTEST(font.pixelSize(), "pixels");
    QCOMPARE(font.family(), u"Menlo"_s);
}

QTEST_GUILESS_MAIN(TestFontRules)
#include "tst_fontrules.moc"
