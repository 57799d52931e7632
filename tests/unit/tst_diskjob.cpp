// SPDX-License-Identifier: MIT
//
// The erase of a whole disk with tools and a machine of the test's own: what happens in which order, and what
// no real disk can be made to do at the right moment.
#include "platform/SystemLog.h"
#include "tests/support/MemoryDiskSession.h"
#include "tests/unit/JobTools.h"
#include "tools/diskutil/DiskJob.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString diskNode = u"/nonexistent/sdb"_s;
constexpr qint64 diskSize = qint64 { 100 } << 20;

// disk2 with disk2s1 and disk2s2, and one job on it.
class Run
{
public:
    explicit Run(JobLimits limits = {}, std::optional<PartitionScheme> scheme = {})
    {
        line = CommandLine { Verb::EraseDisk, u"Test"_s, u"New"_s, u"disk2"_s, scheme };
        situation.isBlockDevice = situation.canRead = situation.canWrite = true;
        m_session = service.createSession();
        m_session->registerDiskAppearedCallback([this](const DADiskRef &appeared) { m_media.add(appeared); });
        m_session->registerDiskDisappearedCallback([this](const DADiskRef &gone) { m_media.remove(gone); });
        m_session->registerDiskDescriptionChangedCallback(
            [this](const DADiskRef &changed, const QStringList &) { m_job->mediumChanged(changed); });
        m_session->scheduleWithRunLoop();
        disk = addMedium(u"disk2"_s, diskNode, diskSize);
        disk->description->insert(DAKey::mediaWhole, true);
        first = addMedium(u"disk2s1"_s, diskNode + u'1', qint64 { 40 } << 20);
        second = addMedium(u"disk2s2"_s, diskNode + u'2', qint64 { 50 } << 20);
        m_job = std::make_unique<DiskJob>(
            line, JobEnvironment { *m_session, m_media, tools, machine(), limits });
        QObject::connect(m_job.get(), &Job::said, m_job.get(), [this](const QString &text) {
            said.append(text);
            if (!lastLineThatIsRead.isEmpty() && text.startsWith(lastLineThatIsRead))
                m_job->interrupt(u"nobody reads"_s);
        });
        QObject::connect(m_job.get(), &Job::complained, m_job.get(),
            [this](const QString &text) { complained.append(text); });
        QObject::connect(m_job.get(), &Job::finished, m_job.get(),
            [this](ExitCode code) { exits.append(static_cast<int>(code)); });
    }

    void start() { m_job->start(); }
    void interrupt() { m_job->interrupt(u"test"_s); }
    void loseReader() { m_job->loseReader(u"test"_s); }

    static void mount(const MemoryDiskRef &medium)
    {
        medium->description->insert(
            DAKey::volumePath, QUrl::fromLocalFile(u"/media/"_s + medium->deviceNode().section(u'/', -1)));
    }

    // The disk service carries out what it was asked for.
    void grant(const MemoryDiskRef &medium)
    {
        if (service.requests().front().kind == MemoryDiskService::RequestKind::Mount)
            mount(medium);
        else
            medium->description->remove(DAKey::volumePath);
        service.completeRequest();
    }
    void refuse() { service.completeRequest(makeDissenter(DAReturn::Busy, u"the service says no"_s)); }

    // The kernel and the disk service have the new partition instead of the old ones.
    void showPartition()
    {
        service.removeDisk(second);
        first->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 99 } << 20));
        isTaken = true;
    }

    QStringList programs() const
    {
        QStringList names;
        for (const ToolCommand &command : tools.commands)
            names.append(command.program.section(u'/', -1));
        return names;
    }

    CommandLine line;
    MemoryDiskService service;
    MemoryDiskRef disk;
    MemoryDiskRef first;
    MemoryDiskRef second;
    TestTools tools;

    // What the machine answers.
    PreflightRules::DeviceSituation situation;
    QStringList busyNodes;
    std::optional<DeviceIdentity> identity { DeviceIdentity { 1, 2, 2048, 4 } };
    std::optional<DeviceIdentity> heldIdentity = identity;
    bool isTaken = false; // the new partition, by the kernel
    int openError = 0;
    int takingError = 0;
    bool takesPartitions = true;

    // What came of it.
    QStringList said;
    QStringList complained;
    QList<int> exits;
    QStringList announced;
    QStringList heldNodes;
    int partitionTries = 0; // to have the kernel take the new partition
    std::vector<VolumeMount> mounts; // of any medium
    QString lastLineThatIsRead; // the reader of the output goes once a line has begun so

