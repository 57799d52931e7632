// SPDX-License-Identifier: MIT
//
// The answer to an asynchronous call over the bus. The thread of the context.
#pragma once

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

// Runs the function once, later, with the reply to the call, which can be an error, unless the context goes
// first.
template <typename Function> void onReply(const QDBusPendingCall &call, QObject *context, Function function)
{
    auto *watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, context, [watcher, function = std::move(function)] {
            watcher->deleteLater();
            function(watcher->reply());
        });
}
