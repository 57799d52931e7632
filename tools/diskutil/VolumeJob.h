// SPDX-License-Identifier: MIT
//
// One erase, verification or repair from its first check to its last line: refusals, unmount, the file
// system's own tools, mount. Main thread only.
#pragma once

#include "platform/DiskArbitration.h"
#include "tools/diskutil/JobPlan.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>

// How long a job waits.
struct JobLimits
{
    // What an unmount or a command leaves behind lets go of the device within this time.
    std::chrono::milliseconds claim { 5000 };
    std::chrono::milliseconds claimStep { 50 };

    // The disk service notices a new volume within some hundredths of a second.
    std::chrono::milliseconds newVolume { 5000 };

    // For an answer of the disk service once the run has been interrupted. Until then there is no limit.
    std::chrono::milliseconds interruptedService { 5000 };
};

// What a job works with. It all outlives the job.
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
    VolumeJob(Operation operation, CommandLine line, JobEnvironment environment);

    // Begins. finished() may be emitted before this returns.
    void start();

    // Ends the job as soon as nothing is at work on the medium, and mounts again what can be mounted. The
    // reason is a few words. May be called from within a slot of said().
    void interrupt(const QString &reason);

    // Tells that a medium's description has changed.
    void mediumChanged(const DADiskRef &disk);

Q_SIGNALS:
    // A line of the job's course, and one that says why something was not done.
    void said(const QString &line);
    void complained(const QString &line);

    // Emitted once.
    void finished(ExitCode code);

private:
    enum class Phase {
        Preparing,
        Unmounting, // the disk service has been asked
        Claiming, // until nothing else has the device
        Running, // one of the commands
        AwaitingVolume, // until the disk service describes the volume that an erase has made
        Mounting, // the disk service has been asked
        Ended,
    };

    void enter(Phase phase);
    void phaseTimedOut();
    void unmount();
    void unmountAnswered(const DADissenterRef &dissenter);
    void claimForNextCommand();
    void claim();
    void runNextCommand();
    void commandStarted();
    void commandEnded(const ToolEnd &end);
    void judge(const ToolEnd &end);
    void conclude();
    void awaitNewVolume();
    void mount();
    void mountAnswered(const DADissenterRef &dissenter);
    void reportPlaceOutOfReach(const QString &mountPoint);
    void giveServiceUp();
    void finish();

    bool isInterrupted() const { return m_outcome == ExitCode::Interrupted; }
    bool isOldVolumeLost() const { return m_operation == Operation::Erase && m_hasRun; }
    QString operationText() const;
    QString lossText() const; // to be added to why an erase was not completed

    const Operation m_operation;
    const CommandLine m_line;
    const JobEnvironment m_environment;
    JobPlan m_plan; // its commands are those that are still to be run

    Phase m_phase = Phase::Preparing;
    QTimer m_phaseTimer; // ends the phase, or one step of it
    QDeadlineTimer m_deadline; // of Claiming; of AwaitingVolume, mounts that are tried meanwhile included
    std::optional<HeldDevice> m_device; // from the last look to the start of a command

    bool m_isUnmounted = false; // by this job
    bool m_hasRun = false; // at least one command
    ExitCode m_outcome = ExitCode::Success;
};
