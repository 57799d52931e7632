// SPDX-License-Identifier: MIT
//
// What a block device is used for, its partitions and its identity.
#include "platform/DeviceUse.h"
#include "platform/VolumeMount.h"
#include "tests/unit/FakeSystem.h"

#include <QTemporaryFile>
#include <QTest>

#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

class TestDeviceUse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void unusedDevice();
    void whatIsNoBlockDeviceIsUnused();
    void mountPointsInTheTablesOrder();
    void mountPointsWithEscapedCharacters();
    void partitionsMountIsNotTheDisks();
    void nodeUnderAnotherName();
    void filesystemOverSeveralDevicesIsKnownByItsSource();
    void filesystemWithoutADeviceUsesNone();
    void holders();
    void loopDeviceIsAHolder();
    void mountOnWhatIsMadeFromTheDisk_data();
    void mountOnWhatIsMadeFromTheDisk();
    void swapOnWhatIsMadeFromTheDisk();
    void mountOfTheDiskService();
    void mountOfFstab();
    void mountByHand();
    void swapPartition();
    void swapPartitionWithABlankInItsName();
    void swapFileIsNoUseOfTheDevice();
    void partitionsOfADisk();
    void partitionsOfADiskInASubfolderOfDev();
    void partitionHasNoPartitions();
    void whatIsNoBlockDeviceHasNoPartitions();
    void identityOfAPartition();
    void changedMediumHasAnotherIdentity();
    void whatIsNoBlockDeviceHasNoIdentity();
    void deviceThatCannotBeOpened();
    void lockIsHeldOnce();

private:
    DeviceUse use(const QString &name) const { return readDeviceUse(u"/dev/"_s + name, m_system->root()); }

    std::unique_ptr<FakeSystem> m_system;
};

void TestDeviceUse::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_system->addDisk("sda", makedev(8, 0), "4");
    m_system->addPartition("sda", "sda1", makedev(8, 1), "1");
    m_system->addPartition("sda", "sda2", makedev(8, 2), "2");
    m_system->addDisk("dm-0", makedev(253, 0), "20");
}

