// SPDX-License-Identifier: MIT
//
// The bundles that are installed: that they are whole, and that the parts of one fit each other.
#include "platform/Bundle.h"
#include "tools/diskutil/personality.h"

#include <QDirIterator>
#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList languages { u"en"_s, u"ar"_s, u"de"_s, u"es"_s, u"fr"_s, u"it"_s, u"ja"_s, u"ko"_s,
    u"pt_BR"_s, u"ru"_s, u"zh_CN"_s, u"zh_TW"_s };

QString root()
{
    return QStringLiteral(ZORVEX_FILESYSTEMS);
}

QString textOf(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    const QString *text = value ? value->asString() : nullptr;
    return text ? *text : QString();
}

const PropertyDictionary *dictionaryOf(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    return value ? value->asDictionary() : nullptr;
}

QStringList bundlePaths()
{
    QStringList paths;
    for (const QString &folder : { u"/System"_s, u"/Local"_s }) {
        QDirIterator entries(root() + folder, { u"*.fs"_s }, QDir::Dirs);
        while (entries.hasNext())
            paths.append(entries.next());
    }
    return paths;
}

void addBundleRows()
{
    QTest::addColumn<QString>("path");
    for (const QString &path : bundlePaths())
        QTest::newRow(qPrintable(path.section(u'/', -1))) << path;
}

} // namespace

class TestFilesystemBundles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereAreBundles();
    void personalitiesAreWhole_data() { addBundleRows(); }
    void personalitiesAreWhole();
    void namesInEveryLanguage_data() { addBundleRows(); }
    void namesInEveryLanguage();
    void theDefaultNamesAreAllowed_data() { addBundleRows(); }
    void theDefaultNamesAreAllowed();
    void noNameOfAPersonalityIsGivenTwice();
    void exfatIsNamedAsTheProgramExpects();
    void everyBundleIsInstalled();
};

void TestFilesystemBundles::thereAreBundles()
{
    QVERIFY(bundlePaths().size() >= 11);
}

void TestFilesystemBundles::personalitiesAreWhole()
{
    QFETCH(QString, path);
    const auto information = Bundle::open(path)->infoDictionary();
    QVERIFY(information);
    QVERIFY(textOf(*information, u"CFBundleIdentifier"_s).startsWith(u"org.zorvex."_s));
    QVERIFY(information->value(u"FSProbeOrder"_s)->asNumber());
    const FilesystemBundle bundle = readFilesystemBundle(path, u"x"_s, *information);
    QVERIFY(!bundle.personalities.empty());
    QVERIFY(!bundle.linuxTypes.isEmpty() && !bundle.requiredTools.isEmpty() && !bundle.packages.isEmpty());
    QVERIFY(bundle.labelRule.unit != LabelRule::Unit::Unlimited);
    for (const Personality &personality : bundle.personalities) {
        // A personality that cannot be made only names volumes, for a check and a repair.
        QCOMPARE(personality.format.has_value(), personality.minimumSize.has_value());
        QVERIFY(personality.format || personality.verification);
        QVERIFY(!personality.maximumSize || *personality.minimumSize < *personality.maximumSize);
        QCOMPARE(personality.verification.has_value(), personality.repair.has_value());
        QVERIFY(!personality.key.contains(u'\'')); // it is passed between single quotes
    }
}

void TestFilesystemBundles::namesInEveryLanguage()
{
    QFETCH(QString, path);
    const auto bundle = Bundle::open(path);
    const auto information = bundle->infoDictionary();
    QVERIFY(information);
    const PropertyDictionary *personalities = dictionaryOf(*information, u"FSPersonalities"_s);
    QVERIFY(personalities);
    for (const QString &language : languages) {
        QVERIFY(QFile::exists(bundle->resourcePath(language + u".lproj/InfoPlist.strings"_s)));
        const auto localized = bundle->localizedInfoDictionary({ language });
        const PropertyDictionary *names
            = localized ? dictionaryOf(*localized, u"FSPersonalities"_s) : nullptr;
        QVERIFY2(names, qPrintable(language));
        QCOMPARE(names->size(), personalities->size());
        for (const auto &entry : *personalities) {
            const PropertyDictionary *personality = dictionaryOf(*names, entry.first);
            QVERIFY2(personality && !textOf(*personality, u"FSName"_s).isEmpty(), qPrintable(entry.first));
            QVERIFY2(!personality->value(u"FSFormatExecutable"_s), "the table of names was not read");
        }
    }
}

void TestFilesystemBundles::theDefaultNamesAreAllowed()
{
    QFETCH(QString, path);
    const auto information = Bundle::open(path)->infoDictionary();
    QVERIFY(information);
    const FilesystemBundle bundle = readFilesystemBundle(path, u"x"_s, *information);
    for (const QString &name : { u"UNTITLED"_s, u"Untitled"_s, u""_s })
        QVERIFY(!reasonAgainstLabel(bundle.labelRule, name));
}

void TestFilesystemBundles::noNameOfAPersonalityIsGivenTwice()
{
    QSet<QString> keys;
    for (const QString &path : bundlePaths()) {
        const auto information = Bundle::open(path)->infoDictionary();
        QVERIFY(information);
        for (const Personality &personality :
            readFilesystemBundle(path, u"x"_s, *information).personalities) {
            QVERIFY2(!keys.contains(personality.key), qPrintable(personality.key));
            keys.insert(personality.key);
        }
    }
}

void TestFilesystemBundles::exfatIsNamedAsTheProgramExpects()
{
    const auto localized = Bundle::open(root() + u"/System/exfat.fs"_s)->localizedInfoDictionary({ u"de"_s });
    QVERIFY(localized);
    const PropertyDictionary *names = dictionaryOf(*localized, u"FSPersonalities"_s);
    QVERIFY(names);
    QCOMPARE(textOf(*dictionaryOf(*names, u"ExFAT"_s), u"FSName"_s), u"ExFAT"_s);
}

void TestFilesystemBundles::everyBundleIsInstalled()
{
    QFile rules(root() + u"/CMakeLists.txt"_s);
    QVERIFY(rules.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(rules.readAll());
    for (const QString &path : bundlePaths()) {
        const QString call = u"zorvex_filesystem_bundle(%1 %2 "_s.arg(
            path.section(u'/', -2, -2), path.section(u'/', -1).chopped(3));
        QVERIFY2(text.contains(call), qPrintable(call));
    }
}

QTEST_APPLESS_MAIN(TestFilesystemBundles)
#include "tst_filesystembundles.moc"
