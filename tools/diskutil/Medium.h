// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DiskArbitration.h"

#include <QStringList>

#include <optional>
#include <vector>

// What diskutil needs to know about a medium.
struct Medium
{
    QString bsdName;
    QString deviceNode;
    qint64 size = 0; // bytes
    QString mediaName; // of the disk or partition
    QString kind; // the bundle that serves the volume, or the system's word for it; empty when unknown
    std::optional<qint64> subtype;
    QString volumeName;
    QString mountPoint; // empty when it is not mounted
    bool isWhole = false;
    bool isRemovable = false;
    bool isWritable = false;
    bool isMountable = false;
};

// The medium as the disk service describes it.
Medium readMedium(const DADisk &disk);

// Sorted as a person counts: disk2 before disk10, disk2s1 after disk2.
void sortMedia(std::vector<Medium> &media);

// The table that "list" prints: a heading and one line per medium.
QString listText(const std::vector<Medium> &media);

// What "info" prints.
QString infoText(const Medium &medium);
