// SPDX-License-Identifier: MIT
//
// What a window has to list, read from the disk service and the kernel by a way of its own: nothing here uses
// the program's reader of the service, its tree or its records.
#pragma once

#include <QDBusConnection>
#include <QStringList>

#include <optional>

class ServiceListing
{
public:
    ServiceListing();
    ~ServiceListing();

    // One line for each medium that is to have a row, from the top: name, device node, size, what it is, the
    // volume's name and where it is mounted. Waits for the answer, and starts the service when it does not
    // run. Nothing when there is no answer.
    std::optional<QStringList> lines() const;

    // The process of the service, 0 while there is none.
    uint serviceProcess() const;

private:
    QDBusConnection m_bus;
};

// A line of lines().
struct ListedMedium
{
    QString name; // disk2s1
    QString node;
    quint64 size = 0;
    bool isWhole = false;
    bool isLeaf = false;
    bool isMountable = false;
    bool isWritable = false;
    QString volumeName;
    QString mountPoint;

    QString line() const;
};
