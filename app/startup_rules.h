// SPDX-License-Identifier: MIT
//
// Whether this process may run the interface. Functions of values, any thread.
#pragma once

#include "platform/UserGroups.h"

#include <QByteArrayList>

namespace StartupRules {

constexpr int groupCapacity = 128;
constexpr gid_t administratorsGroup = 80;

// The one argument of the program that was started anew with administrator rights.
extern const QByteArray elevatedArgument;

// Whether the command line, the program's path first, is that of the program started anew: with any other
// number of arguments the word is not looked at.
bool isElevated(const QByteArrayList &arguments);

// Whether the look-up has failed, which is no answer.
bool hasFailed(const GroupList &list);

// Whether the administrators' group is among those that were found; what is beyond the array is not known.
bool isAdministrator(const GroupList &list);

} // namespace StartupRules
