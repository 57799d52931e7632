// SPDX-License-Identifier: MIT
//
// A job with tools and a machine of the test's own: what happens in which order, and what no real disk can be
// made to do at the right moment.
#include "platform/SystemLog.h"
#include "tests/unit/VolumeJobRun.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class TestVolumeJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verification();
    void erase();
    void lockIsKeptUntilTheVolumeIsMountedAgain();
    void wholeDiskIsLetGoBeforeItsNewVolumeIsAwaited();
    void deviceIsClaimedForAToolThatDoesNotClaimIt();
    void nodeThatLeadsElsewhereByNow();
    void volumeIsMountedAsItWas();
    void otherPlaceIsTold();
    void newVolumeIsNotMountedAsTheOldOne();
    void mountThatCannotBeMadeAgain_data();
    void mountThatCannotBeMadeAgain();
    void shutdownIsInhibitedWhileAToolWrites();
    void placeOutOfReachIsTold();
    void refusalAtTheFirstLook();
    void refusedUnmount();
    void refusalWithoutWords_data();
    void refusalWithoutWords();
    void refusedMountAfterAVerification();
    void claimThatIsNeverFree();
    void claimThatBecomesFree();
    void deviceThatCannotBeTaken_data();
    void deviceThatCannotBeTaken();
    void exchangedMedium_data();
    void exchangedMedium();
    void verdictOfADeviceThatIsLost_data();
    void verdictOfADeviceThatIsLost();
    void secondCommandIsRefused();
    void toolThatCannotBeStarted();
    void newVolumeIsToldLate();
    void newVolumeThatIsLookedAtAgain();
    void newVolumeIsNeverTold();
    void newVolumeIsToldInTime();
    void oldVolumeIsTakenForTheNew();

private:
    SystemLogRedirection m_quiet { [](const QString &) { } };
};

void TestVolumeJob::verification()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.start();
    QVERIFY(run.waitsForUnmount());
    QVERIFY(run.programs().isEmpty());
    run.grantUnmount();
    QCOMPARE(run.programs(), QStringList { u"verify"_s });
    QCOMPARE(run.tools.commands.front().arguments, QStringList { testNode });
    QVERIFY(run.isHeld());
    QCOMPARE(run.tools.commands.front().descriptors, std::vector({ 7, 8 }));
    Q_EMIT run.tools.started();
    QVERIFY(run.isHeld());
    run.tools.end(8);
    QVERIFY(run.waitsForMount());
    QVERIFY(run.exits.isEmpty());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::ErrorsFound));
    QCOMPARE(run.said,
        QStringList({ u"Started file system verification on disk2s1"_s, u"Unmounting disk2s1"_s,
            u"The volume on disk2s1 has errors and needs to be repaired"_s, u"Mounting disk2s1"_s,
            u"Finished file system verification on disk2s1"_s }));
    QVERIFY(run.announced.isEmpty() && run.given.isEmpty() && run.complained.isEmpty());
}

void TestVolumeJob::lockIsKeptUntilTheVolumeIsMountedAgain()
{
    for (const auto operation : { Operation::Verify, Operation::Repair }) {
        VolumeJobRun run(operation);
        Personality &personality = run.bundle.personalities.front();
        personality.verification->claimant = Claimant::ThisProcess;
        personality.repair->claimant = Claimant::ThisProcess;
        run.setMounted(true);
        run.start();
        run.grantUnmount();
        QCOMPARE(run.claimants.constLast(), Claimant::ThisProcess);
        run.tools.run(0);
        QVERIFY(run.waitsForMount());
        QVERIFY(run.isHeld());
        QCOMPARE(run.claimants.constLast(), Claimant::Program); // its claim would keep the mount out
        run.grantMount();
        QCOMPARE(run.exits, only(ExitCode::Success));
        QVERIFY(!run.isHeld());
    }
}

void TestVolumeJob::erase()
{
    VolumeJobRun run(Operation::Erase);
    run.start();
    QCOMPARE(run.programs(), QStringList { u"wipefs"_s });
    run.tools.run(0);
    QCOMPARE(run.programs(), QStringList({ u"wipefs"_s, u"format"_s }));
    QCOMPARE(run.tools.commands.back().arguments, QStringList({ u"-v"_s, u"New"_s, testNode }));
    QVERIFY(run.isHeld());
    run.tools.run(0);
    QCOMPARE(run.announced, QStringList { testNode });
    QVERIFY(run.requests().empty());
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
    QVERIFY(run.isHeld()); // by the lock alone
    QCOMPARE(run.claimants.constLast(), Claimant::Program);
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(!run.isHeld());
    QCOMPARE(run.given, QStringList { testMountPoint });
    QCOMPARE(run.said.constLast(), u"Finished erase on disk2s1"_s);
}

