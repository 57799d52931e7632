// SPDX-License-Identifier: MIT
//
// The disk tree: where a node goes, and that the order in which media arrive does not matter.
#include "disks/tree_rules.h"
#include "tests/unit/DiskForest.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

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
    void removalMovesTheHead();
    void partitionMovesUnderItsDisk();
    void namesThatAreNoPartitionsStayOnTop();
    void arrivalInAnyOrderGivesTheSameTree();
};

void TestDiskTree::numberAtTheEndOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("partition") << QStringLiteral("disk2s11") << 11;
    QTest::newRow("disk") << QStringLiteral("disk3") << 3;
    QTest::newRow("zero") << QStringLiteral("disk0") << 0;
    QTest::newRow("leading zeros") << QStringLiteral("disk007") << 7;
    QTest::newRow("no digit") << QStringLiteral("disks") << -1;
    QTest::newRow("empty") << QString() << -1;
    QTest::newRow("nine digits") << QStringLiteral("disk999999999") << 999999999;
    QTest::newRow("wraps") << QStringLiteral("disk4294967297") << 1;
    QTest::newRow("another script's digit") << QString(QStringLiteral("disk") + QChar(0x0663)) << -1;
}

void TestDiskTree::numberAtTheEndOfAName()
{
    QFETCH(const QString, name);
    QFETCH(const int, number);
    QCOMPARE(trailingNumber(name), number);
}

void TestDiskTree::parentOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::newRow("partition") << QStringLiteral("disk2s1") << QStringLiteral("disk2");
    QTest::newRow("nested") << QStringLiteral("disk1s2s3") << QStringLiteral("disk1s2");
    QTest::newRow("no digits at all") << QStringLiteral("disk2s") << QStringLiteral("disk2");
    QTest::newRow("whole") << QStringLiteral("disk2") << QString();
    QTest::newRow("s at position 4") << QStringLiteral("disks1") << QString();
    QTest::newRow("letter behind") << QStringLiteral("disk2sx") << QString();
    QTest::newRow("disk later in the name") << QStringLiteral("xdisk2s1") << QString();
}

void TestDiskTree::parentOfAName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, parent);
    QCOMPARE(parentBsdName(name).value_or(QString()), parent);
}

void TestDiskTree::firstNodeIsARingOfOne()
{
    Forest forest;
    Item *const item = forest.make(makeDisk(QStringLiteral("disk0")));
    disk_list_rebuild(&forest.head, item);
    QCOMPARE(forest.head, item);
    QCOMPARE(item->next, item);
    QCOMPARE(item->prev, item);
}

void TestDiskTree::wholeDisksByUnitNumber()
{
    Forest forest;
    for (const int number : { 10, 9, 1, 0 })
        disk_list_rebuild(&forest.head, forest.make(makeDisk(QStringLiteral("disk%1").arg(number))));
    QCOMPARE(namesOf(forest.head),
        (QStringList { QStringLiteral("disk0"), QStringLiteral("disk1"), QStringLiteral("disk9"),
            QStringLiteral("disk10") }));
}

void TestDiskTree::partitionsByOffset()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(makePartition(QStringLiteral("disk2s1"), 3000)));
    disk_list_add(&forest.head, forest.make(makePartition(QStringLiteral("disk2s2"), 1000)));
    disk_list_add(&forest.head, forest.make(makePartition(QStringLiteral("disk2s3"), 2000)));
    QCOMPARE(namesOf(forest.head),
        (QStringList { QStringLiteral("disk2s2"), QStringLiteral("disk2s3"), QStringLiteral("disk2s1") }));
}

void TestDiskTree::unreadableOffsetsFallBackToNumbers()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s1"), {}, 3)));
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s2"), 0, 1)));
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s3"), {}, 2)));
    QCOMPARE(namesOf(forest.head),
        (QStringList { QStringLiteral("disk2s2"), QStringLiteral("disk2s3"), QStringLiteral("disk2s1") }));
}

