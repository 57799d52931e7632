// SPDX-License-Identifier: MIT
#include "tools/diskutil/VolumeJob.h"

#include "platform/SystemLog.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// What an executable of a bundle answers when it has found, or left, errors.
constexpr int errorsExitStatus = 8;

QString dissenterText(const DADissenterRef &dissenter)
{
    if (dissenter->statusString)
        return *dissenter->statusString;
    return u"0x%1"_s.arg(dissenter->status, 8, 16, QLatin1Char('0'));
}

// Each word by itself, so that a name with spaces, quotes or brackets cannot pass for several.
QString commandText(const ToolCommand &command)
{
    QStringList words;
    for (QString word : QStringList(command.program) + command.arguments) {
        for (const QChar c : { u'\\', u'[', u']' }) // the backslash first: it is what the others get
            word.replace(c, u"\\"_s + c);
        words.append(u'[' + word + u']');
    }
    return words.join(u' ');
}

QString endText(const ToolEnd &end)
{
    switch (end.kind) {
    case ToolEnd::Kind::NotStarted:
        return u"it could not be started: %1"_s.arg(end.message);
    case ToolEnd::Kind::Killed:
        return u"it was killed by signal %1"_s.arg(end.code);
    case ToolEnd::Kind::Exited:
        break;
    }
    return u"exit status %1"_s.arg(end.code);
}

} // namespace

VolumeJob::VolumeJob(CommandLine line, JobEnvironment environment)
    : m_line(std::move(line))
    , m_operation(operationOfVerb(m_line.verb))
    , m_environment(std::move(environment))
{
    m_newVolumeLimit.setSingleShot(true);
    m_newVolumeLimit.setInterval(m_environment.limits.newVolume);
    connect(&m_newVolumeLimit, &QTimer::timeout, this, &VolumeJob::mount);
    // From here the tool holds it. A partition that is held twice could not go when its disk is pulled.
    connect(&m_environment.tools, &ToolRunner::started, this, [this] { m_device.reset(); });
    m_serviceLimit.setSingleShot(true);
    m_serviceLimit.setInterval(m_environment.limits.interruptedService);
    connect(&m_serviceLimit, &QTimer::timeout, this, &VolumeJob::giveServiceUp);
    connect(&m_environment.tools, &ToolRunner::ended, this, &VolumeJob::commandEnded);
}

QString VolumeJob::verbNoun() const
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

void VolumeJob::start()
{
    if (const auto refusal = prepare()) {
        Q_EMIT complained(refusal->message);
        Q_EMIT finished(refusal->code);
        return;
    }
    Q_EMIT said(u"Started %1 on %2"_s.arg(verbNoun(), m_medium.bsdName));
    unmount();
}

std::optional<Refusal> VolumeJob::prepare()
{
    const std::vector<Medium> media = m_environment.media.media();
    const auto medium = findMedium(media, m_line.device);
    if (!medium)
        return isOtherFile(m_line.device)
            ? Refusal { ExitCode::NoBlockDevice, u"%1 is no block device"_s.arg(m_line.device) }
            : Refusal { ExitCode::NoSuchDisk, u"there is no disk %1"_s.arg(m_line.device) };
    m_medium = *medium;
    m_disk = m_environment.media.disk(m_medium.bsdName);
    m_identity = m_environment.machine.readDeviceIdentity(m_medium.deviceNode);

    if (auto refusal
        = refusalOfDevice(m_operation, m_medium, m_environment.machine.readDeviceSituation(m_medium, media)))
        return refusal;
    m_bundles = m_environment.machine.readInstalledBundles();
    const PersonalityChoice choice = m_operation == Operation::Erase
        ? personalityNamed(m_bundles, m_line.format)
        : personalityForVolume(m_bundles, m_medium.kind, m_medium.subtype, m_operation);
    if (auto refusal = refusalOfChoice(m_line, m_medium, choice))
        return refusal;
    if (m_operation == Operation::Erase) {
        if (auto refusal = refusalOfErase(m_line, m_medium, choice))
            return refusal;
    }
    m_newKind = choice.bundle->name;
    m_newSubtype = choice.personality->subtype;
    return prepareTool(choice);
}

