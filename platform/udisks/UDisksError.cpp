// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksError.h"

#include <QDBusError>
#include <QHash>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

DADissenterRef dissenterFromBusError(const QString &name, const QString &message)
{
    static const QString prefix = u"org.freedesktop.UDisks2.Error."_s;
    static const QHash<QString, DAReturn> statuses {
        { prefix + u"DeviceBusy"_s, DAReturn::Busy },
        { prefix + u"AlreadyMounted"_s, DAReturn::Busy },
        { prefix + u"AlreadyUnmounting"_s, DAReturn::Busy },
        { prefix + u"MountedByOtherUser"_s, DAReturn::NotPrivileged },
        { prefix + u"NotMounted"_s, DAReturn::NotMounted },
        { prefix + u"NotAuthorized"_s, DAReturn::NotPrivileged },
        { prefix + u"NotAuthorizedCanObtain"_s, DAReturn::NotPrivileged },
        { prefix + u"NotSupported"_s, DAReturn::Unsupported },
        { prefix + u"OptionNotPermitted"_s, DAReturn::NotPermitted },
        // The object has gone, or is just being looked at again and has lost this interface until then.
        { QDBusError::errorString(QDBusError::UnknownObject), DAReturn::NotFound },
        { QDBusError::errorString(QDBusError::UnknownInterface), DAReturn::NotFound },
        { QDBusError::errorString(QDBusError::UnknownMethod), DAReturn::NotFound },
    };
    // The service has no error of its own for a file system that the machine cannot mount, only the message
    // of the library that mounts it.
    static const QRegularExpression cannotMount(
        u"Filesystem type .* not configured in kernel|unknown filesystem type"_s);
    static const QRegularExpression libraryPrefix(u"^GDBus\\.Error:[^ ]+: "_s);
    QString text = message;
    text.remove(libraryPrefix);
    text = text.trimmed();
    std::optional<QString> statusString;
    if (!text.isEmpty())
        statusString = text;
    if (name == prefix + "NotAuthorizedDismissed"_L1)
        return makeDeclinedDissenter(statusString);
    const DAReturn status = statuses.value(name, DAReturn::Error);
    const bool isUnsupported = status == DAReturn::Error && cannotMount.match(text).hasMatch();
    return makeDissenter(isUnsupported ? DAReturn::Unsupported : status, statusString);
}
