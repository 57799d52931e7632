// SPDX-License-Identifier: MIT
//
// A job that is stopped, loses its reader, or waits for a disk service that says nothing, at every step.
#include "platform/SystemLog.h"
#include "tests/unit/VolumeJobRun.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QStringList interruptedLine { u"interrupted (test)"_s };

} // namespace

class TestVolumeJobInterruption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readerLeavesAVerification();
    void readerLeavesBeforeAnythingIsWritten();
    void readerLeavesWhileAToolWrites();
    void interruptedBeforeTheStart();
    void interruptedByTheFirstLine();
    void interruptedByTheLineOfTheUnmount();
    void interruptedBeforeTheUnmountIsGranted();
    void interruptedBeforeTheUnmountIsRefused();
    void interruptedWhileClaiming();
    void interruptedWhileVerifying();
    void interruptedWhileErasing();
    void interruptedBetweenTheCommands();
    void interruptedWhileWaitingForTheNewVolume();
    void interruptedWhileMounting();
    void interruptedByTheLineOfTheMount();
    void interruptedByTheLineOfTheResult();
    void interruptedByTheLastLine();
    void interruptedTwice();
    void interruptedAfterTheEnd();
    void silentServiceAtTheUnmount();
    void silentServiceAtTheMount();
    void eventsOutOfTurn();
    void startOutOfTurn();

private:
    SystemLogRedirection m_quiet { [](const QString &) { } };
};

void TestVolumeJobInterruption::readerLeavesAVerification()
{
    VolumeJobRun run(Operation::Verify);
    run.start();
    Q_EMIT run.tools.started();
    run.loseReader();
    QCOMPARE(run.tools.stops, 1);
    run.tools.end(0);
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::readerLeavesBeforeAnythingIsWritten()
{
    for (const auto operation : { Operation::Repair, Operation::Erase }) {
        VolumeJobRun run(operation);
        run.setMounted(true);
        run.start();
        run.loseReader();
        run.grantUnmount();
        QVERIFY(run.programs().isEmpty());
        run.grantMount();
        QCOMPARE(run.exits, only(ExitCode::Interrupted));
    }
}

void TestVolumeJobInterruption::readerLeavesWhileAToolWrites()
{
    VolumeJobRun repair(Operation::Repair);
    repair.start();
    repair.loseReader();
    repair.tools.run(0);
    QCOMPARE(repair.tools.stops, 0);
    QCOMPARE(repair.exits, only(ExitCode::Success));

    VolumeJobRun erase(Operation::Erase);
    erase.start();
    Q_EMIT erase.tools.started();
    erase.loseReader();
    erase.tools.end(0);
    QCOMPARE(erase.programs(), QStringList({ u"wipefs"_s, u"format"_s }));
    erase.interrupt(); // is still heard
    QCOMPARE(erase.tools.stops, 1);
    erase.tools.run(0);
    QCOMPARE(erase.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::interruptedBeforeTheStart()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.interrupt();
    run.start();
    QVERIFY(run.requests().empty() && run.programs().isEmpty());
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::interruptedByTheFirstLine()
{
    for (const bool isMounted : { false, true }) {
        VolumeJobRun run(Operation::Erase);
        run.setMounted(isMounted);
        run.lastLineThatIsRead = u"Started"_s;
        run.start();
        QVERIFY(run.requests().empty() && run.programs().isEmpty());
        QCOMPARE(run.exits, only(ExitCode::Interrupted));
    }
}

void TestVolumeJobInterruption::interruptedByTheLineOfTheUnmount()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.lastLineThatIsRead = u"Unmounting"_s;
    run.start();
    QVERIFY(run.requests().empty() && run.programs().isEmpty());
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::interruptedBeforeTheUnmountIsGranted()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.interrupt();
    QVERIFY(run.exits.isEmpty());
    run.grantUnmount();
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine + QStringList { u"the erase on disk2s1 was stopped"_s });
    QVERIFY(run.programs().isEmpty() && run.given.isEmpty() && run.announced.isEmpty());
}

void TestVolumeJobInterruption::interruptedBeforeTheUnmountIsRefused()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.interrupt();
    run.refuse();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine + QStringList { u"the erase on disk2s1 was stopped"_s });
    QVERIFY(run.requests().empty() && run.programs().isEmpty());
}

void TestVolumeJobInterruption::interruptedWhileClaiming()
{
    JobLimits limits;
    limits.claimStep = 1ms;
    VolumeJobRun run(Operation::Erase, limits);
    run.setMounted(true);
    run.takingError = EBUSY;
    run.start();
    run.grantUnmount();
    run.interrupt();
    run.takingError = 0;
    QTRY_VERIFY(run.waitsForMount());
    QVERIFY(!run.isHeld());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine + QStringList { u"the erase on disk2s1 was stopped"_s });
    QVERIFY(run.programs().isEmpty());
}

void TestVolumeJobInterruption::interruptedWhileVerifying()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    Q_EMIT run.tools.started();
    run.interrupt();
    QCOMPARE(run.tools.stops, 1);
    QVERIFY(run.requests().empty() && run.exits.isEmpty());
    Q_EMIT run.tools.ended({ ToolEnd::Kind::Killed, 15, {} });
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained,
        interruptedLine + QStringList { u"the file system verification on disk2s1 was stopped"_s });
}

void TestVolumeJobInterruption::interruptedWhileErasing()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    Q_EMIT run.tools.started();
    run.interrupt();
    QCOMPARE(run.tools.stops, 1);
    Q_EMIT run.tools.ended({ ToolEnd::Kind::Killed, 15, {} });
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained,
        interruptedLine + QStringList { u"the erase on disk2s1 was stopped; what was on disk2s1 is lost"_s });
    QVERIFY(run.requests().empty());
    QCOMPARE(run.announced, QStringList { testNode });
}