private:
    MemoryDiskRef addMedium(const QString &bsdName, const QString &node, qint64 size)
    {
        auto medium = std::make_shared<MemoryDisk>();
        medium->node = node;
        medium->description
            = PropertyDictionary { { DAKey::mediaBSDName, bsdName }, { DAKey::mediaWritable, true },
                  { DAKey::mediaRemovable, true }, { DAKey::mediaSize, PropertyNumber(size) },
                  { DAKey::volumeMountable, true }, { DAKey::volumeKind, u"testfs"_s } };
        service.addDisk(medium);
        return medium;
    }

    Machine machine()
    {
        Machine machine;
        machine.readInstalledBundles = [] {
            FilesystemBundle bundle = testBundle();
            bundle.personalities.front().minimumSize = qint64 { 99 } << 20;
            return std::vector { bundle };
        };
        machine.readDeviceSituation = [this](const auto &, const auto &) { return situation; };
        machine.readVolumeMounts = [this](const auto &) { return mounts; };
        machine.inhibitShutdown = [](const auto &) { return std::make_shared<int>(); };
        machine.readDiskSituation = [this](const Medium &whole, const std::vector<Medium> &media) {
            std::vector<PartSituation> parts;
            for (const Medium &medium : media) {
                if (medium.bsdName == whole.bsdName)
                    continue;
                parts.push_back({ medium, situation });
                if (busyNodes.contains(medium.deviceNode))
                    parts.back().situation.inUse.append(u"dm-0 uses it"_s);
            }
            parts.push_back({ whole, situation });
            return parts;
        };
        machine.readToolSituation
            = [](const auto &, const auto &) { return PreflightRules::ToolSituation {}; };
        machine.findTool = [](const QString &name) -> QString { return u"/tools/"_s + name; };
        machine.readDeviceIdentity = [this](const auto &) { return identity; };
        machine.holdDevice = [this](const QString &held) {
            heldNodes.append(held);
            return HeldDevice { [this] { return heldIdentity; }, [this](Claimant) { return takingError; },
                [] { return std::vector { 3 }; }, [] { return true; }, openError };
        };
        machine.takesPartitions = [this](const auto &) { return takesPartitions; };
        machine.makeOnlyPartition = [this](const auto &...) {
            ++partitionTries;
            return isTaken;
        };
        machine.announceChange = [this](const QString &device) { announced.append(device); };
        machine.giveToDesktopUser = [](const QString &, const QString &) { };
        machine.findFolderAccess = [](const QString &, QObject *, const auto &done) { done(true); };
        return machine;
    }

    MediaList m_media;
    std::unique_ptr<DASession> m_session;
    std::unique_ptr<DiskJob> m_job;
};

QList<int> only(ExitCode code)
{
    return { static_cast<int>(code) };
}

} // namespace

class TestDiskJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeCourse();
    void readerWhoLeavesStopsNothingThatHasBegun();
    void whatWasUnmountedIsMountedAsItWas();
    void mountThatCannotBeMadeAgain();
    void schemeThatIsAskedFor();
    void diskThatTakesNoPartitions();
    void everyPartInUseIsNamed();
    void volumeThatIsTooSmallForTheFormat();
    void refusedUnmountMountsAgain();
    void exchangedDisk();
    void diskThatIsNeverFree();
    void diskThatHasGone();
    void failedTable_data();
    void failedTable();
    void partitionThatNeverComes();
    void diskThatGoesBeforeItsPartitionComes();
    void failedFormat();
    void interruptedBeforeTheTable();
    void interruptedWhileTheTableIsWritten();
    void interruptedByTheLineOfTheTable();