std::optional<Refusal> VolumeJob::prepareTool(const PersonalityChoice &choice)
{
    m_bundle = *choice.bundle;
    m_tool = *choice.personality->tool(m_operation);
    if (auto refusal = refusalOfTool(m_bundle, m_environment.machine.readToolSituation(m_bundle, m_tool)))
        return refusal;

    ToolCommand command { executablePath(m_bundle, m_tool), m_tool.arguments, ToolCommand::Output::Terminal };
    if (m_operation == Operation::Erase) {
        // What a former file system has left anywhere on the medium could be taken for the volume later.
        const QString wipe = m_environment.machine.findTool(u"wipefs"_s);
        if (wipe.isEmpty())
            return Refusal { ExitCode::ToolMissing,
                u"wipefs is not installed; install the package util-linux"_s };
        m_commands.push_back({ wipe, { u"--all"_s, u"--quiet"_s, m_medium.deviceNode } });
        command.output = ToolCommand::Output::Pipe;
        command.arguments += { u"-v"_s, m_line.name };
    }
    command.arguments += m_medium.deviceNode;
    m_commands.push_back(command);
    return std::nullopt;
}

void VolumeJob::unmount()
{
    if (m_medium.mountPoint.isEmpty()) {
        runNextCommand();
        return;
    }
    Q_EMIT said(u"Unmounting %1"_s.arg(m_medium.bsdName));
    m_environment.session.unmount(
        m_disk, kDADiskUnmountOptionDefault, [this](const DADiskRef &, const DADissenterRef &dissenter) {
            if (!dissenter) {
                runNextCommand();
                return;
            }
            Q_EMIT complained(
                u"%1 could not be unmounted: %2"_s.arg(m_medium.bsdName, dissenterText(dissenter)));
            Q_EMIT finished(ExitCode::UnmountRefused);
        });
}

void VolumeJob::runNextCommand()
{
    if (m_isInterrupted) {
        conclude();
        return;
    }
    m_claimTries = 0;
    handOver();
}

// Between the first look and here the medium may have been pulled and its name given to another, it may have
// been mounted, and the bundle may have been changed.
std::optional<Refusal> VolumeJob::refusalOfHandOver() const
{
    if (!m_identity || m_device->identity() != m_identity)
        return Refusal { ExitCode::MediumChanged,
            u"%1 is not the medium any more that it was"_s.arg(m_medium.deviceNode) };
    if (auto refusal = refusalOfDevice(m_operation, m_medium,
            m_environment.machine.readDeviceSituation(m_medium, m_environment.media.media())))
        return refusal;
    return refusalOfTool(m_bundle, m_environment.machine.readToolSituation(m_bundle, m_tool));
}

void VolumeJob::handOver()
{
    m_device = m_environment.machine.holdDevice(m_medium.deviceNode);
    auto refusal = refusalOfHandOver();
    if (!refusal && m_device->isClaimed()) {
        if (!m_isInterrupted
            && ++m_claimTries < m_environment.limits.claim / m_environment.limits.claimStep) {
            QTimer::singleShot(m_environment.limits.claimStep, this, &VolumeJob::handOver);
            return;
        }
        refusal = Refusal { ExitCode::InUse, u"%1 is in use"_s.arg(m_medium.bsdName) };
    }
    if (m_isInterrupted) {
        conclude();
        return;
    }
    if (refusal) {
        Q_EMIT complained(refusal->message + lossText());
        m_outcome = m_isUntouched ? refusal->code : ExitCode::ToolFailed;
        conclude();
        return;
    }
    const ToolCommand command = m_commands.front();
    m_commands.pop_front();
    m_isRunning = true;
    m_isUntouched = false;
    systemLog(u"diskutil runs: %1"_s.arg(commandText(command)));
    m_environment.tools.start(command);
}

void VolumeJob::commandEnded(const ToolEnd &end)
{
    m_device.reset();
    m_isRunning = false;
    const bool hasSucceeded = end.kind == ToolEnd::Kind::Exited && end.code == 0;
    if (hasSucceeded && !m_commands.empty()) {
        runNextCommand();
        return;
    }
    if (m_operation != Operation::Verify)
        m_environment.machine.announceChange(m_medium.deviceNode);
    if (!m_isInterrupted)
        judge(end);
    conclude();
}

