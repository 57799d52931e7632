// SPDX-License-Identifier: MIT
//
// One erase, verification or repair from its first check to its last line: refusals, unmount, the file
// system's own tools, mount. Main thread only.
#pragma once

#include "platform/DeviceUse.h"
#include "platform/DiskArbitration.h"
#include "tools/diskutil/Console.h"
#include "tools/diskutil/preflight.h"
#include "tools/diskutil/ToolProcess.h"

#include <QObject>
#include <QTimer>

#include <deque>

// The media of a session as they are reported.
class MediaList
{
public:
    void add(const DADiskRef &disk) { m_disks.push_back(disk); }
    void remove(const DADiskRef &disk) { std::erase(m_disks, disk); }
    std::vector<Medium> media() const;
    DADiskRef disk(const QString &bsdName) const;

private:
    std::vector<DADiskRef> m_disks;
};

class VolumeJob : public QObject
{
    Q_OBJECT

public:
    VolumeJob(CommandLine line, DASession &session, const MediaList &media, Console &console);

    // Begins; finished() comes later.
    void start();

    // A medium's description has changed.
    void mediumChanged(const DADiskRef &disk);

Q_SIGNALS:
    void finished(ExitCode code);

private:
    std::optional<Refusal> prepare();
    std::optional<Refusal> prepareTool(const PersonalityChoice &choice);
    void unmount();
    void runNextCommand();
    std::optional<Refusal> refusalOfHandOver() const;
    void handOver();
    void commandEnded(const ToolEnd &end);
    void judge(const ToolEnd &end);
    void interrupt(const QString &reason);
    void giveServiceUp();
    QString lossText() const; // to be added to why an erase did not come to its end
    void awaitNewVolume();
    bool isNewVolumeKnown() const;
    void mount();
    void conclude();
    void finish();
    QString verbNoun() const;

    const CommandLine m_line;
    const Operation m_operation;
    DASession &m_session;
    const MediaList &m_media;
    Console &m_console;
    ToolProcess m_process;
    QTimer m_newVolumeLimit;
    QTimer m_serviceLimit; // runs when the run is to end

    std::vector<FilesystemBundle> m_bundles;
    Medium m_medium;
    DADiskRef m_disk;
    std::optional<DeviceIdentity> m_identity; // of the medium that was looked at
    std::optional<OpenDevice> m_device; // the medium, from the last look to the start of a command
    int m_claimTries = 0;
    BundleTool m_tool; // and its bundle
    FilesystemBundle m_bundle;
    std::deque<ToolCommand> m_commands; // that are still to be run
    ExitCode m_outcome = ExitCode::Success;
    bool m_isRunning = false; // a command
    bool m_isUntouched = true; // no command has been run
    bool m_isInterrupted = false;
    bool m_isMounting = false;
    QString m_newKind; // bundle and subtype that a new volume is made with
    std::optional<qint64> m_newSubtype;
};
