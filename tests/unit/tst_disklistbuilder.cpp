// SPDX-License-Identifier: MIT
//
// An addition that does not rebuild the tree gives the same tree as a rebuild. It is compared with the plain
// rule, which reads every registry value at every comparison, on random trees of all that a service might
// report.
#include "disks/DiskListBuilder.h"
#include "disks/tree_rules.h"
#include "tests/support/TestSeed.h"
#include "tests/unit/DiskForest.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using KeyReader = int (*)(const ZorvexDiskManagerDisk &record, qint64 *out);

QString nameOf(const Item *item)
{
    return item->disk->bsdName.value_or(QString());
}

// The node before which the item goes by this key; atHead tells whether it becomes the head. Null when the
// key does not decide.
Item *entryByKey(Item *head, const Item *item, KeyReader readKey, bool *atHead)
{
    qint64 key = 0;
    if (readKey(*item->disk, &key) != 0)
        return nullptr;
    Item *node = head;
    *atHead = true;
    do {
        qint64 other = 0;
        if (readKey(*node->disk, &other) != 0 || other == key)
            return nullptr;
        if (static_cast<quint64>(key) < static_cast<quint64>(other))
            return node;
        node = node->next;
        *atHead = false;
    } while (node != head);
    return head;
}

void plainAdd(Item **head, Item *item)
{
    if (!*head) {
        item->next = item->prev = item;
        *head = item;
        return;
    }
    bool atHead = true;
    qint32 key = -1;
    Item *node = entryByKey(*head, item, get_partition_offset, &atHead);
    if (!node)
        node = entryByKey(*head, item, get_partition_number, &atHead);
    if (!node) {
        node = *head;
        atHead = true;
        key = TreeRules::trailingNumber(nameOf(item));
    }
    for (;;) {
        const qint32 other = TreeRules::trailingNumber(nameOf(node));
        if (key == other ? nameOf(item) < nameOf(node) : key < other)
            break;
        node = node->next;
        atHead = false;
        if (node == *head)
            break;
    }
    item->next = node;
    item->prev = node->prev;
    node->prev->next = item;
    node->prev = item;
    if (atHead)
        *head = item;
}

void plainRebuild(Item **head, Item *added)
{
    std::vector<Item *> flat;
    std::vector<Item *> stack;
    if (*head)
        stack.push_back(*head);
    added->next = added->prev = added;
    added->children = nullptr;
    stack.push_back(added);
    *head = nullptr;
    while (!stack.empty()) {
        Item *const ring = stack.back();
        stack.pop_back();
        Item *node = ring;
        do {
            flat.push_back(node);
            if (node->children)
                stack.push_back(node->children);
            node->children = nullptr;
            node = node->next;
        } while (node != ring);
    }
    for (Item *node : flat) {
        Item **ring = head;
        if (const auto parentName = TreeRules::parentBsdName(nameOf(node))) {
            const auto parent = std::find_if(
                flat.begin(), flat.end(), [&](const Item *other) { return nameOf(other) == *parentName; });
            if (parent != flat.end())
                ring = &(*parent)->children;
        }
        plainAdd(ring, node);
    }
}

// How unlike real media the random ones are, in per cent.
struct Oddity
{
    int missingOffset = 0;
    int missingNumber = 0;
    int sameOffset = 0;
    int strangeName = 0;
    int secondName = 0; // a name that is there already
    int registryChange = 0; // before an addition
    bool isShuffled = false; // partitions may come before their disks
};

class RandomMedia
{
public:
    RandomMedia(quint32 seed, const Oddity &oddity)
        : m_random(seed)
        , m_oddity(oddity)
    {
    }

    bool happens(int percent) { return m_random.bounded(100) < percent; }
    int below(int end) { return m_random.bounded(end); }

    // The media of some disks, in the order in which they come.
    std::vector<MemoryDiskRef> make(int disks)
    {
        std::vector<MemoryDiskRef> media;
        for (int disk = 0; disk < disks; ++disk) {
            const QString name = u"disk%1"_s.arg(below(3) ? disk : disk * 7);
            media.push_back(makeDisk(happens(m_oddity.strangeName) ? name + strangeEnd() : name));
            const int partitions = below(6);
            for (int i = 1; i <= partitions; ++i)
                media.push_back(partitionOf(name, i));
            if (happens(m_oddity.secondName))
                media.push_back(makeDisk(name));
            if (happens(m_oddity.secondName)) {
                const QString again = name + u"s1"_s;
                media.push_back(partitionWith(again, below(100), 1));
                media.push_back(partitionWith(again + u"s1"_s, 1, 1)); // of which of the two?
            }
        }
        if (m_oddity.isShuffled)
            std::shuffle(media.begin(), media.end(), m_random);
        return media;
    }

private:
    QString strangeEnd()
    {
        static const char *const ends[] = { "s", "sx", "s1s2", "s4294967297", "s3000000000", "x", "s0" };
        return QLatin1String(ends[below(static_cast<int>(std::size(ends)))]);
    }

    MemoryDiskRef partitionOf(const QString &whole, int number)
    {
        const qint64 offset = happens(m_oddity.sameOffset) ? 4096 : qint64 { below(1000) } * 4096 + number;
        const MemoryDiskRef disk = partitionWith(nameIn(whole, number), offset, number);
        if (happens(m_oddity.missingOffset))
            disk->mediaProperties->remove(IOMediaKey::base);
        if (happens(m_oddity.missingNumber))
            disk->mediaProperties->remove(IOMediaKey::partitionID);
        return disk;
    }

    QString nameIn(const QString &whole, int number)
    {
        return whole + (happens(m_oddity.strangeName) ? strangeEnd() : u"s%1"_s.arg(number));
    }

