// SPDX-License-Identifier: MIT
//
// A new record, the order of the catalogue's lists, and how the records of a scan are merged into them.
#include "filesystems/BundleScan.h"
#include "filesystems/FilesystemCatalogue.h"
#include "filesystems/FilesystemNames.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

FilesystemBundleRef makeRecord(const QString &bundleName, std::optional<PropertyValue> subtype = {})
{
    FilesystemBundleRef record = ZorvexDiskManagerFSBundle::alloc();
    record->bundleName = bundleName;
    record->fsSubtype = std::move(subtype);
    return record;
}

FilesystemBundleRef makePersonality(
    const QString &personality, std::optional<PropertyValue> fsName, const QString &bundleName)
{
    FilesystemBundleRef record = makeRecord(bundleName);
    record->fsPersonality = personality;
    record->fsName = std::move(fsName);
    return record;
}

QStringList bundleNames(const FilesystemBundleList &list)
{
    QStringList names;
    for (const FilesystemBundleRef &record : list)
        names.append(record->bundleName);
    return names;
}

PropertyValue number(qint64 value)
{
    return PropertyNumber(value);
}

} // namespace

class TestCatalogueOrder : public QObject
{
    Q_OBJECT

private slots:
    void ownFilesystemsAreToldByTheirPrefix();
    void ownFilesystemsComeFirstThenTheNames();
    void namesAreOrderedByCharacterValue();
    void subtypesOrderThePersonalitiesOfABundle();
    void subtypesOfAnyTypeKeepTheOrderConsistent();
    void firstMergeCreatesTheListEvenEmpty();
    void mergeRefreshesOnlyWhatMayChange();
    void missingNameMatchesAnyName();
    void knownRecordWithoutNameIsAnotherPersonality();
    void personalityThatWentAwayStays();
    void mergeSortsStably();
    void newRecordIsEmpty();
    void directoriesAreTheTwoOfTheSystem();
};

void TestCatalogueOrder::ownFilesystemsAreToldByTheirPrefix()
{
    QVERIFY(isOwnFilesystem(u"zorvex_ntfs"_s));
    QVERIFY(isOwnFilesystem(u"zorvex_"_s));
    QVERIFY(isOwnFilesystem(u"fusefs_qvontfs"_s));
    QVERIFY(!isOwnFilesystem(u"fusefs_ntfs"_s));
    QVERIFY(!isOwnFilesystem(u"ZORVEX_ntfs"_s));
    QVERIFY(!isOwnFilesystem(u"a_zorvex_ntfs"_s));
    QVERIFY(!isOwnFilesystem(QString()));
}

void TestCatalogueOrder::ownFilesystemsComeFirstThenTheNames()
{
    std::optional<FilesystemBundleList> list;
    mergeFilesystemList(list,
        { makePersonality(u"1"_s, u"1"_s, u"zorvex_ntfs"_s), makePersonality(u"2"_s, u"2"_s, u"msdos"_s),
            makePersonality(u"3"_s, u"3"_s, u"fusefs_qvontfs"_s),
            makePersonality(u"4"_s, u"4"_s, u"exfat"_s) });
    QCOMPARE(
        bundleNames(*list), QStringList({ u"fusefs_qvontfs"_s, u"zorvex_ntfs"_s, u"exfat"_s, u"msdos"_s }));
    QCOMPARE(makeRecord(u"zorvex_z"_s)->compare(*makeRecord(u"a"_s)), -1);
    QCOMPARE(makeRecord(u"a"_s)->compare(*makeRecord(u"zorvex_z"_s)), 1);
}

void TestCatalogueOrder::namesAreOrderedByCharacterValue()
{
    QCOMPARE(makeRecord(u"Z"_s)->compare(*makeRecord(u"a"_s)), -1);
    QCOMPARE(makeRecord(u"é"_s)->compare(*makeRecord(u"f"_s)), 1);
    QCOMPARE(makeRecord(u"ab"_s)->compare(*makeRecord(u"a"_s)), 1);
    QCOMPARE(makeRecord(u"a"_s)->compare(*makeRecord(u"a"_s)), 0);
}

void TestCatalogueOrder::subtypesOrderThePersonalitiesOfABundle()
{
    const FilesystemBundleRef none = makeRecord(u"a"_s);
    const FilesystemBundleRef one = makeRecord(u"a"_s, number(1));
    const FilesystemBundleRef ten = makeRecord(u"a"_s, number(10));
    QCOMPARE(none->compare(*one), -1);
    QCOMPARE(one->compare(*none), 1);
    QCOMPARE(none->compare(*makeRecord(u"a"_s)), 0);
    QCOMPARE(one->compare(*ten), -1);
    QCOMPARE(ten->compare(*one), 1);
    QCOMPARE(one->compare(*makeRecord(u"a"_s, PropertyValue(PropertyNumber(1.0)))), 0);
    QCOMPARE(makeRecord(u"b"_s)->compare(*ten), 1);
}

void TestCatalogueOrder::subtypesOfAnyTypeKeepTheOrderConsistent()
{
    FilesystemBundleList records;
    for (const PropertyValue &value : { PropertyValue(), PropertyValue(u"7"_s), PropertyValue(true),
             number(-1), number(7), PropertyValue(PropertyNumber(std::nan(""))),
             PropertyValue(PropertyNumber(6.5)), PropertyValue(PropertyArray()),
             PropertyValue(PropertyDictionary()), PropertyValue(QByteArray("7")) })
        records.push_back(makeRecord(u"a"_s, value));
    records.push_back(makeRecord(u"a"_s));
    for (const auto &a : records) {
        for (const auto &b : records) {
            QCOMPARE(a->compare(*b), -b->compare(*a));
            for (const auto &c : records)
                QVERIFY(a->compare(*b) > 0 || b->compare(*c) > 0 || a->compare(*c) <= 0);
        }
    }
}

