// SPDX-License-Identifier: MIT
#pragma once

#include "filesystems/disk_layout_rules.h"
#include "tools/diskutil/ExitCode.h"

#include <QStringList>

#include <variant>

enum class Verb {
    Help,
    List,
    Info,
    EraseVolume,
    EraseDisk,
    VerifyVolume,
    RepairVolume,
    UnlockVolume,
    LockVolume
};

struct CommandLine
{
    Verb verb = Verb::Help;
    QString format; // personality to erase as
    QString name; // of the new volume; may be empty
    QString device; // as it was given
    std::optional<PartitionScheme> scheme = {}; // absent when none was given
};

// Reads the arguments after the program's name.
std::variant<CommandLine, Refusal> parseCommandLine(const QStringList &arguments);

// What --help prints.
QString usageText();

// The BSD name that an argument such as disk2s1 or /dev/disk2s1 gives; empty when it is of another form.
QString bsdNameOfArgument(const QString &argument);