// Nobody looks at what is on it while its lock is taken.
void TestVolumeJob::wholeDiskIsLetGoBeforeItsNewVolumeIsAwaited()
{
    VolumeJobRun run(Operation::Erase);
    run.disk->description->insert(DAKey::mediaWhole, true);
    run.start();
    run.tools.run(0);
    QVERIFY(run.isHeld());
    run.tools.run(0);
    QVERIFY(run.requests().empty());
    QVERIFY(!run.isHeld());
}

void TestVolumeJob::deviceIsClaimedForAToolThatDoesNotClaimIt()
{
    for (const auto operation : { Operation::Erase, Operation::Verify, Operation::Repair }) {
        VolumeJobRun run(operation);
        Personality &personality = run.bundle.personalities.front();
        for (auto *tool : { &personality.format, &personality.verification, &personality.repair })
            (*tool)->claimant = Claimant::ThisProcess;
        run.start();
        if (operation == Operation::Erase) {
            QCOMPARE(run.claimants, QList { Claimant::Program });
            run.tools.run(0);
        }
        QCOMPARE(run.claimants.constLast(), Claimant::ThisProcess);
        QVERIFY(run.isHeld());
        run.tools.run(0);
        QVERIFY(!run.isHeld() || run.claimants.constLast() == Claimant::Program);
    }
}

// The device is held, and the testNode is what the tool is given.
void TestVolumeJob::nodeThatLeadsElsewhereByNow()
{
    VolumeJobRun run(Operation::Erase);
    run.start();
    run.identity->diskSequence = 3;
    run.tools.run(0);
    QCOMPARE(run.programs(), QStringList { u"wipefs"_s });
    QCOMPARE(run.exits, only(ExitCode::ToolFailed));
}

void TestVolumeJob::volumeIsMountedAsItWas()
{
    for (const auto operation : { Operation::Verify, Operation::Repair }) {
        VolumeJobRun run(operation);
        run.setMounted(true);
        run.mounts = { { testMountPoint, true, u"anna"_s, { u"ro"_s, u"noexec"_s } } };
        run.invokingUser = u"anna"_s;
        run.start();
        run.grantUnmount();
        run.tools.run(0);
        QCOMPARE(run.requests(), std::vector { MemoryDiskService::RequestKind::MountAgain });
        const MemoryDiskService::Request &request = run.service.requests().front();
        QCOMPARE(request.name, u"anna"_s);
        QCOMPARE(request.mountOptions, QStringList({ u"ro"_s, u"noexec"_s }));
        run.grantMount();
        QCOMPARE(run.exits, only(ExitCode::Success));
        QVERIFY(!run.said.join(u'\n').contains(u" now, "_s));
    }
}

void TestVolumeJob::otherPlaceIsTold()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.mounts = { { u"/media/user/Other"_s, true, u"user"_s, {} } };
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    run.grantMount();
    QVERIFY(
        run.said.contains(u"disk2s1 is mounted at /media/user/Volume now, no longer at /media/user/Other"_s));
}

void TestVolumeJob::newVolumeIsNotMountedAsTheOldOne()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.mounts = { { testMountPoint, true, u"anna"_s, { u"ro"_s } } };
    run.invokingUser = u"anna"_s;
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    run.tools.run(0);
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
}

void TestVolumeJob::mountThatCannotBeMadeAgain_data()
{
    QTest::addColumn<std::vector<VolumeMount>>("mounts");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("words");
    using Mounts = std::vector<VolumeMount>;
    QTest::newRow("by hand") << Mounts { { u"/srv/x"_s, false, {}, {} } } << QString()
                             << u"it is mounted at /srv/x, not by the disk service"_s;
    QTest::newRow("twice") << Mounts { { u"/a"_s, true, {}, {} }, { u"/b"_s, true, {}, {} } } << QString()
                           << u"it is mounted at /a, it is mounted at /b"_s;
    QTest::newRow("another user's") << Mounts { { u"/media/anna/X"_s, true, u"anna"_s, {} } } << u"berta"_s
                                    << u"it is mounted at /media/anna/X for the user anna"_s;
    QTest::newRow("root's") << Mounts { { u"/media/root/X"_s, true, u"root"_s, {} } } << u"berta"_s
                            << QString();
    QTest::newRow("done by root") << Mounts { { u"/media/anna/X"_s, true, u"anna"_s, {} } } << QString()
                                  << QString();
}

