// SPDX-License-Identifier: MIT
//
// Facts about block devices, and which of them the running system stands on.
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
    void systemMountPoints_data();
    void systemMountPoints();
    void neighboursOfTheSystemAreNotTheSystem();
    void encryptedVolumesStandOnTheirPartition();
    void arrayStandsOnAllItsMembers();
    void whatIsMadeFromASystemDeviceIsNotTheSystem();
    void rootThatIsNamedWithoutANode();
    void numberCountsMoreThanTheName();
    void filesystemOverSeveralDevicesIsKnownByItsSource();
    void filesystemOfAServerHasNoDevice();
    void swapPartitionInUse();
    void swapFileInUse();
    void swapSpaceWithABlankInItsName();
    void swapSpaceThatWasDeleted();
    void headingOfTheSwapTableIsNoFile();
    void swapSpaceAboveAPartition();
    void brokenLinkToAFoundation();
    void foundationsInACircle();
    void withoutTablesThereIsNoSystem();
    void whatIsNoBlockDeviceIsNotTheSystem();

private:
    bool isSystem(const QString &name) const { return isSystemDevice(u"/dev/"_s + name, m_system->root()); }
    QStringList systemDevices() const;

    std::unique_ptr<FakeSystem> m_system;
};

// Two disks with two partitions each, and two devices of the device mapper.
void TestBlockDevice::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_system->addDisk("sda", makedev(8, 0), "4");
    m_system->addPartition("sda", "sda1", makedev(8, 1), "1");
    m_system->addPartition("sda", "sda2", makedev(8, 2), "2");
    m_system->addDisk("sdb", makedev(8, 16), "17");
    m_system->addPartition("sdb", "sdb1", makedev(8, 17), "1");
    m_system->addPartition("sdb", "sdb2", makedev(8, 18), "2");
    m_system->addDisk("dm-0", makedev(253, 0), "20");
    m_system->addDisk("dm-1", makedev(253, 1), "21");
}

QStringList TestBlockDevice::systemDevices() const
{
    QStringList names { u"sda"_s, u"sda1"_s, u"sda2"_s, u"sdb"_s, u"sdb1"_s, u"sdb2"_s, u"dm-0"_s,
        u"dm-1"_s };
    names.removeIf([this](const QString &name) { return !isSystem(name); });
    return names;
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

void TestBlockDevice::systemMountPoints_data()
{
    QTest::addColumn<QByteArray>("mountPoint");
    QTest::addColumn<bool>("isOfSystem");
    for (const char *path : { "/", "/boot", "/boot/efi", "/usr" })
        QTest::newRow(path) << QByteArray(path) << true;
    for (const char *path : { "/media/Data", "/usr2", "/media/usr", "/boot/efi/sub", "//" })
        QTest::newRow(path) << QByteArray(path) << false;
}

void TestBlockDevice::systemMountPoints()
{
    QFETCH(QByteArray, mountPoint);
    QFETCH(bool, isOfSystem);
    m_system->mount("8:1", "/dev/sda1", mountPoint);
    QCOMPARE(systemDevices(), isOfSystem ? QStringList({ u"sda"_s, u"sda1"_s }) : QStringList());
}

void TestBlockDevice::neighboursOfTheSystemAreNotTheSystem()
{
    m_system->mount("8:2", "/dev/sda2", "/");
    m_system->mount("8:17", "/dev/sdb1", "/media/Data");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestBlockDevice::encryptedVolumesStandOnTheirPartition()
{
    m_system->addHolder("sda2", "dm-0");
    m_system->addHolder("dm-0", "dm-1");
    m_system->mount("253:1", "/dev/mapper/vg-root", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s, u"dm-0"_s, u"dm-1"_s }));
}

void TestBlockDevice::arrayStandsOnAllItsMembers()
{
    m_system->addHolder("sda1", "dm-0");
    m_system->addHolder("sdb", "dm-0");
    m_system->mount("253:0", "/dev/md0", "/usr");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"sdb"_s, u"dm-0"_s }));
}

