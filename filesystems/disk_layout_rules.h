// SPDX-License-Identifier: MIT
//
// How a whole disk is divided for one volume. Pure functions, any thread.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

enum class PartitionScheme { Gpt, Mbr };

// The type of a partition, by the scheme of its table.
struct PartitionTypes
{
    QString gpt = QStringLiteral("0FC63DAF-8483-4772-8E79-3D69D8477DE4"); // Linux
    QString mbr = QStringLiteral("83");
};

// Where the one partition lies. Both are whole mebibytes, in bytes.
struct DiskLayout
{
    PartitionScheme scheme = PartitionScheme::Gpt;
    qint64 start = 0;
    qint64 size = 0;
};

namespace DiskLayoutRules {

// The scheme that "GPT" or "MBR" names, in any case. Returns std::nullopt for anything else.
std::optional<PartitionScheme> schemeNamed(const QString &name);

// MBR for removable media, which cameras and televisions read as well, as far as it reaches; GPT for all
// others.
PartitionScheme usualScheme(bool isRemovable, qint64 diskSize);

// One partition on a disk of this size. Returns std::nullopt when there is no room for one, or when the
// scheme does not reach to its end.
std::optional<DiskLayout> layoutOfDisk(PartitionScheme scheme, qint64 diskSize);

// What sfdisk reads. The types have passed isPartitionType().
QByteArray sfdiskScript(const DiskLayout &layout, const PartitionTypes &types);

// Whether the text is a type of the scheme, and nothing more: it becomes part of a script.
bool isPartitionType(PartitionScheme scheme, const QString &text);

} // namespace DiskLayoutRules
