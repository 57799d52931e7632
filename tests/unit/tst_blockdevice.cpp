// SPDX-License-Identifier: MIT
//
// Facts about block devices.
#include "platform/BlockDevice.h"
#include "tests/unit/FakeSystem.h"

#include <QFile>
#include <QTest>

#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

class TestBlockDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void factsOfAWholeDisk();
    void factsOfAPartition();
    void diskWithoutSequenceHasNoFacts();
    void diskWithABrokenSequenceHasNoFacts();
    void deviceThatHasGoneHasNoFacts();
    void fileHasNoFacts();
    void kernelNameOfANode();
    void whatIsNoBlockDeviceHasNoName();

private:
    std::unique_ptr<FakeSystem> m_system;
};

// Two disks with partitions.
void TestBlockDevice::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_system->addDisk("sda", makedev(8, 0), "4");
    m_system->addPartition("sda", "sda1", makedev(8, 1), "1");
    m_system->addPartition("sda", "sda2", makedev(8, 2), "2");
    m_system->addDisk("sdb", makedev(8, 16), "17");
    m_system->addPartition("sdb", "sdb1", makedev(8, 17), "1");
    m_system->addPartition("sdb", "sdb2", makedev(8, 18), "2");
}

void TestBlockDevice::factsOfAWholeDisk()
{
    m_system->write("/sys/devices/pci/block/sdb/queue/logical_block_size", "4096\n");
    const auto facts = readFactsOfDevice(makedev(8, 16), m_system->root());
    QVERIFY(facts);
    QCOMPARE(facts->bsdName, u"disk17"_s);
    QCOMPARE(facts->diskSequence, 17U);
    QCOMPARE(facts->partitionNumber, 0U);
    QCOMPARE(facts->logicalBlockSize, 4096);
}

void TestBlockDevice::factsOfAPartition()
{
    const auto facts = readFactsOfDevice(makedev(8, 18), m_system->root());
    QVERIFY(facts);
    QCOMPARE(facts->bsdName, u"disk17s2"_s);
    QCOMPARE(facts->diskSequence, 17U);
    QCOMPARE(facts->partitionNumber, 2U);
    QCOMPARE(facts->logicalBlockSize, 512);
}

void TestBlockDevice::diskWithoutSequenceHasNoFacts()
{
    QVERIFY(QFile::remove(QFile::decodeName(m_system->folder("sda") + "/diskseq")));
    QVERIFY(!readFactsOfDevice(makedev(8, 0), m_system->root()));
    QVERIFY(!readFactsOfDevice(makedev(8, 1), m_system->root()));
}

void TestBlockDevice::diskWithABrokenSequenceHasNoFacts()
{
    m_system->write("/sys/devices/pci/block/sda/diskseq", "none\n");
    QVERIFY(!readFactsOfDevice(makedev(8, 1), m_system->root()));
}

void TestBlockDevice::deviceThatHasGoneHasNoFacts()
{
    QVERIFY(!readFactsOfDevice(makedev(8, 32), m_system->root()));
    QVERIFY(!readFactsOfDevice(std::nullopt, m_system->root()));
}

void TestBlockDevice::fileHasNoFacts()
{
    QVERIFY(!readBlockDeviceFacts(u"/dev/null"_s));
    QVERIFY(!readBlockDeviceFacts(u"/no such file"_s));
}

void TestBlockDevice::kernelNameOfANode()
{
    m_system->addNode("/dev/disk/by-label/Data", makedev(8, 17));
    m_system->addDisk("cciss!c0d0", makedev(104, 0), "30");
    QCOMPARE(kernelDeviceName(u"/dev/sdb"_s, m_system->root()), u"sdb"_s);
    QCOMPARE(kernelDeviceName(u"/dev/disk/by-label/Data"_s, m_system->root()), u"sdb1"_s);
    QCOMPARE(kernelDeviceName(u"/dev/cciss!c0d0"_s, m_system->root()), u"cciss!c0d0"_s);
}

void TestBlockDevice::whatIsNoBlockDeviceHasNoName()
{
    m_system->addCharacterNode("/dev/sg0", makedev(8, 1));
    m_system->addFile("/home/image", makedev(8, 1));
    for (const QString &path : { u"/dev/sg0"_s, u"/home/image"_s, u"/dev/sdz"_s, QString() })
        QCOMPARE(kernelDeviceName(path, m_system->root()), QString());
}

QTEST_GUILESS_MAIN(TestBlockDevice)
#include "tst_blockdevice.moc"
