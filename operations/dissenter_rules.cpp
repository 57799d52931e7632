// SPDX-License-Identifier: MIT
#include "operations/dissenter_rules.h"

#include "platform/SystemLog.h"

#include <QHash>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace DissenterRules {

namespace {

// Both bits mark a system error number that the service wraps.
constexpr quint32 systemErrorBits = 0xC000;

const QHash<quint32, QString> &statusNames()
{
    static const QHash<quint32, QString> names {
        { static_cast<quint32>(DAReturn::Success), u"kDAReturnSuccess"_s },
        { static_cast<quint32>(DAReturn::Error), u"kDAReturnError"_s },
        { static_cast<quint32>(DAReturn::Busy), u"kDAReturnBusy"_s },
        { static_cast<quint32>(DAReturn::BadArgument), u"kDAReturnBadArgument"_s },
        { static_cast<quint32>(DAReturn::ExclusiveAccess), u"kDAReturnExclusiveAccess"_s },
        { static_cast<quint32>(DAReturn::NoResources), u"kDAReturnNoResources"_s },
        { static_cast<quint32>(DAReturn::NotFound), u"kDAReturnNotFound"_s },
        { static_cast<quint32>(DAReturn::NotMounted), u"kDAReturnNotMounted"_s },
        { static_cast<quint32>(DAReturn::NotPermitted), u"kDAReturnNotPermitted"_s },
        { static_cast<quint32>(DAReturn::NotPrivileged), u"kDAReturnNotPrivileged"_s },
        { static_cast<quint32>(DAReturn::NotReady), u"kDAReturnNotReady"_s },
        { static_cast<quint32>(DAReturn::NotWritable), u"kDAReturnNotWritable"_s },
        { static_cast<quint32>(DAReturn::Unsupported), u"kDAReturnUnsupported"_s },
    };
    return names;
}

bool wrapsSystemError(const DADissenter &dissenter)
{
    return (dissenter.status & systemErrorBits) == systemErrorBits;
}

} // namespace

bool hasReason(const DADissenter &dissenter)
{
    return dissenter.statusString || statusNames().contains(dissenter.status) || wrapsSystemError(dissenter);
}

QString textOf(const DADissenter &dissenter)
{
    if (dissenter.statusString)
        return *dissenter.statusString;
    const auto name = statusNames().constFind(dissenter.status);
    if (name != statusNames().constEnd())
        return *name;
    if (wrapsSystemError(dissenter))
        return errnoText(static_cast<int>(dissenter.status & ~systemErrorBits));
    return u"<Unknown DAReturn value: %1>"_s.arg(QString::number(dissenter.status, 16).toUpper());
}

} // namespace DissenterRules
