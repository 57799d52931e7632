// SPDX-License-Identifier: MIT
#include "platform/Localization.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class LocalizationTest : public QObject
{
    Q_OBJECT

private slots:
    void providesTwelveLocalizations();
    void choosesTheLocalizationsOfTheUser_data();
    void choosesTheLocalizationsOfTheUser();
    void choosesAmongWhatIsAvailable();
    void onlyArabicIsRightToLeft_data();
    void onlyArabicIsRightToLeft();
    void localeDecidesWithoutAListOfLocalizations();
    void everyLocalizationHasItsTexts_data();
    void everyLocalizationHasItsTexts();
    void interfaceFileTextsFollowTheLocalization();
    void toolkitTextsFollowTheLocalization();
    void unknownKeyIsEmpty();
    void unknownLocalizationLeavesEnglishInUse();
    void regionWithoutATableIsUnknown();
    void digitsAreTheSameInEveryLocalization();
    void fillsPlaceholders_data();
    void fillsPlaceholders();
};

void LocalizationTest::providesTwelveLocalizations()
{
    const QStringList expected { u"ar"_s, u"de"_s, u"en"_s, u"es"_s, u"fr"_s, u"it"_s, u"ja"_s, u"ko"_s,
        u"pt_BR"_s, u"ru"_s, u"zh_CN"_s, u"zh_TW"_s };
    QCOMPARE(bundleLocalizations(), expected);
}

void LocalizationTest::choosesTheLocalizationsOfTheUser_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QStringList>("expected");

    const QStringList english { u"en"_s };
    QTest::newRow("exact") << QStringList { u"fr"_s } << QStringList { u"fr"_s };
    QTest::newRow("territory with hyphen") << QStringList { u"pt-BR"_s } << QStringList { u"pt_BR"_s };
    QTest::newRow("territory with underscore") << QStringList { u"pt_BR"_s } << QStringList { u"pt_BR"_s };
    QTest::newRow("language at large for a territory")
        << QStringList { u"de-AT"_s } << QStringList { u"de"_s };
    QTest::newRow("another territory") << QStringList { u"pt-PT"_s } << QStringList { u"pt_BR"_s };
    QTest::newRow("POSIX locale") << QStringList { u"de_DE.UTF-8@euro"_s } << QStringList { u"de"_s };
    QTest::newRow("modifier alone") << QStringList { u"fr@euro"_s } << QStringList { u"fr"_s };
    QTest::newRow("script of another language") << QStringList { u"de-Latn-DE"_s } << QStringList { u"de"_s };
    QTest::newRow("traditional Chinese") << QStringList { u"zh-Hant"_s } << QStringList { u"zh_TW"_s };
    QTest::newRow("Hong Kong") << QStringList { u"zh-HK"_s } << QStringList { u"zh_TW"_s };
    QTest::newRow("Macao") << QStringList { u"zh-MO"_s } << QStringList { u"zh_TW"_s };
    QTest::newRow("Taiwan") << QStringList { u"zh_TW"_s } << QStringList { u"zh_TW"_s };
    QTest::newRow("simplified Chinese") << QStringList { u"zh-Hans"_s } << QStringList { u"zh_CN"_s };
    QTest::newRow("China") << QStringList { u"zh-CN"_s } << QStringList { u"zh_CN"_s };
    QTest::newRow("Singapore") << QStringList { u"zh-SG"_s } << QStringList { u"zh_CN"_s };
    QTest::newRow("Chinese") << QStringList { u"zh"_s } << QStringList { u"zh_CN"_s };
    QTest::newRow("script before territory") << QStringList { u"zh-Hans-HK"_s } << QStringList { u"zh_CN"_s };
    QTest::newRow("C locale") << QStringList { u"C"_s } << english;
    QTest::newRow("POSIX") << QStringList { u"POSIX"_s } << english;
    QTest::newRow("C before another") << QStringList { u"C"_s, u"de"_s } << QStringList { u"en"_s, u"de"_s };
    QTest::newRow("POSIX before another")
        << QStringList { u"POSIX"_s, u"de"_s } << QStringList { u"en"_s, u"de"_s };
    QTest::newRow("unknown language") << QStringList { u"tlh"_s } << english;
    QTest::newRow("similar language") << QStringList { u"arx"_s } << english;
    QTest::newRow("no language") << QStringList {} << english;
    QTest::newRow("empty language") << QStringList { QString() } << english;
    QTest::newRow("in the user's order, once each") << QStringList { u"tlh"_s, u"ja-JP"_s, u"de-DE"_s,
        u"ja"_s, u"en-US"_s } << QStringList { u"ja"_s, u"de"_s, u"en"_s };
}

