// SPDX-License-Identifier: MIT
//
// From what the disk service says to the description of a medium, and from its errors to dissenters.
#include "tests/support/FakeUDisks.h"

#include "disks/description_rules.h"
#include "platform/DiskArbitration.h"
#include "platform/DisturbingCharacters.h"
#include "platform/udisks/UDisksError.h"
#include "platform/udisks/UDisksMedium.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString wholePath = FakeUDisks::blockPath(u"fake2"_s);
const QString volumePath = FakeUDisks::blockPath(u"fake2p1"_s);
const QString drivePath = u"/org/freedesktop/UDisks2/drives/stick"_s;

// A disk with a partition, to be changed by the test.
struct StoreTest
{
    StoreTest()
    {
        whole = fakeWholeDisk(u"fake2"_s);
        volume = fakePartition(u"fake2p1"_s, 1, u"A"_s);
    }

    std::optional<UDisksMedium> read(const QString &path)
    {
        UDisksStore store;
        store.addInterfaces(wholePath, whole);
        store.addInterfaces(volumePath, volume);
        store.addInterfaces(drivePath, { { UDisks::drive, drive } });
        return readUDisksMedium(store, path, noClaims(), FakeUDisks::facts);
    }

    void useDrive()
    {
        const QVariant path = QVariant::fromValue(QDBusObjectPath(drivePath));
        whole[UDisks::block].insert(u"Drive"_s, path);
        volume[UDisks::block].insert(u"Drive"_s, path);
    }

    UDisksInterfaces whole;
    UDisksInterfaces volume;
    QVariantMap drive;
};

bool flagOf(const UDisksMedium &medium, const QString &key)
{
    return *medium.description.value(key)->asBoolean();
}

} // namespace

class TestUDisksMedium : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void harmfulCharactersOfNamesAreReplaced_data();
    void harmfulCharactersOfNamesAreReplaced();
    void partitionTypes_data();
    void partitionTypes();
    void mediaThatAreNotListed();
    void ignoredVolumeWithAFilesystemIsListed();
    void extendedPartitionIsNotListed();
    void mountableMedia_data();
    void mountableMedia();
    void diskWithPartitionsIsNotMountable();
    void probedContent_data();
    void probedContent();
    void nameOfADrive_data();
    void nameOfADrive();
    void diskOnARemovableBusIsExternal();
    void internalDisk();
    void emptyLabelIsAbsent();
    void unclaimedFilesystemBearsItsOwnName();
    void propertiesOfUnexpectedTypesReadAsEmpty();
    void errorsBecomeDissenters_data();
    void errorsBecomeDissenters();
};

void TestUDisksMedium::harmfulCharactersOfNamesAreReplaced_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isHarmful");
    QTest::newRow("plain") << u"My Disk \u00e9 \u65e5"_s << false;
    QTest::newRow("Arabic") << u"\u0642\u0631\u0635"_s << false;
    for (const char16_t c : { u'\n', u'\x1b', u'\u202e', u'\u2066', u'\u200f', u'\u2028', u'\u061c' })
        QTest::addRow("U+%04X", c) << QString(u"a"_s + QChar(c) + u'b') << true;
}

void TestUDisksMedium::harmfulCharactersOfNamesAreReplaced()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isHarmful);
    const QString harmless = isHarmful ? u"a\ufffdb"_s : name;
    QCOMPARE(harmlessName(name), harmless);
    StoreTest test;
    test.volume[UDisks::block].insert(u"IdLabel"_s, name);
    QCOMPARE(*test.read(volumePath)->description.value(DAKey::volumeName)->asString(), harmless);
}

void TestUDisksMedium::partitionTypes_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("NTFS") << u"dos"_s << u"0x07"_s << u"Windows_NTFS"_s << false;
    QTest::newRow("FAT32") << u"dos"_s << u"0x0c"_s << u"DOS_FAT_32"_s << false;
    QTest::newRow("Linux") << u"dos"_s << u"0x83"_s << u"Linux"_s << false;
    QTest::newRow("swap") << u"dos"_s << u"0x82"_s << u"Linux_Swap"_s << false;
    QTest::newRow("unknown") << u"dos"_s << u"0x7f"_s << u"0x7f"_s << false;
    QTest::newRow("no number") << u"dos"_s << u"0xzz"_s << u"0xzz"_s << false;
    const QString linuxType = u"0fc63daf-8483-4772-8e79-3d69d8477de4"_s;
    const QString efiType = u"c12a7328-f81f-11d2-ba4b-00a0c93ec93b"_s;
    QTest::newRow("GPT") << u"gpt"_s << linuxType << linuxType.toUpper() << false;
    QTest::newRow("EFI") << u"gpt"_s << efiType << efiType.toUpper() << true;
    QTest::newRow("EFI, table told later") << QString() << efiType << efiType.toUpper() << true;
    QTest::newRow("partition map") << u"mac"_s << u"Apple_partition_map"_s << u"Apple_partition_map"_s
                                   << true;
    QTest::newRow("HFS") << u"mac"_s << u"Apple_HFS"_s << u"Apple_HFS"_s << false;
}