void TestDeviceUse::unusedDevice()
{
    // Without any table, and with tables of others.
    QCOMPARE(use(u"sda1"_s).mountPoints, QStringList());
    m_system->mount("8:2", "/dev/sda2", "/media/B");
    m_system->writeSwaps("/dev/sda2 partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(use(u"sda1"_s).mountPoints, QStringList());
    QCOMPARE(use(u"sda1"_s).holders, QStringList());
    QVERIFY(!use(u"sda1"_s).isSwap);
}

void TestDeviceUse::whatIsNoBlockDeviceIsUnused()
{
    m_system->mount("8:1", "/dev/sda1", "/media/A");
    m_system->addCharacterNode("/dev/sg0", makedev(8, 1));
    QCOMPARE(use(u"sg0"_s).mountPoints, QStringList());
    QCOMPARE(use(u"missing"_s).mountPoints, QStringList());
}

void TestDeviceUse::mountPointsInTheTablesOrder()
{
    m_system->mount("8:1", "/dev/sda1", "/media/B", 40);
    m_system->mount("8:2", "/dev/sda2", "/media/Other", 41);
    m_system->mount("8:1", "/dev/sda1", "/media/A", 42, "/folder"); // a bind mount
    QCOMPARE(use(u"sda1"_s).mountPoints, QStringList({ u"/media/B"_s, u"/media/A"_s }));
}

void TestDeviceUse::mountPointsWithEscapedCharacters()
{
    m_system->mount("8:1", "/dev/sda1", "/media/My\\040disk\\011\\012\\134040\\043");
    QCOMPARE(use(u"sda1"_s).mountPoints, QStringList(u"/media/My disk\t\n\\040#"_s));
}

void TestDeviceUse::partitionsMountIsNotTheDisks()
{
    m_system->mount("8:1", "/dev/sda1", "/media/A");
    QCOMPARE(use(u"sda"_s).mountPoints, QStringList());
}

void TestDeviceUse::nodeUnderAnotherName()
{
    m_system->addNode("/dev/disk/by-label/A", makedev(8, 1));
    m_system->mount("8:1", "/dev/root", "/media/A");
    QCOMPARE(use(u"disk/by-label/A"_s).mountPoints, QStringList(u"/media/A"_s));
}

void TestDeviceUse::filesystemOverSeveralDevicesIsKnownByItsSource()
{
    m_system->mount("0:45", "/dev/sda1", "/media/A");
    QCOMPARE(use(u"sda1"_s).mountPoints, QStringList(u"/media/A"_s));
    QCOMPARE(use(u"sda2"_s).mountPoints, QStringList());
}

void TestDeviceUse::filesystemWithoutADeviceUsesNone()
{
    m_system->mount("0:22", "proc", "/proc");
    m_system->mount("0:23", "/dev/missing", "/media/A");
    for (const QString &name : { u"sda"_s, u"sda1"_s, u"sda2"_s, u"dm-0"_s })
        QCOMPARE(use(name).mountPoints, QStringList());
}

void TestDeviceUse::holders()
{
    m_system->addHolder("sda1", "dm-0");
    QCOMPARE(use(u"sda1"_s).holders, QStringList(u"dm-0"_s));
    QCOMPARE(use(u"sda"_s).holders, QStringList());
    QCOMPARE(use(u"dm-0"_s).holders, QStringList());
}

void TestDeviceUse::loopDeviceIsAHolder()
{
    m_system->addDisk("loop3", makedev(7, 3), "30");
    m_system->addDisk("loop4", makedev(7, 4), "31");
    m_system->write("/sys/devices/pci/block/loop3/loop/backing_file", "/dev/sda1\n");
    m_system->write("/sys/devices/pci/block/loop4/loop/backing_file", "/home/image\n");
    QCOMPARE(use(u"sda1"_s).holders, QStringList(u"loop3"_s));
    QCOMPARE(use(u"sda"_s).holders, QStringList());
}

void TestDeviceUse::mountOnWhatIsMadeFromTheDisk_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<bool>("isOnDisk");
    QTest::newRow("disk") << QByteArray("8:0") << QByteArray("/dev/sda") << true;
    QTest::newRow("partition") << QByteArray("8:2") << QByteArray("/dev/sda2") << true;
    QTest::newRow("logical volume on an array") << QByteArray("253:0") << QByteArray("/dev/dm-0") << true;
    QTest::newRow("partition of an array") << QByteArray("259:0") << QByteArray("/dev/md0p1") << true;
    QTest::newRow("loop device on a logical volume") << QByteArray("7:3") << QByteArray("/dev/loop3") << true;
    QTest::newRow("Btrfs on a logical volume") << QByteArray("0:50") << QByteArray("/dev/dm-0") << true;
    QTest::newRow("another disk") << QByteArray("8:16") << QByteArray("/dev/sdb") << false;
    QTest::newRow("no disk") << QByteArray("0:50") << QByteArray("tmpfs") << false;
}

void TestDeviceUse::mountOnWhatIsMadeFromTheDisk()
{
    QFETCH(const QByteArray, number);
    QFETCH(const QByteArray, node);
    QFETCH(const bool, isOnDisk);
    m_system->addDisk("sdb", makedev(8, 16), "5");
    m_system->addDisk("md0", makedev(9, 0), "22");
    m_system->addPartition("md0", "md0p1", makedev(259, 0), "1");
    m_system->addHolder("sda2", "md0");
    m_system->addHolder("md0", "dm-0");
    m_system->addHolder("dm-0", "md0"); // a circle does no harm
    m_system->addDisk("loop3", makedev(7, 3), "30");
    m_system->write("/sys/devices/pci/block/loop3/loop/backing_file", "/dev/dm-0\n");
    QVERIFY(!carriesMount(u"/dev/sda"_s, m_system->root()));
    m_system->mount(number, node, "/media/A");
    QCOMPARE(carriesMount(u"/dev/sda"_s, m_system->root()), isOnDisk);
}

void TestDeviceUse::swapOnWhatIsMadeFromTheDisk()
{
    m_system->addHolder("sda2", "dm-0");
    m_system->writeSwaps("/dev/dm-0 partition\t1000\t\t0\t\t-2\n");
    QVERIFY(carriesMount(u"/dev/sda"_s, m_system->root()));
    QVERIFY(!carriesMount(u"/dev/sda1"_s, m_system->root()));
}

