// SPDX-License-Identifier: MIT
//
// How device nodes, device numbers and mounts lead to the folders of block devices in sysfs. Any thread.
#pragma once

#include "platform/MountTable.h"
#include "platform/SystemRoot.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <sys/types.h>

// The number of a block device's node, links followed. Returns std::nullopt for anything else.
std::optional<dev_t> blockDeviceNumber(const QByteArray &node, const SystemRoot &system);

// The block device that a file system is mounted from. Returns std::nullopt for a file system without one.
std::optional<dev_t> mountedDevice(const KernelMount &mount, const SystemRoot &system);

// The mount that this path leads to, or that the open file is on where the path is empty. It triggers no
// automount and asks no server. Returns std::nullopt when it cannot be told.
std::optional<KernelMount> mountOf(int file, const QByteArray &path, const SystemRoot &system);

// The folder of a block device, links resolved; empty when there is no such device.
QByteArray sysfsFolder(std::optional<dev_t> device, const SystemRoot &system);

// The folder that is one above.
QByteArray folderAbove(const QByteArray &folder);

// The device's name in the kernel. For a node in /dev, each "!" in it stands for a "/".
QByteArray nameOfFolder(const QByteArray &folder);

// The content of a small file, without the line end; empty when it cannot be read.
QByteArray sysfsText(const QByteArray &path);
