// SPDX-License-Identifier: MIT
#include "platform/UserGroups.h"

#include <array>
#include <cerrno>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace {

// Larger than an entry of any database of users.
constexpr std::size_t entrySize = 65536;

std::optional<QByteArray> nameOfUser(uid_t user)
{
    std::vector<char> buffer(entrySize);
    passwd entry = {};
    passwd *found = nullptr;
    getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
    return found ? std::optional<QByteArray>(found->pw_name) : std::nullopt;
}

} // namespace

std::optional<uid_t> invokingUser()
{
    if (geteuid() != 0)
        return std::nullopt;
    for (const char *variable : { "PKEXEC_UID", "SUDO_UID" }) {
        bool isNumber = false;
        const uid_t user = qgetenv(variable).toUInt(&isNumber);
        if (isNumber)
            return user;
    }
    return std::nullopt;
}

std::optional<QByteArray> loginName()
{
    std::array<char, 256> name {};
    if (getlogin_r(name.data(), name.size()) == 0 && name[0] != '\0')
        return QByteArray(name.data());
    return nameOfUser(invokingUser().value_or(getuid()));
}

GroupList lookUpGroups(const std::optional<QByteArray> &login, int capacity)
{
    GroupList list;
    list.groups.resize(static_cast<std::size_t>(capacity));
    list.count = capacity;
    if (!login) {
        list.error = ENOENT;
        return list;
    }
    errno = 0;
    list.result = getgrouplist(login->constData(), getgid(), list.groups.data(), &list.count);
    if (list.result == -1) {
        // The C library does not set errno when the array is too small.
        list.error = list.count > capacity ? ERANGE : errno;
    }
    return list;
}

GroupList lookUpGroupsOfUser(int capacity)
{
    return lookUpGroups(loginName(), capacity);
}
