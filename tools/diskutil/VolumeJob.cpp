// SPDX-License-Identifier: MIT
#include "tools/diskutil/VolumeJob.h"

#include "platform/SystemLog.h"
#include "tools/diskutil/job_text_rules.h"

using namespace Qt::Literals::StringLiterals;
using namespace JobTextRules;

namespace {

// The exit status of an executable of a bundle that has found errors, or has left some.
constexpr int errorsExitStatus = 8;

} // namespace

VolumeJob::VolumeJob(Operation operation, CommandLine line, JobEnvironment environment, Telling telling)
    : m_operation(operation)
    , m_line(std::move(line))
    , m_environment(std::move(environment))
    , m_telling(telling)
{
    m_phaseTimer.setSingleShot(true);
    connect(&m_phaseTimer, &QTimer::timeout, this, &VolumeJob::phaseTimedOut);
    connect(&m_environment.tools, &ToolRunner::started, this, &VolumeJob::commandStarted);
    connect(&m_environment.tools, &ToolRunner::ended, this, &VolumeJob::commandEnded);
}

QString VolumeJob::operationText() const
{
    switch (m_operation) {
    case Operation::Verify:
        return u"file system verification"_s;
    case Operation::Repair:
        return u"file system repair"_s;
    case Operation::Erase:
        break;
    }
    return u"erase"_s;
}

QString VolumeJob::lossText() const
{
    return isOldVolumeLost() ? u"; what was on %1 is lost"_s.arg(m_plan.medium.bsdName) : QString();
}

void VolumeJob::enter(Phase phase)
{
    m_phase = phase;
    m_phaseTimer.stop();
}

void VolumeJob::phaseTimedOut()
{
    switch (m_phase) {
    case Phase::Claiming:
        claim();
        return;
    case Phase::AwaitingVolume:
        mount();
        return;
    case Phase::Unmounting:
    case Phase::Mounting:
        giveServiceUp();
        return;
    case Phase::Preparing:
    case Phase::Running:
    case Phase::Ended:
        return;
    }
}

void VolumeJob::start()
{
    auto plan = planJob(m_operation, m_line, m_environment.media, m_environment.machine);
    if (const auto *refusal = std::get_if<Refusal>(&plan)) {
        Q_EMIT complained(refusal->message);
        m_outcome = refusal->code;
        finish();
        return;
    }
    m_plan = std::move(std::get<JobPlan>(plan));
    if (m_telling == Telling::Everything)
        Q_EMIT said(u"Started %1 on %2"_s.arg(operationText(), m_plan.medium.bsdName));
    if (isInterrupted())
        conclude();
    else if (m_plan.medium.mountPoint.isEmpty())
        claimForNextCommand();
    else
        unmount();
}

void VolumeJob::unmount()
{
    Q_EMIT said(u"Unmounting %1"_s.arg(m_plan.medium.bsdName));
    if (isInterrupted()) {
        conclude();
        return;
    }
    enter(Phase::Unmounting);
    m_environment.session.unmount(m_plan.disk, kDADiskUnmountOptionDefault,
        [this](const DADiskRef &, const DADissenterRef &dissenter) { unmountAnswered(dissenter); });
}

void VolumeJob::unmountAnswered(const DADissenterRef &dissenter)
{
    if (m_phase != Phase::Unmounting)
        return;
    m_isUnmounted = !dissenter;
    if (dissenter && !isInterrupted()) {
        Q_EMIT complained(
            u"%1 could not be unmounted: %2"_s.arg(m_plan.medium.bsdName, dissenterText(dissenter)));
        m_outcome = ExitCode::UnmountRefused;
    }
    if (m_outcome == ExitCode::Success)
        claimForNextCommand();
    else
        conclude();
}

void VolumeJob::claimForNextCommand()
{
    enter(Phase::Claiming);
    m_deadline.setRemainingTime(m_environment.limits.claim);
    claim();
}

void VolumeJob::claim()
{
    if (!m_device)
        m_device = m_environment.machine.holdDevice(m_plan.medium.deviceNode);
    auto refusal = refusalOfHandOver(m_plan, *m_device, m_environment.media.media(), m_environment.machine);
    if (const int error = refusal ? 0 : m_device->take(m_plan.commands.front().claimant)) {
        if (PreflightRules::isInUseNow(error) && !m_deadline.hasExpired()) {
            m_phaseTimer.start(m_environment.limits.claimStep);
            return;
        }
        refusal = PreflightRules::refusalOfTaking(m_plan.medium, error);
    }
    // It may have been exchanged between the look and the lock.
    if (!refusal)
        refusal = refusalOfExchange(m_plan, *m_device, m_environment.machine);
    if (!refusal) {
        runNextCommand();
        return;
    }
    Q_EMIT complained(refusal->message + lossText());
    m_outcome = isOldVolumeLost() ? ExitCode::ToolFailed : refusal->code;
    conclude();
}