// The first command ends well although it was told to stop.
void TestVolumeJobInterruption::interruptedBetweenTheCommands()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    Q_EMIT run.tools.started();
    run.interrupt();
    run.tools.end(0);
    QCOMPARE(run.programs(), QStringList { u"wipefs"_s });
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QVERIFY(run.complained.constLast().endsWith(u"; what was on disk2s1 is lost"_s));
    QVERIFY(run.requests().empty());
    QCOMPARE(run.announced, QStringList { testNode });
}

void TestVolumeJobInterruption::interruptedWhileWaitingForTheNewVolume()
{
    VolumeJobRun run(Operation::Erase);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    QVERIFY(run.requests().empty());
    run.interrupt();
    QVERIFY(run.waitsForMount());
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine);
    QCOMPARE(run.given, QStringList { testMountPoint });
    QCOMPARE(run.tools.stops, 0);

    // A refused mount ends the run, although the new volume is not known.
    VolumeJobRun refused(Operation::Erase);
    refused.start();
    refused.tools.run(0);
    refused.tools.run(0);
    refused.interrupt();
    refused.refuse();
    QCOMPARE(refused.exits, only(ExitCode::Interrupted));
    QVERIFY(refused.given.isEmpty());
}

void TestVolumeJobInterruption::interruptedWhileMounting()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    QVERIFY(run.waitsForMount());
    run.interrupt();
    QVERIFY(run.exits.isEmpty());
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine);
    QCOMPARE(run.tools.stops, 0);
}

void TestVolumeJobInterruption::interruptedByTheLineOfTheMount()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.lastLineThatIsRead = u"Mounting"_s;
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::interruptedByTheLineOfTheResult()
{
    VolumeJobRun run(Operation::Verify);
    run.setMounted(true);
    run.lastLineThatIsRead = u"The volume"_s;
    run.start();
    run.grantUnmount();
    run.tools.run(0);
    QVERIFY(run.waitsForMount());
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

// All has been done by then.
void TestVolumeJobInterruption::interruptedByTheLastLine()
{
    VolumeJobRun run(Operation::Verify);
    run.lastLineThatIsRead = u"Finished"_s;
    run.start();
    run.tools.run(0);
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(run.complained.isEmpty());
}

void TestVolumeJobInterruption::interruptedTwice()
{
    VolumeJobRun run(Operation::Verify);
    run.start();
    Q_EMIT run.tools.started();
    run.interrupt();
    run.interrupt();
    QCOMPARE(run.complained, interruptedLine);
    QCOMPARE(run.tools.stops, 1);
}

void TestVolumeJobInterruption::interruptedAfterTheEnd()
{
    JobLimits limits;
    limits.interruptedService = 0ms;
    VolumeJobRun run(Operation::Verify, limits);
    run.start();
    run.tools.run(0);
    QCOMPARE(run.exits, only(ExitCode::Success));
    run.interrupt();
    QCoreApplication::processEvents(); // would end a time limit, had one been started
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(run.complained.isEmpty() && run.requests().empty());
    QCOMPARE(run.tools.stops, 0);
}

void TestVolumeJobInterruption::silentServiceAtTheUnmount()
{
    JobLimits limits;
    limits.interruptedService = 10ms;
    VolumeJobRun run(Operation::Erase, limits);
    run.setMounted(true);
    run.start();
    run.interrupt();
    QTRY_COMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, interruptedLine + QStringList { u"the disk service has not answered"_s });
    run.grantUnmount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QVERIFY(run.requests().empty() && run.programs().isEmpty());
}

void TestVolumeJobInterruption::silentServiceAtTheMount()
{
    JobLimits limits;
    limits.interruptedService = 10ms;
    VolumeJobRun run(Operation::Verify, limits);
    run.setMounted(true);
    run.start();
    run.grantUnmount();
    Q_EMIT run.tools.started();
    run.interrupt();
    Q_EMIT run.tools.ended({ ToolEnd::Kind::Killed, 15, {} });
    QVERIFY(run.waitsForMount());
    QTRY_COMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained.constLast(), u"the disk service has not answered"_s);
    run.grantMount();
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
}

void TestVolumeJobInterruption::eventsOutOfTurn()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    run.tools.run(0);
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForUnmount());
    QVERIFY(run.programs().isEmpty());
    run.grantUnmount();
    run.tellVolume(u"New"_s);
    QVERIFY(run.requests().empty());
    run.tools.run(0);
    run.tools.run(0);
    QVERIFY(run.waitsForMount());
    run.tools.run(1);
    run.tellVolume(u"New"_s);
    QVERIFY(run.waitsForMount());
    run.grantMount();
    run.tools.run(1);
    run.tellVolume(u"New"_s);
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(run.complained.isEmpty() && run.requests().empty());
    QCOMPARE(run.programs().size(), 2);
}

// What has not begun has written nothing.
void TestVolumeJobInterruption::startOutOfTurn()
{
    VolumeJobRun run(Operation::Erase);
    run.setMounted(true);
    run.start();
    Q_EMIT run.tools.started();
    run.interrupt();
    run.grantUnmount();
    QVERIFY(run.waitsForMount());
    QCOMPARE(run.complained.constLast(), u"the erase on disk2s1 was stopped"_s);
}

QTEST_GUILESS_MAIN(TestVolumeJobInterruption)
#include "tst_volumejobinterruption.moc"