void TestVolumeJob::mountThatCannotBeMadeAgain()
{
    QFETCH(const std::vector<VolumeMount>, mounts);
    QFETCH(const QString, user);
    QFETCH(const QString, words);
    for (const auto operation : { Operation::Verify, Operation::Repair, Operation::Erase }) {
        VolumeJobRun run(operation);
        run.setMounted(true);
        run.mounts = mounts;
        run.invokingUser = user;
        run.start();
        if (words.isEmpty()) {
            QVERIFY(run.waitsForUnmount());
            continue;
        }
        QCOMPARE(run.exits, only(ExitCode::InUse));
        QCOMPARE(run.complained, QStringList { u"disk2s1 is in use: "_s + words });
        QVERIFY(run.requests().empty() && run.programs().isEmpty());
    }
}

void TestVolumeJob::shutdownIsInhibitedWhileAToolWrites()
{
    for (const auto operation : { Operation::Verify, Operation::Repair, Operation::Erase }) {
        VolumeJobRun run(operation);
        run.start();
        QCOMPARE(run.isShutdownInhibited(), operation != Operation::Verify);
        run.tools.run(0);
        if (operation == Operation::Erase) {
            QVERIFY(run.isShutdownInhibited());
            run.tools.run(0);
        }
        QVERIFY(!run.isShutdownInhibited());
    }
}

void TestVolumeJob::placeOutOfReachIsTold()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.isFolderOpen = false;
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    run.grantMount();
    QVERIFY(run.said.contains(
        u"disk2s1 is mounted at %1, which only the administrator can open"_s.arg(testMountPoint)));
    QCOMPARE(run.exits, only(ExitCode::Success));
}

void TestVolumeJob::refusalAtTheFirstLook()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.situation.systemUse = SystemUse::Current;
    run.start();
    QCOMPARE(run.exits, only(ExitCode::SystemVolume));
    QVERIFY(run.requests().empty() && run.programs().isEmpty() && run.said.isEmpty());
}

void TestVolumeJob::refusedUnmount()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.refuse();
    QCOMPARE(run.exits, only(ExitCode::UnmountRefused));
    QCOMPARE(run.complained, QStringList { u"disk2s1 could not be unmounted: the service says no"_s });
    QVERIFY(run.requests().empty() && run.programs().isEmpty());
}

void TestVolumeJob::refusalWithoutWords_data()
{
    QTest::addColumn<DAReturn>("status");
    QTest::addColumn<QString>("reason");
    QTest::newRow("busy") << DAReturn::Busy << u"it is in use"_s;
    QTest::newRow("gone") << DAReturn::NotFound << u"it has gone"_s;
    QTest::newRow("other") << DAReturn::Error << u"the disk service gives no reason"_s;
}

void TestVolumeJob::refusalWithoutWords()
{
    QFETCH(const DAReturn, status);
    QFETCH(const QString, reason);
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.start();
    run.service.completeRequest(makeDissenter(status));
    QCOMPARE(run.complained, QStringList { u"disk2s1 could not be unmounted: "_s + reason });
}

// What was there before has lost nothing by it.
void TestVolumeJob::refusedMountAfterAVerification()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    run.refuse();
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(run.said.contains(u"disk2s1 could not be mounted: the service says no"_s));
}

void TestVolumeJob::claimThatIsNeverFree()
{
    JobLimits limits;
    limits.claimStep = 1ms;
    limits.claim = 10ms;
    VolumeJobRun run(Operation::Erase, limits);
    run.setMounted(true);
    run.takingError = EBUSY;
    run.start();
    run.grantUnmount();
    QVERIFY(run.exits.isEmpty());
    QTRY_VERIFY(run.waitsForMount());
    QVERIFY(!run.isHeld());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::InUse));
    QCOMPARE(run.complained, QStringList { u"disk2s1 is in use"_s });
    QVERIFY(run.programs().isEmpty() && run.announced.isEmpty());
}