void TestDiskTree::unreadableNumbersFallBackToNames()
{
    Forest forest;
    for (const int number : { 11, 2, 1 })
        disk_list_add(
            &forest.head, forest.make(partitionWith(QStringLiteral("disk2s%1").arg(number), {}, {})));
    QCOMPARE(namesOf(forest.head),
        (QStringList { QStringLiteral("disk2s1"), QStringLiteral("disk2s2"), QStringLiteral("disk2s11") }));
}

void TestDiskTree::equalOffsetsFallBackToNumbers()
{
    Forest forest;
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s1"), 1000, 2)));
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s2"), 1000, 1)));
    QCOMPARE(namesOf(forest.head), (QStringList { QStringLiteral("disk2s2"), QStringLiteral("disk2s1") }));
}

void TestDiskTree::largeOffsetsCompareUnsigned()
{
    Forest forest;
    const qint64 large = std::numeric_limits<qint64>::max();
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s1"), large, 1)));
    disk_list_add(&forest.head, forest.make(partitionWith(QStringLiteral("disk2s2"), 0, 2)));
    QCOMPARE(namesOf(forest.head), (QStringList { QStringLiteral("disk2s2"), QStringLiteral("disk2s1") }));
}

void TestDiskTree::registryFailuresLeaveTheResultAlone()
{
    Forest forest;
    qint64 value = 42;
    const Item *whole = forest.make(makeDisk(QStringLiteral("disk2")));
    QCOMPARE(get_partition_offset(*whole->disk, &value), 0);
    QCOMPARE(value, 0);
    value = 42;
    QCOMPARE(get_partition_number(*whole->disk, &value), 5);
    const Item *negative = forest.make(partitionWith(QStringLiteral("disk2s1"), -1, -1));
    QCOMPARE(get_partition_offset(*negative->disk, &value), 5);
    QCOMPARE(get_partition_number(*negative->disk, &value), 5);
    const MemoryDiskRef wrong = partitionWith(QStringLiteral("disk2s2"), {}, {});
    wrong->mediaProperties->insert(IOMediaKey::base, QStringLiteral("1000"));
    QCOMPARE(get_partition_offset(*forest.make(wrong)->disk, &value), 5);
    QCOMPARE(value, 42);
}

void TestDiskTree::removalMovesTheHead()
{
    Forest forest;
    Item *const first = forest.make(makeDisk(QStringLiteral("disk0")));
    Item *const second = forest.make(makeDisk(QStringLiteral("disk1")));
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
    disk_list_rebuild(&forest.head, forest.make(makePartition(QStringLiteral("disk2s1"), 1000)));
    QCOMPARE(outline(forest.head), QStringList { QStringLiteral("disk2s1") });
    disk_list_rebuild(&forest.head, forest.make(makeDisk(QStringLiteral("disk2"))));
    QCOMPARE(outline(forest.head), (QStringList { QStringLiteral("disk2"), QStringLiteral(" disk2s1") }));
}

void TestDiskTree::namesThatAreNoPartitionsStayOnTop()
{
    Forest forest;
    for (const char *name : { "disk2", "disks1", "disk2sx", "disk2s1" })
        disk_list_rebuild(&forest.head, forest.make(makePartition(QLatin1String(name), 0)));
    QCOMPARE(namesOf(forest.head).size(), 3);
    QCOMPARE(disk_list_find(&forest.head, QStringLiteral("disk2s1")).item->disk->description(),
        QStringLiteral("disk2s1"));
    QCOMPARE(disk_list_find(&forest.head, QStringLiteral("disk3")).item, nullptr);
}

void TestDiskTree::arrivalInAnyOrderGivesTheSameTree()
{
    constexpr int disks = 100;
    constexpr int partitions = 4;
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    std::vector<MemoryDiskRef> media;
    QStringList expected; // whole disks by number, their partitions by offset
    for (int disk = 0; disk < disks; ++disk) {
        const QString name = QStringLiteral("disk%1").arg(disk);
        media.push_back(makeDisk(name));
        expected.append(name);
        std::vector<int> order(partitions);
        for (int i = 0; i < partitions; ++i)
            order[static_cast<std::size_t>(i)] = i + 1;
        std::shuffle(order.begin(), order.end(), random);
        for (int place = 0; place < partitions; ++place) {
            const QString partition
                = name + QStringLiteral("s%1").arg(order[static_cast<std::size_t>(place)]);
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
