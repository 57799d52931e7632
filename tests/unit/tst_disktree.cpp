// SPDX-License-Identifier: MIT
//
// The disk tree: where a node goes, and that the order in which media arrive does not matter.
#include "disks/tree_rules.h"
#include "tests/support/TestSeed.h"
#include "tests/unit/DiskForest.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

// Counts how often its registry entry is asked for.
class CountingDisk : public MemoryDisk
{
public:
    std::optional<PropertyDictionary> copyIOMediaProperties() const override
    {
        ++questions;
        return MemoryDisk::copyIOMediaProperties();
    }
    mutable int questions = 0;
};

} // namespace

class TestDiskTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberAtTheEndOfAName_data();
    void numberAtTheEndOfAName();
    void parentOfAName_data();
    void parentOfAName();
    void firstNodeIsARingOfOne();
    void wholeDisksByUnitNumber();
    void partitionsByOffset();
    void unreadableOffsetsFallBackToNumbers();
    void unreadableNumbersFallBackToNames();
    void equalOffsetsFallBackToNumbers();
    void largeOffsetsCompareUnsigned();
    void registryFailuresLeaveTheResultAlone();
    void offsetOfAWholeDiskIsNotAskedFor();
    void removalMovesTheHead();
    void partitionMovesUnderItsDisk();
    void namesThatAreNoPartitionsStayOnTop();
    void arrivalInAnyOrderGivesTheSameTree();
};

void TestDiskTree::numberAtTheEndOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("partition") << u"disk2s11"_s << 11;
    QTest::newRow("disk") << u"disk3"_s << 3;
    QTest::newRow("zero") << u"disk0"_s << 0;
    QTest::newRow("leading zeros") << u"disk007"_s << 7;
    QTest::newRow("no digit") << u"disks"_s << -1;
    QTest::newRow("empty") << QString() << -1;
    QTest::newRow("nine digits") << u"disk999999999"_s << 999999999;
    QTest::newRow("wraps") << u"disk4294967297"_s << 1;
    QTest::newRow("another script's digit") << QString(u"disk"_s + QChar(0x0663)) << -1;
}

void TestDiskTree::numberAtTheEndOfAName()
{
    QFETCH(const QString, name);
    QFETCH(const int, number);
    QCOMPARE(TreeRules::trailingNumber(name), number);
}

void TestDiskTree::parentOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::newRow("partition") << u"disk2s1"_s << u"disk2"_s;
    QTest::newRow("nested") << u"disk1s2s3"_s << u"disk1s2"_s;
    QTest::newRow("no digits at all") << u"disk2s"_s << u"disk2"_s;
    QTest::newRow("whole") << u"disk2"_s << QString();
    QTest::newRow("s at position 4") << u"disks1"_s << QString();
    QTest::newRow("letter behind") << u"disk2sx"_s << QString();
    QTest::newRow("disk later in the name") << u"xdisk2s1"_s << QString();
}

void TestDiskTree::parentOfAName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, parent);
    QCOMPARE(TreeRules::parentBsdName(name).value_or(QString()), parent);
}

void TestDiskTree::firstNodeIsARingOfOne()
{
    Forest forest;
    Item *const item = forest.make(makeDisk(u"disk0"_s));
    disk_list_rebuild(&forest.head, item);
    QCOMPARE(forest.head, item);
    QCOMPARE(item->next, item);
    QCOMPARE(item->prev, item);
}

void TestDiskTree::wholeDisksByUnitNumber()
{
    Forest forest;
    for (const int number : { 10, 9, 1, 0 })
        disk_list_rebuild(&forest.head, forest.make(makeDisk(u"disk%1"_s.arg(number))));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk0"_s, u"disk1"_s, u"disk9"_s, u"disk10"_s }));
}

void TestDiskTree::partitionsByOffset()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(makePartition(u"disk2s1"_s, 3000)));
    disk_list_add(&forest.head, forest.make(makePartition(u"disk2s2"_s, 1000)));
    disk_list_add(&forest.head, forest.make(makePartition(u"disk2s3"_s, 2000)));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk2s2"_s, u"disk2s3"_s, u"disk2s1"_s }));
}

void TestDiskTree::unreadableOffsetsFallBackToNumbers()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s1"_s, {}, 3)));
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s2"_s, 0, 1)));
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s3"_s, {}, 2)));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk2s2"_s, u"disk2s3"_s, u"disk2s1"_s }));
}

void TestDiskTree::unreadableNumbersFallBackToNames()
{
    Forest forest;
    for (const int number : { 11, 2, 1 })
        disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s%1"_s.arg(number), {}, {})));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk2s1"_s, u"disk2s2"_s, u"disk2s11"_s }));
}

void TestDiskTree::equalOffsetsFallBackToNumbers()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s1"_s, 1000, 2)));
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s2"_s, 1000, 1)));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk2s2"_s, u"disk2s1"_s }));
}

void TestDiskTree::largeOffsetsCompareUnsigned()
{
    Forest forest;
    const qint64 large = std::numeric_limits<qint64>::max();
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s1"_s, large, 1)));
    disk_list_add(&forest.head, forest.make(partitionWith(u"disk2s2"_s, 0, 2)));
    QCOMPARE(namesOf(forest.head), (QStringList { u"disk2s2"_s, u"disk2s1"_s }));
}

