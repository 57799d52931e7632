// SPDX-License-Identifier: MIT
//
// Which devices are the running system's own.
#include "platform/SystemDevices.h"
#include "tests/unit/FakeSystem.h"

#include <QFile>
#include <QTest>

#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

class TestSystemDevices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    void whatTheSystemStandsOnIsCurrent();
    void sourcesInFstab_data();
    void sourcesInFstab();
    void placesInFstab_data();
    void placesInFstab();
    void logicalVolumeInFstabStandsOnItsDisk();
    void lockedVolumeInFstab();
    void partsOfOneFilesystemInFstab();
    void copyOfAMountedVolumeIsNotTheSystem();
    void otherVolumeInThePlace();
    void volumesMountedOnDemand_data();
    void volumesMountedOnDemand();
    void bootPartitions_data();
    void bootPartitions();
    void mountPointsOfFstab();

private:
    SystemUse useOf(const QString &name) const { return systemUse(u"/dev/"_s + name, m_system->root()); }
    bool isSystem(const QString &name) const { return isSystemDevice(u"/dev/"_s + name, m_system->root()); }
    QStringList systemDevices() const;

    std::unique_ptr<FakeSystem> m_system;
};

// Two disks with two partitions each, and two devices of the device mapper.
void TestSystemDevices::init()
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

QStringList TestSystemDevices::systemDevices() const
{
    QStringList names { u"sda"_s, u"sda1"_s, u"sda2"_s, u"sdb"_s, u"sdb1"_s, u"sdb2"_s, u"dm-0"_s,
        u"dm-1"_s };
    names.removeIf([this](const QString &name) { return !isSystem(name); });
    return names;
}

void TestSystemDevices::systemMountPoints_data()
{
    QTest::addColumn<QByteArray>("mountPoint");
    QTest::addColumn<bool>("isOfSystem");
    for (const char *path : { "/", "/boot", "/boot/efi", "/boot/efi/sub", "/efi", "/usr", "/usr/local",
             "/var", "/var/lib/mysql", "/home", "/home/user", "/run/live/medium" })
        QTest::newRow(path) << QByteArray(path) << true;
    for (const char *path :
        { "/media/Data", "/usr2", "/media/usr", "/srv", "/mnt", "/run/media/user/A", "//" })
        QTest::newRow(path) << QByteArray(path) << false;
}

void TestSystemDevices::systemMountPoints()
{
    QFETCH(QByteArray, mountPoint);
    QFETCH(bool, isOfSystem);
    m_system->mount("8:1", "/dev/sda1", mountPoint);
    QCOMPARE(systemDevices(), isOfSystem ? QStringList({ u"sda"_s, u"sda1"_s }) : QStringList());
}

void TestSystemDevices::neighboursOfTheSystemAreNotTheSystem()
{
    m_system->mount("8:2", "/dev/sda2", "/");
    m_system->mount("8:17", "/dev/sdb1", "/media/Data");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestSystemDevices::encryptedVolumesStandOnTheirPartition()
{
    m_system->addHolder("sda2", "dm-0");
    m_system->addHolder("dm-0", "dm-1");
    m_system->mount("253:1", "/dev/mapper/vg-root", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s, u"dm-0"_s, u"dm-1"_s }));
}

void TestSystemDevices::arrayStandsOnAllItsMembers()
{
    m_system->addHolder("sda1", "dm-0");
    m_system->addHolder("sdb", "dm-0");
    m_system->mount("253:0", "/dev/md0", "/usr");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"sdb"_s, u"dm-0"_s }));
}

