// SPDX-License-Identifier: MIT
#include "app/startup_rules.h"

#include <algorithm>

#include "platform/NoWidgets.h"

namespace StartupRules {

const QByteArray elevatedArgument = QByteArrayLiteral("-elevated");

const QByteArray lookArgument = QByteArrayLiteral("-look");

bool isElevated(const QByteArrayList &arguments)
{
    return arguments.size() == 2 && arguments.at(1) == elevatedArgument;
}

bool isLook(const QByteArrayList &arguments)
{
    return arguments.size() == 2 && arguments.at(1) == lookArgument;
}

bool hasFailed(const GroupList &list)
{
    return list.result == -1;
}

bool isAdministrator(const GroupList &list)
{
    const auto found = std::min({ list.count, groupCapacity, static_cast<int>(list.groups.size()) });
    const auto end = list.groups.begin() + std::max(found, 0);
    return std::find(list.groups.begin(), end, administratorsGroup) != end;
}

std::optional<StartProblem> problemOf(AuthorizationStatus status)
{
    switch (status) {
    case AuthorizationStatus::Success:
    case AuthorizationStatus::Canceled:
        break;
    case AuthorizationStatus::Denied:
        return StartProblem::Refused;
    case AuthorizationStatus::InteractionNotAllowed:
        return StartProblem::NobodyAsks;
    case AuthorizationStatus::Internal:
        return StartProblem::NoAuthority;
    }
    return std::nullopt;
}

ProblemTexts textsOf(StartProblem problem)
{
    switch (problem) {
    case StartProblem::NobodyAsks:
        return { QT_TRID_NOOP("START_NOBODY_ASKS_TITLE"), QT_TRID_NOOP("START_NOBODY_ASKS_TEXT") };
    case StartProblem::Refused:
        return { QT_TRID_NOOP("START_REFUSED_TITLE"), QT_TRID_NOOP("START_REFUSED_TEXT") };
    case StartProblem::NoAuthority:
        return { QT_TRID_NOOP("START_NO_AUTHORITY_TITLE"), QT_TRID_NOOP("START_NO_AUTHORITY_TEXT") };
    case StartProblem::NoAnswer:
        break;
    }
    return { QT_TRID_NOOP("START_NO_ANSWER_TITLE"), QT_TRID_NOOP("START_NO_ANSWER_TEXT") };
}

} // namespace StartupRules
