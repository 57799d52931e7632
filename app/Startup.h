// SPDX-License-Identifier: MIT
//
// What the program does first: it decides whether this process may run the interface, and starts the program
// again with administrator rights if it may not.
#pragma once

#include "platform/Authorization.h"
#include "platform/UserGroups.h"

#include <QByteArrayList>

#include <functional>

// Whether the process with this command line, the program's path first, may run the interface. Any thread.
bool mayRunInterface(const QByteArrayList &arguments, const GroupLookup &lookUpGroups);

// Asks for the administrator's right and starts the program at the path as root. Calls finished once, in
// every case, after the authorisation session has ended, with the answer that ended it. Main thread; the
// authorization must live until then.
void elevate(const QByteArray &program, Authorization &authorization,
    std::function<void(AuthorizationStatus status)> finished);