private:
    SystemLogRedirection m_quiet { [](const QString &) { } };
};

void TestDiskJob::wholeCourse()
{
    Run run;
    Run::mount(run.first);
    Run::mount(run.second);
    run.start();
    QVERIFY(run.programs().isEmpty());
    run.grant(run.first);
    run.grant(run.second);
    QCOMPARE(run.programs(), QStringList { u"wipefs"_s });
    QCOMPARE(run.tools.commands.back().arguments.mid(2), QStringList({ diskNode + u'1', diskNode + u'2' }));
    // Who works on a partition shares the lock on the disk, which is held until the table is there.
    QCOMPARE(run.heldNodes, QStringList { diskNode });
    QCOMPARE(run.tools.commands.back().descriptors, std::vector { 3 });
    run.tools.run(0);
    QCOMPARE(run.programs(), QStringList({ u"wipefs"_s, u"sfdisk"_s }));
    QCOMPARE(run.tools.commands.back().arguments.constLast(), diskNode);
    QCOMPARE(run.tools.commands.back().input, "label: dos\nstart=1MiB, size=99MiB, type=83\n"_ba);
    run.tools.run(0);
    QCOMPARE(run.programs().size(), 2);
    run.showPartition();
    QTRY_COMPARE(run.programs().mid(2), QStringList { u"wipefs"_s });
    QCOMPARE(run.tools.commands.back().arguments.constLast(), QString(diskNode + u'1'));
    run.tools.run(0);
    QCOMPARE(run.programs().constLast(), u"format"_s);
    run.tools.run(0);
    run.first->description->insert(DAKey::volumeName, u"New"_s);
    run.service.changeDisk(run.first);
    run.grant(run.first);
    QCOMPARE(run.exits, only(ExitCode::Success));
    QVERIFY(run.complained.isEmpty());
    QCOMPARE(run.said,
        QStringList({ u"Started erase on disk2"_s, u"Unmounting disk2s1"_s, u"Unmounting disk2s2"_s,
            u"Creating the partition map"_s, u"Waiting for disk2s1"_s, u"Formatting disk2s1 as Test"_s,
            u"Mounting disk2s1"_s, u"Finished erase on disk2"_s }));
}

void TestDiskJob::readerWhoLeavesStopsNothingThatHasBegun()
{
    Run early;
    Run::mount(early.first);
    early.start();
    early.loseReader();
    early.grant(early.first);
    early.grant(early.first);
    QCOMPARE(early.exits, only(ExitCode::Interrupted));
    QVERIFY(early.programs().isEmpty());

    Run late;
    late.start();
    late.loseReader();
    late.tools.run(0);
    late.tools.run(0);
    late.showPartition();
    QTRY_COMPARE(late.programs().size(), 3);
    late.loseReader();
    late.tools.run(0);
    QCOMPARE(late.programs().constLast(), u"format"_s);
    QCOMPARE(late.tools.stops, 0);
}

void TestDiskJob::whatWasUnmountedIsMountedAsItWas()
{
    JobLimits limits;
    limits.claim = 1ms;
    limits.claimStep = 1ms;
    Run run(limits);
    Run::mount(run.first);
    run.mounts = { { u"/media/anna/X"_s, true, u"anna"_s, { u"ro"_s } } };
    run.takingError = EBUSY;
    run.start();
    run.grant(run.first);
    QTRY_COMPARE(run.service.requests().size(), 1U);
    const MemoryDiskService::Request &request = run.service.requests().front();
    QCOMPARE(request.kind, MemoryDiskService::RequestKind::MountAgain);
    QCOMPARE(request.name, u"anna"_s);
    QCOMPARE(request.mountOptions, QStringList { u"ro"_s });
}

