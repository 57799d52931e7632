// SPDX-License-Identifier: MIT
//
// A machine made of values: sysfs, procfs, /etc and udev's database as files in a temporary folder, and
// device nodes in a table.
#pragma once

#include "platform/SystemRoot.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <map>
#include <sys/types.h>

class FakeSystem
{
public:
    SystemRoot root() const;

    // A whole disk with its node /dev/NAME.
    void addDisk(const QByteArray &name, dev_t number, const QByteArray &sequence);

    // A partition of a disk, with its node.
    void addPartition(
        const QByteArray &disk, const QByteArray &name, dev_t number, const QByteArray &partitionNumber);

    // Says in sysfs that one device is made from another.
    void addHolder(const QByteArray &lower, const QByteArray &upper);

    void addNode(const QByteArray &path, dev_t number);
    void addCharacterNode(const QByteArray &path, dev_t number);
    void addFile(const QByteArray &path, dev_t filesystem);

    // A device's folder in sysfs.
    QByteArray folder(const QByteArray &name) const { return m_folders.at(name); }

    // Adds a line to mountinfo. The number is "8:1", the mount point is escaped as the kernel does.
    void mount(const QByteArray &number, const QByteArray &source, const QByteArray &mountPoint, int id = 30,
        const QByteArray &folderOfIt = "/");

    // Adds the line of a mount on demand.
    void automount(const QByteArray &mountPoint);

    // Says in udev's database what it has found out about a device, such as "ID_FS_UUID_ENC=1234-ABCD".
    void writeProperties(dev_t number, const QByteArrayList &properties);

    void writeMounts(const QByteArray &text);

    // The lines below the heading.
    void writeSwaps(const QByteArray &lines);

    // Writes a file below the root, with the folders that it needs.
    void write(const QByteArray &path, const QByteArray &content);

private:
    void addFolder(const QByteArray &name, const QByteArray &path, dev_t number);

    QTemporaryDir m_folder;
    std::map<QByteArray, QByteArray> m_folders; // in sysfs, by name
    std::map<QByteArray, struct stat> m_files; // by path
    QByteArray m_mounts;
};
