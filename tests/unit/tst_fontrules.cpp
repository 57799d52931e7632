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

QTEST_GUILESS_MAIN(TestFontRules)
#include "tst_fontrules.moc"
