// SPDX-License-Identifier: MIT
//
// From what the disk service says to the description of a medium, and from its errors to dissenters.
#include "tests/support/FakeUDisks.h"

#include "platform/DiskArbitration.h"
#include "platform/disturbing_characters.h"
#include "platform/UDisksError.h"
#include "platform/UDisksMedium.h"

#include <QTest>

namespace {

const QString wholePath = FakeUDisks::blockPath(QStringLiteral("fake2"));
const QString volumePath = FakeUDisks::blockPath(QStringLiteral("fake2p1"));
const QString drivePath = QStringLiteral("/org/freedesktop/UDisks2/drives/stick");

// A disk with a partition, to be changed by the test.
struct StoreTest
{
    StoreTest()
    {
        whole = fakeWholeDisk(QStringLiteral("fake2"));
        volume = fakePartition(QStringLiteral("fake2p1"), 1, QStringLiteral("A"));
    }

    std::optional<UDisksMedium> read(const QString &path)
    {
        UDisksStore store;
        store.addInterfaces(wholePath, whole);
        store.addInterfaces(volumePath, volume);
        store.addInterfaces(drivePath, { { UDisks::drive, drive } });
        return readUDisksMedium(store, path, FileSystemClaims({}), FakeUDisks::facts);
    }

    void useDrive()
    {
        const QVariant path = QVariant::fromValue(QDBusObjectPath(drivePath));
        whole[UDisks::block].insert(QStringLiteral("Drive"), path);
        volume[UDisks::block].insert(QStringLiteral("Drive"), path);
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
    void partitionTypesOfMbr_data();
    void partitionTypesOfMbr();
    void mediaThatAreNotListed();
    void diskOnARemovableBusIsExternal();
    void internalDisk();
    void emptyLabelIsAbsent();
    void unclaimedFileSystemBearsItsOwnName();
    void propertiesOfUnexpectedTypesReadAsEmpty();
    void errorsBecomeDissenters_data();
    void errorsBecomeDissenters();
};

void TestUDisksMedium::harmfulCharactersOfNamesAreReplaced_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isHarmful");
    QTest::newRow("plain") << QStringLiteral("My Disk \u00e9 \u65e5") << false;
    QTest::newRow("Arabic") << QStringLiteral("\u0642\u0631\u0635") << false;
    for (const char16_t c : { u'\n', u'\x1b', u'\u202e', u'\u2066', u'\u200f', u'\u2028', u'\u061c' })
        QTest::addRow("U+%04X", c) << QString(QStringLiteral("a") + QChar(c) + u'b') << true;
}

void TestUDisksMedium::harmfulCharactersOfNamesAreReplaced()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isHarmful);
    const QString harmless = isHarmful ? QStringLiteral("a\ufffdb") : name;
    QCOMPARE(harmlessName(name), harmless);
    StoreTest test;
    test.volume[UDisks::block].insert(QStringLiteral("IdLabel"), name);
    QCOMPARE(*test.read(volumePath)->description.value(DAKey::volumeName)->asString(), harmless);
}

void TestUDisksMedium::partitionTypesOfMbr_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("content");
    QTest::newRow("NTFS") << QStringLiteral("0x07") << QStringLiteral("Windows_NTFS");
    QTest::newRow("FAT32") << QStringLiteral("0x0c") << QStringLiteral("DOS_FAT_32");
    QTest::newRow("Linux") << QStringLiteral("0x83") << QStringLiteral("Linux");
    QTest::newRow("swap") << QStringLiteral("0x82") << QStringLiteral("Linux_Swap");
    QTest::newRow("unknown") << QStringLiteral("0x7f") << QStringLiteral("0x7f");
    QTest::newRow("no number") << QStringLiteral("0xzz") << QStringLiteral("0xzz");
}

void TestUDisksMedium::partitionTypesOfMbr()
{
    QFETCH(const QString, type);
    QFETCH(const QString, content);
    StoreTest test;
    test.volume[UDisks::partition].insert(QStringLiteral("Type"), type);
    QCOMPARE(*test.read(volumePath)->description.value(DAKey::mediaContent)->asString(), content);
}

void TestUDisksMedium::mediaThatAreNotListed()
{
    StoreTest test;
    QVERIFY(test.read(wholePath) && test.read(volumePath));
    test.volume[UDisks::block].insert(QStringLiteral("HintIgnore"), true);
    QVERIFY(!test.read(volumePath));
    test = StoreTest();
    test.whole[UDisks::block].insert(QStringLiteral("Size"), QVariant::fromValue(qulonglong { 0 }));
    QVERIFY(!test.read(wholePath) && !test.read(volumePath));
    test = StoreTest();
    for (const char *node : { "/dev/ram0", "/dev/zram0", "/dev/gone1" }) {
        test.volume[UDisks::block].insert(QStringLiteral("Device"), QByteArray(node).append('\0'));
        QVERIFY(!test.read(volumePath));
    }
    QVERIFY(!test.read(drivePath));
}