void TestSystemDevices::whatIsMadeFromASystemDeviceIsNotTheSystem()
{
    m_system->addHolder("sda1", "dm-0");
    m_system->mount("8:1", "/dev/sda1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s }));
}

void TestSystemDevices::rootThatIsNamedWithoutANode()
{
    m_system->mount("8:2", "/dev/root", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

// A node can have been given to another device since the mount.
void TestSystemDevices::numberCountsMoreThanTheName()
{
    m_system->mount("8:2", "/dev/sdb1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestSystemDevices::filesystemOverSeveralDevicesIsKnownByItsSource()
{
    m_system->mount("0:40", "/dev/sdb1", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestSystemDevices::filesystemOfAServerHasNoDevice()
{
    m_system->addNode("server:/usr", makedev(8, 1));
    m_system->mount("0:40", "server:/usr", "/usr");
    m_system->mount("0:41", "/dev/missing", "/");
    QCOMPARE(systemDevices(), QStringList());
}

void TestSystemDevices::swapPartitionInUse()
{
    m_system->writeSwaps("/dev/sda2                               partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestSystemDevices::swapFileInUse()
{
    m_system->addFile("/var/swap", makedev(8, 17));
    m_system->writeSwaps("/var/swap                               file\t\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestSystemDevices::swapSpaceWithABlankInItsName()
{
    m_system->addFile("/var/my swap\tfile\\", makedev(8, 17));
    m_system->addFile("/var/my", makedev(8, 1));
    m_system->writeSwaps("/var/my\\040swap\\011file\\134 file\t\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestSystemDevices::swapSpaceThatWasDeleted()
{
    m_system->writeSwaps("/var/swap\\040(deleted) file\t\t1000\t\t0\t\t-2\n"
                         "/dev/sda2 partition\t1000\t\t0\t\t-3\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s }));
}

void TestSystemDevices::headingOfTheSwapTableIsNoFile()
{
    m_system->addFile("Filename", makedev(8, 1));
    m_system->addFile("", makedev(8, 1));
    m_system->writeSwaps({});
    QCOMPARE(systemDevices(), QStringList());
    m_system->writeSwaps("/dev/sdb1 partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb1"_s }));
}

void TestSystemDevices::swapSpaceAboveAPartition()
{
    m_system->addHolder("sdb2", "dm-0");
    m_system->addNode("/dev/mapper/swap", makedev(253, 0));
    m_system->writeSwaps("/dev/mapper/swap partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb2"_s, u"dm-0"_s }));
}

void TestSystemDevices::brokenLinkToAFoundation()
{
    m_system->addHolder("sda1", "dm-0");
    QVERIFY(QFile::link(u"../nowhere"_s, QFile::decodeName(m_system->folder("dm-0") + "/slaves/gone")));
    m_system->mount("253:0", "/dev/dm-0", "/");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"dm-0"_s }));
}

void TestSystemDevices::foundationsInACircle()
{
    m_system->addHolder("dm-0", "dm-1");
    m_system->addHolder("dm-1", "dm-0");
    m_system->mount("253:0", "/dev/dm-0", "/");
    QCOMPARE(systemDevices(), QStringList({ u"dm-0"_s, u"dm-1"_s }));
}

void TestSystemDevices::withoutTablesThereIsNoSystem()
{
    QCOMPARE(systemDevices(), QStringList());
    m_system->writeMounts("no table\n");
    m_system->write("/proc/swaps", "no table\n");
    QCOMPARE(systemDevices(), QStringList());
}

void TestSystemDevices::whatIsNoBlockDeviceIsNotTheSystem()
{
    m_system->mount("8:1", "/dev/sda1", "/");
    m_system->addCharacterNode("/dev/sg0", makedev(8, 1));
    m_system->addNode("/dev/gone", makedev(8, 32));
    QVERIFY(isSystem(u"sda1"_s));
    for (const QString &name : { u"sg0"_s, u"gone"_s, u"missing"_s })
        QVERIFY(!isSystem(name));
}

void TestSystemDevices::whatTheSystemStandsOnIsCurrent()
{
    m_system->mount("8:1", "/dev/sda1", "/boot");
    QCOMPARE(useOf(u"sda1"_s), SystemUse::Current);
    QCOMPARE(useOf(u"sda"_s), SystemUse::Current);
    QCOMPARE(useOf(u"sda2"_s), SystemUse::None);
}

void TestSystemDevices::sourcesInFstab_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<bool>("isNamed");
    for (const char *source : { "/dev/sda1", "/dev/disk/by-label/Boot", "UUID=1234-ABCD", "LABEL=My\\040Boot",
             "PARTUUID=0bd7a6a1-02", "PARTLABEL=boot\\040part", "UUID=\"1234-ABCD\"" })
        QTest::newRow(source) << QByteArray(source) << true;
    for (const char *source : { "/dev/sdz1", "UUID=1234", "LABEL=My", "LABEL=", "PARTUUID=", "none", "tmpfs",
             "sda1", "server:/boot", "ID_FS_UUID_ENC=1234-ABCD" })
        QTest::newRow(source) << QByteArray(source) << false;
}

// Nothing is mounted.
void TestSystemDevices::sourcesInFstab()
{
    QFETCH(const QByteArray, source);
    QFETCH(const bool, isNamed);
    m_system->addNode("/dev/disk/by-label/Boot", makedev(8, 1));
    m_system->addNode("sda1", makedev(8, 1));
    m_system->writeProperties(makedev(8, 1),
        { "ID_FS_UUID=1234-ABCD", "ID_FS_UUID_ENC=1234-ABCD", "ID_FS_LABEL=My_Boot",
            "ID_FS_LABEL_ENC=My\\x20Boot", "ID_PART_ENTRY_UUID=0bd7a6a1-02",
            "ID_PART_ENTRY_NAME=boot\\x20part" });
    m_system->writeProperties(makedev(8, 2), { "ID_FS_UUID_ENC=1234-ABCE", "ID_FS_LABEL_ENC=Other" });
    m_system->write("/etc/fstab", "# a comment\nbroken\n" + source + " /boot ext4 noauto 0 2\n");
    QCOMPARE(systemDevices(), isNamed ? QStringList({ u"sda"_s, u"sda1"_s }) : QStringList());
    if (isNamed)
        QCOMPARE(useOf(u"sda1"_s), SystemUse::Named);
}

void TestSystemDevices::placesInFstab_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isOfSystem");
    for (const char *line : { "/dev/sda1 /boot ext4", "/dev/sda1 /boot/ ext4", "/dev/sda1 //usr/local ext4",
             "/dev/sda1 /home/user ext4 noauto,user 0 0", "/dev/sda1 none swap sw 0 0",
             "/dev/sda1 swap swap sw 0 0" })
        QTest::newRow(line) << QByteArray(line) << true;
    for (const char *line : { "/dev/sda1 /srv/data ext4", "/dev/sda1 /media/usb0 auto user,noauto",
             "/dev/sda1 none ext4", "#/dev/sda1 /boot ext4" })
        QTest::newRow(line) << QByteArray(line) << false;
}

void TestSystemDevices::placesInFstab()
{
    QFETCH(const QByteArray, line);
    QFETCH(const bool, isOfSystem);
    m_system->write("/etc/fstab", line + '\n');
    QCOMPARE(systemDevices(), isOfSystem ? QStringList({ u"sda"_s, u"sda1"_s }) : QStringList());
}

void TestSystemDevices::logicalVolumeInFstabStandsOnItsDisk()
{
    m_system->addHolder("sda2", "dm-0");
    m_system->addNode("/dev/mapper/vg-home", makedev(253, 0));
    m_system->write("/etc/fstab", "/dev/mapper/vg-home /home ext4 noauto 0 2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda2"_s, u"dm-0"_s }));
}

void TestSystemDevices::lockedVolumeInFstab()
{
    m_system->writeProperties(makedev(8, 18), { "ID_FS_UUID_ENC=0a1b" });
    m_system->write("/etc/fstab", "/dev/mapper/home_crypt /home ext4 noauto 0 2\n");
    QCOMPARE(systemDevices(), QStringList());
    m_system->write("/etc/crypttab", "# name source\nother UUID=22\nhome_crypt\tUUID=0a1b none luks\n");
    QCOMPARE(systemDevices(), QStringList({ u"sdb"_s, u"sdb2"_s }));
}

void TestSystemDevices::partsOfOneFilesystemInFstab()
{
    for (const dev_t part : { makedev(8, 1), makedev(8, 17) })
        m_system->writeProperties(part, { "ID_FS_UUID_ENC=b7f5" });
    m_system->write("/etc/fstab", "UUID=b7f5 /home btrfs noauto 0 0\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"sdb"_s, u"sdb1"_s }));
}

// Somebody who has moved to a new disk wants to erase the old one.
void TestSystemDevices::copyOfAMountedVolumeIsNotTheSystem()
{
    for (const dev_t copy : { makedev(8, 1), makedev(8, 17) })
        m_system->writeProperties(copy, { "ID_FS_UUID_ENC=b7f5" });
    for (const dev_t copy : { makedev(8, 2), makedev(8, 18) })
        m_system->writeProperties(copy, { "ID_FS_UUID_ENC=5a5a" });
    m_system->write("/etc/fstab", "UUID=b7f5 / ext4 defaults 0 1\nUUID=5a5a none swap sw 0 0\n");
    m_system->mount("8:1", "/dev/sda1", "/");
    m_system->writeSwaps("/dev/sda2 partition\t1000\t\t0\t\t-2\n");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"sda2"_s }));
}

// Something else that is mounted in a place of the system does not set free what belongs there.
void TestSystemDevices::otherVolumeInThePlace()
{
    m_system->write("/etc/fstab", "/dev/sda1 /boot ext4 defaults 0 2\n");
    m_system->mount("8:17", "/dev/sdb1", "/boot");
    QCOMPARE(systemDevices(), QStringList({ u"sda"_s, u"sda1"_s, u"sdb"_s, u"sdb1"_s }));
    QCOMPARE(useOf(u"sda1"_s), SystemUse::Named);
    QCOMPARE(useOf(u"sdb1"_s), SystemUse::Current);
}

void TestSystemDevices::volumesMountedOnDemand_data()
{
    QTest::addColumn<QByteArray>("mountPoint");
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<bool>("isOfSystem");
    QTest::newRow("generated") << QByteArray("/efi") << QByteArray("/run/systemd/generator.late/efi.mount")
                               << true;
    QTest::newRow("administrator's") << QByteArray("/home/a-b")
                                     << QByteArray("/etc/systemd/system/home-a\\x2db.mount") << true;
    QTest::newRow("of another place")
        << QByteArray("/srv") << QByteArray("/etc/systemd/system/srv.mount") << false;
    QTest::newRow("without a unit") << QByteArray("/efi") << QByteArray("/etc/systemd/system/boot.mount")
                                    << false;
}

void TestSystemDevices::volumesMountedOnDemand()
{
    QFETCH(const QByteArray, mountPoint);
    QFETCH(const QByteArray, unit);
    QFETCH(const bool, isOfSystem);
    m_system->write(unit, "[Mount]\nWhere=" + mountPoint + "\nWhat=/dev/sda1\n");
    QCOMPARE(systemDevices(), QStringList());
    m_system->automount(mountPoint);
    QCOMPARE(systemDevices(), isOfSystem ? QStringList({ u"sda"_s, u"sda1"_s }) : QStringList());
}

void TestSystemDevices::bootPartitions_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isOfSystem");
    QTest::newRow("ESP") << QByteArray("c12a7328-f81f-11d2-ba4b-00a0c93ec93b") << true;
    QTest::newRow("XBOOTLDR") << QByteArray("bc13c2ff-59e6-4262-a352-b275fd6f7172") << true;
    QTest::newRow("ESP of MBR") << QByteArray("0xef") << true;
    QTest::newRow("XBOOTLDR of MBR") << QByteArray("0xea") << true;
    QTest::newRow("data") << QByteArray("0fc63daf-8483-4772-8e79-3d69d8477de4") << false;
}

