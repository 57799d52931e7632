// SPDX-License-Identifier: MIT
#include "tools/diskutil/DiskJob.h"

#include "platform/SystemLog.h"
#include "tools/diskutil/job_text_rules.h"

using namespace Qt::Literals::StringLiterals;
using namespace JobTextRules;

DiskJob::DiskJob(CommandLine line, JobEnvironment environment)
    : m_line(std::move(line))
    , m_environment(std::move(environment))
{
    m_phaseTimer.setSingleShot(true);
    connect(&m_phaseTimer, &QTimer::timeout, this, &DiskJob::phaseTimedOut);
    connect(&m_environment.tools, &ToolRunner::started, this, [this] {
        if (m_phase == Phase::Running)
            m_hasRun = true;
    });
    connect(&m_environment.tools, &ToolRunner::ended, this, &DiskJob::commandEnded);
}

QString DiskJob::lossText() const
{
    return m_hasRun ? u"; what was on %1 is lost"_s.arg(m_plan.disk.bsdName) : QString();
}

void DiskJob::enter(Phase phase)
{
    m_phase = phase;
    m_phaseTimer.stop();
}

void DiskJob::phaseTimedOut()
{
    switch (m_phase) {
    case Phase::Claiming:
        claim();
        return;
    case Phase::AwaitingPartition:
        lookForPartition();
        return;
    case Phase::Unmounting:
    case Phase::Restoring:
        Q_EMIT complained(u"the disk service has not answered"_s);
        finish();
        return;
    case Phase::Preparing:
    case Phase::Running:
    case Phase::MakingVolume:
    case Phase::Ended:
        return;
    }
}

void DiskJob::start()
{
    auto plan = planDisk(m_line, m_environment.media, m_environment.machine);
    if (const auto *refusals = std::get_if<std::vector<Refusal>>(&plan)) {
        for (const Refusal &refusal : *refusals)
            Q_EMIT complained(refusal.message);
        m_outcome = refusals->front().code;
        finish();
        return;
    }
    m_plan = std::move(std::get<DiskPlan>(plan));
    for (const Medium &medium : m_plan.mounted)
        m_toUnmount.push_back(
            { medium, formerMount(m_environment.machine.readVolumeMounts(medium.deviceNode)) });
    Q_EMIT said(u"Started erase on %1"_s.arg(m_plan.disk.bsdName));
    unmountNext();
}

void DiskJob::unmountNext()
{
    if (isInterrupted()) {
        restoreNext();
        return;
    }
    if (m_toUnmount.empty()) {
        beginTable();
        return;
    }
    enter(Phase::Unmounting);
    const QString name = m_toUnmount.front().medium.bsdName;
    Q_EMIT said(u"Unmounting %1"_s.arg(name));
    m_environment.session.unmount(m_environment.media.disk(name), kDADiskUnmountOptionDefault,
        [this](const DADiskRef &, const DADissenterRef &dissenter) { unmountAnswered(dissenter); });
}

void DiskJob::unmountAnswered(const DADissenterRef &dissenter)
{
    if (m_phase != Phase::Unmounting)
        return;
    const Unmounted unmounted = m_toUnmount.front();
    const Medium &medium = unmounted.medium;
    m_toUnmount.pop_front();
    if (!dissenter)
        m_toRestore.push_back(unmounted);
    if (dissenter && !isInterrupted())
        abandon(ExitCode::UnmountRefused,
            u"%1 could not be unmounted: %2"_s.arg(medium.bsdName, dissenterText(dissenter)));
    else
        unmountNext();
}

void DiskJob::beginTable()
{
    enter(Phase::Claiming);
    m_deadline.setRemainingTime(m_environment.limits.claim);
    claim();
}

void DiskJob::claim()
{
    if (!m_device)
        m_device = m_environment.machine.holdDevice(m_plan.disk.deviceNode);
    const std::vector<Medium> media = m_environment.media.media();
    auto refusal = refusalOfDiskHandOver(m_plan, *m_device, media, m_environment.machine);
    if (const int error = refusal ? 0 : m_device->take(Claimant::Program)) {
        if (PreflightRules::isInUseNow(error) && !m_deadline.hasExpired()) {
            m_phaseTimer.start(m_environment.limits.claimStep);
            return;
        }
        refusal = PreflightRules::refusalOfTaking(m_plan.disk, error);
    }
    if (refusal) {
        abandon(refusal->code, refusal->message);
        return;
    }
    Q_EMIT said(u"Creating the partition map"_s);
    if (isInterrupted())
        restoreNext();
    else
        runNextCommand();
}

void DiskJob::runNextCommand()
{
    enter(Phase::Running);
    ToolCommand command = m_plan.commands.front();
    command.descriptors = m_device->descriptors();
    m_plan.commands.pop_front();
    if (!m_inhibition)
        m_inhibition = m_environment.machine.inhibitShutdown(u"A disk is being erased"_s);
    systemLog(u"diskutil runs: %1"_s.arg(commandText(command)));
    m_environment.tools.start(command);
}

// A table that has been begun is completed, also when the job has been told to stop meanwhile: it takes no
// second, and leaves a disk that can be read.
void DiskJob::commandEnded(const ToolEnd &end)
{
    if (m_phase != Phase::Running)
        return;
    if (end.kind != ToolEnd::Kind::Exited || end.code != 0) {
        failTable(endText(end));
        return;
    }
    const QString &node = m_plan.disk.deviceNode;
    if (m_plan.commands.empty())
        awaitPartition();
    else if (isSameMedium(m_plan.identity, node, *m_device, m_environment.machine))
        runNextCommand();
    else
        failTable(u"%1 is no longer the same disk"_s.arg(node));
}

