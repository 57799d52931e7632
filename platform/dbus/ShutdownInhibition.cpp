// SPDX-License-Identifier: MIT
#include "platform/ShutdownInhibition.h"

#include "platform/dbus/PendingReply.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>

using namespace Qt::Literals::StringLiterals;

namespace {

// Ends the inhibition with itself, also one that is granted only then.
struct Inhibition : QObject
{
    QDBusUnixFileDescriptor descriptor;
};

} // namespace

std::shared_ptr<void> inhibitShutdown(const QString &reason)
{
    auto inhibition = std::make_shared<Inhibition>();
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s,
        u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
    call << u"shutdown:sleep"_s << u"Zorvex Disk Manager"_s << reason << u"block"_s;
    call.setAutoStartService(false);
    Inhibition *const granted = inhibition.get();
    onReply(QDBusConnection::systemBus().asyncCall(call), granted, [granted](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ReplyMessage)
            granted->descriptor = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
    });
    return inhibition;
}