void VolumeJob::runNextCommand()
{
    enter(Phase::Running);
    ToolCommand command = m_plan.commands.front();
    command.descriptors = m_device->descriptors();
    m_plan.commands.pop_front();
    if (m_operation != Operation::Verify && !m_inhibition)
        m_inhibition = m_environment.machine.inhibitShutdown(m_operation == Operation::Erase
                ? u"A volume is being erased"_s
                : u"A volume is being repaired"_s);
    systemLog(u"diskutil runs: %1"_s.arg(commandText(command)));
    m_environment.tools.start(command);
}

void VolumeJob::commandStarted()
{
    if (m_phase == Phase::Running)
        m_hasRun = true;
}

void VolumeJob::commandEnded(const ToolEnd &end)
{
    if (m_phase != Phase::Running)
        return;
    const bool hasSucceeded = end.kind == ToolEnd::Kind::Exited && end.code == 0;
    if (hasSucceeded && !isInterrupted() && !m_plan.commands.empty()) {
        claimForNextCommand();
        return;
    }
    if (!isInterrupted())
        judge(end);
    conclude();
}

void VolumeJob::judge(const ToolEnd &end)
{
    const QString &name = m_plan.medium.bsdName;
    const bool hasExited = end.kind == ToolEnd::Kind::Exited;
    const auto refusal = m_operation == Operation::Erase || end.kind == ToolEnd::Kind::NotStarted
        ? std::nullopt
        : refusalOfVerdict(m_plan, *m_device, m_environment.machine, end);
    if (refusal) {
        m_outcome = refusal->code;
        Q_EMIT complained(refusal->message);
    } else if (hasExited && end.code == 0) {
        if (m_operation != Operation::Erase)
            Q_EMIT said(u"The volume on %1 appears to be OK"_s.arg(name));
    } else if (hasExited && end.code == errorsExitStatus && m_operation != Operation::Erase) {
        m_outcome = ExitCode::ErrorsFound;
        Q_EMIT said(m_operation == Operation::Verify
                ? u"The volume on %1 has errors and needs to be repaired"_s.arg(name)
                : u"The volume on %1 still has errors"_s.arg(name));
    } else {
        m_outcome = ExitCode::ToolFailed;
        Q_EMIT complained(u"the %1 on %2 failed: %3"_s.arg(operationText(), name, endText(end)));
    }
}

void VolumeJob::interrupt(const QString &reason)
{
    if (m_phase == Phase::Ended || isInterrupted())
        return;
    m_outcome = ExitCode::Interrupted;
    Q_EMIT complained(u"interrupted (%1)"_s.arg(reason));
    switch (m_phase) {
    case Phase::Unmounting:
    case Phase::Mounting:
        m_phaseTimer.start(m_environment.limits.interruptedService);
        return;
    case Phase::Claiming:
        conclude();
        return;
    case Phase::Running:
        m_environment.tools.stop();
        return;
    case Phase::AwaitingVolume:
        mount();
        return;
    case Phase::Preparing: // start() sees to it
    case Phase::Ended:
        return;
    }
}

void VolumeJob::loseReader(const QString &reason)
{
    const bool writes = m_operation != Operation::Verify && (m_hasRun || m_phase == Phase::Running);
    if (!writes)
        interrupt(reason);
}

// Called when no command is running, and none is to be run.
void VolumeJob::conclude()
{
    // A second run that waits for the lock must not begin before the volume is mounted, again or for the
    // first time. The claim would keep the mount out, and the lock of a whole disk would keep udev from
    // looking at the new volume.
    const bool isMountedAgain = m_isUnmounted && !isOldVolumeLost();
    const bool isNew = isOldVolumeLost() && m_outcome == ExitCode::Success;
    if (m_hasRun && (isMountedAgain || (isNew && !m_plan.medium.isWhole)))
        m_device->take(Claimant::Program);
    else
        m_device.reset();
    m_inhibition.reset();
    if (isInterrupted())
        Q_EMIT complained(
            u"the %1 on %2 was stopped"_s.arg(operationText(), m_plan.medium.bsdName) + lossText());
    if (m_hasRun && m_operation != Operation::Verify)
        m_environment.machine.announceChange(m_plan.medium.deviceNode);
    if (isNew) {
        m_deadline.setRemainingTime(m_environment.limits.newVolume);
        awaitNewVolume();
    } else if (isMountedAgain) {
        mount();
    } else {
        finish();
    }
}

