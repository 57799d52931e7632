// SPDX-License-Identifier: MIT
#pragma once

#include "tools/diskutil/Medium.h"

#include <vector>

// The media that a session has reported and not taken back.
class MediaList
{
public:
    void add(const DADiskRef &disk) { m_disks.push_back(disk); }
    void remove(const DADiskRef &disk) { std::erase(m_disks, disk); }

    // All of them as the disk service describes them at this moment.
    std::vector<Medium> media() const;

    // The medium of this BSD name; null when there is none.
    DADiskRef disk(const QString &bsdName) const;

private:
    std::vector<DADiskRef> m_disks;
};
