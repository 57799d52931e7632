// SPDX-License-Identifier: MIT
//
// What a block device is used for, and whether a device node still leads to the medium that it led to before.
// Read from sysfs and procfs with every call. Any thread.
#pragma once

#include "platform/FileDescriptor.h"
#include "platform/SystemRoot.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

struct DeviceUse
{
    QStringList mountPoints; // as this process sees them
    QStringList holders; // kernel names of devices that are made from this one, such as dm-0 or loop0
    bool isSwap = false;
};

// How the device itself is used, without its partitions. Unused when it is no block device.
DeviceUse readDeviceUse(const QString &deviceNode, const SystemRoot &system = {});

// Whether a file system is mounted, or swap space in use, on the device, on a partition of it, or on anything
// that is made from them: logical volumes, arrays, loop devices.
bool carriesMount(const QString &deviceNode, const SystemRoot &system = {});

// The device nodes of a whole disk's partitions; none for a partition.
QStringList partitionNodes(const QString &deviceNode, const SystemRoot &system = {});

struct DeviceIdentity
{
    quint64 deviceNumber = 0;
    quint64 diskSequence = 0; // of the whole disk; a changed medium has another one
    quint64 start = 0; // of the partition on the disk, in 512-byte sectors
    quint64 size = 0; // in 512-byte sectors
    friend bool operator==(const DeviceIdentity &, const DeviceIdentity &) = default;
};

// Returns std::nullopt when the node leads to no block device.
std::optional<DeviceIdentity> readDeviceIdentity(const QString &deviceNode, const SystemRoot &system = {});

// Who claims a device for the time that a program works on it: the program, or the process that starts it.
enum class Claimant { Program, ThisProcess };

// A block device that is held open for reading. While it is held, its number is given to no other medium.
class OpenDevice
{
public:
    // The node must be the device's own, no link to it.
    explicit OpenDevice(const QString &deviceNode);

    // The identity of the open device, even if its node leads to another one by now. Returns std::nullopt
    // when the device could not be opened.
    std::optional<DeviceIdentity> identity() const;

    // Why it could not be opened, an errno value; 0 when it is open.
    int openError() const { return m_openError; }

    // Locks the device (flock) as long as this object, or a program that has inherited its descriptors, is
    // there, for itself, and the disk that a partition is on together with others; with ThisProcess, it is
    // claimed as well. Returns 0, or an errno value. EWOULDBLOCK and EBUSY say that somebody else has the
    // lock, or has claimed the device, a part of it or its disk: a mount in any namespace, a device made from
    // it, swap space, a program that is at work on it. May be called again, also with the other claimant.
    int take(Claimant claimant);

    // What a program inherits so that lock and claim live as long as it does.
    std::vector<int> descriptors() const;

    // Whether its first and its last block can be read from the device itself. Takes as long as the device
    // takes.
    bool isReadable() const;

private:
    int lockDisk();

    FileDescriptor m_device; // has the lock
    int m_openError = 0;
    FileDescriptor m_disk; // that the partition is on; has a lock that is shared
    FileDescriptor m_claim;
};

// Makes udev look at the device again. It looks by itself when a writer closes the device, but misses a
// writer that closes it while it is still looking because of an earlier one. Needs the administrator's
// rights.
void announceChange(const QString &deviceNode);
