// SPDX-License-Identifier: MIT
//
// The catalogue: what the scan takes from the bundles, how later scans are merged, and the order of the
// lists.
#include "BundleFolder.h"
#include "filesystems/FilesystemCatalogue.h"
#include "platform/SystemLog.h"

#include <QTest>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray plainPersonality = "<key>P</key><dict><key>FSName</key><string>Plain</string></dict>";

QStringList bundleNames(const FilesystemBundleList &list)
{
    QStringList names;
    for (const FilesystemBundleRef &record : list)
        names.append(record->bundleName);
    return names;
}

QStringList personalities(const FilesystemBundleList &list)
{
    QStringList names;
    for (const FilesystemBundleRef &record : list)
        names.append(record->fsPersonality);
    return names;
}

PropertyValue number(qint64 value)
{
    return PropertyNumber(value);
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_log.clear(); }

    void cleanupLetsGoOfEverything();

    void recordHoldsWhatTheBundleSays();
    void valuesOfAnyTypeAreStoredAsFound();
    void firstDirectoryHidesABundleOfTheSameName();
    void bundleWithoutPersonalityHidesNothing();
    void onlyFoldersEndingInFsAreBundles();
    void folderNamedOnlyFsHasAnEmptyName();
    void nameThatIsNotUtf8IsLogged();
    void nameWithAByteOrderMarkIsFound();
    void wrongPersonalityIsLoggedAndConsumesItsIndex();
    void capabilitiesDecideTheLists_data();
    void capabilitiesDecideTheLists();
    void bundleWithoutIdentifierOrPersonalitiesIsSkipped_data();
    void bundleWithoutIdentifierOrPersonalitiesIsSkipped();
    void missingDirectoryIsLogged();
    void listThatCannotBeMadeEndsTheScan();
    void recordThatCannotBeMadeIsSkipped();

    void mergedListsShareTheirRecords();
    void secondScanAddsWithoutLosingIdentity();
    void newCapabilityMakesANewRecord();

private:
    std::optional<FilesystemLists> scan(const QStringList &directories, const CatalogueMemory &memory = {})
    {
        const SystemLogRedirection redirection([this](const QString &line) { m_log.append(line); });
        return scanFilesystemDirectories(directories, memory);
    }

    QStringList m_log;
};

void TestCatalogue::cleanupLetsGoOfEverything()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s,
        "<key>P</key><dict><key>FSName</key><string>n</string><key>FSSubType</key><integer>1</integer>"
        "<key>FSFormatMinimumSize</key><integer>2</integer><key>FSFormatMaximumSize</key><integer>3</"
        "integer></dict>"));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists && lists->all.size() == 1);
    ZorvexDiskManagerFSBundle &record = *lists->all.front();
    QVERIFY(record.fsFormatMaximumSize);
    record.cleanupZorvexDiskManagerFSBundle();
    QVERIFY(record.identifier.isNull() && record.baseDir.isNull() && record.bundleName.isNull()
        && record.fsPersonality.isNull());
    QVERIFY(
        !record.fsName && !record.fsSubtype && !record.fsFormatMinimumSize && !record.fsFormatMaximumSize);
}

void TestCatalogue::recordHoldsWhatTheBundleSays()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"msdos"_s,
        "<key>FAT 12</key><dict/>"
        "<key>FAT 32</key><dict><key>FSName</key><string>MS-DOS "
        "(FAT32)</string><key>FSSubType</key><integer>2</integer>"
        "<key>FSFormatMinimumSize</key><integer>34091008</integer><key>FSFormatMaximumSize</"
        "key><integer>2198754148352"
        "</integer></dict>"));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists);
    QCOMPARE(personalities(lists->all), QStringList({ u"FAT 12"_s, u"FAT 32"_s }));
    const ZorvexDiskManagerFSBundle &bare = *lists->all[0];
    QVERIFY(!bare.fsName && !bare.fsSubtype && !bare.fsFormatMinimumSize && !bare.fsFormatMaximumSize);
    const ZorvexDiskManagerFSBundle &full = *lists->all[1];
    QCOMPARE(full.identifier, u"test.msdos"_s);
    QCOMPARE(full.baseDir, folder.path());
    QCOMPARE(full.bundleName, u"msdos"_s);
    QCOMPARE(full.path(), folder.bundlePath(u"msdos"_s));
    QCOMPARE(full.fsPersonalityIndex, 1);
    QVERIFY(full.fsName == PropertyValue(u"MS-DOS (FAT32)"_s));
    QVERIFY(full.fsSubtype == number(2));
    QVERIFY(full.fsFormatMinimumSize == number(34091008));
    QVERIFY(full.fsFormatMaximumSize == number(2198754148352));
    QCOMPARE(m_log, QStringList());
}