void TestBlockDevice::whatIsMadeFromASystemDeviceIsNotTheSystem()
{
    m_system->addHolder("sda1", "dm-0");
    m_system->mount("8:1", "/dev/sda1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s }));
}

void TestBlockDevice::rootThatIsNamedWithoutANode()
{
    m_system->mount("8:2", "/dev/root", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

// A node can have been given to another device since the mount.
void TestBlockDevice::numberCountsMoreThanTheName()
{
    m_system->mount("8:2", "/dev/sdb1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestBlockDevice::filesystemOverSeveralDevicesIsKnownByItsSource()
{
    m_system->mount("0:40", "/dev/sdb1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestBlockDevice::filesystemOfAServerHasNoDevice()
{
    m_system->addNode("server:/usr", makedev(8, 1));
    m_system->mount("0:40", "server:/usr", "/usr");
    m_system->mount("0:41", "/dev/missing", "/");
    QCOMPARE(systemDevices(), QStringList());
}

void TestBlockDevice::swapPartitionInUse()
{
    m_system->writeSwaps("/dev/sda2                               partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestBlockDevice::swapFileInUse()
{
    m_system->addFile("/var/swap", makedev(8, 17));
    m_system->writeSwaps("/var/swap                               file\t\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestBlockDevice::swapSpaceWithABlankInItsName()
{
    m_system->addFile("/var/my swap\tfile\\", makedev(8, 17));
    m_system->addFile("/var/my", makedev(8, 1));
    m_system->writeSwaps("/var/my\\040swap\\011file\\134 file\t\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestBlockDevice::swapSpaceThatWasDeleted()
{
    m_system->writeSwaps("/var/swap\\040(deleted) file\t\t1000\t\t0\t\t-2\n"
                         "/dev/sda2 partition\t1000\t\t0\t\t-3\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestBlockDevice::headingOfTheSwapTableIsNoFile()
{
    m_system->addFile("Filename", makedev(8, 1));
    m_system->addFile("", makedev(8, 1));
    m_system->writeSwaps({});
    QCOMPARE(systemDevices(), QStringList());
    m_system->writeSwaps("/dev/sdb1 partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestBlockDevice::swapSpaceAboveAPartition()
{
    m_system->addHolder("sdb2", "dm-0");
    m_system->addNode("/dev/mapper/swap", makedev(253, 0));
    m_system->writeSwaps("/dev/mapper/swap partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb2"_s, u"dm-0"_s }));
}

void TestBlockDevice::brokenLinkToAFoundation()
{
    m_system->addHolder("sda1", "dm-0");
    QVERIFY(QFile::link(u"../nowhere"_s, QFile::decodeName(m_system->folder("dm-0") + "/slaves/gone")));
    m_system->mount("253:0", "/dev/dm-0", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"dm-0"_s }));
}

void TestBlockDevice::foundationsInACircle()
{
    m_system->addHolder("dm-0", "dm-1");
    m_system->addHolder("dm-1", "dm-0");
    m_system->mount("253:0", "/dev/dm-0", "/");
    QCOMPARE(systemDevices(), QStringList({ u"dm-0"_s, u"dm-1"_s }));
}

void TestBlockDevice::withoutTablesThereIsNoSystem()
{
    QCOMPARE(systemDevices(), QStringList());
    m_system->writeMounts("no table\n");
    m_system->write("/proc/swaps", "no table\n");
    QCOMPARE(systemDevices(), QStringList());
}

void TestBlockDevice::whatIsNoBlockDeviceIsNotTheSystem()
{
    m_system->mount("8:1", "/dev/sda1", "/");
    m_system->addCharacterNode("/dev/sg0", makedev(8, 1));
    m_system->addNode("/dev/gone", makedev(8, 32));
    QVERIFY(isSystem(u"sda1"_s));
    for (const QString &name : { u"sg0"_s, u"gone"_s, u"missing"_s })
        QVERIFY(!isSystem(name));
}

QTEST_GUILESS_MAIN(TestBlockDevice)
#include "tst_blockdevice.moc"
