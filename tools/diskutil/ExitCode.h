// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The exit status of diskutil. The numbers are an interface: the manual lists them.
enum class ExitCode : int {
    Success = 0,
    ErrorsFound = 1, // verifyVolume found errors, or some remain after repairVolume
    Usage = 2,
    NoSuchDisk = 3,
    NoBlockDevice = 4,
    SystemVolume = 5, // the running system uses it
    InUse = 6, // a partition is mounted, or another device or swap space uses it
    UnknownFormat = 7, // no bundle has a personality of this name
    NotSupported = 8, // the file system cannot be formatted, verified or repaired
    NameRefused = 9,
    SizeOutOfRange = 10,
    ToolMissing = 11,
    ReadOnly = 12,
    UntrustedBundle = 13,
    NotPermitted = 14,
    ServiceUnavailable = 15,
    UnmountRefused = 16,
    MediumChanged = 17,
    ToolFailed = 18, // the file system's own tool could not do its work
    Interrupted = 19,
    MountRefused = 20, // the volume that an erase has made could not be mounted
    NotWholeDisk = 21, // eraseDisk was given a partition
    PassphraseRefused = 22, // it was wrong, or none was given
    DeviceGone = 23, // before anything was written, or while it was verified or repaired
    DeviceUnreadable = 24, // or it cannot be opened; nothing can be said of its volume
};

// Why nothing is done: the exit status and one line for the user.
struct Refusal
{
    ExitCode code;
    QString message;
};
