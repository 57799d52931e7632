// SPDX-License-Identifier: MIT
//
// Who the user of the session is, and the groups that they belong to. Any thread.
#pragma once

#include <QByteArray>

#include <functional>
#include <optional>
#include <sys/types.h>
#include <vector>

// What a look-up of groups gave.
struct GroupList
{
    int result = -1; // -1: the array was too small, or the look-up failed
    int count = 0; // of the groups that were found
    int error = 0; // errno value of a failure
    std::vector<gid_t> groups; // the caller's array: as many elements as were asked for
};

// Looks up the groups of the user of the session, the process's own group among them, into an array of the
// capacity.
using GroupLookup = std::function<GroupList(int capacity)>;

// The look-up in the system's databases of users and groups.
GroupList lookUpGroupsOfUser(int capacity);

// The same for a login name; a missing one is a failure (ENOENT).
GroupList lookUpGroups(const std::optional<QByteArray> &login, int capacity);

// The login name of the user of the session. A desktop session need not be entered in the system's list of
// logins; there it is the user at whose wish the process runs as root, or else the one that it belongs to.
// Returns std::nullopt when that user has no name.
std::optional<QByteArray> loginName();

// The user at whose wish this process runs as root, as pkexec or sudo names them. Returns std::nullopt for a
// process that runs with its user's own rights.
std::optional<uid_t> invokingUser();