// The disk service describes the new volume once udev has probed it, some time after the command has ended. A
// mount before that would be made with the old volume's file system or name.
void VolumeJob::awaitNewVolume()
{
    enter(Phase::AwaitingVolume);
    m_phaseTimer.start(std::chrono::milliseconds(m_deadline.remainingTime()));
    mediumChanged(m_plan.disk);
}

void VolumeJob::mediumChanged(const DADiskRef &disk)
{
    if (m_phase == Phase::AwaitingVolume && disk == m_plan.disk && isNewVolume(m_plan, readMedium(*disk)))
        mount();
}

void VolumeJob::mount()
{
    enter(Phase::Mounting);
    if (isInterrupted())
        m_phaseTimer.start(m_environment.limits.interruptedService);
    Q_EMIT said(u"Mounting %1"_s.arg(m_plan.medium.bsdName));
    const auto answered
        = [this](const DADiskRef &, const DADissenterRef &dissenter) { mountAnswered(dissenter); };
    if (m_plan.formerMount && !isOldVolumeLost())
        m_environment.session.mountAgain(
            m_plan.disk, m_plan.formerMount->user, m_plan.formerMount->options, answered);
    else
        m_environment.session.mount(m_plan.disk, kDADiskMountOptionDefault, answered);
}

void VolumeJob::mountAnswered(const DADissenterRef &dissenter)
{
    if (m_phase != Phase::Mounting)
        return;
    const Medium medium = readMedium(*m_plan.disk);
    const bool isMounted = !dissenter || !medium.mountPoint.isEmpty(); // the desktop may have been quicker
    if (!isMounted) {
        // The service takes a volume back for a moment when udev looks at the device once more.
        const bool hasGone = dissenter->status == static_cast<quint32>(DAReturn::NotFound);
        const bool comesAgain = isOldVolumeLost() && (hasGone || !isNewVolume(m_plan, medium));
        if (comesAgain && !isInterrupted() && !m_deadline.hasExpired()) {
            awaitNewVolume();
            return;
        }
        reportRefusedMount(dissenter);
    }
    if (isOldVolumeLost() && !medium.mountPoint.isEmpty())
        m_environment.machine.giveToDesktopUser(medium.mountPoint, m_plan.medium.deviceNode);
    if (medium.mountPoint.isEmpty()) {
        finish();
        return;
    }
    reportOtherPlace(medium.mountPoint);
    reportPlaceOutOfReach(medium.mountPoint);
}

// The service takes another folder where something else has the one before.
void VolumeJob::reportOtherPlace(const QString &mountPoint)
{
    if (m_plan.formerMount && !isOldVolumeLost() && m_plan.formerMount->place != mountPoint)
        Q_EMIT said(u"%1 is mounted at %2 now, no longer at %3"_s.arg(
            m_plan.medium.bsdName, mountPoint, m_plan.formerMount->place));
}

void VolumeJob::reportPlaceOutOfReach(const QString &mountPoint)
{
    m_environment.machine.findFolderAccess(mountPoint, this, [this, mountPoint](bool isOpen) {
        if (m_phase != Phase::Mounting)
            return;
        if (!isOpen)
            Q_EMIT said(u"%1 is mounted at %2, which only the administrator can open"_s.arg(
                m_plan.medium.bsdName, mountPoint));
        finish();
    });
}

// A volume that was there before is as good as it was. The new one is what was asked for, and nobody can use
// it.
void VolumeJob::reportRefusedMount(const DADissenterRef &dissenter)
{
    const QString line
        = u"%1 could not be mounted: %2"_s.arg(m_plan.medium.bsdName, dissenterText(dissenter));
    if (!isOldVolumeLost() || m_outcome != ExitCode::Success) {
        Q_EMIT said(line);
        return;
    }
    m_outcome = ExitCode::MountRefused;
    Q_EMIT complained(u"the new volume on "_s + line);
}

void VolumeJob::giveServiceUp()
{
    Q_EMIT complained(u"the disk service has not answered"_s);
    finish();
}

void VolumeJob::finish()
{
    enter(Phase::Ended);
    m_device.reset();
    const bool isDone = m_outcome == ExitCode::Success || m_outcome == ExitCode::ErrorsFound;
    if (isDone && m_telling == Telling::Everything)
        Q_EMIT said(u"Finished %1 on %2"_s.arg(operationText(), m_plan.medium.bsdName));
    Q_EMIT finished(m_outcome);
}