void TestDeviceUse::mountOfTheDiskService()
{
    m_system->writeMounts(
        "40 1 8:1 / /media/anna/My\\040disk ro,nosuid,nodev,noexec,noatime - ext4 /dev/sda1 "
        "ro,norecovery\n"
        "41 1 8:2 / /media/DISK#1 rw,nosuid,relatime - vfat /dev/sda2 ro,sync\n"); // read-only after an error
    m_system->write("/run/mount/utab",
        "SRC=/dev/sda1 TARGET=/media/anna/My\\040disk ROOT=/ OPTS=uhelper=udisks2\n"
        "SRC=/dev/sda2 TARGET=/media/DISK#1 ROOT=/ OPTS=x-test,uhelper=udisks2\n");
    const auto first = readVolumeMounts(u"/dev/sda1"_s, m_system->root());
    QCOMPARE(first.size(), 1U);
    QCOMPARE(first.front().place, u"/media/anna/My disk"_s);
    QVERIFY(first.front().isServices);
    QCOMPARE(first.front().user, u"anna"_s);
    QCOMPARE(first.front().options, QStringList({ u"ro"_s, u"noexec"_s, u"noatime"_s, u"noload"_s }));
    const auto second = readVolumeMounts(u"/dev/sda2"_s, m_system->root());
    QVERIFY(second.front().isServices);
    QCOMPARE(second.front().user, QString());
    QCOMPARE(second.front().options, QStringList(u"sync"_s));
    QVERIFY(readVolumeMounts(u"/dev/sda"_s, m_system->root()).empty());
}

void TestDeviceUse::mountOfFstab()
{
    m_system->writeMounts("40 1 8:1 / /srv/data rw,relatime - ext4 /dev/sda1 rw\n"
                          "41 1 8:2 / /srv/kept ro,relatime - ext4 /dev/sda2 rw\n");
    m_system->write(
        "/etc/fstab", "LABEL=Data /srv/data ext4 noauto 0 0\nLABEL=Kept /srv/kept ext4 defaults 0 0\n");
    QVERIFY(readVolumeMounts(u"/dev/sda1"_s, m_system->root()).front().isServices);
    QCOMPARE(readVolumeMounts(u"/dev/sda1"_s, m_system->root()).front().user, QString());
    // The service would mount it for writing.
    QVERIFY(!readVolumeMounts(u"/dev/sda2"_s, m_system->root()).front().isServices);
    // Whom fstab lets mount it may unmount it.
    m_system->write("/run/mount/utab", "SRC=/dev/sda1 TARGET=/srv/data ROOT=/ OPTS=user=anna\n");
    QVERIFY(readVolumeMounts(u"/dev/sda1"_s, m_system->root()).front().isServices);
    QCOMPARE(readVolumeMounts(u"/dev/sda1"_s, m_system->root()).front().user, u"anna"_s);
}

void TestDeviceUse::mountByHand()
{
    m_system->writeMounts("40 1 8:1 / /media/anna/A rw,relatime - ext4 /dev/sda1 rw\n"
                          "41 1 8:1 /folder /srv/b rw,relatime - ext4 /dev/sda1 rw\n");
    m_system->write("/run/mount/utab", "SRC=/dev/sda1 TARGET=/media/anna/AB ROOT=/ OPTS=uhelper=udisks2\n");
    const auto mounts = readVolumeMounts(u"/dev/sda1"_s, m_system->root());
    QCOMPARE(mounts.size(), 2U);
    QVERIFY(!mounts.front().isServices && !mounts.back().isServices);
}

void TestDeviceUse::swapPartition()
{
    m_system->writeSwaps("/dev/dm-0                               partition\t1000\t\t0\t\t-2\n"
                         "/dev/sda2                               partition\t1000\t\t0\t\t-3\n");
    QVERIFY(use(u"sda2"_s).isSwap);
    QVERIFY(use(u"dm-0"_s).isSwap);
    QVERIFY(!use(u"sda1"_s).isSwap);
    QVERIFY(!use(u"sda"_s).isSwap);
}

void TestDeviceUse::swapPartitionWithABlankInItsName()
{
    m_system->addNode("/dev/mapper/my swap", makedev(253, 0));
    m_system->writeSwaps("/dev/mapper/my\\040swap partition\t1000\t\t0\t\t-2\n");
    QVERIFY(use(u"dm-0"_s).isSwap);
}

void TestDeviceUse::swapFileIsNoUseOfTheDevice()
{
    m_system->addFile("/var/swap", makedev(8, 1));
    m_system->writeSwaps("/var/swap file\t\t1000\t\t0\t\t-2\n");
    QVERIFY(!use(u"sda1"_s).isSwap);
}

void TestDeviceUse::partitionsOfADisk()
{
    m_system->write("/sys/devices/pci/block/sda/power/control", "on\n");
    QCOMPARE(
        partitionNodes(u"/dev/sda"_s, m_system->root()), QStringList({ u"/dev/sda1"_s, u"/dev/sda2"_s }));
}