void TestUDisksMedium::partitionTypes()
{
    QFETCH(const QString, table);
    QFETCH(const QString, type);
    QFETCH(const QString, content);
    QFETCH(const bool, isHidden);
    StoreTest test;
    if (table.isEmpty())
        test.whole.remove(UDisks::partitionTable);
    else
        test.whole[UDisks::partitionTable].insert(u"Type"_s, table);
    test.volume[UDisks::partition].insert(u"Type"_s, type);
    const QString read = *test.read(volumePath)->description.value(DAKey::mediaContent)->asString();
    QCOMPARE(read, content);
    QCOMPARE(DescriptionRules::isHiddenContent(read), isHidden);
}

void TestUDisksMedium::mediaThatAreNotListed()
{
    StoreTest test;
    QVERIFY(test.read(wholePath) && test.read(volumePath));
    test.volume.remove(UDisks::filesystem);
    test.volume[UDisks::block].insert(u"HintIgnore"_s, true);
    QVERIFY(!test.read(volumePath));
    test = StoreTest();
    test.whole[UDisks::block].insert(u"Size"_s, QVariant::fromValue(qulonglong { 0 }));
    QVERIFY(!test.read(wholePath) && !test.read(volumePath));
    test = StoreTest();
    for (const char *node : { "/dev/ram0", "/dev/zram0", "/dev/gone1" }) {
        test.volume[UDisks::block].insert(u"Device"_s, QByteArray(node).append('\0'));
        QVERIFY(!test.read(volumePath));
    }
    QVERIFY(!test.read(drivePath));
}

// The service's rules ignore volumes by their label, too.
void TestUDisksMedium::ignoredVolumeWithAFilesystemIsListed()
{
    StoreTest test;
    test.volume[UDisks::block].insert(u"HintIgnore"_s, true);
    test.volume[UDisks::block].insert(u"IdLabel"_s, u"RECOVERY"_s);
    QVERIFY(test.read(volumePath));
    QVERIFY(flagOf(*test.read(volumePath), DAKey::volumeMountable));
}

void TestUDisksMedium::extendedPartitionIsNotListed()
{
    StoreTest test;
    test.volume.remove(UDisks::filesystem);
    test.volume[UDisks::partition].insert(u"Type"_s, u"0x05"_s);
    QVERIFY(test.read(volumePath));
    test.volume[UDisks::partition].insert(u"IsContainer"_s, true);
    QVERIFY(!test.read(volumePath));
}

void TestUDisksMedium::mountableMedia_data()
{
    QTest::addColumn<QString>("usage");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("partitionType");
    QTest::addColumn<bool>("isMountable");
    const QString linuxType = u"0fc63daf-8483-4772-8e79-3d69d8477de4"_s;
    QTest::newRow("blank") << QString() << QString() << linuxType << true;
    QTest::newRow("encrypted") << u"crypto"_s << u"crypto_LUKS"_s << linuxType << true;
    QTest::newRow("swap") << u"other"_s << u"swap"_s << linuxType << true;
    QTest::newRow("LVM") << u"raid"_s << u"LVM2_member"_s << linuxType << true;
    QTest::newRow("BIOS boot") << QString() << QString() << u"21686148-6449-6E6F-744E-656564454649"_s
                               << false;
    QTest::newRow("PReP boot") << QString() << QString() << u"9e1a2d38-c612-4316-aa26-8b49521e5a8b"_s
                               << false;
    QTest::newRow("reserved") << QString() << QString() << u"e3c9e316-0b5c-4db8-817d-f92df00215ae"_s << false;
}

void TestUDisksMedium::mountableMedia()
{
    QFETCH(const QString, usage);
    QFETCH(const QString, type);
    QFETCH(const QString, partitionType);
    StoreTest test;
    test.volume[UDisks::partition].insert(u"Type"_s, partitionType);
    QVERIFY(
        flagOf(*test.read(volumePath), DAKey::volumeMountable)); // whatever its type, it has a file system
    test.volume.remove(UDisks::filesystem);
    test.volume[UDisks::block].insert(u"IdUsage"_s, usage);
    test.volume[UDisks::block].insert(u"IdType"_s, type);
    const UDisksMedium volume = *test.read(volumePath);
    QTEST(flagOf(volume, DAKey::volumeMountable), "isMountable");
    QVERIFY(!volume.description.value(DAKey::volumeKind));
}

