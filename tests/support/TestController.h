// SPDX-License-Identifier: MIT
//
// The controller with its real window on a platform that a test holds in its hands: media in memory, a mount
// table made of values, a desktop that remembers what it was asked, and a shell that runs what the test says.
#pragma once

#include "app/ZorvexDiskManagerAppDelegate.h"
#include "platform/SystemLog.h"
#include "tests/support/MemoryDiskSession.h"
#include "tests/support/TestMountTable.h"

#include <QAction>
#include <QFile>
#include <QMainWindow>
#include <QTemporaryDir>

#include <mutex>

class TestWorkspace : public Workspace
{
public:
    void openInFileManager(const QString &path, Completion completion) override;
    void openDocument(const QString &path, Completion completion) override;
    void findFolderAccess(const QString &path, Completion completion) override;

    bool succeeds = true;
    bool isFolderOpen = true;
    QStringList folders;
    QStringList documents;
};

// Lines of the system log while it lives. Any thread may log.
class LogCapture
{
public:
    LogCapture();
    QStringList lines() const;
    void clear();

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
    SystemLogRedirection m_redirection;
};

// A medium with every key well formed. A partition is described by the name that it is given.
MemoryDiskRef makeDisk(const QString &bsdName);
MemoryDiskRef makePartition(const QString &bsdName, qint64 offset, const QString &volumeName = {});
MemoryDiskRef makeMountedVolume(); // disk2s1, "DATA" with NTFS, mounted at /media/DATA
void setMounted(const MemoryDiskRef &disk, const QString &path); // an empty path for unmounted

// A bundle with one personality of this name that can do everything; further keys of it as XML.
void writeWholeBundle(const QString &directory, const QString &name, const QString &personality,
    const QByteArray &keysXml = {});

// Clicks the button of the sheet that has this return code.
void press(const AlertSheet *sheet, int returnCode);

// A bundle folder with this information dictionary (the XML between <dict> and </dict>) in a directory.
void writeBundle(const QString &directory, const QString &name, const QByteArray &dictionaryXml);

class TestController
{
public:
    // The localization is what the user prefers, such as "en" or "ar".
    explicit TestController(const QString &localization = QStringLiteral("en"));
    ~TestController();

    // Shows the window and finishes the launch; what is to be there at launch is set up before.
    void launch();

    // Adds the disk and returns its record as the outline view has it, null when it was refused.
    DiskRecord add(const MemoryDiskRef &disk);
    DiskRecord recordOf(const QString &bsdName) const;
    QStringList rowNames() const; // BSD names, from the top
    void select(const QString &bsdName);

    // Mounts the volume there, before it is added or told as changed; bytes are free on it.
    void mount(const MemoryDiskRef &volume, const QString &path, qint64 freeSpace);

    QAction *action(const QString &name) const; // of the window's menus

    // Handles the events that wait, such as the layout of a page that was just chosen; waits for none.
    static void handlePostedEvents();

    // The sheets that are open on the window, oldest first.
    QList<AlertSheet *> sheets() const;

    // Runs this shell script in the place of the tool. Inside, $dir is a folder to leave files in.
    void setDiskutilScript(const QByteArray &script);
    QByteArray fileFromScript(const QString &name) const;
    // Lets this many scripts that wait with "read go <&3" go on. They also do when the test is over.
    void letScriptsGoOn(int count = 1);

    QTemporaryDir filesystems; // System and Library inside are the two bundle directories
    QString systemDirectory() const { return filesystems.filePath(QStringLiteral("System")); }
    QString localDirectory() const { return filesystems.filePath(QStringLiteral("Library")); }

    LogCapture log;
    MemoryDiskService service;
    std::shared_ptr<TestMountTable> mountTable = std::make_shared<TestMountTable>();
    std::shared_ptr<TestWorkspace> workspace = std::make_shared<TestWorkspace>();
    QStringList absentTools; // programs that the system does not have
    QHash<QString, DeviceUse> deviceUses; // by device node
    QHash<QString, DeviceIdentity> deviceIdentities; // by device node

    // What stands in for '/usr/sbin/diskutil' in the shell's line; empty for the real tool.
    QString diskutil;

    // Makes another controller than the plain one.
    std::function<std::unique_ptr<ZorvexDiskManagerAppDelegate>(const ApplicationPlatform &)> makeController;

    ApplicationPlatform &platform() { return m_platform; } // until the controller is made by launch()
    ZorvexDiskManagerAppDelegate &controller() { return *m_controller; }
    QMainWindow &window() { return *m_window; }

    // Loads the window without finishing the launch; launch() does it by itself.
    void load();

private:
    QTemporaryDir m_scriptFolder;
    QFile m_scriptGate; // a named pipe that is open for both directions, so that no side waits to open it
    ApplicationPlatform m_platform;
    std::unique_ptr<ZorvexDiskManagerAppDelegate> m_controller;
    std::unique_ptr<QMainWindow> m_window;
};
