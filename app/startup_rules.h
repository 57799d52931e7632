// SPDX-License-Identifier: MIT
//
// Whether this process may run the interface. Functions of values, any thread.
#pragma once

#include "platform/Authorization.h"
#include "platform/UserGroups.h"

#include <QByteArrayList>

#include <optional>

// Why the program ends without a window, where the user has to be told.
enum class StartProblem {
    NobodyAsks, // no program that asks for passwords runs in the session
    Refused,
    NoAuthority, // the authorisation service cannot be reached
    NoAnswer, // the program runs already, and hangs
};

namespace StartupRules {

constexpr int groupCapacity = 128;
constexpr gid_t administratorsGroup = 80;

// The only argument of the program when it is started again with administrator rights.
extern const QByteArray elevatedArgument;

// Whether the command line, the program's path first, is that of the program started again with administrator
// rights. The argument counts only if it is the only one.
bool isElevated(const QByteArrayList &arguments);

// The only argument of the program when it is started to tell how the user's desktop looks, and nothing else.
extern const QByteArray lookArgument;

// Whether the command line is that of such a start.
bool isLook(const QByteArrayList &arguments);

// Whether the look-up has failed.
bool hasFailed(const GroupList &list);

// Whether the administrators' group is among those that were found; those beyond the array are unknown.
bool isAdministrator(const GroupList &list);

// What the user is told about the answer. Returns std::nullopt when they know: they were granted the right,
// or have closed the question.
std::optional<StartProblem> problemOf(AuthorizationStatus status);

// The keys of a problem's texts: what is the matter, and what can be done.
struct ProblemTexts
{
    const char *title;
    const char *text;
};
ProblemTexts textsOf(StartProblem problem);

} // namespace StartupRules