void LocalizationTest::choosesTheLocalizationsOfTheUser()
{
    QFETCH(QStringList, languages);
    QFETCH(QStringList, expected);
    QCOMPARE(preferredLocalizations(bundleLocalizations(), languages), expected);
}

void LocalizationTest::choosesAmongWhatIsAvailable()
{
    QCOMPARE(preferredLocalizations({}, { u"de"_s }), QStringList());
    QCOMPARE(preferredLocalizations({ u"fr"_s }, { u"de"_s }), QStringList());
    QCOMPARE(preferredLocalizations({ u"pt_BR"_s, u"pt_PT"_s, u"pt"_s }, { u"pt-PT"_s, u"pt-AO"_s }),
        QStringList({ u"pt_PT"_s, u"pt"_s }));
    QCOMPARE(preferredLocalizations({ u"pt_BR"_s, u"pt_PT"_s }, { u"pt-AO"_s }), QStringList { u"pt_BR"_s });
}

void LocalizationTest::onlyArabicIsRightToLeft_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("expected");

    QTest::newRow("Arabic") << u"ar"_s << true;
    QTest::newRow("Arabic of a country") << u"ar_SA"_s << true;
    QTest::newRow("hyphen") << u"ar-SA"_s << false;
    QTest::newRow("longer code") << u"arx"_s << false;
    QTest::newRow("upper case") << u"AR"_s << false;
    QTest::newRow("Hebrew") << u"he"_s << false;
    QTest::newRow("French") << u"fr"_s << false;
    QTest::newRow("empty") << QString() << false;
}

void LocalizationTest::onlyArabicIsRightToLeft()
{
    QFETCH(QString, identifier);
    QFETCH(bool, expected);
    const QString otherwise = expected ? u"fr"_s : u"ar"_s;
    QCOMPARE(isRightToLeftIdentifier(QStringList { identifier, otherwise }, otherwise), expected);
    QCOMPARE(isRightToLeftIdentifier(std::nullopt, identifier), expected);
}

void LocalizationTest::localeDecidesWithoutAListOfLocalizations()
{
    QVERIFY(isRightToLeftIdentifier(std::nullopt, u"ar_EG"_s));
    QVERIFY(isRightToLeftIdentifier(QStringList(), u"ar_EG"_s));
    QVERIFY(!isRightToLeftIdentifier(QStringList { u"en"_s }, u"ar_EG"_s));
}

void LocalizationTest::everyLocalizationHasItsTexts_data()
{
    QTest::addColumn<QString>("yes");

    QTest::newRow("ar") << u"نعم"_s;
    QTest::newRow("de") << u"Ja"_s;
    QTest::newRow("en") << u"Yes"_s;
    QTest::newRow("es") << u"Sí"_s;
    QTest::newRow("fr") << u"Oui"_s;
    QTest::newRow("it") << u"Sì"_s;
    QTest::newRow("ja") << u"はい"_s;
    QTest::newRow("ko") << u"예"_s;
    QTest::newRow("pt_BR") << u"Sim"_s;
    QTest::newRow("ru") << u"Да"_s;
    QTest::newRow("zh_CN") << u"是"_s;
    QTest::newRow("zh_TW") << u"是"_s;
}

void LocalizationTest::everyLocalizationHasItsTexts()
{
    QFETCH(QString, yes);
    const QString localization = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(loadLocalization(localization));
    QCOMPARE(localizationInUse(), localization);
    QCOMPARE(localizedString("BOOLEAN_VALUE_YES_TEXT"), yes);
}