void TestCatalogueOrder::firstMergeCreatesTheListEvenEmpty()
{
    std::optional<FilesystemBundleList> list;
    mergeFilesystemList(list, {});
    QVERIFY(list && list->empty());
}

void TestCatalogueOrder::mergeRefreshesOnlyWhatMayChange()
{
    const FilesystemBundleRef known = makePersonality(u"P"_s, u"Name"_s, u"old"_s);
    known->identifier = u"old id"_s;
    known->baseDir = u"/old"_s;
    known->fsSubtype = number(1);
    known->fsFormatMinimumSize = number(2);
    known->fsFormatMaximumSize = number(3);
    const FilesystemBundleRef scanned = makePersonality(u"P"_s, u"Name"_s, u"new"_s);
    scanned->identifier = u"new id"_s;
    scanned->baseDir = u"/new"_s;
    scanned->fsPersonalityIndex = 4;
    scanned->fsSubtype = number(10);
    scanned->requiredTools = { u"mkfs.new"_s };
    scanned->packages = { u"new-progs"_s };
    std::optional<FilesystemBundleList> list = FilesystemBundleList { known };
    mergeFilesystemList(list, { scanned });
    QCOMPARE(*list, FilesystemBundleList { known });
    QCOMPARE(known->bundleName, u"new"_s);
    QCOMPARE(known->baseDir, u"/new"_s);
    QCOMPARE(known->fsPersonalityIndex, 4);
    QCOMPARE(known->requiredTools, QStringList { u"mkfs.new"_s });
    QCOMPARE(known->packages, QStringList { u"new-progs"_s });
    QCOMPARE(known->identifier, u"old id"_s);
    QVERIFY(known->fsSubtype == number(1));
    QVERIFY(known->fsFormatMinimumSize == number(2));
    QVERIFY(known->fsFormatMaximumSize == number(3));
}

void TestCatalogueOrder::missingNameMatchesAnyName()
{
    const FilesystemBundleRef known = makePersonality(u"P"_s, u"Name"_s, u"a"_s);
    std::optional<FilesystemBundleList> list = FilesystemBundleList { known };
    mergeFilesystemList(list, { makePersonality(u"P"_s, {}, u"b"_s), makePersonality(u"Q"_s, {}, u"c"_s) });
    QCOMPARE(bundleNames(*list), QStringList({ u"b"_s, u"c"_s }));
    QCOMPARE(list->front(), known);
    QVERIFY(!known->fsName);
}

void TestCatalogueOrder::knownRecordWithoutNameIsAnotherPersonality()
{
    std::optional<FilesystemBundleList> list = FilesystemBundleList { makePersonality(u"P"_s, {}, u"a"_s) };
    mergeFilesystemList(
        list, { makePersonality(u"P"_s, u"Name"_s, u"b"_s), makePersonality(u"P"_s, number(1), u"c"_s) });
    QCOMPARE(bundleNames(*list), QStringList({ u"a"_s, u"b"_s, u"c"_s }));
}

void TestCatalogueOrder::personalityThatWentAwayStays()
{
    const FilesystemBundleRef known = makePersonality(u"P"_s, u"Name"_s, u"a"_s);
    std::optional<FilesystemBundleList> list = FilesystemBundleList { known };
    mergeFilesystemList(list, {});
    QCOMPARE(*list, FilesystemBundleList { known });
}

void TestCatalogueOrder::mergeSortsStably()
{
    FilesystemBundleList scanned;
    for (int i = 0; i < 40; ++i) {
        const QString name = QString::number(i);
        scanned.push_back(makePersonality(name, name, i % 2 == 0 ? u"b"_s : u"a"_s));
        scanned.back()->fsSubtype = i % 3 == 0 ? PropertyValue(u"wrong"_s) : number(i % 3);
    }
    FilesystemBundleList expected = scanned;
    std::optional<FilesystemBundleList> list;
    mergeFilesystemList(list, scanned);
    for (std::size_t i = 1; i < list->size(); ++i) {
        const ZorvexDiskManagerFSBundle &previous = *(*list)[i - 1];
        const ZorvexDiskManagerFSBundle &current = *(*list)[i];
        const int order = previous.compare(current);
        QVERIFY(order < 0
            || (order == 0 && previous.fsName->asString()->toInt() < current.fsName->asString()->toInt()));
    }
    QVERIFY(std::is_permutation(expected.begin(), expected.end(), list->begin(), list->end()));
}

void TestCatalogueOrder::newRecordIsEmpty()
{
    const FilesystemBundleRef record = ZorvexDiskManagerFSBundle::alloc();
    QVERIFY(record);
    QVERIFY(record->identifier.isNull() && record->baseDir.isNull() && record->bundleName.isNull()
        && record->fsPersonality.isNull());
    QCOMPARE(record->fsPersonalityIndex, 0);
    QVERIFY(!record->fsName && !record->fsSubtype && !record->fsFormatMinimumSize
        && !record->fsFormatMaximumSize);
}

void TestCatalogueOrder::directoriesAreTheTwoOfTheSystem()
{
    QCOMPARE(filesystemDirectories(),
        QStringList({ u"/System/Library/Filesystems"_s, u"/Library/Filesystems"_s }));
}

QTEST_APPLESS_MAIN(TestCatalogueOrder)
#include "tst_catalogueorder.moc"
