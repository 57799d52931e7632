// SPDX-License-Identifier: MIT
//
// One erase, verification or repair from its first check to its last line: refusals, unmount, the file
// system's own tools, mount. Main thread only.
#pragma once

#include "platform/DiskArbitration.h"
#include "tools/diskutil/machine.h"
#include "tools/diskutil/MediaList.h"
#include "tools/diskutil/preflight.h"
#include "tools/diskutil/ToolRunner.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>

// How long a job waits. A test waits less.
struct JobLimits
{
    std::chrono::milliseconds newVolume {
        5000
    }; // the disk service notices one within some hundredths of a second
    std::chrono::milliseconds claimStep { 50 };
    std::chrono::milliseconds claim { 5000 }; // what an unmount or a command leaves behind has let go by then
    std::chrono::milliseconds interruptedService { 5000 }; // for the disk service, once the run is to end
};

// What a job works with. All of it outlives the job.
struct JobEnvironment
{
    DASession &session;
    const MediaList &media;
    ToolRunner &tools;
    Machine machine = {};
    JobLimits limits = {};
};

class VolumeJob : public QObject
{
    Q_OBJECT

public:
    VolumeJob(CommandLine line, JobEnvironment environment);

    // Begins. finished() may come before this returns.
    void start();

    // A medium's description has changed.
    void mediumChanged(const DADiskRef &disk);

    // Ends the job as soon as the medium can be left alone. The reason is a few words.
    void interrupt(const QString &reason);

Q_SIGNALS:
    void said(const QString &line);
    void complained(const QString &line); // why something was not done

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
    const JobEnvironment m_environment;
    QTimer m_newVolumeLimit;
    QTimer m_serviceLimit; // runs when the run is to end

    std::vector<FileSystemBundle> m_bundles;
    Medium m_medium;
    DADiskRef m_disk;
    std::optional<DeviceIdentity> m_identity; // of the medium that was looked at
    std::optional<HeldDevice> m_device; // the medium, from the last look to the start of a command
    int m_claimTries = 0;
    BundleTool m_tool; // and its bundle
    FileSystemBundle m_bundle;
    std::deque<ToolCommand> m_commands; // that are still to be run
    ExitCode m_outcome = ExitCode::Success;
    bool m_isRunning = false; // a command
    bool m_isUntouched = true; // no command has been run
    bool m_isInterrupted = false;
    bool m_isMounting = false;
    QString m_newKind; // bundle and subtype that a new volume is made with
    std::optional<qint64> m_newSubtype;
};
