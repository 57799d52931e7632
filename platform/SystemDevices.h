// SPDX-License-Identifier: MIT
//
// Which devices are the running system's own. Read from procfs, sysfs, udev and /etc with every call. Any
// thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QString>

enum class SystemUse {
    None,
    Named, // the system is set up to use it, and does not stand on it now
    Current, // the system stands on it
};

// How the running system uses this device or something above it. The system stands on what is mounted in its
// places ("/", "/boot", "/usr" and others, with what is below them) and on swap space in use, with all that
// lies between them and the disk. It is set up to use what /etc/fstab or an automount names for those places,
// swap space in /etc/fstab, and the boot partitions (ESP, XBOOTLDR) of a disk that holds any of it.
SystemUse systemUse(const QString &deviceNode, const SystemRoot &system = {});

// Whether the device is the system's own in either way.
bool isSystemDevice(const QString &deviceNode, const SystemRoot &system = {});

// Whether /etc/fstab has a line for this mount point.
bool isInFstab(const QString &mountPoint, const SystemRoot &system = {});
