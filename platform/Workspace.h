// SPDX-License-Identifier: MIT
//
// The desktop around the program: its file manager and its document viewer. Main thread; no call waits.
#pragma once

#include <QString>

#include <functional>

class Workspace
{
public:
    // Runs on the main thread, later, with whether the desktop took the request.
    using Completion = std::function<void(bool success)>;

    virtual ~Workspace() = default;
    virtual void openInFileManager(const QString &path, Completion completion) = 0;
    virtual void openDocument(const QString &path, Completion completion) = 0;

    // Whether the user at the desktop may look into the folder, instead of whether a request was taken.
    virtual void findFolderAccess(const QString &path, Completion completion) = 0;
};

// The desktop that the user sits at, also where this process runs as root: the file manager on the bus of
// their session, then xdg-open.
class DesktopWorkspace : public Workspace
{
public:
    void openInFileManager(const QString &path, Completion completion) override;
    void openDocument(const QString &path, Completion completion) override;
    void findFolderAccess(const QString &path, Completion completion) override;
};
