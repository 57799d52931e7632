// SPDX-License-Identifier: MIT
#include "tools/diskutil/MediaList.h"

#include <algorithm>

std::vector<Medium> MediaList::media() const
{
    std::vector<Medium> media;
    media.reserve(m_disks.size());
    for (const DADiskRef &disk : m_disks)
        media.push_back(readMedium(*disk));
    return media;
}

DADiskRef MediaList::disk(const QString &bsdName) const
{
    const auto found = std::find_if(m_disks.begin(), m_disks.end(),
        [&bsdName](const DADiskRef &disk) { return readMedium(*disk).bsdName == bsdName; });
    return found == m_disks.end() ? nullptr : *found;
}
