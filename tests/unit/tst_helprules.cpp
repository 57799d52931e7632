// SPDX-License-Identifier: MIT
//
// The mount path as a link, without a window.
#include "app/help_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestHelpRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pathStandsBetweenDirectionalControls();
    void linkColorByGeneration();
    void clickOnTheLink_data();
    void clickOnTheLink();
};

void TestHelpRules::pathStandsBetweenDirectionalControls()
{
    const QString path = u"/Volumes/X"_s;
    const QString text = HelpRules::leftToRightText(path);
    QCOMPARE(text.size(), path.size() + 2);
    QCOMPARE(text, QString(QString(QChar(0x202A)) + path + QChar(0x202C)));
}

void TestHelpRules::linkColorByGeneration()
{
    QVERIFY(!HelpRules::usesSystemLinkColor(std::nullopt));
    QVERIFY(!HelpRules::usesSystemLinkColor(13));
    QVERIFY(HelpRules::usesSystemLinkColor(14));
    QVERIFY(HelpRules::usesSystemLinkColor(24));
}

void TestHelpRules::clickOnTheLink_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("selectedRow");
    QTest::addColumn<bool>("isClick");
    QTest::newRow("before the first character") << 0 << 0 << 0 << false;
    QTest::newRow("behind the first character") << 1 << 0 << 0 << true;
    QTest::newRow("before the last character") << 11 << 0 << 3 << true;
    QTest::newRow("behind the last character") << 12 << 0 << 0 << false;
    QTest::newRow("a drag") << 1 << 4 << 0 << false;
    QTest::newRow("nothing selected in the tree") << 1 << 0 << -1 << false;
}

void TestHelpRules::clickOnTheLink()
{
    QFETCH(int, location);
    QFETCH(int, length);
    QFETCH(int, selectedRow);
    QTEST(HelpRules::isClickOnLink(location, length, selectedRow, 12), "isClick");
}

QTEST_APPLESS_MAIN(TestHelpRules)
#include "tst_helprules.moc"