    QRandomGenerator m_random;
    Oddity m_oddity;
};

} // namespace

Q_DECLARE_METATYPE(Oddity)

class TestDiskListBuilder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameTreeAsBuildingAnew_data();
    void sameTreeAsBuildingAnew();
    void burstGivesTheSameTree_data() { sameTreeAsBuildingAnew_data(); }
    void burstGivesTheSameTree();
    void placeOfAnAdditionIsTold();
    void adoptionIsTold();
};

void TestDiskListBuilder::sameTreeAsBuildingAnew_data()
{
    QTest::addColumn<Oddity>("oddity");
    QTest::newRow("as a service reports") << Oddity {};
    QTest::newRow("without offsets") << Oddity { .missingOffset = 100 };
    QTest::newRow("without offsets and numbers") << Oddity { .missingOffset = 100, .missingNumber = 100 };
    QTest::newRow("some without offsets") << Oddity { .missingOffset = 20, .missingNumber = 20 };
    QTest::newRow("some at one offset") << Oddity { .sameOffset = 40 };
    QTest::newRow("strange names") << Oddity { .strangeName = 30 };
    QTest::newRow("names that occur twice") << Oddity { .secondName = 20 };
    QTest::newRow("registry that changes") << Oddity { .missingOffset = 5, .registryChange = 20 };
    QTest::newRow("any order") << Oddity { .isShuffled = true };
    QTest::newRow("everything") << Oddity { 15, 15, 15, 15, 15, 15, true };
}

void TestDiskListBuilder::sameTreeAsBuildingAnew()
{
    QFETCH(const Oddity, oddity);
    const quint32 seed = testSeed();
    for (quint32 round = 0; round < 60; ++round) {
        RandomMedia random(seed + round, oddity);
        Forest built;
        Forest plain;
        DiskListBuilder builder;
        std::vector<MemoryDiskRef> present;
        std::vector<std::pair<Item *, Item *>> nodes;
        for (const MemoryDiskRef &medium : random.make(random.below(12))) {
            if (!present.empty() && random.happens(oddity.registryChange)) {
                const MemoryDiskRef &changed
                    = present[static_cast<std::size_t>(random.below(static_cast<int>(present.size())))];
                if (!changed->mediaProperties)
                    changed->mediaProperties.emplace();
                changed->mediaProperties->insert(
                    IOMediaKey::base, PropertyNumber(qint64 { random.below(4000) }));
                for (const auto &[node, plainNode] : nodes) {
                    if (node->disk->daDisk == changed)
                        builder.noteChange(node);
                }
            }
            nodes.emplace_back(built.make(medium), plain.make(medium));
            present.push_back(medium);
            builder.add(&built.head, nodes.back().first);
            plainRebuild(&plain.head, nodes.back().second);
            QCOMPARE(outline(built.head), outline(plain.head));
            if (!random.happens(15))
                continue;
            const QString name
                = nameOf(nodes[static_cast<std::size_t>(random.below(static_cast<int>(nodes.size())))].first);
            const DiskListPosition gone = builder.find(&built.head, name);
            const DiskListPosition plainlyGone = disk_list_find(&plain.head, name);
            QCOMPARE(gone.item != nullptr, plainlyGone.item != nullptr);
            if (gone.item) {
                builder.remove(gone);
                disk_list_remove(plainlyGone.head, plainlyGone.item);
            }
        }
    }
}

// Bursts among single additions.
void TestDiskListBuilder::burstGivesTheSameTree()
{
    QFETCH(const Oddity, oddity);
    const quint32 seed = testSeed();
    for (quint32 round = 0; round < 60; ++round) {
        RandomMedia random(seed + round, oddity);
        Forest built;
        Forest plain;
        DiskListBuilder builder;
        std::vector<Item *> burst;
        for (const MemoryDiskRef &medium : random.make(random.below(40))) {
            burst.push_back(built.make(medium));
            plainRebuild(&plain.head, plain.make(medium));
            if (random.happens(80))
                continue;
            if (burst.size() == 1)
                builder.add(&built.head, burst.front());
            else
                builder.addAll(&built.head, burst);
            burst.clear();
            QCOMPARE(outline(built.head), outline(plain.head));
        }
        builder.addAll(&built.head, burst);
        QCOMPARE(outline(built.head), outline(plain.head));
    }
}

void TestDiskListBuilder::placeOfAnAdditionIsTold()
{
    Forest forest;
    DiskListBuilder builder;
    Item *const disk = forest.make(makeDisk(u"disk2"_s));
    const auto add = [&](Item *item) { return builder.add(&forest.head, item); };
    add(disk);
    add(forest.make(makePartition(u"disk2s1"_s, 2000)));
    const DiskListAddition first = add(forest.make(makePartition(u"disk2s2"_s, 1000)));
    QVERIFY(!first.movedOthers);
    QCOMPARE(first.parent, disk);
    QCOMPARE(first.index, 0);
    const DiskListAddition above = add(forest.make(makeDisk(u"disk1"_s)));
    QVERIFY(!above.movedOthers);
    QCOMPARE(above.parent, nullptr);
    QCOMPARE(above.index, 0);
    QCOMPARE(forest.head->disk->description(), u"disk1"_s);
}

void TestDiskListBuilder::adoptionIsTold()
{
    Forest forest;
    DiskListBuilder builder;
    builder.add(&forest.head, forest.make(makePartition(u"disk2s1"_s, 1000)));
    const DiskListAddition disk = builder.add(&forest.head, forest.make(makeDisk(u"disk2"_s)));
    QVERIFY(disk.movedOthers);
}

QTEST_GUILESS_MAIN(TestDiskListBuilder)
#include "tst_disklistbuilder.moc"
