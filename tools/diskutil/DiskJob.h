// SPDX-License-Identifier: MIT
//
// The erase of a whole disk: refusals, unmounts, a new partition table, and the erase of its one volume. Main
// thread only.
#pragma once

#include "tools/diskutil/DiskPlan.h"
#include "tools/diskutil/VolumeJob.h"

class DiskJob : public Job
{
    Q_OBJECT

public:
    DiskJob(CommandLine line, JobEnvironment environment);

    void start() override;
    void interrupt(const QString &reason) override;
    void loseReader(const QString &reason) override;
    void mediumChanged(const DADiskRef &disk) override;

private:
    enum class Phase {
        Preparing,
        Unmounting, // the disk service has been asked
        Claiming, // until nothing else has the disk
        Running, // one of the commands
        AwaitingPartition, // until the kernel and the disk service have it
        MakingVolume, // a job of its own
        Restoring, // what was unmounted is mounted again
        Ended,
    };

    struct Unmounted
    {
        Medium medium;
        std::optional<VolumeMount> formerMount;
    };

    void enter(Phase phase);
    void phaseTimedOut();
    void unmountNext();
    void unmountAnswered(const DADissenterRef &dissenter);
    void beginTable();
    void claim();
    void runNextCommand();
    void commandEnded(const ToolEnd &end);
    void awaitPartition();
    void lookForPartition();
    void makeVolume();
    void volumeMade(ExitCode code);
    void abandon(ExitCode code, const QString &complaint); // before anything was written
    void failTable(const QString &reason); // after it
    void restoreNext();
    void finish();

    QString lossText() const; // to be added to why the erase was not completed
    bool isInterrupted() const { return m_outcome == ExitCode::Interrupted; }

    const CommandLine m_line;
    const JobEnvironment m_environment;
    DiskPlan m_plan; // its commands are those that are still to be run

    Phase m_phase = Phase::Preparing;
    QTimer m_phaseTimer; // ends the phase, or one step of it
    QDeadlineTimer m_deadline; // of Claiming and AwaitingPartition
    std::optional<HeldDevice> m_device; // from the last look to the end of the table
    std::deque<Unmounted> m_toUnmount;
    std::deque<Unmounted> m_toRestore;
    std::shared_ptr<void> m_inhibition; // of shutdown and sleep, once a command has written
    bool m_hasRun = false; // the first command
    ExitCode m_outcome = ExitCode::Success;
    std::unique_ptr<VolumeJob> m_volumeJob;
};
