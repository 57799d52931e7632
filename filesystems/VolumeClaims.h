// SPDX-License-Identifier: MIT
//
// Which installed bundle serves a file system that the system's probe names (ext4, vfat, ...), and the number
// by which that bundle tells its variants apart. The bundles say so themselves: FSLinuxTypes lists the types
// that they serve, FSProbeOrder ranks them, FSLinuxSubtypes numbers the variants. Any thread.
#pragma once

#include "filesystems/BundleScan.h"
#include "platform/DiskArbitration.h"

#include <QStringList>

#include <vector>

class VolumeClaims
{
public:
    // Reads the bundles of the directories as the catalogue does. What cannot be read claims nothing, and
    // what may not be read claims nothing or what nobody else does.
    static VolumeClaims read(const QStringList &directories, const BundleGuard &guard = {},
        Distrusted distrusted = Distrusted::LeftOut);

    // The claim of the bundle with the lowest probe order that serves the type, of one that may be read if
    // there is one. Returns std::nullopt when none does.
    std::optional<VolumeClaim> find(const QString &type, const QString &version) const;

private:
    struct Variant
    {
        QString type;
        QString version; // empty: any
        qint16 subtype = 0;
    };
    struct BundleClaim
    {
        QString bundleName;
        QStringList types;
        bool isTrusted = true;
        qint64 probeOrder = 0;
        std::vector<Variant> variants;
    };

    static BundleClaim claimOf(const BundleDescription &bundle);

    std::vector<BundleClaim> m_claims; // in the order in which they are looked through
};

// Reads the claims of these directories whenever it is called.
VolumeClaimReader volumeClaimReader(
    QStringList directories, BundleGuard guard = {}, Distrusted distrusted = Distrusted::LeftOut);
