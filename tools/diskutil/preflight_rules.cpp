// SPDX-License-Identifier: MIT
#include "tools/diskutil/preflight_rules.h"

#include "platform/SystemLog.h"

#include <cerrno>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace PreflightRules {

std::optional<Operation> operationOfVerb(Verb verb)
{
    switch (verb) {
    case Verb::EraseVolume:
    case Verb::EraseDisk:
        return Operation::Erase;
    case Verb::VerifyVolume:
        return Operation::Verify;
    case Verb::RepairVolume:
        return Operation::Repair;
    case Verb::Help:
    case Verb::List:
    case Verb::Info:
    case Verb::UnlockVolume:
    case Verb::LockVolume:
        break;
    }
    return std::nullopt;
}

std::optional<Refusal> refusalOfDevice(
    Operation operation, const Medium &medium, const DeviceSituation &situation)
{
    const QString &name = medium.bsdName;
    const bool writes = operation != Operation::Verify;
    if (!situation.isBlockDevice)
        return Refusal { ExitCode::NoBlockDevice, u"%1 is not a block device"_s.arg(medium.deviceNode) };
    // To look at what the system does not use now does it no harm.
    if (situation.systemUse == SystemUse::Current || (writes && situation.systemUse == SystemUse::Named))
        return Refusal { ExitCode::SystemVolume, u"%1 belongs to the running system"_s.arg(name) };
    if (!situation.inUse.isEmpty())
        return Refusal { ExitCode::InUse, u"%1 is in use: %2"_s.arg(name, situation.inUse.join(u", "_s)) };
    if (writes && !medium.isWritable)
        return Refusal { ExitCode::ReadOnly, u"%1 is read-only"_s.arg(name) };
    if (!situation.canRead || (writes && !situation.canWrite))
        return Refusal { ExitCode::NotPermitted, u"no permission to use %1"_s.arg(medium.deviceNode) };
    return std::nullopt;
}

bool isInUseNow(int error)
{
    return error == EBUSY || error == EWOULDBLOCK;
}

Refusal refusalOfTaking(const Medium &medium, int error)
{
    if (isInUseNow(error))
        return { ExitCode::InUse, u"%1 is in use"_s.arg(medium.bsdName) };
    switch (error) {
    case ENOENT: // its node
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
        return { ExitCode::DeviceGone, u"%1 has gone"_s.arg(medium.bsdName) };
    case EACCES:
    case EPERM:
        return { ExitCode::NotPermitted, u"no permission to use %1"_s.arg(medium.deviceNode) };
    default:
        return { ExitCode::DeviceUnreadable,
            u"%1 cannot be opened: %2"_s.arg(medium.deviceNode, errnoText(error)) };
    }
}

std::optional<Refusal> refusalOfMounts(
    const Medium &medium, const std::vector<VolumeMount> &mounts, const QString &user)
{
    QStringList uses;
    for (const VolumeMount &mount : mounts) {
        const bool isOthers
            = !user.isEmpty() && !mount.user.isEmpty() && mount.user != u"root"_s && mount.user != user;
        QString use = u"it is mounted at %1"_s.arg(mount.place);
        if (!mount.isServices)
            use += u", not by the disk service"_s;
        else if (isOthers)
            use += u" for the user %1"_s.arg(mount.user);
        if (mounts.size() > 1 || !mount.isServices || isOthers)
            uses.append(use);
    }
    if (uses.isEmpty())
        return std::nullopt;
    return Refusal { ExitCode::InUse, u"%1 is in use: %2"_s.arg(medium.bsdName, uses.join(u", "_s)) };
}

std::optional<Refusal> refusalOfChoice(Operation operation, const CommandLine &line, const Medium &medium,
    const PersonalityChoice &choice, const QStringList &formats)
{
    if (operation == Operation::Erase) {
        if (!choice.personality)
            return Refusal { ExitCode::UnknownFormat,
                u"no installed file system is named \"%1\"; the names are: %2"_s.arg(
                    line.format, formats.join(u", "_s)) };
        if (!choice.personality->format)
            return Refusal { ExitCode::NotSupported, u"%1 cannot be formatted"_s.arg(line.format) };
        return std::nullopt;
    }
    if (medium.kind.isEmpty())
        return Refusal { ExitCode::NotSupported, u"%1 has no known file system"_s.arg(medium.bsdName) };
    if (!choice.personality)
        return Refusal { ExitCode::NotSupported,
            u"no installed file system %1 %2 volumes such as %3"_s.arg(
                operation == Operation::Verify ? u"verifies"_s : u"repairs"_s, medium.kind, medium.bsdName) };
    return std::nullopt;
}

std::optional<Refusal> refusalOfErase(
    const CommandLine &line, const Medium &medium, const PersonalityChoice &choice)
{
    if (const auto reason = reasonAgainstLabel(choice.bundle->labelRule, line.name))
        return Refusal { ExitCode::NameRefused,
            u"a name for %1 cannot be \"%2\": it %3"_s.arg(line.format, line.name, *reason) };
    const Personality &personality = *choice.personality;
    if (personality.minimumSize && medium.size < *personality.minimumSize)
        return Refusal { ExitCode::SizeOutOfRange,
            u"%1 is too small for %2: it has %3 bytes, and %4 are needed"_s.arg(medium.bsdName, line.format)
                .arg(medium.size)
                .arg(*personality.minimumSize) };
    if (personality.maximumSize && medium.size > *personality.maximumSize)
        return Refusal { ExitCode::SizeOutOfRange,
            u"%1 is too large for %2: it has %3 bytes, and %4 is the most"_s.arg(medium.bsdName, line.format)
                .arg(medium.size)
                .arg(*personality.maximumSize) };
    return std::nullopt;
}

std::optional<Refusal> refusalOfTool(const FilesystemBundle &bundle, const ToolSituation &situation)
{
    if (!situation.missingTools.isEmpty())
        return Refusal { ExitCode::ToolMissing,
            u"%1 is not installed; install the package %2"_s.arg(
                situation.missingTools.join(u", "_s), bundle.packages.join(u", "_s)) };
    if (situation.distrust)
        return Refusal { ExitCode::UntrustedBundle,
            u"the bundle %1.fs is not run with administrator rights: %2"_s.arg(
                bundle.name, *situation.distrust) };
    return std::nullopt;
}

} // namespace PreflightRules
