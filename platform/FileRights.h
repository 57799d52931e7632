// SPDX-License-Identifier: MIT
//
// A look at files with no more rights than the user at whose wish this process runs as root. Otherwise they
// could ask root what is in folders that are closed to them.
#pragma once

#include "platform/DesktopUser.h"

#include <optional>
#include <sys/types.h>
#include <vector>

// While it lives, what this thread opens or looks at is what the user may open and look at. It changes
// nothing for a process that runs with its user's own rights. One at a time on a thread.
class FileRightsOfUser
{
public:
    explicit FileRightsOfUser(const std::optional<DesktopUser> &user);
    ~FileRightsOfUser();
    FileRightsOfUser(const FileRightsOfUser &) = delete;
    FileRightsOfUser &operator=(const FileRightsOfUser &) = delete;

    // False when the rights could not be taken: then nothing may be looked at.
    bool areTaken() const { return m_areTaken; }

private:
    bool m_hasChanged = false;
    bool m_areTaken = true;
    std::vector<gid_t> m_groups; // root's
};
