// SPDX-License-Identifier: MIT
#include "platform/UDisksError.h"

#include <QHash>
#include <QRegularExpression>

DADissenterRef dissenterFromBusError(const QString &name, const QString &message)
{
    static const QString prefix = QStringLiteral("org.freedesktop.UDisks2.Error.");
    static const QHash<QString, DAReturn> statuses {
        { prefix + QStringLiteral("DeviceBusy"), DAReturn::Busy },
        { prefix + QStringLiteral("AlreadyMounted"), DAReturn::Busy },
        { prefix + QStringLiteral("AlreadyUnmounting"), DAReturn::Busy },
        { prefix + QStringLiteral("MountedByOtherUser"), DAReturn::NotPrivileged },
        { prefix + QStringLiteral("NotMounted"), DAReturn::NotMounted },
        { prefix + QStringLiteral("NotAuthorized"), DAReturn::NotPrivileged },
        { prefix + QStringLiteral("NotAuthorizedCanObtain"), DAReturn::NotPrivileged },
        { prefix + QStringLiteral("NotAuthorizedDismissed"), DAReturn::NotPrivileged },
        { prefix + QStringLiteral("NotSupported"), DAReturn::Unsupported },
        { prefix + QStringLiteral("OptionNotPermitted"), DAReturn::NotPermitted },
    };
    // The service has no error of its own for a file system that the machine cannot mount, only the words of
    // the library that it mounts with.
    static const QRegularExpression cannotMount(
        QStringLiteral("Filesystem type .* not configured in kernel|unknown filesystem type"));
    static const QRegularExpression libraryPrefix(QStringLiteral("^GDBus\\.Error:[^ ]+: "));
    QString text = message;
    text.remove(libraryPrefix);
    text = text.trimmed();
    std::optional<QString> statusString;
    if (!text.isEmpty())
        statusString = text;
    const DAReturn status = statuses.value(name, DAReturn::Error);
    const bool isUnsupported = status == DAReturn::Error && cannotMount.match(text).hasMatch();
    return makeDissenter(isUnsupported ? DAReturn::Unsupported : status, statusString);
}