void TestDeviceUse::partitionsOfADiskInASubfolderOfDev()
{
    m_system->addDisk("cciss!c0d0", makedev(104, 0), "30");
    m_system->addPartition("cciss!c0d0", "cciss!c0d0p1", makedev(104, 1), "1");
    m_system->addNode("/dev/cciss/c0d0", makedev(104, 0));
    QCOMPARE(partitionNodes(u"/dev/cciss/c0d0"_s, m_system->root()), QStringList(u"/dev/cciss/c0d0p1"_s));
}

void TestDeviceUse::partitionHasNoPartitions()
{
    QCOMPARE(partitionNodes(u"/dev/sda1"_s, m_system->root()), QStringList());
    QCOMPARE(partitionNodes(u"/dev/dm-0"_s, m_system->root()), QStringList());
}

void TestDeviceUse::whatIsNoBlockDeviceHasNoPartitions()
{
    m_system->addCharacterNode("/dev/sg0", makedev(8, 0));
    m_system->addNode("/dev/gone", makedev(8, 64));
    for (const QString &name : { u"/dev/sg0"_s, u"/dev/gone"_s, u"/dev/missing"_s })
        QCOMPARE(partitionNodes(name, m_system->root()), QStringList());
}

void TestDeviceUse::identityOfAPartition()
{
    const auto identity = readDeviceIdentity(u"/dev/sda2"_s, m_system->root());
    QVERIFY(identity);
    const DeviceIdentity expected { makedev(8, 2), 4, 2048, 40960 };
    QCOMPARE(*identity, expected);
    const auto whole = readDeviceIdentity(u"/dev/sda"_s, m_system->root());
    QVERIFY(whole);
    QCOMPARE(whole->start, 0U);
}

void TestDeviceUse::changedMediumHasAnotherIdentity()
{
    const auto before = readDeviceIdentity(u"/dev/sda1"_s, m_system->root());
    QVERIFY(before);
    m_system->write("/sys/devices/pci/block/sda/diskseq", "5\n");
    const auto after = readDeviceIdentity(u"/dev/sda1"_s, m_system->root());
    QVERIFY(after);
    QVERIFY(before != after);
    m_system->write("/sys/devices/pci/block/sda/diskseq", "4\n");
    m_system->write("/sys/devices/pci/block/sda/sda1/start", "4096\n");
    QVERIFY(before != readDeviceIdentity(u"/dev/sda1"_s, m_system->root()));
}

void TestDeviceUse::whatIsNoBlockDeviceHasNoIdentity()
{
    m_system->addFile("/home/image", makedev(8, 1));
    m_system->addNode("/dev/gone", makedev(8, 64));
    for (const QString &name : { u"/home/image"_s, u"/dev/gone"_s, u"/dev/missing"_s })
        QVERIFY(!readDeviceIdentity(name, m_system->root()));
}

void TestDeviceUse::deviceThatCannotBeOpened()
{
    OpenDevice missing(u"/no such device"_s);
    QVERIFY(!missing.identity());
    QCOMPARE(missing.openError(), ENOENT);
    QCOMPARE(missing.take(Claimant::Program), ENOENT);
    QVERIFY(missing.descriptors().empty());
    OpenDevice file(u"/dev/null"_s);
    QVERIFY(!file.identity());
}

// A plain file stands for a device: locks are the same, and there is nothing to claim.
void TestDeviceUse::lockIsHeldOnce()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    std::optional<OpenDevice> first(std::in_place, file.fileName());
    OpenDevice second(file.fileName());
    QCOMPARE(first->take(Claimant::Program), 0);
    QCOMPARE(first->descriptors().size(), 1U);
    QCOMPARE(second.take(Claimant::Program), EWOULDBLOCK);
    QCOMPARE(first->take(Claimant::ThisProcess), 0);
    QCOMPARE(first->descriptors().size(), 2U);
    QCOMPARE(second.take(Claimant::ThisProcess), EWOULDBLOCK);
    const int inherited = dup(first->descriptors().front());
    first.reset();
    QCOMPARE(second.take(Claimant::Program), EWOULDBLOCK);
    close(inherited);
    QCOMPARE(second.take(Claimant::Program), 0);
}

QTEST_GUILESS_MAIN(TestDeviceUse)
#include "tst_deviceuse.moc"
