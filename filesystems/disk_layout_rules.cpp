// SPDX-License-Identifier: MIT
#include "filesystems/disk_layout_rules.h"

#include <QRegularExpression>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace DiskLayoutRules {

namespace {

constexpr qint64 mebibyte = qint64 { 1024 } * 1024;

// A table of type MBR counts sectors with 32 bits, and most readers take these for 512 bytes.
constexpr qint64 reachOfMbr = qint64 { 512 } << 32;

// The table comes first, and every block size that a medium has divides a mebibyte. GPT keeps a copy at the
// end.
constexpr qint64 partitionStart = mebibyte;
constexpr qint64 gptCopySize = mebibyte;

} // namespace

std::optional<PartitionScheme> schemeNamed(const QString &name)
{
    if (name.compare("GPT"_L1, Qt::CaseInsensitive) == 0)
        return PartitionScheme::Gpt;
    if (name.compare("MBR"_L1, Qt::CaseInsensitive) == 0)
        return PartitionScheme::Mbr;
    return std::nullopt;
}

PartitionScheme usualScheme(bool isRemovable, qint64 diskSize)
{
    return isRemovable && diskSize <= reachOfMbr ? PartitionScheme::Mbr : PartitionScheme::Gpt;
}

std::optional<DiskLayout> layoutOfDisk(PartitionScheme scheme, qint64 diskSize)
{
    if (scheme == PartitionScheme::Mbr && diskSize > reachOfMbr)
        return std::nullopt;
    const qint64 end = diskSize - (scheme == PartitionScheme::Gpt ? gptCopySize : 0);
    const qint64 size = (end - partitionStart) / mebibyte * mebibyte;
    if (size <= 0)
        return std::nullopt;
    return DiskLayout { scheme, partitionStart, size };
}

QByteArray sfdiskScript(const DiskLayout &layout, const PartitionTypes &types)
{
    const bool isGpt = layout.scheme == PartitionScheme::Gpt;
    return u"label: %1\nstart=%2MiB, size=%3MiB, type=%4\n"_s.arg(isGpt ? u"gpt"_s : u"dos"_s)
        .arg(layout.start / mebibyte)
        .arg(layout.size / mebibyte)
        .arg(isGpt ? types.gpt : types.mbr)
        .toLatin1();
}

bool isPartitionType(PartitionScheme scheme, const QString &text)
{
    static const QRegularExpression guid(
        u"\\A[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}\\z"_s);
    static const QRegularExpression byte(u"\\A[0-9A-Fa-f]{1,2}\\z"_s);
    return (scheme == PartitionScheme::Gpt ? guid : byte).match(text).hasMatch();
}

} // namespace DiskLayoutRules
