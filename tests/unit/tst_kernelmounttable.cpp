// SPDX-License-Identifier: MIT
//
// The kernel's table of mounts, and what is told of the file systems in it.
#include "platform/MountTable.h"
#include "tests/unit/FakeSystem.h"

#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

class TestKernelMountTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void linesOfTheTable();
    void escapedCharacters();
    void missingTable();
    void brokenLinesAreLeftOut();
    void tableOfTheRunningKernel();
    void filesystemsOfDisks();
    void filesystemIsMountedTwice();
    void rootThatIsNamedWithoutANode();
    void filesystemOverSeveralDevices();
    void filesystemsWithoutADisk();
    void identityComesFromTheMountsLine();
    void identityOfAMountThatTheTableLacks();
    void identityOfAPathThatIsMissing();
    void identityOnTheRunningSystem();
    void entriesOfAFolder();
    void entriesOfAMissingFolder();
    void freeSpaceIsAllThatIsFree();
    void freeSpaceOfAMissingPath();

private:
    std::vector<MountedFilesystem> mounted() const
    {
        return KernelMountTable(m_system->root()).mountedFilesystems();
    }

    std::unique_ptr<FakeSystem> m_system;
};

namespace {

int mountId(const QByteArray &path)
{
    struct statx status = {};
    return statx(AT_FDCWD, path.constData(), 0, STATX_MNT_ID, &status) == 0
        ? static_cast<int>(status.stx_mnt_id)
        : -1;
}

} // namespace

void TestKernelMountTable::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_system->addDisk("sda", makedev(8, 0), "4");
    m_system->addPartition("sda", "sda1", makedev(8, 1), "1");
    m_system->addPartition("sda", "sda2", makedev(8, 2), "2");
}

void TestKernelMountTable::linesOfTheTable()
{
    m_system->mount("8:1", "/dev/sda1", "/media/A", 31);
    m_system->mount("0:50", "tmpfs", "/run", 32);
    const std::vector<KernelMount> mounts = readKernelMounts(m_system->root());
    QCOMPARE(mounts.size(), 2U);
    QCOMPARE(mounts[0].id, 31);
    QCOMPARE(mounts[0].source, "/dev/sda1");
    QCOMPARE(mounts[0].mountPoint, "/media/A");
    QCOMPARE(mounts[0].deviceMajor, 8U);
    QCOMPARE(mounts[0].deviceMinor, 1U);
    QCOMPARE(mounts[1].id, 32);
    QCOMPARE(mounts[1].source, "tmpfs");
    QCOMPARE(mounts[1].mountPoint, "/run");
    QCOMPARE(mounts[1].deviceMajor, 0U);
    QCOMPARE(mounts[1].deviceMinor, 50U);
}

void TestKernelMountTable::escapedCharacters()
{
    m_system->mount("8:1", "/dev/disk/by-label/My\\040disk", "/media/My\\040disk\\011\\012\\134040\\043");
    const std::vector<KernelMount> mounts = readKernelMounts(m_system->root());
    QCOMPARE(mounts.size(), 1U);
    QCOMPARE(mounts[0].source, "/dev/disk/by-label/My disk");
    QCOMPARE(mounts[0].mountPoint, "/media/My disk\t\n\\040#");
}

void TestKernelMountTable::missingTable()
{
    QVERIFY(readKernelMounts(m_system->root()).empty());
    QVERIFY(mounted().empty());
}

void TestKernelMountTable::brokenLinesAreLeftOut()
{
    m_system->writeMounts("30 1 8:1 / /media/A rw shared:1 - ext4 /dev/sda1 rw\n"
                          "31 1\n"
                          "32 1 8:2 / /media/B rw shared:1 - ext4 /dev/sda2 rw\n");
    const std::vector<KernelMount> mounts = readKernelMounts(m_system->root());
    QCOMPARE(mounts.size(), 2U);
    QCOMPARE(mounts[0].mountPoint, "/media/A");
    QCOMPARE(mounts[1].mountPoint, "/media/B");
}

void TestKernelMountTable::tableOfTheRunningKernel()
{
    const std::vector<KernelMount> mounts = readKernelMounts();
    QVERIFY(std::any_of(
        mounts.begin(), mounts.end(), [](const KernelMount &mount) { return mount.mountPoint == "/proc"; }));
}

void TestKernelMountTable::filesystemsOfDisks()
{
    m_system->mount("0:22", "proc", "/proc", 30);
    m_system->mount("8:2", "/dev/sda2", "/media/B", 31);
    m_system->mount("8:0", "/dev/sda", "/media/Whole", 32);
    const std::vector<MountedFilesystem> filesystems = mounted();
    QCOMPARE(filesystems.size(), 2U);
    QCOMPARE(filesystems[0].mountedFrom, "/dev/disk4s2");
    QCOMPARE(filesystems[0].mountPoint, "/media/B");
    QCOMPARE(filesystems[0].id, (FilesystemID { 8, 2 }));
    QVERIFY(!filesystems[0].subtype);
    QCOMPARE(filesystems[1].mountedFrom, "/dev/disk4");
    QCOMPARE(filesystems[1].id, (FilesystemID { 8, 0 }));
}