void TestDiskJob::mountThatCannotBeMadeAgain()
{
    Run run;
    Run::mount(run.second);
    run.mounts = { { u"/srv/x"_s, false, {}, {} } };
    run.start();
    QCOMPARE(run.exits, only(ExitCode::InUse));
    QVERIFY(
        run.complained.contains(u"disk2s2 is in use: it is mounted at /srv/x, not by the disk service"_s));
    QVERIFY(run.service.requests().empty() && run.programs().isEmpty());
}

void TestDiskJob::schemeThatIsAskedFor()
{
    Run run({}, PartitionScheme::Gpt);
    run.start();
    QCOMPARE(
        run.exits, only(ExitCode::SizeOutOfRange)); // the copy of the table takes the room that is needed
    QVERIFY(run.complained.constFirst().contains(u"too small"_s));
}

void TestDiskJob::diskThatTakesNoPartitions()
{
    Run run;
    run.takesPartitions = false;
    run.start();
    QCOMPARE(run.exits, only(ExitCode::NotSupported));
    QVERIFY(run.programs().isEmpty() && run.service.requests().empty());
}

void TestDiskJob::everyPartInUseIsNamed()
{
    Run run;
    Run::mount(run.first);
    run.busyNodes = { diskNode + u'1', diskNode + u'2' };
    run.start();
    QCOMPARE(run.exits, only(ExitCode::InUse));
    QCOMPARE(run.complained,
        QStringList({ u"disk2s1 is in use: dm-0 uses it"_s, u"disk2s2 is in use: dm-0 uses it"_s }));
    QVERIFY(run.service.requests().empty() && run.programs().isEmpty() && run.said.isEmpty());
}

void TestDiskJob::volumeThatIsTooSmallForTheFormat()
{
    Run run;
    run.disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 99 } << 20));
    run.start();
    QCOMPARE(run.exits, only(ExitCode::SizeOutOfRange));
}

void TestDiskJob::refusedUnmountMountsAgain()
{
    Run run;
    Run::mount(run.first);
    Run::mount(run.second);
    run.start();
    run.grant(run.first);
    run.refuse();
    QVERIFY(run.exits.isEmpty());
    QCOMPARE(run.service.requests().front().kind, MemoryDiskService::RequestKind::Mount);
    run.grant(run.first);
    QCOMPARE(run.exits, only(ExitCode::UnmountRefused));
    QCOMPARE(run.complained, QStringList { u"disk2s2 could not be unmounted: the service says no"_s });
    QVERIFY(run.programs().isEmpty() && run.announced.isEmpty());
}

void TestDiskJob::exchangedDisk()
{
    Run run;
    run.heldIdentity->diskSequence = 3;
    run.start();
    QCOMPARE(run.exits, only(ExitCode::MediumChanged));
    QVERIFY(run.programs().isEmpty());
}

void TestDiskJob::diskThatIsNeverFree()
{
    JobLimits limits;
    limits.claimStep = 1ms;
    limits.claim = 10ms;
    Run run(limits);
    run.takingError = EBUSY;
    run.start();
    QTRY_COMPARE(run.exits, only(ExitCode::InUse));
    QVERIFY(run.programs().isEmpty());
}

void TestDiskJob::diskThatHasGone()
{
    Run unplugged;
    unplugged.openError = ENOENT;
    unplugged.heldIdentity.reset();
    unplugged.start();
    QCOMPARE(unplugged.exits, only(ExitCode::DeviceGone));

    Run emptied;
    emptied.takingError = ENOMEDIUM;
    emptied.start();
    QCOMPARE(emptied.exits, only(ExitCode::DeviceGone));
    QCOMPARE(emptied.complained, QStringList { u"disk2 has gone"_s });
}

void TestDiskJob::failedTable_data()
{
    QTest::addColumn<int>("commandsThatSucceed");
    QTest::newRow("wipe") << 0;
    QTest::newRow("table") << 1;
}

