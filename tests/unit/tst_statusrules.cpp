// SPDX-License-Identifier: MIT
#include "ui/status_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using StatusRules::Status;

class TestStatusRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusOfAMedium_data();
    void statusOfAMedium();
    void readOnlyIsAddedWhereAToolCouldRun();
    void usedPercentage_data();
    void usedPercentage();
    void meaningOfAPartitionType();
    void everyStatusAndMediumHasItsWords();
};

namespace {

ZorvexDiskManagerDisk &volume(ZorvexDiskManagerDisk &disk)
{
    disk.leaf = 1;
    disk.writable = true;
    disk.mediaSize = PropertyNumber(qint64 { 1000 });
    return disk;
}

} // namespace

void TestStatusRules::statusOfAMedium_data()
{
    using Kind = ProbedContent::Kind;
    QTest::addColumn<ProbedContent::Kind>("content");
    QTest::addColumn<bool>("isMounted");
    QTest::addColumn<bool>("isUnlocked");
    QTest::addColumn<int>("freeSpace"); // -1 when it is not known
    QTest::addColumn<Status>("status");
    QTest::newRow("blank") << Kind::Nothing << false << false << -1 << Status::NotRecognized;
    QTest::newRow("foreign") << Kind::Other << false << false << -1 << Status::OtherContent;
    QTest::newRow("not mounted") << Kind::Filesystem << false << false << -1 << Status::NotMounted;
    QTest::newRow("mounted") << Kind::Filesystem << true << false << 101 << Status::Usage;
    QTest::newRow("almost full") << Kind::Filesystem << true << false << 100 << Status::AlmostFull;
    QTest::newRow("free space unknown") << Kind::Filesystem << true << false << -1 << Status::SpaceUnknown;
    QTest::newRow("locked") << Kind::Encrypted << false << false << -1 << Status::Locked;
    QTest::newRow("unlocked") << Kind::Encrypted << false << true << -1 << Status::Unlocked;
    QTest::newRow("swap") << Kind::Swap << false << false << -1 << Status::Swap;
    QTest::newRow("LVM") << Kind::LvmMember << false << false << -1 << Status::LvmMember;
    QTest::newRow("RAID") << Kind::RaidMember << false << false << -1 << Status::RaidMember;
}

void TestStatusRules::statusOfAMedium()
{
    QFETCH(const ProbedContent::Kind, content);
    QFETCH(const bool, isMounted);
    QFETCH(const bool, isUnlocked);
    QFETCH(const int, freeSpace);
    ZorvexDiskManagerDisk disk;
    volume(disk);
    if (content == ProbedContent::Kind::Filesystem)
        disk.volumeKind = u"ext4"_s;
    if (isMounted)
        disk.volumePath = QUrl::fromLocalFile(u"/media/A"_s);
    StatusRules::Facts facts { content, isUnlocked, {} };
    if (freeSpace >= 0)
        facts.freeSpace = freeSpace;
    QTEST(StatusRules::statusOf(disk, facts), "status");
    disk.whole = 1;
    disk.leaf = 0;
    QCOMPARE(StatusRules::statusOf(disk, facts), Status::Partitions);
}

void TestStatusRules::readOnlyIsAddedWhereAToolCouldRun()
{
    ZorvexDiskManagerDisk disk;
    volume(disk);
    QVERIFY(!StatusRules::tellsReadOnly(disk, Status::NotMounted));
    disk.writable = false;
    QVERIFY(StatusRules::tellsReadOnly(disk, Status::NotMounted));
    QVERIFY(StatusRules::tellsReadOnly(disk, Status::Usage));
    QVERIFY(!StatusRules::tellsReadOnly(disk, Status::Swap));
    QVERIFY(!StatusRules::tellsReadOnly(disk, Status::Partitions));
}

void TestStatusRules::usedPercentage_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("freeSpace");
    QTest::addColumn<int>("percentage");
    QTest::newRow("empty") << qint64 { 100 } << qint64 { 100 } << 0;
    QTest::newRow("full") << qint64 { 100 } << qint64 { 0 } << 100;
    QTest::newRow("all but a byte") << qint64 { 1000 } << qint64 { 1 } << 99;
    QTest::newRow("more free than there is") << qint64 { 100 } << qint64 { 200 } << 0;
    QTest::newRow("largest") << std::numeric_limits<qint64>::max() << qint64 { 0 } << 100;
}

void TestStatusRules::usedPercentage()
{
    QFETCH(const qint64, size);
    QFETCH(const qint64, freeSpace);
    QTEST(StatusRules::usedPercentage(size, freeSpace), "percentage");
}

void TestStatusRules::meaningOfAPartitionType()
{
    QCOMPARE(
        StatusRules::contentMeaningKey(u"ebd0a0a2-b9e5-4433-87c0-68b6b72699c7"_s), "CONTENT_BASIC_DATA_TEXT");
    QVERIFY(!StatusRules::contentMeaningKey(u"Windows_NTFS"_s));
    QCOMPARE(StatusRules::partitionTableName(u"GUID_partition_scheme"_s), u"GPT"_s);
    QCOMPARE(StatusRules::partitionTableName(u"DOS_FAT_32"_s), QString());
}

void TestStatusRules::everyStatusAndMediumHasItsWords()
{
    QSet<QByteArray> keys;
    for (int status = 0; status <= static_cast<int>(Status::NotMounted); ++status)
        keys.insert(StatusRules::statusKey(static_cast<Status>(status)));
    QCOMPARE(keys.size(), static_cast<int>(Status::NotMounted) + 1);
    keys.clear();
    for (int medium = 0; medium <= static_cast<int>(StatusRules::Medium::Unlocked); ++medium)
        keys.insert(StatusRules::mediumKey(static_cast<StatusRules::Medium>(medium)));
    QCOMPARE(keys.size(), static_cast<int>(StatusRules::Medium::Unlocked) + 1);
}

QTEST_APPLESS_MAIN(TestStatusRules)
#include "tst_statusrules.moc"
