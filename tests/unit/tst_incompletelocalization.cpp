// SPDX-License-Identifier: MIT
#include "platform/Localization.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class IncompleteLocalizationTest : public QObject
{
    Q_OBJECT

private slots:
    void addedTableIsOffered();
    void englishStandsInForMissingTexts();
};

void IncompleteLocalizationTest::addedTableIsOffered()
{
    QVERIFY(bundleLocalizations().contains(u"eo"_s));
}

void IncompleteLocalizationTest::englishStandsInForMissingTexts()
{
    QVERIFY(loadLocalization(u"eo"_s));
    QCOMPARE(localizedString("BOOLEAN_VALUE_YES_TEXT"), u"Jes"_s);
    QCOMPARE(localizedString("BOOLEAN_VALUE_NO_TEXT"), u"No"_s);
    QCOMPARE(localizedString("NO_SUCH_KEY"), QString());
    QCOMPARE(qtTrId("BOOLEAN_VALUE_YES_TEXT"), u"Jes"_s);
    QCOMPARE(qtTrId("BOOLEAN_VALUE_NO_TEXT"), u"No"_s);
}

QTEST_GUILESS_MAIN(IncompleteLocalizationTest)
#include "tst_incompletelocalization.moc"
