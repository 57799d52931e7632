// SPDX-License-Identifier: MIT
#include "platform/FileRights.h"

#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr auto noChange = static_cast<uid_t>(-1);

// For this thread; the C library's call is for all of them.
bool setGroups(const std::vector<gid_t> &groups)
{
    return syscall(SYS_setgroups, groups.size(), groups.data()) == 0;
}

// These calls return the former number, whether they have changed it or not.
bool setFileUser(uid_t user, gid_t group)
{
    setfsgid(group);
    setfsuid(user);
    return static_cast<uid_t>(setfsuid(noChange)) == user && static_cast<gid_t>(setfsgid(noChange)) == group;
}

} // namespace

FileRightsOfUser::FileRightsOfUser(const std::optional<DesktopUser> &user)
{
    if (!user)
        return;
    m_groups.resize(static_cast<std::size_t>(getgroups(0, nullptr)));
    m_areTaken = user->isKnown()
        && getgroups(static_cast<int>(m_groups.size()), m_groups.data()) == static_cast<int>(m_groups.size());
    m_hasChanged = m_areTaken;
    m_areTaken = m_areTaken && setGroups(user->groups) && setFileUser(user->user, user->group);
}

FileRightsOfUser::~FileRightsOfUser()
{
    if (!m_hasChanged)
        return;
    // Root is needed to become root's group again, and to have its groups.
    setfsuid(geteuid());
    setfsgid(getegid());
    setGroups(m_groups);
}