void TestVolumeJob::claimThatBecomesFree()
{
    JobLimits limits;
    limits.claimStep = 1ms;
    VolumeJobRun run(Operation::Verify, limits);
    run.takingError = EBUSY;
    run.start();
    QVERIFY(run.isHeld());
    QVERIFY(run.programs().isEmpty());
    run.takingError = 0;
    QTRY_COMPARE(run.programs(), QStringList { u"verify"_s });
    run.tools.run(0);
    QCOMPARE(run.exits, only(ExitCode::Success));
}

void TestVolumeJob::deviceThatCannotBeTaken_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<ExitCode>("code");
    QTest::addColumn<QString>("complaint");
    for (const int error : { ENOENT, ENXIO, ENODEV, ENOMEDIUM })
        QTest::addRow("gone, %d", error) << error << ExitCode::DeviceGone << u"disk2s1 has gone"_s;
    for (const int error : { EACCES, EPERM })
        QTest::addRow("forbidden, %d", error)
            << error << ExitCode::NotPermitted << u"no permission to use /nonexistent/sdb1"_s;
    QTest::newRow("broken") << EIO << ExitCode::DeviceUnreadable
                            << u"/nonexistent/sdb1 cannot be opened: Input/output error"_s;
}

// What does not pass by itself is told at once.
void TestVolumeJob::deviceThatCannotBeTaken()
{
    QFETCH(const int, error);
    QFETCH(const ExitCode, code);
    QFETCH(const QString, complaint);
    for (const bool isOpen : { false, true }) {
        VolumeJobRun run(Operation::Erase);
        run.openError = isOpen ? 0 : error;
        run.takingError = error;
        if (!isOpen)
            run.heldIdentity.reset();
        run.start();
        QCOMPARE(run.exits, only(code));
        QCOMPARE(run.complained, QStringList { complaint });
        QVERIFY(run.programs().isEmpty());
    }
}

void TestVolumeJob::exchangedMedium_data()
{
    QTest::addColumn<bool>("wasKnown");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("another medium") << true << true;
    QTest::newRow("pulled") << true << false;
    QTest::newRow("not identified at the first look") << false << true;
    QTest::newRow("never identified") << false << false;
}

void TestVolumeJob::exchangedMedium()
{
    QFETCH(const bool, wasKnown);
    QFETCH(const bool, isKnown);
    for (const auto operation : { Operation::Erase, Operation::Verify, Operation::Repair }) {
        VolumeJobRun run(operation);
        run.setMounted(true);
        if (!wasKnown)
            run.identity.reset();
        run.heldIdentity->diskSequence = 3;
        if (!isKnown)
            run.heldIdentity.reset();
        run.start();
        run.grantUnmount();
        QVERIFY(run.programs().isEmpty());
        QVERIFY(run.waitsForMount());
        run.grantMount();
        QCOMPARE(run.exits, only(ExitCode::MediumChanged));
        QCOMPARE(run.complained, QStringList { testNode + u" is no longer the same disk"_s });
    }
}

void TestVolumeJob::verdictOfADeviceThatIsLost_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("status"); // of the tool
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<bool>("isReadable");
    QTest::addColumn<ExitCode>("code");
    QTest::addColumn<QString>("complaint");
    const QString unknown = u"; whether its file system has errors is not known"_s;
    const QString incomplete = u"; the repair was not completed"_s;
    for (const int status : { 0, 2, 8, 74 })
        QTest::addRow("gone, %d", status) << Operation::Verify << status << false << false
                                          << ExitCode::DeviceGone << QString(u"disk2s1 has gone"_s + unknown);
    for (const int status : { 2, 8 })
        QTest::addRow("unreadable, %d", status)
            << Operation::Verify << status << true << false << ExitCode::DeviceUnreadable
            << QString(u"disk2s1 cannot be read to its end"_s + unknown);
    QTest::newRow("told by the tool") << Operation::Verify << 74 << true << true << ExitCode::DeviceUnreadable
                                      << QString(u"disk2s1 cannot be read to its end"_s + unknown);
    QTest::newRow("repair, gone") << Operation::Repair << 8 << false << false << ExitCode::DeviceGone
                                  << QString(u"disk2s1 has gone"_s + incomplete);
    QTest::newRow("repair, unreadable")
        << Operation::Repair << 8 << true << false << ExitCode::DeviceUnreadable
        << QString(u"disk2s1 cannot be read to its end"_s + incomplete);
}

