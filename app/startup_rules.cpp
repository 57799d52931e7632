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

} // namespace StartupRules