void TestUDisksMedium::diskWithPartitionsIsNotMountable()
{
    StoreTest test;
    QVERIFY(!flagOf(*test.read(wholePath), DAKey::volumeMountable));
    test.volume.clear();
    QVERIFY(flagOf(*test.read(wholePath), DAKey::volumeMountable));
}

void TestUDisksMedium::probedContent_data()
{
    using Kind = ProbedContent::Kind;
    QTest::addColumn<QString>("usage");
    QTest::addColumn<QString>("type");
    QTest::addColumn<Kind>("kind");
    QTest::newRow("nothing") << QString() << QString() << Kind::Nothing;
    QTest::newRow("LUKS") << u"crypto"_s << u"crypto_LUKS"_s << Kind::Encrypted;
    QTest::newRow("BitLocker") << u"crypto"_s << u"BitLocker"_s << Kind::Encrypted;
    QTest::newRow("LVM") << u"raid"_s << u"LVM2_member"_s << Kind::LvmMember;
    QTest::newRow("RAID") << u"raid"_s << u"linux_raid_member"_s << Kind::RaidMember;
    QTest::newRow("swap") << u"other"_s << u"swap"_s << Kind::Swap;
    QTest::newRow("journal") << u"other"_s << u"jbd"_s << Kind::Other;
    QTest::newRow("not ready to be mounted") << u"filesystem"_s << u"ext4"_s << Kind::Other;
}

void TestUDisksMedium::probedContent()
{
    QFETCH(const QString, usage);
    QFETCH(const QString, type);
    QFETCH(const ProbedContent::Kind, kind);
    StoreTest test;
    QVERIFY(test.read(volumePath)->content == (ProbedContent { ProbedContent::Kind::Filesystem, u"ext4"_s }));
    test.volume.remove(UDisks::filesystem);
    test.volume[UDisks::block].insert(u"IdUsage"_s, usage);
    test.volume[UDisks::block].insert(u"IdType"_s, type);
    QVERIFY(test.read(volumePath)->content == (ProbedContent { kind, type }));
}

void TestUDisksMedium::nameOfADrive_data()
{
    QTest::addColumn<QString>("vendor");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("name");
    QTest::newRow("both") << u"Maker "_s << u"Stick"_s << u"Maker Stick"_s;
    QTest::newRow("repeated") << u"QEMU"_s << u"QEMU HARDDISK"_s << u"QEMU HARDDISK"_s;
    QTest::newRow("repeated in other letters") << u"SANDISK"_s << u"SanDisk Ultra"_s << u"SanDisk Ultra"_s;
    QTest::newRow("in the middle") << u"SanDisk"_s << u"USB SanDisk 3.2"_s << u"USB SanDisk 3.2"_s;
    QTest::newRow("beginning of a word") << u"WD"_s << u"WDC 10"_s << u"WD WDC 10"_s;
    QTest::newRow("model alone") << QString() << u"Disk"_s << u"Disk"_s;
    QTest::newRow("vendor alone") << u"Maker"_s << QString() << u"Maker"_s;
}

void TestUDisksMedium::nameOfADrive()
{
    QFETCH(const QString, vendor);
    QFETCH(const QString, model);
    StoreTest test;
    test.useDrive();
    test.drive = { { u"Vendor"_s, vendor }, { u"Model"_s, model } };
    QTEST(*test.read(wholePath)->description.value(DAKey::mediaName)->asString(), "name");
}

void TestUDisksMedium::diskOnARemovableBusIsExternal()
{
    StoreTest test;
    test.useDrive();
    test.drive = { { u"ConnectionBus"_s, u"usb"_s }, { u"MediaRemovable"_s, true }, { u"Ejectable"_s, true },
        { u"Vendor"_s, u"Maker "_s }, { u"Model"_s, u"Stick"_s } };
    const UDisksMedium whole = *test.read(wholePath);
    QVERIFY(!flagOf(whole, DAKey::deviceInternal));
    QVERIFY(flagOf(whole, DAKey::mediaRemovable) && flagOf(whole, DAKey::mediaEjectable));
    QCOMPARE(*whole.description.value(DAKey::mediaName)->asString(), u"Maker Stick"_s);
    QVERIFY(flagOf(whole, DAKey::mediaWhole) && !flagOf(whole, DAKey::mediaLeaf));
}

