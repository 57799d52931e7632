// SPDX-License-Identifier: MIT
#include "tools/diskutil/JobPlan.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// The exit status of an executable of a bundle that could not read its device: EX_IOERR of sysexits.h.
constexpr int unreadableExitStatus = 74;

std::optional<Refusal> chooseBundle(JobPlan &plan, const CommandLine &line)
{
    const PersonalityChoice choice = plan.operation == Operation::Erase
        ? personalityNamed(plan.bundles, line.format)
        : personalityForVolume(plan.bundles, plan.medium.kind, plan.medium.subtype, plan.operation);
    if (auto refusal = PreflightRules::refusalOfChoice(
            plan.operation, line, plan.medium, choice, namesOfFormats(plan.bundles)))
        return refusal;
    if (plan.operation == Operation::Erase) {
        if (auto refusal = PreflightRules::refusalOfErase(line, plan.medium, choice))
            return refusal;
    }
    plan.bundle = *choice.bundle;
    plan.tool = *choice.personality->tool(plan.operation);
    plan.newName = line.name;
    plan.newSubtype = choice.personality->subtype;
    plan.partitionTypes = choice.personality->partitionTypes;
    return std::nullopt;
}

std::optional<Refusal> listCommands(JobPlan &plan, const Machine &machine)
{
    if (auto refusal
        = PreflightRules::refusalOfTool(plan.bundle, machine.readToolSituation(plan.bundle, plan.tool)))
        return refusal;
    const QString &node = plan.medium.deviceNode;
    ToolCommand command { executablePath(plan.bundle, plan.tool), plan.tool.arguments,
        ToolCommand::Output::Terminal, {}, plan.tool.claimant };
    if (plan.operation == Operation::Erase) {
        // Traces of a former file system anywhere on the medium could be taken for the volume later.
        const QString wipe = machine.findTool(u"wipefs"_s);
        if (wipe.isEmpty())
            return Refusal { ExitCode::ToolMissing,
                u"wipefs is not installed; install the package util-linux"_s };
        plan.commands.push_back({ wipe, { u"--all"_s, u"--quiet"_s, node } });
        command.output = ToolCommand::Output::Pipe;
        command.arguments += { u"-v"_s, plan.newName };
    }
    command.arguments += node;
    plan.commands.push_back(command);
    return std::nullopt;
}

} // namespace

std::optional<Refusal> planTools(JobPlan &plan, const CommandLine &line, const Machine &machine)
{
    plan.bundles = machine.readInstalledBundles();
    if (auto refusal = chooseBundle(plan, line))
        return refusal;
    return listCommands(plan, machine);
}

Refusal refusalOfUnknownDevice(const QString &device)
{
    if (isOtherFile(device))
        return { ExitCode::NoBlockDevice, u"%1 is not a block device"_s.arg(device) };
    return { ExitCode::NoSuchDisk, u"there is no disk %1"_s.arg(device) };
}

std::variant<JobPlan, Refusal> planJob(
    Operation operation, const CommandLine &line, const MediaList &list, const Machine &machine)
{
    const std::vector<Medium> media = list.media();
    const auto medium = findMedium(media, line.device);
    if (!medium)
        return refusalOfUnknownDevice(line.device);
    JobPlan plan;
    plan.operation = operation;
    plan.medium = *medium;
    plan.disk = list.disk(medium->bsdName);
    plan.identity = machine.readDeviceIdentity(medium->deviceNode);
    if (auto refusal
        = PreflightRules::refusalOfDevice(operation, *medium, machine.readDeviceSituation(*medium, media)))
        return *refusal;
    const std::vector<VolumeMount> mounts = machine.readVolumeMounts(medium->deviceNode);
    if (auto refusal = PreflightRules::refusalOfMounts(*medium, mounts, machine.invokingUser()))
        return *refusal;
    plan.formerMount = formerMount(mounts);
    if (auto refusal = planTools(plan, line, machine))
        return *refusal;
    return plan;
}

std::optional<VolumeMount> formerMount(const std::vector<VolumeMount> &mounts)
{
    const bool canBeMadeAgain = mounts.size() == 1 && mounts.front().isServices;
    return canBeMadeAgain ? std::optional(mounts.front()) : std::nullopt;
}

bool isSameMedium(const std::optional<DeviceIdentity> &identity, const QString &deviceNode,
    const HeldDevice &device, const Machine &machine)
{
    return identity && device.identity() == identity && machine.readDeviceIdentity(deviceNode) == identity;
}

std::optional<Refusal> refusalOfExchange(
    const JobPlan &plan, const HeldDevice &device, const Machine &machine)
{
    if (isSameMedium(plan.identity, plan.medium.deviceNode, device, machine))
        return std::nullopt;
    return Refusal { ExitCode::MediumChanged,
        u"%1 is no longer the same disk"_s.arg(plan.medium.deviceNode) };
}

std::optional<Refusal> refusalOfHandOver(
    const JobPlan &plan, const HeldDevice &device, const std::vector<Medium> &media, const Machine &machine)
{
    if (device.openError != 0)
        return PreflightRules::refusalOfTaking(plan.medium, device.openError);
    if (auto refusal = refusalOfExchange(plan, device, machine))
        return refusal;
    if (auto refusal = PreflightRules::refusalOfDevice(
            plan.operation, plan.medium, machine.readDeviceSituation(plan.medium, media)))
        return refusal;
    return PreflightRules::refusalOfTool(plan.bundle, machine.readToolSituation(plan.bundle, plan.tool));
}

std::optional<Refusal> refusalOfVerdict(
    const JobPlan &plan, const HeldDevice &device, const Machine &machine, const ToolEnd &end)
{
    const bool isRepair = plan.operation == Operation::Repair;
    const QString rest
        = isRepair ? u"the repair was not completed"_s : u"whether its file system has errors is not known"_s;
    if (!isSameMedium(plan.identity, plan.medium.deviceNode, device, machine))
        return Refusal { ExitCode::DeviceGone, u"%1 has gone; %2"_s.arg(plan.medium.bsdName, rest) };
    const bool isToldByTool = end.kind == ToolEnd::Kind::Exited && end.code == unreadableExitStatus;
    // A tool that is content has read what it needs. Many a reader tells of a block more than it has.
    const bool isContent = end.kind == ToolEnd::Kind::Exited && end.code == 0;
    if (isToldByTool || (!isContent && !device.isReadable()))
        return Refusal { ExitCode::DeviceUnreadable,
            u"%1 cannot be read to its end; %2"_s.arg(plan.medium.bsdName, rest) };
    return std::nullopt;
}

bool isNewVolume(const JobPlan &plan, const Medium &medium)
{
    return medium.isMountable && medium.volumeName == plan.newName
        && servesSameVolumes(plan.bundles, medium.kind, plan.bundle.name)
        && (!plan.newSubtype || medium.subtype == plan.newSubtype);
}