void VolumeJob::judge(const ToolEnd &end)
{
    const bool hasExited = end.kind == ToolEnd::Kind::Exited;
    if (hasExited && end.code == 0) {
        if (m_operation != Operation::Erase)
            Q_EMIT said(u"The volume on %1 appears to be OK"_s.arg(m_medium.bsdName));
    } else if (hasExited && end.code == errorsExitStatus && m_operation != Operation::Erase) {
        m_outcome = ExitCode::ErrorsFound;
        Q_EMIT said(m_operation == Operation::Verify
                ? u"The volume on %1 has errors and needs to be repaired"_s.arg(m_medium.bsdName)
                : u"The volume on %1 still has errors"_s.arg(m_medium.bsdName));
    } else {
        m_outcome = ExitCode::ToolFailed;
        Q_EMIT complained(u"the %1 on %2 failed: %3"_s.arg(verbNoun(), m_medium.bsdName, endText(end)));
    }
}

void VolumeJob::interrupt(const QString &reason)
{
    m_isInterrupted = true;
    m_outcome = ExitCode::Interrupted;
    Q_EMIT complained(u"interrupted (%1)"_s.arg(reason));
    if (m_isRunning) {
        m_environment.tools.stop();
        return;
    }
    m_serviceLimit.start();
    if (m_newVolumeLimit.isActive())
        mount();
}

void VolumeJob::giveServiceUp()
{
    Q_EMIT complained(u"the disk service has not answered"_s);
    Q_EMIT finished(ExitCode::Interrupted);
}

QString VolumeJob::lossText() const
{
    const bool isLost = m_operation == Operation::Erase && !m_isUntouched;
    return isLost ? u"; what was on %1 is lost"_s.arg(m_medium.bsdName) : QString();
}

void VolumeJob::conclude()
{
    if (m_isInterrupted) {
        Q_EMIT complained(u"the %1 on %2 was stopped"_s.arg(verbNoun(), m_medium.bsdName) + lossText());
        m_serviceLimit.start();
    }
    const bool wasMounted = !m_medium.mountPoint.isEmpty();
    if (m_operation == Operation::Erase && m_outcome == ExitCode::Success)
        awaitNewVolume();
    else if (wasMounted && (m_operation != Operation::Erase || m_isUntouched))
        mount();
    else
        finish();
}

void VolumeJob::finish()
{
    if (m_outcome == ExitCode::Success || m_outcome == ExitCode::ErrorsFound)
        Q_EMIT said(u"Finished %1 on %2"_s.arg(verbNoun(), m_medium.bsdName));
    Q_EMIT finished(m_outcome);
}

// The disk service tells the new volume as udev has probed it, some time after the tool has ended; a mount
// before that would be made with the old volume's file system or name.
void VolumeJob::awaitNewVolume()
{
    m_newVolumeLimit.start();
    if (isNewVolumeKnown())
        mount();
}

bool VolumeJob::isNewVolumeKnown() const
{
    const Medium medium = readMedium(*m_disk);
    return medium.isMountable && medium.volumeName == m_line.name
        && servesSameVolumes(m_bundles, medium.kind, m_newKind)
        && (!m_newSubtype || medium.subtype == m_newSubtype);
}

void VolumeJob::mediumChanged(const DADiskRef &disk)
{
    if (disk == m_disk && m_newVolumeLimit.isActive() && isNewVolumeKnown())
        mount();
}

void VolumeJob::mount()
{
    if (m_isMounting)
        return;
    m_isMounting = true;
    Q_EMIT said(u"Mounting %1"_s.arg(m_medium.bsdName));
    m_environment.session.mount(
        m_disk, kDADiskMountOptionDefault, [this](const DADiskRef &disk, const DADissenterRef &dissenter) {
            m_isMounting = false;
            const QString mountPoint = readMedium(*disk).mountPoint;
            const bool isMounted = !mountPoint.isEmpty(); // the desktop may have been quicker
            // What looked like the new volume was still the old one.
            if (dissenter && !isMounted && m_newVolumeLimit.isActive() && !isNewVolumeKnown())
                return;
            m_newVolumeLimit.stop();
            if (isMounted && m_operation == Operation::Erase && m_outcome == ExitCode::Success)
                m_environment.machine.giveToDesktopUser(mountPoint);
            if (dissenter && !isMounted)
                Q_EMIT said(u"%1 could not be mounted: %2"_s.arg(m_medium.bsdName, dissenterText(dissenter)));
            finish();
        });
}
