// SPDX-License-Identifier: MIT
//
// Everything for which an operation is refused, before anything is unmounted or written. Functions of values.
#pragma once

#include "tools/diskutil/command_line.h"
#include "tools/diskutil/ExitCode.h"
#include "tools/diskutil/medium.h"
#include "tools/diskutil/personality.h"

#include <QStringList>

#include <optional>

// What the machine says of the device at this moment.
struct DeviceSituation
{
    bool isBlockDevice = false;
    bool isSystemDevice = false;
    QStringList inUse; // what the device serves other than being mounted itself, each as a few words
    bool canRead = false; // this process may
    bool canWrite = false;
};

// What the machine says of the bundle's executable.
struct ToolSituation
{
    QStringList missingTools;
    std::optional<QString> distrust; // why it may not be run with the administrator's rights
};

// What the verb does to a medium. Returns std::nullopt for a verb that only tells something.
std::optional<Operation> operationOfVerb(Verb verb);

std::optional<Refusal> refusalOfDevice(
    Operation operation, const Medium &medium, const DeviceSituation &situation);

// Whether there is a personality that does what is asked.
std::optional<Refusal> refusalOfChoice(
    Operation operation, const CommandLine &line, const Medium &medium, const PersonalityChoice &choice);

// Whether the new volume can have this size and this name. The choice is complete.
std::optional<Refusal> refusalOfErase(
    const CommandLine &line, const Medium &medium, const PersonalityChoice &choice);

std::optional<Refusal> refusalOfTool(const FileSystemBundle &bundle, const ToolSituation &situation);