void TestUDisksMedium::internalDisk()
{
    StoreTest test;
    test.useDrive();
    test.drive = { { u"ConnectionBus"_s, QString() }, { u"Ejectable"_s, false } };
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(flagOf(volume, DAKey::deviceInternal));
    QVERIFY(!flagOf(volume, DAKey::mediaRemovable) && !flagOf(volume, DAKey::mediaEjectable));
    QVERIFY(flagOf(volume, DAKey::mediaLeaf) && flagOf(volume, DAKey::mediaWritable));
}

void TestUDisksMedium::emptyLabelIsAbsent()
{
    StoreTest test;
    test.volume[UDisks::block].insert(u"IdLabel"_s, QString());
    test.volume[UDisks::partition].insert(u"Name"_s, QString());
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(!volume.description.value(DAKey::volumeName) && !volume.description.value(DAKey::mediaName));
}

void TestUDisksMedium::unclaimedFilesystemBearsItsOwnName()
{
    StoreTest test;
    QCOMPARE(*test.read(volumePath)->description.value(DAKey::volumeKind)->asString(), u"ext4"_s);
    QVERIFY(!test.read(volumePath)->subtype);
    test.volume[UDisks::block].insert(u"IdUsage"_s, u"crypto"_s);
    QVERIFY(!test.read(volumePath)->description.value(DAKey::volumeKind));
}

void TestUDisksMedium::propertiesOfUnexpectedTypesReadAsEmpty()
{
    StoreTest test;
    test.volume[UDisks::block].insert(u"IdLabel"_s, 7);
    test.volume[UDisks::block].insert(u"ReadOnly"_s, u"yes"_s);
    test.volume[UDisks::filesystem].insert(u"MountPoints"_s, u"/media/A"_s);
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(!volume.description.value(DAKey::volumeName) && !volume.description.value(DAKey::volumePath));
    QVERIFY(flagOf(volume, DAKey::mediaWritable));
}

void TestUDisksMedium::errorsBecomeDissenters_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");
    QTest::addColumn<quint32>("status");
    const QString prefix = u"org.freedesktop.UDisks2.Error."_s;
    const std::pair<const char *, quint32> known[] = { { "DeviceBusy", 0xF8DA0002 },
        { "AlreadyMounted", 0xF8DA0002 }, { "NotMounted", 0xF8DA0007 }, { "NotAuthorized", 0xF8DA0009 },
        { "NotAuthorizedCanObtain", 0xF8DA0009 }, { "NotAuthorizedDismissed", 0xF8DA0009 },
        { "NotSupported", 0xF8DA000C }, { "OptionNotPermitted", 0xF8DA0008 }, { "Failed", 0xF8DA0001 },
        { "Cancelled", 0xF8DA0001 }, { "Timedout", 0xF8DA0001 } };
    for (const auto &[name, status] : known)
        QTest::newRow(name) << QString(prefix + QLatin1String(name)) << u"words"_s << status;
    for (const char *name : { "UnknownObject", "UnknownInterface", "UnknownMethod" })
        QTest::newRow(name) << u"org.freedesktop.DBus.Error."_s + QLatin1String(name) << u"words"_s
                            << 0xF8DA0006U;
    QTest::newRow("unknown") << u"org.gtk.GDBus.UnmappedGError.Quark._g.Code6"_s << u"words"_s << 0xF8DA0001U;
    QTest::newRow("no driver") << QString(prefix + u"Failed")
                               << u"Filesystem type exfat not configured in kernel."_s << 0xF8DA000CU;
    QTest::newRow("unknown type") << QString(prefix + u"Failed")
                                  << u"mount: /media/A: unknown filesystem type 'other'."_s << 0xF8DA000CU;
    QTest::newRow("busy, with the words of another")
        << QString(prefix + u"DeviceBusy") << u"unknown filesystem type"_s << 0xF8DA0002U;
}

void TestUDisksMedium::errorsBecomeDissenters()
{
    QFETCH(const QString, error);
    QFETCH(const QString, message);
    QFETCH(const quint32, status);
    const DADissenterRef dissenter
        = dissenterFromBusError(error, u"GDBus.Error:%1: %2"_s.arg(error, message));
    QCOMPARE(dissenter->status, status);
    QCOMPARE(dissenter->statusString.value_or(QString()), message);
    QVERIFY(!dissenterFromBusError(error, QString())->statusString);
}

QTEST_GUILESS_MAIN(TestUDisksMedium)
#include "tst_udisksmedium.moc"