void TestVolumeJob::verdictOfADeviceThatIsLost()
{
    QFETCH(const Operation, operation);
    QFETCH(const int, status);
    QFETCH(const bool, isThere);
    QFETCH(const bool, isReadable);
    QFETCH(const ExitCode, code);
    QFETCH(const QString, complaint);
    VolumeJobRun run(operation);
    run.start();
    if (!isThere)
        run.heldIdentity.reset();
    run.isReadable = isReadable;
    run.tools.run(status);
    QCOMPARE(run.exits, only(code));
    QCOMPARE(run.complained, QStringList { complaint });
    QCOMPARE(run.said.size(), 1); // no verdict, and it has not finished
    QCOMPARE(run.holds, 1); // opened again, it could be another
    QVERIFY(!run.isHeld());
}

void TestVolumeJob::secondCommandIsRefused()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    run.toolSituation.distrust = u"others can write to it"_s;
    run.tools.run(0);
    QCOMPARE(run.programs(), QStringList { u"wipefs"_s });
    QCOMPARE(run.exits, only(ExitCode::ToolFailed));
    QCOMPARE(run.complained.size(), 1);
    QVERIFY(run.complained.constFirst().contains(u"others can write to it"_s));
    QVERIFY(run.complained.constFirst().endsWith(u"; what was on disk2s1 is lost"_s));
    QVERIFY(run.requests().empty());
    QCOMPARE(run.announced, QStringList { testNode });
}

void TestVolumeJob::toolThatCannotBeStarted()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    Q_EMIT run.tools.ended({ ToolEnd::Kind::NotStarted, 0, u"no memory"_s });
    QVERIFY(run.waitsForMount());
    QVERIFY(!run.isHeld());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::ToolFailed));
    QCOMPARE(
        run.complained, QStringList { u"the erase on disk2s1 failed: it could not be started: no memory"_s });
    QVERIFY(run.given.isEmpty());
}

void TestVolumeJob::newVolumeIsToldLate()
{
    VolumeJobRun run(Operation::Erase);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    run.disk->description->remove(DAKey::volumeKind);
    run.tellVolume({});
    run.disk->description->insert(DAKey::volumeKind, u"testfs"_s);
    run.disk->description->insert(DAKey::volumeMountable, false);
    run.tellVolume(u"New"_s);
    QVERIFY(run.requests().empty());
    run.disk->description->insert(DAKey::volumeMountable, true);
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
}

// It went while the service was asked to mount it, and was back when the answer came.
void TestVolumeJob::newVolumeThatIsLookedAtAgain()
{
    VolumeJobRun run(Operation::Erase);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
    run.service.completeRequest(makeDissenter(DAReturn::NotFound, u"no such interface"_s));
    QVERIFY(run.complained.isEmpty());
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Success));
}

void TestVolumeJob::newVolumeIsNeverTold()
{
    JobLimits limits;
    limits.newVolume = 10ms;
    VolumeJobRun run(Operation::Erase, limits);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    QTRY_VERIFY(run.waitsForMount());
    run.refuse();
    QCOMPARE(run.exits, only(ExitCode::MountRefused));
    QCOMPARE(run.said.mid(1), QStringList { u"Mounting disk2s1"_s });
    QCOMPARE(run.complained,
        QStringList { u"the new volume on disk2s1 could not be mounted: the service says no"_s });
    QVERIFY(run.given.isEmpty());
}

// The limit is one for the volume, not for the mount.
void TestVolumeJob::newVolumeIsToldInTime()
{
    JobLimits limits;
    limits.newVolume = 0ms;
    VolumeJobRun run(Operation::Erase, limits);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    run.tellVolume(u"New"_s);
    QCoreApplication::processEvents(); // would end the time limit, were it still running
    QVERIFY(run.exits.isEmpty());
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Success));
}

void TestVolumeJob::oldVolumeIsTakenForTheNew()
{
    VolumeJobRun run(Operation::Erase);
    run.disk->description->insert(DAKey::volumeName, u"New"_s);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    QVERIFY(run.waitsForMount());
    run.tellVolume({});
    run.refuse();
    QVERIFY(run.exits.isEmpty() && run.requests().empty());
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Success));
    QCOMPARE(run.given, QStringList { testMountPoint });
    QVERIFY(run.said.filter(u"could not be mounted"_s).isEmpty());
}

QTEST_GUILESS_MAIN(TestVolumeJob)
#include "tst_volumejob.moc"