void TestDiskJob::failedTable()
{
    QFETCH(const int, commandsThatSucceed);
    Run run;
    run.start();
    for (int i = 0; i < commandsThatSucceed; ++i)
        run.tools.run(0);
    run.tools.run(1);
    QCOMPARE(run.exits, only(ExitCode::ToolFailed));
    QCOMPARE(run.complained,
        QStringList { u"the erase on disk2 failed: exit status 1; what was on disk2 is lost"_s });
    QCOMPARE(run.programs().size(), commandsThatSucceed + 1);
    QCOMPARE(run.announced, QStringList { diskNode });
}

void TestDiskJob::partitionThatNeverComes()
{
    JobLimits limits;
    limits.claimStep = 1ms;
    limits.newVolume = 10ms;
    Run run(limits);
    run.start();
    run.tools.run(0);
    run.tools.run(0);
    QTRY_COMPARE(run.exits, only(ExitCode::ToolFailed));
    QVERIFY(run.complained.constLast().startsWith(
        u"the erase on disk2 failed: the new partition is not there"_s));
}

// The disk that has its node by now is not touched, nor are its partitions.
void TestDiskJob::diskThatGoesBeforeItsPartitionComes()
{
    for (const int commands : { 1, 2 }) {
        Run run;
        run.start();
        for (int i = 1; i < commands; ++i)
            run.tools.run(0);
        run.identity->diskSequence = 3;
        run.tools.run(0);
        QCOMPARE(run.programs().size(), commands);
        QCOMPARE(run.partitionTries, 0);
        QCOMPARE(run.exits, only(ExitCode::ToolFailed));
        QCOMPARE(run.complained,
            QStringList { u"the erase on disk2 failed: /nonexistent/sdb is no longer the same disk; what was "
                          "on disk2 is lost"_s });
    }
}

void TestDiskJob::failedFormat()
{
    Run run;
    run.start();
    run.tools.run(0);
    run.showPartition();
    run.tools.run(0);
    run.tools.run(0);
    run.tools.run(1);
    QCOMPARE(run.exits, only(ExitCode::ToolFailed));
    QCOMPARE(run.complained,
        QStringList({ u"the erase on disk2s1 failed: exit status 1"_s,
            u"what was on disk2 is lost; disk2s1 is there, and has no volume yet"_s }));
}

void TestDiskJob::interruptedBeforeTheTable()
{
    Run run;
    Run::mount(run.first);
    Run::mount(run.second);
    run.start();
    run.grant(run.first);
    run.interrupt();
    run.grant(run.second);
    run.grant(run.first);
    run.grant(run.second);
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained, QStringList({ u"interrupted (test)"_s, u"the erase on disk2 was stopped"_s }));
    QVERIFY(run.programs().isEmpty());
}

// It leaves a table that can be read.
void TestDiskJob::interruptedWhileTheTableIsWritten()
{
    Run run;
    run.start();
    run.interrupt();
    QCOMPARE(run.tools.stops, 0);
    run.tools.run(0);
    QCOMPARE(run.programs().constLast(), u"sfdisk"_s);
    run.showPartition();
    run.tools.run(0);
    QCOMPARE(run.exits, only(ExitCode::Interrupted));
    QCOMPARE(run.complained.constLast(), u"the erase on disk2 was stopped; what was on disk2 is lost"_s);
    QCOMPARE(run.programs().size(), 2);
    QCOMPARE(run.announced, QStringList { diskNode });
}

void TestDiskJob::interruptedByTheLineOfTheTable()
{
    for (const QString &last : { u"Started"_s, u"Unmounting"_s, u"Creating"_s }) {
        Run run;
        run.lastLineThatIsRead = last;
        Run::mount(run.first);
        run.start();
        if (last != "Started"_L1)
            run.grant(run.first);
        if (!run.service.requests().empty())
            run.grant(run.first);
        QCOMPARE(run.exits, only(ExitCode::Interrupted));
        QVERIFY(run.programs().isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestDiskJob)
#include "tst_diskjob.moc"