void TestCatalogue::valuesOfAnyTypeAreStoredAsFound()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s,
        "<key>P</key><dict><key>FSName</key><integer>5</integer><key>FSSubType</key><string>two</string>"
        "<key>FSFormatMinimumSize</key><true/><key>FSFormatMaximumSize</key><array/>"
        "<key>FSFormatExecutable</key><false/></dict>"));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists && lists->format.size() == 1);
    const ZorvexDiskManagerFSBundle &record = *lists->format.front();
    QVERIFY(record.fsName == number(5));
    QVERIFY(record.fsSubtype == PropertyValue(u"two"_s));
    QVERIFY(record.fsFormatMinimumSize == PropertyValue(true));
    QVERIFY(record.fsFormatMaximumSize == PropertyValue(PropertyArray()));
    QCOMPARE(record.fallbackName(), u"a"_s);
}

void TestCatalogue::firstDirectoryHidesABundleOfTheSameName()
{
    const BundleFolder first;
    const BundleFolder second;
    QVERIFY(first.addPersonalities(u"msdos"_s, plainPersonality));
    QVERIFY(second.addPersonalities(u"msdos"_s, plainPersonality));
    QVERIFY(second.addPersonalities(u"exfat"_s, plainPersonality));
    const auto lists = scan({ first.path(), second.path() });
    QVERIFY(lists);
    QCOMPARE(bundleNames(lists->all), QStringList({ u"msdos"_s, u"exfat"_s }));
    QCOMPARE(lists->all[0]->baseDir, first.path());
    QCOMPARE(lists->all[1]->baseDir, second.path());
}

void TestCatalogue::bundleWithoutPersonalityHidesNothing()
{
    const BundleFolder first;
    const BundleFolder second;
    QVERIFY(first.addPersonalities(u"msdos"_s, "<key>P</key><string>wrong</string>"));
    QVERIFY(second.addPersonalities(u"msdos"_s, plainPersonality));
    const auto lists = scan({ first.path(), second.path() });
    QVERIFY(lists && lists->all.size() == 1);
    QCOMPARE(lists->all[0]->baseDir, second.path());
}

void TestCatalogue::onlyFoldersEndingInFsAreBundles()
{
    const BundleFolder elsewhere;
    const BundleFolder folder;
    QVERIFY(elsewhere.addPersonalities(u"linked"_s, plainPersonality));
    QVERIFY(QFile::link(elsewhere.bundlePath(u"linked"_s), folder.bundlePath(u"linked"_s)));
    QVERIFY(BundleFolder::write(folder.bundlePath(u"file"_s), "x"));
    for (const QString &name : { u"upper"_s, u"longer"_s, u"good"_s })
        QVERIFY(folder.addPersonalities(name, plainPersonality));
    QVERIFY(QDir().rename(folder.bundlePath(u"upper"_s), folder.path() + "/upper.FS"_L1));
    QVERIFY(QDir().rename(folder.bundlePath(u"longer"_s), folder.path() + "/longer.fs2"_L1));
    QVERIFY(QDir(folder.path()).mkdir(u"fs"_s));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists);
    QCOMPARE(bundleNames(lists->all), QStringList({ u"good"_s }));
    QCOMPARE(m_log, QStringList());
}

void TestCatalogue::folderNamedOnlyFsHasAnEmptyName()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u""_s, plainPersonality));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists && lists->all.size() == 1);
    QCOMPARE(lists->all[0]->bundleName, QString());
    QCOMPARE(lists->all[0]->path(), folder.path() + "/.fs"_L1);
}

void TestCatalogue::nameThatIsNotUtf8IsLogged()
{
    const BundleFolder folder;
    const QByteArray path = QFile::encodeName(folder.path()) + "/caf\xE9.fs";
    QCOMPARE(mkdir(path.constData(), 0700), 0);
    const auto lists = scan({ folder.path() });
    QCOMPARE(rmdir(path.constData()), 0);
    QVERIFY(lists && lists->all.empty());
    QCOMPARE(m_log, QStringList(u"Error while allocating temporary string for fs bundle name."_s));
}