void TestDiskTree::registryFailuresLeaveTheResultAlone()
{
    Forest forest;
    qint64 value = 42;
    const Item *whole = forest.make(makeDisk(u"disk2"_s));
    QCOMPARE(get_partition_offset(*whole->disk, &value), 0);
    QCOMPARE(value, 0);
    value = 42;
    QCOMPARE(get_partition_number(*whole->disk, &value), 5);
    const Item *negative = forest.make(partitionWith(u"disk2s1"_s, -1, -1));
    QCOMPARE(get_partition_offset(*negative->disk, &value), 5);
    QCOMPARE(get_partition_number(*negative->disk, &value), 5);
    const MemoryDiskRef wrong = partitionWith(u"disk2s2"_s, {}, {});
    wrong->mediaProperties->insert(IOMediaKey::base, u"1000"_s);
    QCOMPARE(get_partition_offset(*forest.make(wrong)->disk, &value), 5);
    QCOMPARE(value, 42);
}

void TestDiskTree::offsetOfAWholeDiskIsNotAskedFor()
{
    Forest forest;
    const auto disk = std::make_shared<CountingDisk>();
    disk->description = makeDisk(u"disk2"_s)->description;
    disk->mediaProperties = PropertyDictionary { { IOMediaKey::base, PropertyNumber(qint64 { 7 }) } };
    ZorvexDiskManagerDisk &record = *forest.make(disk)->disk;
    qint64 offset = 42;
    QCOMPARE(get_partition_offset(record, &offset), 0);
    QCOMPARE(offset, 0);
    QCOMPARE(disk->questions, 0);
    QCOMPARE(get_partition_number(record, &offset), 5);
    QCOMPARE(disk->questions, 1);
    record.whole = 0;
    QCOMPARE(get_partition_offset(record, &offset), 0);
    QCOMPARE(offset, 7);
    QCOMPARE(disk->questions, 2);
}

void TestDiskTree::removalMovesTheHead()
{
    Forest forest;
    Item *const first = forest.make(makeDisk(u"disk0"_s));
    Item *const second = forest.make(makeDisk(u"disk1"_s));
    disk_list_add(&forest.head, first);
    disk_list_add(&forest.head, second);
    disk_list_remove(&forest.head, first);
    QCOMPARE(forest.head, second);
    QCOMPARE(second->next, second);
    QCOMPARE(first->next, second); // the links of what is removed stay
    disk_list_remove(&forest.head, second);
    QCOMPARE(forest.head, nullptr);
}

void TestDiskTree::partitionMovesUnderItsDisk()
{
    Forest forest;
    disk_list_rebuild(&forest.head, forest.make(makePartition(u"disk2s1"_s, 1000)));
    QCOMPARE(outline(forest.head), QStringList { u"disk2s1"_s });
    disk_list_rebuild(&forest.head, forest.make(makeDisk(u"disk2"_s)));
    QCOMPARE(outline(forest.head), (QStringList { u"disk2"_s, u" disk2s1"_s }));
}

void TestDiskTree::namesThatAreNoPartitionsStayOnTop()
{
    Forest forest;
    for (const char *name : { "disk2", "disks1", "disk2sx", "disk2s1" })
        disk_list_rebuild(&forest.head, forest.make(makePartition(QLatin1String(name), 0)));
    QCOMPARE(namesOf(forest.head).size(), 3);
    QCOMPARE(disk_list_find(&forest.head, u"disk2s1"_s).item->disk->description(), u"disk2s1"_s);
    QCOMPARE(disk_list_find(&forest.head, u"disk3"_s).item, nullptr);
}

void TestDiskTree::arrivalInAnyOrderGivesTheSameTree()
{
    constexpr int disks = 100;
    constexpr int partitions = 4;
    QRandomGenerator random(testSeed());
    std::vector<MemoryDiskRef> media;
    QStringList expected; // whole disks by number, their partitions by offset
    for (int disk = 0; disk < disks; ++disk) {
        const QString name = u"disk%1"_s.arg(disk);
        media.push_back(makeDisk(name));
        expected.append(name);
        std::vector<int> order(partitions);
        for (int i = 0; i < partitions; ++i)
            order[static_cast<std::size_t>(i)] = i + 1;
        std::shuffle(order.begin(), order.end(), random);
        for (int place = 0; place < partitions; ++place) {
            const QString partition = name + u"s%1"_s.arg(order[static_cast<std::size_t>(place)]);
            media.push_back(makePartition(partition, 1000 * (place + 1)));
            expected.append(u' ' + partition);
        }
    }
    for (int round = 0; round < 3; ++round) {
        std::shuffle(media.begin(), media.end(), random);
        Forest forest;
        for (const MemoryDiskRef &medium : media)
            disk_list_rebuild(&forest.head, forest.make(medium));
        QCOMPARE(outline(forest.head), expected);
    }
}

QTEST_GUILESS_MAIN(TestDiskTree)
#include "tst_disktree.moc"
