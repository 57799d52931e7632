// SPDX-License-Identifier: MIT
#include "app/Startup.h"

#include "app/startup_rules.h"
#include "platform/SystemLog.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

int number(AuthorizationStatus status)
{
    return static_cast<int>(status);
}

} // namespace

bool mayRunInterface(const QByteArrayList &arguments, const GroupLookup &lookUpGroups)
{
    if (StartupRules::isElevated(arguments))
        return true;
    const GroupList list = lookUpGroups(StartupRules::groupCapacity);
    if (StartupRules::hasFailed(list)) {
        systemLog(u"Error while getting the group list for the current user: %1 (%2) Too bad but "
                  "let's try to elevate privileges by default."_s.arg(
                      errnoText(list.error), QString::number(list.error)));
        return false;
    }
    return StartupRules::isAdministrator(list);
}

void elevate(const QByteArray &program, Authorization &authorization,
    std::function<void(AuthorizationStatus status)> finished)
{
    const auto end = [&authorization, finished = std::move(finished)](AuthorizationStatus status) {
        authorization.free();
        finished(status);
    };
    authorization.create([program, &authorization, end](AuthorizationStatus created) {
        if (created != AuthorizationStatus::Success) {
            systemLog(u"Error while creating AuthorizationRef. Status: %1"_s.arg(number(created)));
            end(created);
            return;
        }
        authorization.copyRights(program, [program, &authorization, end](AuthorizationStatus granted) {
            if (granted != AuthorizationStatus::Success) {
                systemLog(u"AuthorizationCopyRights failed with status: %1"_s.arg(number(granted)));
                end(granted);
                return;
            }
            authorization.executeWithPrivileges(
                program, { StartupRules::elevatedArgument }, [end] { end(AuthorizationStatus::Success); });
        });
    });
}
