// SPDX-License-Identifier: MIT
//
// Whom a new volume is given to, on a real disk. Runs inside tests/support/with-private-services
// --with-disk-service, which has folders for mounts and a list of file systems of its own.
#include "platform/DesktopUserMount.h"
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr uid_t userNumber = 61013;

uid_t ownerOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_uid : static_cast<uid_t>(-1);
}

} // namespace

class TestNewVolume : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownerOfANewVolume_data();
    void ownerOfANewVolume();

private:
    LoopDisk m_disk { { { 20, QLatin1String(LoopDisk::linuxType), u"ext4"_s, u"A"_s },
        { 20, QLatin1String(LoopDisk::linuxType), u"ext4"_s, u"B"_s } } };
};

void TestNewVolume::ownerOfANewVolume_data()
{
    QTest::addColumn<QString>("place"); // where it is mounted
    QTest::addColumn<QString>("path"); // by which it is given
    QTest::addColumn<int>("partition"); // that is said to be mounted there
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<bool>("isGiven");
    const QString place = u"/media/zvowner/A"_s;
    QTest::newRow("place for users") << place << place << 1 << QByteArray() << true;
    QTest::newRow("link on the way") << place << u"/media/link/A"_s << 1 << QByteArray() << false;
    QTest::newRow("another device") << place << place << 2 << QByteArray() << false;
    QTest::newRow("nothing mounted") << place << u"/media/zvowner"_s << 1 << QByteArray() << false;
    QTest::newRow("fstab") << place << place << 1 << QByteArray("LABEL=A /media/zvowner/A ext4 noauto\n")
                           << false;
    QTest::newRow("another place") << u"/run/zvowner/A"_s << u"/run/zvowner/A"_s << 1 << QByteArray()
                                   << false;
}

void TestNewVolume::ownerOfANewVolume()
{
    QFETCH(const QString, place);
    QFETCH(const QString, path);
    QFETCH(const int, partition);
    QFETCH(const QByteArray, fstab);
    QFETCH(const bool, isGiven);
    QFile table(u"/etc/fstab"_s);
    QVERIFY(table.open(QIODevice::WriteOnly) && table.write(fstab) == fstab.size());
    table.close();
    QVERIFY(QDir().mkpath(place));
    QFile::link(u"/media/zvowner"_s, u"/media/link"_s);
    QCOMPARE(runProgram(u"mount"_s, { m_disk.node(1), place }), 0);
    DesktopUser user;
    user.user = userNumber;
    user.group = userNumber;
    user.name = u"zvowner"_s;
    giveMountedVolume(path, m_disk.node(partition), user);
    const uid_t owner = ownerOf(path);
    QCOMPARE(chown(QFile::encodeName(place).constData(), 0, 0), 0);
    QCOMPARE(runProgram(u"umount"_s, { place }), 0);
    QCOMPARE(owner, isGiven ? userNumber : 0);
    QVERIFY(QDir().rmpath(place));
}

QTEST_GUILESS_MAIN(TestNewVolume)
#include "tst_new_volume.moc"
