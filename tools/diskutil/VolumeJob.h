// SPDX-License-Identifier: MIT
//
// One erase, verification or repair from its first check to its last line: refusals, unmount, the file
// system's own tools, mount. Main thread only.
#pragma once

#include "tools/diskutil/Job.h"
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

class VolumeJob : public Job
{
    Q_OBJECT

public:
    // A job that is a part of another leaves the first and the last line to that one.
    enum class Telling { Everything, PartOfAnotherJob };

    VolumeJob(Operation operation, CommandLine line, JobEnvironment environment,
        Telling telling = Telling::Everything);

    void start() override;
    void interrupt(const QString &reason) override;
    void loseReader(const QString &reason) override;
    void mediumChanged(const DADiskRef &disk) override;

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
    void reportRefusedMount(const DADissenterRef &dissenter);
    void reportOtherPlace(const QString &mountPoint);
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
    const Telling m_telling;
    JobPlan m_plan; // its commands are those that are still to be run

    Phase m_phase = Phase::Preparing;
    QTimer m_phaseTimer; // ends the phase, or one step of it
    QDeadlineTimer m_deadline; // of Claiming; of AwaitingVolume, mounts that are tried meanwhile included
    std::optional<HeldDevice> m_device; // from the last look before the first command to the end of the last

    std::shared_ptr<void> m_inhibition; // of shutdown and sleep, while a command writes
    bool m_isUnmounted = false; // by this job
    bool m_hasRun = false; // at least one command
    ExitCode m_outcome = ExitCode::Success;
};