void TestSystemDevices::bootPartitions()
{
    QFETCH(const QByteArray, type);
    QFETCH(const bool, isOfSystem);
    for (const dev_t part : { makedev(8, 1), makedev(8, 17) })
        m_system->writeProperties(part, { "ID_PART_ENTRY_TYPE=" + type });
    QCOMPARE(systemDevices(), QStringList());
    m_system->mount("8:2", "/dev/sda2", "/");
    QCOMPARE(useOf(u"sda1"_s), isOfSystem ? SystemUse::Named : SystemUse::None);
    QCOMPARE(useOf(u"sdb1"_s), SystemUse::None); // a stick that can be started from
}

void TestSystemDevices::mountPointsOfFstab()
{
    m_system->write("/etc/fstab", "LABEL=A /srv/my\\040data/ ext4\nLABEL=B none swap\n");
    QVERIFY(isInFstab(u"/srv/my data"_s, m_system->root()));
    QVERIFY(isInFstab(u"/srv//my data/"_s, m_system->root()));
    for (const QString &path : { u"/srv"_s, u"/srv/my data/below"_s, u"none"_s, QString() })
        QVERIFY(!isInFstab(path, m_system->root()));
}

QTEST_GUILESS_MAIN(TestSystemDevices)
#include "tst_systemdevices.moc"
