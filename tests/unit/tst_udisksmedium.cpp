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
