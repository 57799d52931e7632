// SPDX-License-Identifier: MIT
//
// The bundles that are installed: that they are whole, and that the parts of one fit each other.
#include "platform/Bundle.h"
#include "tools/diskutil/Personality.h"

#include <QDirIterator>
#include <QFileInfo>
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

// The bundle as diskutil sees it.
std::optional<FilesystemBundle> readBundle(const QString &path)
{
    std::optional<FilesystemBundle> found;
    scanBundles(
        { QFileInfo(path).path() }, [](const QString &line) { qWarning() << line; },
        [&](const BundleDescription &description) {
            if (description.path() == path)
                found = readFilesystemBundle(description);
            return true;
        });
    return found;
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
    void subtypesAreThoseOfTheVariants_data() { addBundleRows(); }
    void subtypesAreThoseOfTheVariants();
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
    QVERIFY(information->text(u"CFBundleIdentifier"_s).startsWith(u"org.zorvex."_s));
    QVERIFY(information->value(u"FSProbeOrder"_s)->asNumber());
    const auto bundle = readBundle(path);
    QVERIFY(bundle);
    QVERIFY(!bundle->linuxTypes.isEmpty() && !bundle->requiredTools.isEmpty() && !bundle->packages.isEmpty());
    QVERIFY(bundle->labelRule.unit != LabelRule::Unit::Unlimited);
    for (const Personality &personality : bundle->personalities) {
        // A personality that cannot be made only names volumes, for a check and a repair.
        QCOMPARE(personality.format.has_value(), personality.minimumSize.has_value());
        QVERIFY(personality.format || personality.verification);
        QVERIFY(!personality.maximumSize || *personality.minimumSize < *personality.maximumSize);
        QCOMPARE(personality.verification.has_value(), personality.repair.has_value());
        // What other systems read as well has a type that they look into.
        const bool isLinux = bundle->linuxTypes.contains(u"ext4"_s) || bundle->linuxTypes.contains(u"xfs"_s)
            || bundle->linuxTypes.contains(u"btrfs"_s) || bundle->linuxTypes.contains(u"f2fs"_s);
        QCOMPARE(personality.partitionTypes.gpt == PartitionTypes().gpt, isLinux);
        QCOMPARE(personality.partitionTypes.mbr == PartitionTypes().mbr, isLinux);
        QVERIFY(!personality.key.contains(u'\'')); // it is passed between single quotes
    }
}

void TestFilesystemBundles::subtypesAreThoseOfTheVariants()
{
    QFETCH(QString, path);
    const auto information = Bundle::open(path)->infoDictionary();
    QVERIFY(information);
    const auto bundle = readBundle(path);
    QVERIFY(bundle);
    QSet<qint64> named;
    for (const Personality &personality : bundle->personalities) {
        if (personality.subtype)
            named.insert(*personality.subtype);
    }
    QSet<qint64> told;
    if (const PropertyArray *variants = information->array(u"FSLinuxSubtypes"_s)) {
        for (const PropertyValue &variant : *variants)
            told.insert(variant.asDictionary()->number(u"FSSubType"_s)->longLongValue());
    }
    QCOMPARE(told, named);
    QVERIFY(!named.contains(0)); // what a record holds whose volume has not been looked at
}

// A bundle whose names are the same in all languages has no tables of names. One that has a table has one for
// each language, and says something of its own in it.
void TestFilesystemBundles::namesInEveryLanguage()
{
    QFETCH(QString, path);
    const auto bundle = Bundle::open(path);
    const auto information = bundle->infoDictionary();
    QVERIFY(information);
    const PropertyDictionary *personalities = information->dictionary(u"FSPersonalities"_s);
    QVERIFY(personalities);
    const bool hasTables = QFile::exists(bundle->resourcePath(u"en.lproj"_s));
    for (const QString &language : languages) {
        const QString table = language + u".lproj/InfoPlist.strings"_s;
        QVERIFY2(QFile::exists(bundle->resourcePath(table)) == hasTables, qPrintable(language));
        const auto localized = bundle->localizedInfoDictionary({ language });
        const PropertyDictionary *names = localized ? localized->dictionary(u"FSPersonalities"_s) : nullptr;
        QVERIFY2(names, qPrintable(language));
        QCOMPARE(names->size(), personalities->size());
        bool hasOwnName = false;
        for (const auto &[key, value] : *personalities) {
            const PropertyDictionary *personality = names->dictionary(key);
            QVERIFY2(personality && !personality->text(u"FSName"_s).isEmpty(), qPrintable(key));
            QVERIFY2(!hasTables || !personality->value(u"FSFormatExecutable"_s), "the table was not read");
            hasOwnName |= personality->text(u"FSName"_s) != value.asDictionary()->text(u"FSName"_s);
        }
        QCOMPARE(hasOwnName, hasTables);
    }
}

void TestFilesystemBundles::theDefaultNamesAreAllowed()
{
    QFETCH(QString, path);
    const auto bundle = readBundle(path);
    QVERIFY(bundle);
    for (const QString &name : { u"UNTITLED"_s, u"Untitled"_s, u""_s })
        QVERIFY(!reasonAgainstLabel(bundle->labelRule, name));
}

void TestFilesystemBundles::noNameOfAPersonalityIsGivenTwice()
{
    QSet<QString> keys;
    for (const QString &path : bundlePaths()) {
        const auto bundle = readBundle(path);
        QVERIFY(bundle);
        for (const Personality &personality : bundle->personalities) {
            QVERIFY2(!keys.contains(personality.key), qPrintable(personality.key));
            keys.insert(personality.key);
        }
    }
}

void TestFilesystemBundles::exfatIsNamedAsTheProgramExpects()
{
    const auto localized = Bundle::open(root() + u"/System/exfat.fs"_s)->localizedInfoDictionary({ u"de"_s });
    QVERIFY(localized);
    const PropertyDictionary *names = localized->dictionary(u"FSPersonalities"_s);
    QVERIFY(names);
    QCOMPARE(names->dictionary(u"ExFAT"_s)->text(u"FSName"_s), u"ExFAT"_s);
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
