// SPDX-License-Identifier: MIT
//
// The reasons to refuse an operation before anything is unmounted or written. Pure functions, any thread.
// Each returns std::nullopt when it has none.
#pragma once

#include "platform/SystemDevices.h"
#include "platform/VolumeMount.h"
#include "tools/diskutil/CommandLine.h"
#include "tools/diskutil/ExitCode.h"
#include "tools/diskutil/Medium.h"
#include "tools/diskutil/Personality.h"

#include <QStringList>

#include <optional>

namespace PreflightRules {

// What the machine says about the device now.
struct DeviceSituation
{
    bool isBlockDevice = false;
    SystemUse systemUse = SystemUse::None;
    QStringList inUse; // uses of the device besides its own mounts, a few words each
    bool canRead = false; // by this process
    bool canWrite = false;
};

// What the machine says about the executable of a bundle.
struct ToolSituation
{
    QStringList missingTools;
    std::optional<QString> distrust; // why root must not run it
};

// What the verb does to a medium. Returns std::nullopt for a verb that runs no tool.
std::optional<Operation> operationOfVerb(Verb verb);

std::optional<Refusal> refusalOfDevice(
    Operation operation, const Medium &medium, const DeviceSituation &situation);

// Whether a device that could not be taken for this reason, an errno value, may be free in a moment.
bool isInUseNow(int error);

// Why a device that could not be opened, locked or claimed for this reason is not worked on.
Refusal refusalOfTaking(const Medium &medium, int error);

// Refuses where the volume could not be mounted afterwards as it is now. The user is the one that this is
// done for, empty for root alone.
std::optional<Refusal> refusalOfMounts(
    const Medium &medium, const std::vector<VolumeMount> &mounts, const QString &user);

// Refuses when no personality does what is asked. The formats are the names that can be asked for.
std::optional<Refusal> refusalOfChoice(Operation operation, const CommandLine &line, const Medium &medium,
    const PersonalityChoice &choice, const QStringList &formats);

// Refuses a size or a name that the new volume cannot have. The choice has a personality.
std::optional<Refusal> refusalOfErase(
    const CommandLine &line, const Medium &medium, const PersonalityChoice &choice);

std::optional<Refusal> refusalOfTool(const FilesystemBundle &bundle, const ToolSituation &situation);

} // namespace PreflightRules