void LocalizationTest::interfaceFileTextsFollowTheLocalization()
{
    QVERIFY(loadLocalization(u"de"_s));
    QCOMPARE(qtTrId("BOOLEAN_VALUE_NO_TEXT"), u"Nein"_s);
    QVERIFY(loadLocalization(u"fr"_s));
    QCOMPARE(qtTrId("BOOLEAN_VALUE_NO_TEXT"), u"Non"_s);
}

void LocalizationTest::toolkitTextsFollowTheLocalization()
{
    QVERIFY(loadLocalization(u"en"_s));
    const QString english = QCoreApplication::translate("QPlatformTheme", "Cancel");
    QCOMPARE(english, u"Cancel"_s);
    QVERIFY(loadLocalization(u"de"_s));
    const QString german = QCoreApplication::translate("QPlatformTheme", "Cancel");
    QVERIFY(loadLocalization(u"en"_s));
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Cancel"_s);
    QCOMPARE(german, u"Abbrechen"_s);
}

void LocalizationTest::unknownKeyIsEmpty()
{
    QVERIFY(loadLocalization(u"de"_s));
    QCOMPARE(localizedString("NO_SUCH_KEY"), QString());
    QCOMPARE(localizedString(""), QString());
}

void LocalizationTest::unknownLocalizationLeavesEnglishInUse()
{
    QVERIFY(loadLocalization(u"de"_s));
    QVERIFY(!loadLocalization(u"tlh"_s));
    QCOMPARE(localizationInUse(), u"en"_s);
    QCOMPARE(localizedString("BOOLEAN_VALUE_YES_TEXT"), u"Yes"_s);
}

void LocalizationTest::regionWithoutATableIsUnknown()
{
    QVERIFY(!loadLocalization(u"de_AT"_s));
    QCOMPARE(localizationInUse(), u"en"_s);
    QVERIFY(!loadLocalization(QString()));
    QCOMPARE(localizationInUse(), u"en"_s);
}

void LocalizationTest::digitsAreTheSameInEveryLocalization()
{
    for (const QString &localization : bundleLocalizations()) {
        QVERIFY(loadLocalization(localization));
        QCOMPARE(QLocale().toString(7), u"7"_s);
        QCOMPARE(QLocale().language(), QLocale(localization).language()); // its way to write a time
    }
}

void LocalizationTest::fillsPlaceholders_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");

    const QStringList two { u"one"_s, u"two"_s };
    QTest::newRow("in turn") << u"%@ of %@"_s << two << u"one of two"_s;
    QTest::newRow("numbered") << u"%2$@中%1$@"_s << two << u"two中one"_s;
    QTest::newRow("one twice") << u"%1$@ %1$@"_s << two << u"one one"_s;
    QTest::newRow("text only") << u"nothing"_s << two << u"nothing"_s;
    QTest::newRow("empty") << QString() << two << QString();
    QTest::newRow("percent sign") << u"%% 100%%"_s << two << u"% 100%"_s;
    QTest::newRow("percent sign before a placeholder") << u"%%@ %%%@"_s << two << u"%@ %one"_s;
    QTest::newRow("argument with a placeholder")
        << u"%@ %@"_s << QStringList { u"%@"_s, u"%1$@"_s } << u"%@ %1$@"_s;
    QTest::newRow("argument with a percent sign") << u"%@"_s << QStringList { u"%%"_s } << u"%%"_s;
    QTest::newRow("argument that makes one with what follows")
        << u"%@@ %@$@"_s << QStringList { u"%"_s, u"%1"_s } << u"%@ %1$@"_s;
    QTest::newRow("missing argument") << u"[%@] [%@] [%3$@]"_s << QStringList { u"x"_s } << u"[x] [] []"_s;
    QTest::newRow("numbers do not count in turn") << u"%2$@ %@"_s << two << u"two one"_s;
    QTest::newRow("not a placeholder") << u"%d %1 %1$ %0$@ %1$s %"_s << two << u"%d %1 %1$ %0$@ %1$s %"_s;
    QTest::newRow("number too long") << u"%99999999999999999999$@"_s << two << u"%99999999999999999999$@"_s;
}

void LocalizationTest::fillsPlaceholders()
{
    QFETCH(QString, format);
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    QCOMPARE(formatLocalized(format, arguments), expected);
}

QTEST_GUILESS_MAIN(LocalizationTest)
#include "tst_localization.moc"