void TestKernelMountTable::filesystemIsMountedTwice()
{
    m_system->mount("8:1", "/dev/sda1", "/media/A", 31);
    m_system->mount("8:1", "/dev/sda1", "/srv/share", 32, "/folder");
    const std::vector<MountedFilesystem> filesystems = mounted();
    QCOMPARE(filesystems.size(), 2U);
    QCOMPARE(filesystems[0].mountPoint, "/media/A");
    QCOMPARE(filesystems[1].mountPoint, "/srv/share");
    QCOMPARE(filesystems[0].id, filesystems[1].id);
}

void TestKernelMountTable::rootThatIsNamedWithoutANode()
{
    m_system->mount("8:1", "/dev/root", "/");
    const std::vector<MountedFilesystem> filesystems = mounted();
    QCOMPARE(filesystems.size(), 1U);
    QCOMPARE(filesystems[0].mountedFrom, "/dev/disk4s1");
}

void TestKernelMountTable::filesystemOverSeveralDevices()
{
    m_system->mount("0:45", "/dev/sda2", "/media/A");
    const std::vector<MountedFilesystem> filesystems = mounted();
    QCOMPARE(filesystems.size(), 1U);
    QCOMPARE(filesystems[0].mountedFrom, "/dev/disk4s2");
    QCOMPARE(filesystems[0].id, (FilesystemID { 0, 45 }));
}

void TestKernelMountTable::filesystemsWithoutADisk()
{
    m_system->addNode("server:/data", makedev(8, 1));
    m_system->mount("0:22", "server:/data", "/media/A", 30);
    m_system->mount("0:23", "/dev/missing", "/media/B", 31);
    m_system->mount("8:64", "/dev/sde", "/media/C", 32); // its disk has just gone
    QVERIFY(mounted().empty());
}

// The table's number is another than the one that stat(2) gives, as on a subvolume of a Btrfs volume.
void TestKernelMountTable::identityComesFromTheMountsLine()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.path());
    m_system->mount("0:4711", "/dev/sda2", "/media/A", mountId(path));
    m_system->mount("0:4712", "/dev/sda1", "/media/B", mountId(path) + 100000);
    QCOMPARE(KernelMountTable(m_system->root()).filesystemID(path), (FilesystemID { 0, 4711 }));
}

void TestKernelMountTable::identityOfAMountThatTheTableLacks()
{
    const QByteArray path = QFile::encodeName(QDir::tempPath());
    m_system->mount("8:2", "/dev/sda2", "/media/A", mountId(path) + 100000);
    QVERIFY(!KernelMountTable(m_system->root()).filesystemID(path));
}

void TestKernelMountTable::identityOfAPathThatIsMissing()
{
    QVERIFY(!KernelMountTable().filesystemID("/no such path"));
}

void TestKernelMountTable::identityOnTheRunningSystem()
{
    const KernelMountTable table;
    QVERIFY(table.filesystemID("/proc"));
    QCOMPARE(table.filesystemID("/proc"), table.filesystemID("/proc/self"));
    QVERIFY(table.filesystemID("/proc") != table.filesystemID("/"));
}

void TestKernelMountTable::entriesOfAFolder()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"sub"_s));
    auto entries = KernelMountTable().folderEntries(QFile::encodeName(folder.path()));
    QVERIFY(entries);
    std::sort(entries->begin(), entries->end());
    QCOMPARE(*entries, (std::vector<QByteArray> { ".", "..", "sub" }));
}

void TestKernelMountTable::entriesOfAMissingFolder()
{
    QVERIFY(!KernelMountTable().folderEntries("/no such path"));
}

// Other processes write while this looks, so a difference is given some time to go.
void TestKernelMountTable::freeSpaceIsAllThatIsFree()
{
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const QByteArray path = QFile::encodeName(volume.rootPath());
        struct statvfs status = {};
        // Where nothing is kept for the administrator, there is nothing to tell apart.
        if (statvfs(path.constData(), &status) != 0 || status.f_bfree == status.f_bavail)
            continue;
        const auto difference = [&] {
            qint64 bytes = -1;
            const int error = KernelMountTable().freeSpace(path, &bytes);
            statvfs(path.constData(), &status);
            return error != 0 ? error : bytes - static_cast<qint64>(status.f_bfree * status.f_frsize);
        };
        QTRY_COMPARE(difference(), 0);
        return;
    }
    QSKIP("No file system here keeps room for the administrator.");
}

void TestKernelMountTable::freeSpaceOfAMissingPath()
{
    qint64 bytes = 0;
    QCOMPARE(KernelMountTable().freeSpace("/no such path", &bytes), ENOENT);
}

QTEST_GUILESS_MAIN(TestKernelMountTable)
#include "tst_kernelmounttable.moc"
