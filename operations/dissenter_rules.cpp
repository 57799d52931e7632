// SPDX-License-Identifier: MIT
#include "operations/dissenter_rules.h"

#include "platform/SystemLog.h"

#include <QHash>

#include "platform/no_widgets.h"

namespace DissenterRules {

namespace {

// Both bits mark a system error number that the service wraps.
constexpr quint32 systemErrorBits = 0xC000;

} // namespace

QString textOf(const DADissenter &dissenter)
{
    static const QHash<quint32, QString> names {
        { static_cast<quint32>(DAReturn::Success), QStringLiteral("kDAReturnSuccess") },
        { static_cast<quint32>(DAReturn::Error), QStringLiteral("kDAReturnError") },
        { static_cast<quint32>(DAReturn::Busy), QStringLiteral("kDAReturnBusy") },
        { static_cast<quint32>(DAReturn::BadArgument), QStringLiteral("kDAReturnBadArgument") },
        { static_cast<quint32>(DAReturn::ExclusiveAccess), QStringLiteral("kDAReturnExclusiveAccess") },
        { static_cast<quint32>(DAReturn::NoResources), QStringLiteral("kDAReturnNoResources") },
        { static_cast<quint32>(DAReturn::NotFound), QStringLiteral("kDAReturnNotFound") },
        { static_cast<quint32>(DAReturn::NotMounted), QStringLiteral("kDAReturnNotMounted") },
        { static_cast<quint32>(DAReturn::NotPermitted), QStringLiteral("kDAReturnNotPermitted") },
        { static_cast<quint32>(DAReturn::NotPrivileged), QStringLiteral("kDAReturnNotPrivileged") },
        { static_cast<quint32>(DAReturn::NotReady), QStringLiteral("kDAReturnNotReady") },
        { static_cast<quint32>(DAReturn::NotWritable), QStringLiteral("kDAReturnNotWritable") },
        { static_cast<quint32>(DAReturn::Unsupported), QStringLiteral("kDAReturnUnsupported") },
    };
    if (dissenter.statusString)
        return *dissenter.statusString;
    const auto name = names.constFind(dissenter.status);
    if (name != names.constEnd())
        return *name;
    if ((dissenter.status & systemErrorBits) == systemErrorBits)
        return errnoText(static_cast<int>(dissenter.status & ~systemErrorBits));
    return QStringLiteral("<Unknown DAReturn value: %1>")
        .arg(QString::number(dissenter.status, 16).toUpper());
}

} // namespace DissenterRules
