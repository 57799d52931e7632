// SPDX-License-Identifier: MIT
//
// Mounted file systems, and how much room is left on one. Reading a volume's space asks its file system, so
// it takes as long as that takes. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

// One line of the kernel's own table.
struct KernelMount
{
    int id = 0; // no two mounts at a time have the same
    QByteArray source; // such as /dev/sda1
    QByteArray mountPoint;
    quint32 deviceMajor = 0; // 0: the number is the file system's own, and no device's
    quint32 deviceMinor = 0;
    QByteArray type; // such as ext4
};

// The kernel's table; empty when it cannot be read.
std::vector<KernelMount> readKernelMounts(const SystemRoot &system = {});

// Tells two mounted file systems apart.
struct FilesystemID
{
    qint32 first = 0;
    qint32 second = 0;
    friend bool operator==(const FilesystemID &, const FilesystemID &) = default;
};

// One mounted file system as the application is told of it.
struct MountedFilesystem
{
    QByteArray mountedFrom; // /dev/ and the BSD name
    QByteArray mountPoint;
    FilesystemID id;
    // As FSSubType counts; absent where the table does not tell, and then the medium's own data does.
    std::optional<quint32> subtype;
};

class MountTable
{
public:
    virtual ~MountTable() = default;

    // getmntinfo: all mounted file systems of disks.
    virtual std::vector<MountedFilesystem> mountedFilesystems() const = 0;

    // statfs: the identity of the file system that the path leads to. Returns std::nullopt when it cannot be
    // told.
    virtual std::optional<FilesystemID> filesystemID(const QByteArray &path) const = 0;

    // Names in a folder, in the folder's own order. Returns std::nullopt when it cannot be read.
    virtual std::optional<std::vector<QByteArray>> folderEntries(const QByteArray &path) const = 0;

    // getattrlist: the free space in bytes of the volume that the path leads to, with what is kept for the
    // administrator. Returns 0, or an errno value.
    virtual int freeSpace(const QByteArray &path, qint64 *bytes) const = 0;
};

// The running kernel's table.
class KernelMountTable : public MountTable
{
public:
    explicit KernelMountTable(SystemRoot system = {});

    std::vector<MountedFilesystem> mountedFilesystems() const override;
    std::optional<FilesystemID> filesystemID(const QByteArray &path) const override;
    std::optional<std::vector<QByteArray>> folderEntries(const QByteArray &path) const override;
    int freeSpace(const QByteArray &path, qint64 *bytes) const override;

private:
    SystemRoot m_system;
};
