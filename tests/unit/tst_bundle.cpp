// SPDX-License-Identifier: MIT
//
// Bundles: their dictionary, and the words of the user's language laid over it.
#include "BundleFolder.h"
#include "platform/Bundle.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestBundle : public QObject
{
    Q_OBJECT

private slots:
    void onlyAFolderIsABundle();
    void resourcePathIsInsideTheBundle();
    void infoDictionaryIsRead();
    void missingOrWrongInfoDictionaryGivesNothing();
    void everyCallReadsAnew();
    void localizedValuesReplaceTopLevelKeysOnly();
    void languageIsChosen_data();
    void languageIsChosen();
    void unreadableTableLeavesTheTurnToTheNextLanguage();
    void tableOfManyKeysIsLaidOverInTime();
    void linkCycleIsHarmless();
};

void TestBundle::onlyAFolderIsABundle()
{
    const BundleFolder folder;
    QVERIFY(BundleFolder::write(folder.bundlePath(u"file"_s), "x"));
    QVERIFY(!Bundle::open(folder.bundlePath(u"file"_s)));
    QVERIFY(!Bundle::open(folder.bundlePath(u"missing"_s)));
    QVERIFY(!Bundle::open(folder.path() + QChar(u'\0')));
    QVERIFY(Bundle::open(folder.path()));
}

void TestBundle::resourcePathIsInsideTheBundle()
{
    const BundleFolder folder;
    const auto bundle = Bundle::open(folder.path());
    QVERIFY(bundle);
    QCOMPARE(bundle->resourcePath(u"icon.png"_s), folder.path() + "/Contents/Resources/icon.png"_L1);
}

void TestBundle::infoDictionaryIsRead()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>v</string></dict>"));
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->infoDictionary();
    QVERIFY(info);
    QVERIFY(*info == PropertyDictionary({ { u"k"_s, u"v"_s } }));
}

void TestBundle::missingOrWrongInfoDictionaryGivesNothing()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"array"_s, "<array/>"));
    QVERIFY(folder.addBundle(u"broken"_s, "<dict>"));
    QVERIFY(folder.addStrings(u"none"_s, u"de"_s, "a = b;"));
    for (const QString &name : { u"array"_s, u"broken"_s, u"none"_s }) {
        const auto bundle = Bundle::open(folder.bundlePath(name));
        QVERIFY(bundle);
        QVERIFY(!bundle->infoDictionary());
        QVERIFY(!bundle->localizedInfoDictionary({ u"de"_s }));
    }
}

void TestBundle::everyCallReadsAnew()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>old</string></dict>"));
    const auto bundle = Bundle::open(folder.bundlePath(u"a"_s));
    QVERIFY(bundle && bundle->infoDictionary());
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>new</string></dict>"));
    QVERIFY(*bundle->infoDictionary() == PropertyDictionary({ { u"k"_s, u"new"_s } }));
}

void TestBundle::localizedValuesReplaceTopLevelKeysOnly()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s,
        "<dict><key>d</key><dict><key>x</key><string>1</string><key>y</key><string>2</string></dict>"
        "<key>k</key><string>kept</string></dict>"));
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, "d = { x = eins; }; new = neu;"));
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->localizedInfoDictionary({ u"de"_s });
    QVERIFY(info);
    QVERIFY(*info
        == PropertyDictionary({ { u"d"_s, PropertyDictionary { { u"x"_s, u"eins"_s } } },
            { u"k"_s, u"kept"_s }, { u"new"_s, u"neu"_s } }));
}

