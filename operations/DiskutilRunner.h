// SPDX-License-Identifier: MIT
//
// Runs diskutil and tells how it ended. The one place that starts the tool.
#pragma once

#include "operations/DiskutilDecoding.h"
#include "platform/ShellPipe.h"

#include <QString>

#include <cstddef>
#include <optional>

// Takes the output as it comes, in order, on the thread of the run. The bytes are valid during the call only.
using DiskutilOutputHandler = void (*)(void *context, std::size_t length, const char *bytes);

// Runs "diskutil verb arguments" in the shell, with standard error merged into the output, and blocks until
// it has ended. The arguments stand on the command line as they are: the caller quotes them. The handler may
// be null. Returns 0 without a message, or an errno value with the message of the first failure. Any thread;
// runs on several threads do not disturb each other.
qint32 invokeDiskutilWithVerb(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, std::optional<QString> &errorMessage);

// The same through a pipe of the caller's.
qint32 invokeDiskutilWithVerb(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, std::optional<QString> &errorMessage,
    ShellPipe &pipe);

// The same, with all that is known of a failed run. Returns std::nullopt for success.
std::optional<DiskutilFailure> runDiskutil(const QString &verb, const QString &arguments,
    DiskutilOutputHandler outputHandler, void *outputHandlerContext, ShellPipe &pipe);

// The message of a run that could not begin, for this errno value.
QString diskutilNotInvokedMessage(const QString &verb, int error);

// How much output is kept to explain a failure, in bytes.
inline constexpr std::size_t diskutilOutputLimit = std::size_t { 16 } * 1024 * 1024;
