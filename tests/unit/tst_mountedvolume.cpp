// SPDX-License-Identifier: MIT
//
// Finding a volume among the mounted file systems, without a window.
#include "tests/support/TestMountTable.h"
#include "ui/MountedVolume.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestMountedVolume : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void volumeIsFoundByItsDevice_data();
    void volumeIsFoundByItsDevice();
    void firstOfTwoMountsIsTaken();
    void nothingIsMounted();
    void mountPointOfTheSameFilesystemIsUsed();
    void neighbourOfTheSameNameLeadsToTheVolume();
    void neighbourIsSearchedWhenTheMountPointIsGone();
    void neighbourOfAnotherNameIsNotAsked();
    void halfAnIdentifierDoesNotMatch();
    void volumeBelowTheRootFolder();
    void mountPointWithoutSlashIsUsed();
    void unreadableFolderFallsBackToTheMountPoint();
    void noNeighbourFallsBackToTheMountPoint();
};

namespace {

constexpr FilesystemID volumeID { 7, 9 };
constexpr FilesystemID otherID { 1, 2 };

MountedFilesystem volumeAt(const QByteArray &mountPoint)
{
    return { "/dev/disk2s1", mountPoint, volumeID, std::nullopt };
}

} // namespace

void TestMountedVolume::volumeIsFoundByItsDevice_data()
{
    QTest::addColumn<QByteArray>("mountedFrom");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("device") << QByteArray("/dev/disk3s2") << true;
    QTest::newRow("raw device") << QByteArray("/dev/rdisk3s2") << true;
    QTest::newRow("longer name") << QByteArray("/dev/disk3s21") << false;
    QTest::newRow("shorter name") << QByteArray("/dev/disk3s") << false;
    QTest::newRow("longer raw name") << QByteArray("/dev/rdisk3s21") << false;
    QTest::newRow("no device") << QByteArray("disk3s2") << false;
    QTest::newRow("another kind of device") << QByteArray("/dev/xdisk3s2") << false;
    QTest::newRow("twice raw") << QByteArray("/dev/rrdisk3s2") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestMountedVolume::volumeIsFoundByItsDevice()
{
    QFETCH(QByteArray, mountedFrom);
    const std::vector<MountedFilesystem> mounted {
        { "/dev/disk1s1", "/media/A", otherID, std::nullopt },
        { mountedFrom, "/media/B", volumeID, std::nullopt },
    };
    QFETCH(bool, isFound);
    const MountedFilesystem *const found = VolumeRules::findVolume(mounted, u"disk3s2"_s);
    QCOMPARE(found, isFound ? &mounted[1] : nullptr);
}

void TestMountedVolume::firstOfTwoMountsIsTaken()
{
    const std::vector<MountedFilesystem> mounted { volumeAt("/media/A"), volumeAt("/media/B") };
    QCOMPARE(VolumeRules::findVolume(mounted, u"disk2s1"_s), &mounted[0]);
}

void TestMountedVolume::nothingIsMounted()
{
    QCOMPARE(VolumeRules::findVolume({}, u"disk2s1"_s), nullptr);
}

void TestMountedVolume::mountPointOfTheSameFilesystemIsUsed()
{
    TestMountTable table;
    table.ids = { { "/media/A", volumeID }, { "/media/A1", volumeID } };
    table.folders["/media"] = { "A1", "A" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A"));
}

void TestMountedVolume::neighbourOfTheSameNameLeadsToTheVolume()
{
    TestMountTable table;
    table.ids = { { "/media/A", otherID }, { "/media/A 1", otherID }, { "/media/A 2", volumeID },
        { "/media/A 3", volumeID } };
    table.folders["/media"] = { ".", "..", "B", "A", "A 1", "A 2", "A 3" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A 2"));
}

void TestMountedVolume::neighbourIsSearchedWhenTheMountPointIsGone()
{
    TestMountTable table;
    table.ids = { { "/media/A-moved", volumeID } };
    table.folders["/media"] = { "A-moved" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A-moved"));
}

void TestMountedVolume::neighbourOfAnotherNameIsNotAsked()
{
    TestMountTable table;
    table.ids = { { "/media/A", otherID }, { "/media/BA", volumeID } };
    table.folders["/media"] = { "BA" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A"));
}

void TestMountedVolume::halfAnIdentifierDoesNotMatch()
{
    TestMountTable table;
    table.ids = { { "/media/A", FilesystemID { volumeID.first, otherID.second } },
        { "/media/A1", FilesystemID { otherID.first, volumeID.second } }, { "/media/A2", volumeID } };
    table.folders["/media"] = { "A1", "A2" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A2"));
}

void TestMountedVolume::volumeBelowTheRootFolder()
{
    TestMountTable table;
    table.ids = { { "/A", otherID }, { "//A1", volumeID } };
    table.folders["/"] = { "A1" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/A")), QByteArray("//A1"));
}

void TestMountedVolume::mountPointWithoutSlashIsUsed()
{
    TestMountTable table;
    table.ids = { { "/A", volumeID } };
    table.folders["/"] = { "A" };
    table.folders[""] = { "A" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("A")), QByteArray("A"));
}

void TestMountedVolume::unreadableFolderFallsBackToTheMountPoint()
{
    TestMountTable table;
    table.ids = { { "/media/A", otherID }, { "/media/A1", volumeID } };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A"));
}

void TestMountedVolume::noNeighbourFallsBackToTheMountPoint()
{
    TestMountTable table;
    table.ids = { { "/media/A", otherID }, { "/media/A1", otherID } };
    table.folders["/media"] = { "A1" };
    QCOMPARE(VolumeRules::pathToVolume(table, volumeAt("/media/A")), QByteArray("/media/A"));
}

QTEST_APPLESS_MAIN(TestMountedVolume)
#include "tst_mountedvolume.moc"
