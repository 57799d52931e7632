// SPDX-License-Identifier: MIT
//
// Descriptions become records, or are refused.
#include "tests/support/TestController.h"

#include <QTest>

#include <cstdlib>
#include <new>

using namespace Qt::Literals::StringLiterals;

namespace {

// Which of the next allocations that may fail does; none when it is negative.
int failingAllocation = -1;

QStringList requiredKeys()
{
    return { DAKey::mediaRemovable, DAKey::mediaContent, DAKey::mediaWhole, DAKey::mediaLeaf,
        DAKey::mediaBSDName, DAKey::mediaEjectable, DAKey::mediaBlockSize, DAKey::volumeMountable,
        DAKey::mediaWritable };
}

QStringList optionalKeys()
{
    return { DAKey::deviceInternal, DAKey::volumePath, DAKey::mediaName, DAKey::volumeName, DAKey::volumeKind,
        DAKey::mediaSize };
}

// A value of a type that no key expects.
PropertyValue wrongValue()
{
    return PropertyValue(PropertyArray());
}

MemoryDiskRef fullDisk()
{
    const MemoryDiskRef disk = makePartition(u"disk2s1"_s, 1024, u"Name"_s);
    disk->description->insert(DAKey::deviceInternal, true);
    disk->description->insert(DAKey::volumePath, QUrl::fromLocalFile(u"/media/Name"_s));
    disk->description->insert(DAKey::mediaName, u"Media"_s);
    disk->description->insert(DAKey::volumeKind, u"ntfs"_s);
    return disk;
}

} // namespace

// The arrays that a description is fetched into are the only ones that are asked for in this way.
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    if (failingAllocation >= 0 && failingAllocation-- == 0)
        return nullptr;
    return std::malloc(size ? size : 1);
}

void operator delete[](void *pointer) noexcept
{
    std::free(pointer);
}

void operator delete[](void *pointer, std::size_t) noexcept
{
    std::free(pointer);
}

void *operator new[](std::size_t size)
{
    return std::malloc(size ? size : 1);
}

class TestDiskRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsEveryField();
    void missingRequiredKeyIsRefusedSilently_data();
    void missingRequiredKeyIsRefusedSilently();
    void wrongTypeIsLoggedAndReported_data();
    void wrongTypeIsLoggedAndReported();
    void wrongOptionalTypeKeepsWhatCameBefore();
    void emptyDescriptionIsRefusedWithoutALine();
    void absentDescriptionIsLogged_data();
    void absentDescriptionIsLogged();
    void blockSizeThatDoesNotConvertIsRefused();
    void shortMemoryIsReportedAsSuccess_data();
    void shortMemoryIsReportedAsSuccess();
    void hiddenMediaAreRefused_data();
    void hiddenMediaAreRefused();
    void absentOptionalKeysReplaceWhatWasHeld();
    void operationFieldsAreNeverTouched();
    void descriptionIsTheBsdName();
    void copyIsPartial();
    void cleanupDropsWhatTheRecordOwns();
    void longNamesAreKept();
};

void TestDiskRecord::fillsEveryField()
{
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), false);
    QCOMPARE(record.daDisk, DADiskRef(disk));
    QCOMPARE(*record.bsdName, u"disk2s1"_s);
    QCOMPARE(record.whole, 0);
    QCOMPARE(record.leaf, 1);
    QCOMPARE(record.preferred_block_size, 512);
    QVERIFY(record.mountable && record.writable && record.internal);
    QCOMPARE(record.volumePath->toLocalFile(), u"/media/Name"_s);
    QCOMPARE(*record.mediaName, u"Media"_s);
    QCOMPARE(*record.volumeName, u"Name"_s);
    QCOMPARE(*record.volumeKind, u"ntfs"_s);
    QCOMPARE(record.mediaSize->longLongValue(), 100000000);
    QCOMPARE(log.lines(), QStringList());
}

void TestDiskRecord::missingRequiredKeyIsRefusedSilently_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key : requiredKeys())
        QTest::newRow(qPrintable(key)) << key;
}

void TestDiskRecord::missingRequiredKeyIsRefusedSilently()
{
    QFETCH(const QString, key);
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    disk->description->remove(key);
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    QVERIFY(!record.bsdName && !record.daDisk);
    QCOMPARE(log.lines(), QStringList());
}

void TestDiskRecord::wrongTypeIsLoggedAndReported_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key : requiredKeys() + optionalKeys())
        QTest::newRow(qPrintable(key)) << key;
}