void TestBundle::languageIsChosen_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("expected"); // the folder; "none" for the unlocalized values
    const auto row
        = [](const char *name, const QStringList &folders, const QStringList &languages,
              const QString &expected) { QTest::newRow(name) << folders << languages << expected; };
    row("as given", { u"de"_s, u"pt_BR"_s }, { u"pt_BR"_s }, u"pt_BR"_s);
    row("first of the list", { u"de"_s, u"fr"_s }, { u"fr"_s, u"de"_s }, u"fr"_s);
    row("first that the bundle has", { u"de"_s }, { u"fr"_s, u"de"_s }, u"de"_s);
    row("none", { u"de"_s }, { u"fr"_s }, u"none"_s);
    row("empty list", { u"de"_s }, {}, u"none"_s);
    row("without country", { u"pt"_s }, { u"pt_BR"_s }, u"pt"_s);
    row("country before none", { u"pt"_s, u"pt_BR"_s }, { u"pt_BR"_s }, u"pt_BR"_s);
    row("hyphen for underscore", { u"pt-BR"_s }, { u"pt_BR"_s }, u"pt-BR"_s);
    row("underscore for hyphen", { u"pt_BR"_s }, { u"pt-BR"_s }, u"pt_BR"_s);
    row("traditional Chinese by country", { u"zh_Hant"_s, u"zh_Hans"_s }, { u"zh_TW"_s }, u"zh_Hant"_s);
    row("simplified Chinese by country", { u"zh-Hant"_s, u"zh-Hans"_s }, { u"zh_CN"_s }, u"zh-Hans"_s);
    row("script before language", { u"zh"_s, u"zh_Hant"_s }, { u"zh_Hant_TW"_s }, u"zh_Hant"_s);
    row("old name", { u"English"_s, u"German"_s }, { u"de_AT"_s }, u"German"_s);
    row("code before old name", { u"English"_s, u"en"_s }, { u"en_US"_s }, u"en"_s);
    row("another country is another language", { u"pt_PT"_s }, { u"pt_BR"_s }, u"none"_s);
    row("path", { u"de"_s }, { u"../Resources/de"_s }, u"none"_s);
    row("empty name", { QString() }, { QString() }, u"none"_s);
}

void TestBundle::languageIsChosen()
{
    QFETCH(const QStringList, folders);
    QFETCH(const QStringList, languages);
    QFETCH(const QString, expected);
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>none</string></dict>"));
    for (const QString &language : folders)
        QVERIFY(folder.addStrings(u"a"_s, language, "k = \"" + language.toUtf8() + "\";"));
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->localizedInfoDictionary(languages);
    QVERIFY(info && info->value(u"k"_s) && info->value(u"k"_s)->asString());
    QCOMPARE(*info->value(u"k"_s)->asString(), expected);
}

void TestBundle::unreadableTableLeavesTheTurnToTheNextLanguage()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>none</string></dict>"));
    QVERIFY(folder.addStrings(u"a"_s, u"fr"_s, "k = \"sans fin;"));
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, "k = deutsch;"));
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->localizedInfoDictionary({ u"fr"_s, u"de"_s });
    QVERIFY(info);
    QVERIFY(*info == PropertyDictionary({ { u"k"_s, u"deutsch"_s } }));
}

void TestBundle::tableOfManyKeysIsLaidOverInTime()
{
    const BundleFolder folder;
    QByteArray table;
    for (int i = 0; i < 60'000; ++i)
        table += "key" + QByteArray::number(i) + "=v;";
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>kept</string></dict>"));
    QVERIFY(folder.addStrings(u"a"_s, u"de"_s, table));
    QElapsedTimer timer;
    timer.start();
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->localizedInfoDictionary({ u"de"_s });
    QVERIFY(info);
    QCOMPARE(info->size(), std::size_t { 60'001 });
    QCOMPARE_LT(timer.elapsed(), 3000);
}

void TestBundle::linkCycleIsHarmless()
{
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"a"_s, "<dict><key>k</key><string>none</string></dict>"));
    const QString contents = folder.bundlePath(u"a"_s) + "/Contents"_L1;
    QVERIFY(QFile::link(contents, contents + "/Resources"_L1)); // a folder inside itself
    QVERIFY(QFile::link(contents + "/de.lproj"_L1, contents + "/de.lproj"_L1)); // a link to itself
    const auto info = Bundle::open(folder.bundlePath(u"a"_s))->localizedInfoDictionary({ u"de"_s });
    QVERIFY(info);
    QVERIFY(*info == PropertyDictionary({ { u"k"_s, u"none"_s } }));
}

QTEST_APPLESS_MAIN(TestBundle)
#include "tst_bundle.moc"
