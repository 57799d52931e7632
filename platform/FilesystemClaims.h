// SPDX-License-Identifier: MIT
//
// Which installed bundle serves a file system that the system's probe names (ext4, vfat, …), and the number
// by which that bundle tells the variants apart. The bundles say so themselves: FSLinuxTypes lists the types
// they serve, FSProbeOrder ranks them, FSLinuxSubtypes numbers the variants. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class FilesystemClaims
{
public:
    struct Volume
    {
        QString kind; // the bundle's name
        std::optional<qint16> subtype;
    };

    // Looks into these directories; a bundle of one hides a bundle of the same name in a later one.
    explicit FilesystemClaims(QStringList directories);

    // Reads the bundles again where a directory has changed since. Cheap when none has.
    void refresh();

    // The bundle with the lowest probe order that serves the type; nothing when none does.
    std::optional<Volume> find(const QString &type, const QString &version) const;

private:
    struct Subtype
    {
        QString type;
        QString version; // empty: any
        qint16 number = 0;
    };
    struct Claim
    {
        QString bundleName;
        QStringList types;
        qint64 probeOrder = 0;
        std::vector<Subtype> subtypes;
    };

    static std::optional<Claim> readClaim(const QString &bundlePath, const QString &bundleName);

    QStringList m_directories;
    QByteArray m_stamp; // of the directories as they were read
    std::vector<Claim> m_claims; // by probe order
};