void TestUDisksMedium::diskOnARemovableBusIsExternal()
{
    StoreTest test;
    test.useDrive();
    test.drive = { { QStringLiteral("ConnectionBus"), QStringLiteral("usb") },
        { QStringLiteral("MediaRemovable"), true }, { QStringLiteral("Ejectable"), true },
        { QStringLiteral("Vendor"), QStringLiteral("Maker ") },
        { QStringLiteral("Model"), QStringLiteral("Stick") } };
    const UDisksMedium whole = *test.read(wholePath);
    QVERIFY(!flagOf(whole, DAKey::deviceInternal));
    QVERIFY(flagOf(whole, DAKey::mediaRemovable) && flagOf(whole, DAKey::mediaEjectable));
    QCOMPARE(*whole.description.value(DAKey::mediaName)->asString(), QStringLiteral("Maker Stick"));
    QVERIFY(flagOf(whole, DAKey::mediaWhole) && !flagOf(whole, DAKey::mediaLeaf));
}

void TestUDisksMedium::internalDisk()
{
    StoreTest test;
    test.useDrive();
    test.drive = { { QStringLiteral("ConnectionBus"), QString() }, { QStringLiteral("Ejectable"), false } };
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(flagOf(volume, DAKey::deviceInternal));
    QVERIFY(!flagOf(volume, DAKey::mediaRemovable) && !flagOf(volume, DAKey::mediaEjectable));
    QVERIFY(flagOf(volume, DAKey::mediaLeaf) && flagOf(volume, DAKey::mediaWritable));
}

void TestUDisksMedium::emptyLabelIsAbsent()
{
    StoreTest test;
    test.volume[UDisks::block].insert(QStringLiteral("IdLabel"), QString());
    test.volume[UDisks::partition].insert(QStringLiteral("Name"), QString());
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(!volume.description.value(DAKey::volumeName) && !volume.description.value(DAKey::mediaName));
}

void TestUDisksMedium::unclaimedFileSystemBearsItsOwnName()
{
    StoreTest test;
    QCOMPARE(
        *test.read(volumePath)->description.value(DAKey::volumeKind)->asString(), QStringLiteral("ext4"));
    QVERIFY(!test.read(volumePath)->subtype);
    test.volume[UDisks::block].insert(QStringLiteral("IdUsage"), QStringLiteral("crypto"));
    QVERIFY(!test.read(volumePath)->description.value(DAKey::volumeKind));
}

void TestUDisksMedium::propertiesOfUnexpectedTypesReadAsEmpty()
{
    StoreTest test;
    test.volume[UDisks::block].insert(QStringLiteral("IdLabel"), 7);
    test.volume[UDisks::block].insert(QStringLiteral("ReadOnly"), QStringLiteral("yes"));
    test.volume[UDisks::filesystem].insert(QStringLiteral("MountPoints"), QStringLiteral("/media/A"));
    const UDisksMedium volume = *test.read(volumePath);
    QVERIFY(!volume.description.value(DAKey::volumeName) && !volume.description.value(DAKey::volumePath));
    QVERIFY(flagOf(volume, DAKey::mediaWritable));
}

void TestUDisksMedium::errorsBecomeDissenters_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");
    QTest::addColumn<quint32>("status");
    const QString prefix = QStringLiteral("org.freedesktop.UDisks2.Error.");
    const std::pair<const char *, quint32> known[] = { { "DeviceBusy", 0xF8DA0002 },
        { "AlreadyMounted", 0xF8DA0002 }, { "NotMounted", 0xF8DA0007 }, { "NotAuthorized", 0xF8DA0009 },
        { "NotAuthorizedCanObtain", 0xF8DA0009 }, { "NotAuthorizedDismissed", 0xF8DA0009 },
        { "NotSupported", 0xF8DA000C }, { "OptionNotPermitted", 0xF8DA0008 }, { "Failed", 0xF8DA0001 },
        { "Cancelled", 0xF8DA0001 }, { "Timedout", 0xF8DA0001 } };
    for (const auto &[name, status] : known)
        QTest::newRow(name) << QString(prefix + QLatin1String(name)) << QStringLiteral("words") << status;
    QTest::newRow("unknown") << QStringLiteral("org.gtk.GDBus.UnmappedGError.Quark._g.Code6")
                             << QStringLiteral("words") << 0xF8DA0001U;
    QTest::newRow("no driver") << QString(prefix + u"Failed")
                               << QStringLiteral("Filesystem type exfat not configured in kernel.")
                               << 0xF8DA000CU;
}

void TestUDisksMedium::errorsBecomeDissenters()
{
    QFETCH(const QString, error);
    QFETCH(const QString, message);
    QFETCH(const quint32, status);
    const DADissenterRef dissenter
        = dissenterFromBusError(error, QStringLiteral("GDBus.Error:%1: %2").arg(error, message));
    QCOMPARE(dissenter->status, status);
    QCOMPARE(dissenter->statusString.value_or(QString()), message);
    QVERIFY(!dissenterFromBusError(error, QString())->statusString);
}

QTEST_GUILESS_MAIN(TestUDisksMedium)
#include "tst_udisksmedium.moc"