void TestDiskRecord::wrongTypeIsLoggedAndReported()
{
    QFETCH(const QString, key);
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    disk->description->insert(key, wrongValue());
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    const QString what = key == DAKey::mediaBSDName ? u"value class"_s : u"type"_s;
    QCOMPARE(log.lines(), QStringList { u"Unexpected %1 for %2: 19"_s.arg(what, key) });
    QVERIFY(!requiredKeys().contains(key) || !record.bsdName);
}

void TestDiskRecord::wrongOptionalTypeKeepsWhatCameBefore()
{
    const LogCapture log;
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->remove(DAKey::mediaSize);
    disk->description->insert(DAKey::mediaName, u"before"_s);
    disk->description->insert(DAKey::volumeKind, wrongValue());
    disk->description->insert(DAKey::volumeName, u"after"_s);
    ZorvexDiskManagerDisk record;
    record.volumeName = u"held"_s;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    QCOMPARE(*record.bsdName, u"disk2"_s);
    QCOMPARE(*record.mediaName, u"before"_s);
    QVERIFY(!record.volumeKind && !record.volumeName);
    QCOMPARE(log.lines().size(), 1);
}

void TestDiskRecord::emptyDescriptionIsRefusedWithoutALine()
{
    const LogCapture log;
    const auto disk = std::make_shared<MemoryDisk>();
    disk->description = PropertyDictionary();
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    QVERIFY(!record.daDisk);
    QCOMPARE(log.lines(), QStringList());
}

void TestDiskRecord::absentDescriptionIsLogged_data()
{
    QTest::addColumn<DADiskRef>("disk");
    QTest::newRow("a disk that tells nothing") << DADiskRef(std::make_shared<MemoryDisk>());
    QTest::newRow("the disk of a record that was made when memory was short") << DADiskRef();
}

void TestDiskRecord::absentDescriptionIsLogged()
{
    QFETCH(const DADiskRef, disk);
    const LogCapture log;
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    QCOMPARE(log.lines(), QStringList { u"Error while copying disk description dictionary."_s });
}

void TestDiskRecord::blockSizeThatDoesNotConvertIsRefused()
{
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    disk->description->insert(DAKey::mediaBlockSize, PropertyNumber(0.5));
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), true);
    QVERIFY(!record.bsdName);
    QCOMPARE(log.lines(), QStringList { u"Unable to convert DAMediaBlockSize to 'long long'"_s });
}

void TestDiskRecord::shortMemoryIsReportedAsSuccess_data()
{
    QTest::addColumn<int>("failing");
    QTest::newRow("keys") << 0;
    QTest::newRow("values") << 1;
}

void TestDiskRecord::shortMemoryIsReportedAsSuccess()
{
    QFETCH(const int, failing);
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    ZorvexDiskManagerDisk record;
    failingAllocation = failing;
    const bool failed = zorvex_disk_manager_update_disk_description(disk, record);
    failingAllocation = -1;
    QCOMPARE(failed, false);
    QVERIFY(!record.bsdName && !record.daDisk);
    QCOMPARE(log.lines(), QStringList());
}

void TestDiskRecord::hiddenMediaAreRefused_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("refused");
    QTest::newRow("partition map") << u"Apple_partition_map"_s << true;
    QTest::newRow("EFI") << u"C12A7328-F81F-11D2-BA4B-00A0C93EC93B"_s << true;
    QTest::newRow("boot") << u"426F6F74-0000-11AA-AA11-00306543ECAC"_s << true;
    QTest::newRow("EFI in lower case") << u"c12a7328-f81f-11d2-ba4b-00a0c93ec93b"_s << false;
    QTest::newRow("Linux") << u"0FC63DAF-8483-4772-8E79-3D69D8477DE4"_s << false;
}

void TestDiskRecord::hiddenMediaAreRefused()
{
    QFETCH(const QString, content);
    QFETCH(const bool, refused);
    const LogCapture log;
    const MemoryDiskRef disk = fullDisk();
    disk->description->insert(DAKey::mediaContent, content);
    ZorvexDiskManagerDisk record;
    QCOMPARE(zorvex_disk_manager_update_disk_description(disk, record), refused);
    QCOMPARE(record.bsdName.has_value(), !refused);
    QCOMPARE(log.lines(), QStringList());
}

