// SPDX-License-Identifier: MIT
//
// Facts about a block device that any process can read from sysfs and procfs, so that the application and
// diskutil agree on every name without sharing any state. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QString>

#include <optional>
#include <sys/types.h>

struct BlockDeviceFacts
{
    QString bsdName; // disk<sequence number of the whole disk>, with s<partition number> for a partition
    quint64 diskSequence = 0;
    quint32 partitionNumber = 0; // 0 for a whole disk
    qint64 logicalBlockSize = 0; // bytes
};

// The facts of a device node such as /dev/sda1. Returns std::nullopt when it is no block device or has just
// gone.
std::optional<BlockDeviceFacts> readBlockDeviceFacts(const QString &deviceNode);

// The same for the device with this number, if there is one.
std::optional<BlockDeviceFacts> readFactsOfDevice(std::optional<dev_t> device, const SystemRoot &system = {});

// The kernel's name (sda1) of a device node, links followed; empty when it is no block device.
QString kernelDeviceName(const QString &deviceNode, const SystemRoot &system = {});