void DiskJob::awaitPartition()
{
    enter(Phase::AwaitingPartition);
    m_device.reset();
    Q_EMIT said(u"Waiting for %1"_s.arg(m_plan.volumeBsdName));
    m_deadline.setRemainingTime(m_environment.limits.newVolume);
    lookForPartition();
}

void DiskJob::lookForPartition()
{
    const QString &node = m_plan.disk.deviceNode;
    // udev has to look at the disk meanwhile, so it is not held.
    if (m_environment.machine.readDeviceIdentity(node) != m_plan.identity) {
        failTable(u"%1 is no longer the same disk"_s.arg(node));
        return;
    }
    if (m_environment.machine.makeOnlyPartition(node, m_plan.layout.start, m_plan.layout.size)) {
        if (isInterrupted()) {
            finish();
            return;
        }
        if (isNewPartition(m_plan, m_environment.media.media(), m_environment.machine)) {
            makeVolume();
            return;
        }
        // The disk service looks when udev does.
        m_environment.machine.announceChange(node);
    }
    if (m_deadline.hasExpired())
        failTable(u"the new partition is not there"_s);
    else
        m_phaseTimer.start(m_environment.limits.claimStep);
}

void DiskJob::makeVolume()
{
    enter(Phase::MakingVolume);
    Q_EMIT said(u"Formatting %1 as %2"_s.arg(m_plan.volumeBsdName, m_line.format));
    CommandLine line = m_line;
    line.verb = Verb::EraseVolume;
    line.device = m_plan.volumeBsdName;
    m_volumeJob = std::make_unique<VolumeJob>(
        Operation::Erase, line, m_environment, VolumeJob::Telling::PartOfAnotherJob);
    connect(m_volumeJob.get(), &Job::said, this, &Job::said);
    connect(m_volumeJob.get(), &Job::complained, this, &Job::complained);
    connect(m_volumeJob.get(), &Job::finished, this, &DiskJob::volumeMade);
    if (isInterrupted())
        finish(); // by the reader of the last line
    else
        m_volumeJob->start();
}

void DiskJob::volumeMade(ExitCode code)
{
    const bool isMade = code == ExitCode::Success || code == ExitCode::MountRefused;
    m_outcome = isMade || code == ExitCode::Interrupted ? code : ExitCode::ToolFailed;
    if (m_outcome == ExitCode::ToolFailed)
        Q_EMIT complained(u"what was on %1 is lost; %2 is there, and has no volume yet"_s.arg(
            m_plan.disk.bsdName, m_plan.volumeBsdName));
    finish();
}

void DiskJob::abandon(ExitCode code, const QString &complaint)
{
    if (!isInterrupted())
        m_outcome = code;
    Q_EMIT complained(complaint);
    restoreNext();
}

void DiskJob::failTable(const QString &reason)
{
    abandon(
        ExitCode::ToolFailed, u"the erase on %1 failed: %2"_s.arg(m_plan.disk.bsdName, reason) + lossText());
}

// Mounts what was unmounted, as far as nothing has been written.
void DiskJob::restoreNext()
{
    m_device.reset();
    if (m_toRestore.empty() || m_hasRun) {
        finish();
        return;
    }
    enter(Phase::Restoring);
    if (isInterrupted())
        m_phaseTimer.start(m_environment.limits.interruptedService);
    const Unmounted unmounted = m_toRestore.front();
    const QString name = unmounted.medium.bsdName;
    m_toRestore.pop_front();
    Q_EMIT said(u"Mounting %1"_s.arg(name));
    const auto answered = [this, name](const DADiskRef &, const DADissenterRef &dissenter) {
        if (m_phase != Phase::Restoring)
            return;
        if (dissenter)
            Q_EMIT said(u"%1 could not be mounted: %2"_s.arg(name, dissenterText(dissenter)));
        restoreNext();
    };
    const DADiskRef disk = m_environment.media.disk(name);
    if (unmounted.formerMount)
        m_environment.session.mountAgain(
            disk, unmounted.formerMount->user, unmounted.formerMount->options, answered);
    else
        m_environment.session.mount(disk, kDADiskMountOptionDefault, answered);
}

void DiskJob::interrupt(const QString &reason)
{
    if (m_phase == Phase::Ended || isInterrupted())
        return;
    if (m_phase == Phase::MakingVolume && m_volumeJob) {
        m_volumeJob->interrupt(reason);
        return;
    }
    m_outcome = ExitCode::Interrupted;
    Q_EMIT complained(u"interrupted (%1)"_s.arg(reason));
    if (m_phase == Phase::Unmounting || m_phase == Phase::Restoring)
        m_phaseTimer.start(m_environment.limits.interruptedService);
    else if (m_phase == Phase::Claiming && m_phaseTimer.isActive())
        restoreNext();
}

void DiskJob::loseReader(const QString &reason)
{
    if (!m_hasRun && m_phase != Phase::Running)
        interrupt(reason);
}

void DiskJob::mediumChanged(const DADiskRef &disk)
{
    if (m_volumeJob)
        m_volumeJob->mediumChanged(disk);
}

void DiskJob::finish()
{
    enter(Phase::Ended);
    m_device.reset();
    m_inhibition.reset();
    if (m_outcome == ExitCode::Success)
        Q_EMIT said(u"Finished erase on %1"_s.arg(m_plan.disk.bsdName));
    else if (isInterrupted())
        Q_EMIT complained(u"the erase on %1 was stopped"_s.arg(m_plan.disk.bsdName) + lossText());
    if (m_hasRun)
        m_environment.machine.announceChange(m_plan.disk.deviceNode);
    Q_EMIT finished(m_outcome);
}