void TestCatalogue::nameWithAByteOrderMarkIsFound()
{
    const BundleFolder folder;
    const QString name = QChar(QChar::ByteOrderMark) + u"marked"_s;
    QVERIFY(folder.addPersonalities(name, plainPersonality));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists);
    QCOMPARE(bundleNames(lists->all), QStringList(name));
}

void TestCatalogue::wrongPersonalityIsLoggedAndConsumesItsIndex()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(
        u"a"_s, "<key>A</key><dict/><key>B</key><string>odd\nvalue</string><key>C</key><dict/>"));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists && lists->all.size() == 2);
    QCOMPARE(personalities(lists->all), QStringList({ u"A"_s, u"C"_s }));
    QCOMPARE(lists->all[0]->fsPersonalityIndex, 0);
    QCOMPARE(lists->all[1]->fsPersonalityIndex, 2);
    QCOMPARE(m_log, QStringList(u"Unexpected value in FSPersonalities dictionary: odd\\nvalue"_s));
}

void TestCatalogue::capabilitiesDecideTheLists_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("lists"); // f, c, r
    const QByteArray format = "<key>FSFormatExecutable</key><string>newfs</string>";
    const QByteArray interactive = "<key>FSFormatInteractive</key>";
    QTest::newRow("none") << QByteArray() << u""_s;
    QTest::newRow("format") << format << u"f"_s;
    QTest::newRow("format interactive") << format + interactive + "<true/>" << u"f"_s;
    QTest::newRow("format not interactive") << format + interactive + "<false/>" << u""_s;
    QTest::newRow("format interactive 1") << format + interactive + "<integer>1</integer>" << u"f"_s;
    QTest::newRow("format interactive 0") << format + interactive + "<integer>0</integer>" << u""_s;
    QTest::newRow("only interactive") << interactive + "<true/>" << u""_s;
    QTest::newRow("check") << QByteArray("<key>FSVerificationExecutable</key><false/>") << u"c"_s;
    QTest::newRow("repair") << QByteArray("<key>FSRepairExecutable</key><string/>") << u"r"_s;
    QTest::newRow("all") << format
            + "<key>FSVerificationExecutable</key><true/><key>FSRepairExecutable</key><true/>"
                         << u"fcr"_s;
}

void TestCatalogue::capabilitiesDecideTheLists()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const QString, lists);
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, "<key>P</key><dict>" + keys + "</dict>"));
    const auto scanned = scan({ folder.path() });
    QVERIFY(scanned && scanned->all.size() == 1);
    QCOMPARE(scanned->format.size(), std::size_t(lists.contains(u'f')));
    QCOMPARE(scanned->check.size(), std::size_t(lists.contains(u'c')));
    QCOMPARE(scanned->repair.size(), std::size_t(lists.contains(u'r')));
    for (const FilesystemBundleList *list : { &scanned->format, &scanned->check, &scanned->repair })
        QVERIFY(list->empty() || list->front() == scanned->all.front());
}

void TestCatalogue::bundleWithoutIdentifierOrPersonalitiesIsSkipped_data()
{
    QTest::addColumn<QByteArray>("info");
    const QByteArray identifier = "<key>CFBundleIdentifier</key>";
    const QByteArray personalityKeys = "<key>FSPersonalities</key>";
    const QByteArray good = personalityKeys + "<dict>" + plainPersonality + "</dict>";
    QTest::newRow("no identifier") << QByteArray("<dict>" + good + "</dict>");
    QTest::newRow("identifier of another type")
        << QByteArray("<dict>" + identifier + "<integer>1</integer>" + good + "</dict>");
    QTest::newRow("empty identifier") << QByteArray("<dict>" + identifier + "<string/>" + good + "</dict>");
    QTest::newRow("no personalities") << QByteArray("<dict>" + identifier + "<string>a</string></dict>");
    QTest::newRow("personalities of another type") << QByteArray(
        "<dict>" + identifier + "<string>a</string>" + personalityKeys + "<array><dict/></array></dict>");
    QTest::newRow("empty personalities")
        << QByteArray("<dict>" + identifier + "<string>a</string>" + personalityKeys + "<dict/></dict>");
    QTest::newRow("root of another type") << QByteArray("<array/>");
    QTest::newRow("malformed") << QByteArray("<dict>");
}

void TestCatalogue::bundleWithoutIdentifierOrPersonalitiesIsSkipped()
{
    QFETCH(const QByteArray, info);
    const BundleFolder folder;
    QVERIFY(folder.addBundle(u"bad"_s, info));
    QVERIFY(folder.addPersonalities(u"good"_s, plainPersonality));
    QVERIFY(QDir(folder.path()).mkdir(u"empty.fs"_s));
    const auto lists = scan({ folder.path() });
    QVERIFY(lists);
    QCOMPARE(bundleNames(lists->all), QStringList(u"good"_s));
    QCOMPARE(m_log, QStringList());
}