void TestDiskRecord::absentOptionalKeysReplaceWhatWasHeld()
{
    const MemoryDiskRef disk = fullDisk();
    ZorvexDiskManagerDisk record;
    QVERIFY(!zorvex_disk_manager_update_disk_description(disk, record));
    for (const QString &key : optionalKeys())
        disk->description->remove(key);
    QVERIFY(!zorvex_disk_manager_update_disk_description(disk, record));
    QVERIFY(!record.internal);
    QVERIFY(!record.volumePath && !record.mediaName && !record.volumeName && !record.volumeKind);
    QVERIFY(!record.mediaSize);
}

void TestDiskRecord::operationFieldsAreNeverTouched()
{
    ZorvexDiskManagerDisk record;
    record.subtype = 7;
    record.operationInProgress = true;
    record.checkRepairOutput.emplace();
    QVERIFY(!zorvex_disk_manager_update_disk_description(fullDisk(), record));
    QCOMPARE(record.subtype, 7);
    QVERIFY(record.operationInProgress && record.checkRepairOutput);
    QVERIFY(!record.operationInProgressShowFormatTab && !record.operationInProgressShowMaintenanceTab);
}

void TestDiskRecord::descriptionIsTheBsdName()
{
    ZorvexDiskManagerDisk record;
    QCOMPARE(record.description(), u"(null)"_s);
    QVERIFY(!zorvex_disk_manager_update_disk_description(fullDisk(), record));
    QCOMPARE(record.description(), u"disk2s1"_s);
}

void TestDiskRecord::copyIsPartial()
{
    ZorvexDiskManagerDisk record;
    QVERIFY(!zorvex_disk_manager_update_disk_description(fullDisk(), record));
    // Values that a new record does not have.
    ZorvexDiskManagerDiskListItem item;
    record.removable = 1;
    record.whole = 1;
    record.leaf = 1;
    record.ejectable = 1;
    record.preferred_block_size = 4096;
    record.parent_item = &item;
    record.subtype = 3;
    record.mountable = record.writable = record.internal = true;
    record.operationInProgress = true;
    record.operationInProgressShowFormatTab = record.operationInProgressShowMaintenanceTab = true;
    record.checkRepairOutput.emplace();
    const DiskRecord copy = record.copyWithZone();
    QCOMPARE(copy->removable, 1);
    QVERIFY(copy->content);
    QCOMPARE(copy->content, record.content);
    QCOMPARE(copy->whole, 1);
    QCOMPARE(copy->leaf, 1);
    QVERIFY(copy->bsdName);
    QCOMPARE(copy->bsdName, record.bsdName);
    QCOMPARE(copy->ejectable, 1);
    QCOMPARE(copy->preferred_block_size, 4096);
    QCOMPARE(copy->parent_item, &item);
    QVERIFY(copy->volumeKind);
    QCOMPARE(copy->volumeKind, record.volumeKind);
    QVERIFY(!copy->daDisk && !copy->volumePath && !copy->mediaSize && !copy->volumeName && !copy->mediaName);
    QVERIFY(!copy->mountable && !copy->writable && !copy->internal && !copy->operationInProgress);
    QVERIFY(!copy->operationInProgressShowFormatTab && !copy->operationInProgressShowMaintenanceTab);
    QVERIFY(!copy->subtype && !copy->delegate && !copy->checkRepairOutput);
}

void TestDiskRecord::cleanupDropsWhatTheRecordOwns()
{
    ZorvexDiskManagerDisk record;
    const MemoryDiskRef disk = fullDisk();
    QVERIFY(!zorvex_disk_manager_update_disk_description(disk, record));
    record.checkRepairOutput.emplace();
    QVERIFY(record.mediaSize && record.volumeKind && record.mediaName && record.volumeName);
    QVERIFY(record.volumePath && record.bsdName && record.content);
    record.cleanupZorvexDiskManagerDisk();
    QVERIFY(!record.checkRepairOutput && !record.mediaSize && !record.volumeKind && !record.mediaName);
    QVERIFY(!record.volumeName && !record.volumePath && !record.bsdName && !record.content);
    QCOMPARE(record.daDisk, DADiskRef(disk)); // the handle stays
}

void TestDiskRecord::longNamesAreKept()
{
    const MemoryDiskRef disk = fullDisk();
    const QString name(1000, u'n');
    disk->description->insert(DAKey::volumeName, name);
    ZorvexDiskManagerDisk record;
    QVERIFY(!zorvex_disk_manager_update_disk_description(disk, record));
    QCOMPARE(*record.volumeName, name);
}

QTEST_GUILESS_MAIN(TestDiskRecord)
#include "tst_diskrecord.moc"
