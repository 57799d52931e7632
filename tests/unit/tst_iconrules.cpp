// SPDX-License-Identifier: MIT
//
// Names of the disk icons.
#include "ui/icon_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestIconRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconOfAKind_data();
    void iconOfAKind();
    void iconOfNoKind();
};

void TestIconRules::iconOfAKind_data()
{
    QTest::addColumn<QString>("smallIcon");
    QTest::addColumn<QString>("bigIcon");
    const QString plain = u"drive_icon.png"_s;
    const QString plainBig = u"drive_icon_big.png"_s;
    const QString marked = u"drive_icon_zvx.png"_s;
    const QString markedBig = u"drive_icon_zvx_big.png"_s;
    QTest::newRow("zorvex_ntfs") << marked << markedBig;
    QTest::newRow("fusefs_qvontfs") << marked << markedBig;
    QTest::newRow("zorvex_exfat") << marked << plainBig;
    QTest::newRow("fusefs_qvoext") << marked << plainBig;
    QTest::newRow("zorvex_ntfs2") << marked << plainBig;
    QTest::newRow("zorvex_") << marked << plainBig;
    QTest::newRow("zorvex") << plain << plainBig;
    QTest::newRow("Zorvex_ntfs") << plain << plainBig;
    QTest::newRow("msdos") << plain << plainBig;
    QTest::newRow("my_zorvex_ntfs") << plain << plainBig;
}

void TestIconRules::iconOfAKind()
{
    const QString kind = QString::fromLatin1(QTest::currentDataTag());
    QTEST(IconRules::diskIconName(kind, false), "smallIcon");
    QTEST(IconRules::diskIconName(kind, true), "bigIcon");
}

void TestIconRules::iconOfNoKind()
{
    QCOMPARE(IconRules::diskIconName(std::nullopt, false), u"drive_icon.png"_s);
    QCOMPARE(IconRules::diskIconName(std::nullopt, true), u"drive_icon_big.png"_s);
}

QTEST_APPLESS_MAIN(TestIconRules)
#include "tst_iconrules.moc"
