// SPDX-License-Identifier: MIT
#include "operations/RunningOperations.h"

#include "platform/ShellPipe.h"

#include <algorithm>

void RunningOperations::begin(const DiskRecord &disk)
{
    m_runs.push_back({ disk, {}, false });
}

void RunningOperations::finish(const DiskRecord &disk)
{
    std::erase_if(m_runs, [&disk](const Run &run) { return run.disk == disk; });
}

void RunningOperations::setTool(const DiskRecord &disk, const std::shared_ptr<ShellPipe> &pipe)
{
    for (Run &run : m_runs) {
        if (run.disk == disk)
            run.pipe = pipe;
    }
}

std::vector<DiskRecord> RunningOperations::writtenDisks() const
{
    std::vector<DiskRecord> disks;
    for (const Run &run : m_runs) {
        const RunningOperation operation = run.disk->runningOperation;
        if (operation == RunningOperation::Format || operation == RunningOperation::Repair)
            disks.push_back(run.disk);
    }
    return disks;
}

void RunningOperations::stop(Run &run)
{
    run.wasStopped = true;
    if (const std::shared_ptr<ShellPipe> pipe = run.pipe.lock())
        pipe->stop();
}

void RunningOperations::stopTool(const DiskRecord &disk)
{
    for (Run &run : m_runs) {
        if (run.disk == disk)
            stop(run);
    }
}

void RunningOperations::stopTools()
{
    for (Run &run : m_runs)
        stop(run);
}

bool RunningOperations::wasStopped(const ZorvexDiskManagerDisk &disk) const
{
    return std::any_of(m_runs.begin(), m_runs.end(),
        [&disk](const Run &run) { return run.disk.get() == &disk && run.wasStopped; });
}