void TestCatalogue::missingDirectoryIsLogged()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, plainPersonality));
    const QString missing = folder.path() + "/missing"_L1;
    const auto lists = scan({ missing, folder.path() });
    QVERIFY(lists);
    QCOMPARE(bundleNames(lists->all), QStringList(u"a"_s));
    QCOMPARE(m_log,
        QStringList(
            "Error while opening directory \""_L1 + missing + "\": "_L1 + errnoText(ENOENT) + " (2)"_L1));
}

void TestCatalogue::listThatCannotBeMadeEndsTheScan()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, plainPersonality));
    for (int failing = 1; failing <= 4; ++failing) {
        int created = 0;
        CatalogueMemory memory;
        memory.createList = [&](std::size_t capacity) {
            return ++created == failing ? std::nullopt
                                        : CatalogueMemory::createFilesystemBundleList(capacity);
        };
        m_log.clear();
        QVERIFY(!scan({ folder.path() }, memory));
        QCOMPARE(created, failing);
        QCOMPARE(m_log, QStringList(u"Error while creating filesystem bundle lists."_s));
    }
#ifndef __SANITIZE_ADDRESS__ // whose allocator ends the program instead of failing
    QVERIFY(!CatalogueMemory::createFilesystemBundleList(FilesystemBundleList().max_size()));
#endif
}

void TestCatalogue::recordThatCannotBeMadeIsSkipped()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, "<key>A</key><dict/><key>B</key><dict/><key>C</key><dict/>"));
    int made = 0;
    CatalogueMemory memory;
    memory.allocRecord = [&made] { return ++made == 2 ? nullptr : ZorvexDiskManagerFSBundle::alloc(); };
    const auto lists = scan({ folder.path() }, memory);
    QVERIFY(lists && lists->all.size() == 2);
    QCOMPARE(lists->all[1]->fsPersonality, u"C"_s);
    QCOMPARE(lists->all[1]->fsPersonalityIndex, 2);
    QCOMPARE(m_log, QStringList(u"Error while allocating memory for fs bundle container."_s));
}

void TestCatalogue::mergedListsShareTheirRecords()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s,
        "<key>P</key><dict><key>FSFormatExecutable</key><true/><key>FSRepairExecutable</key><true/></dict>"));
    const auto scanned = scan({ folder.path() });
    QVERIFY(scanned);
    std::optional<FilesystemBundleList> all;
    std::optional<FilesystemBundleList> repair;
    mergeFilesystemList(all, scanned->all);
    mergeFilesystemList(repair, scanned->repair);
    QCOMPARE(all->size(), std::size_t { 1 });
    QCOMPARE(*all, *repair);
}

void TestCatalogue::secondScanAddsWithoutLosingIdentity()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"msdos"_s, plainPersonality));
    std::optional<FilesystemBundleList> list;
    mergeFilesystemList(list, scan({ folder.path() })->all);
    QCOMPARE(list->size(), std::size_t { 1 });
    const FilesystemBundleRef known = list->front();
    QVERIFY(folder.addPersonalities(u"exfat"_s, "<key>E</key><dict/>"));
    mergeFilesystemList(list, scan({ folder.path() })->all);
    QCOMPARE(bundleNames(*list), QStringList({ u"exfat"_s, u"msdos"_s }));
    QCOMPARE(list->back(), known);
}

void TestCatalogue::newCapabilityMakesANewRecord()
{
    const BundleFolder folder;
    QVERIFY(folder.addPersonalities(u"a"_s, "<key>P</key><dict/>"));
    std::optional<FilesystemBundleList> all;
    std::optional<FilesystemBundleList> check;
    const auto before = scan({ folder.path() });
    mergeFilesystemList(all, before->all);
    mergeFilesystemList(check, before->check);
    QVERIFY(folder.addPersonalities(
        u"a"_s, "<key>P</key><dict><key>FSVerificationExecutable</key><true/></dict>"));
    const auto after = scan({ folder.path() });
    mergeFilesystemList(all, after->all);
    mergeFilesystemList(check, after->check);
    QCOMPARE(*all, before->all);
    QCOMPARE(*check, after->check);
    QVERIFY(all->front() != check->front());
}

QTEST_APPLESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
