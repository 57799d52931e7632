// SPDX-License-Identifier: MIT
#include "operations/FormatTarget.h"

#include "platform/NoWidgets.h"

const char *formatRefusalKey(const DeviceUse &use, bool isSystemDevice, ProbedContent::Kind content)
{
    if (use.isSwap)
        return QT_TRID_NOOP("FORMAT_REFUSED_SWAP_FMT");
    if (isSystemDevice)
        return QT_TRID_NOOP("FORMAT_REFUSED_SYSTEM_FMT");
    if (use.holders.isEmpty())
        return nullptr;
    switch (content) {
    case ProbedContent::Kind::LvmMember:
        return QT_TRID_NOOP("FORMAT_REFUSED_LVM_FMT");
    case ProbedContent::Kind::RaidMember:
        return QT_TRID_NOOP("FORMAT_REFUSED_RAID_FMT");
    case ProbedContent::Kind::Encrypted:
        return QT_TRID_NOOP("FORMAT_REFUSED_UNLOCKED_FMT");
    case ProbedContent::Kind::Nothing:
    case ProbedContent::Kind::Filesystem:
    case ProbedContent::Kind::Swap:
    case ProbedContent::Kind::Other:
        break;
    }
    return QT_TRID_NOOP("FORMAT_REFUSED_IN_USE_FMT");
}
