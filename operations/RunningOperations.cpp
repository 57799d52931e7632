// SPDX-License-Identifier: MIT
#include "operations/RunningOperations.h"

#include "platform/ShellPipe.h"

void RunningOperations::begin(const DiskRecord &disk)
{
    m_runs.push_back({ disk, {} });
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

void RunningOperations::stopTools()
{
    for (const Run &run : m_runs) {
        if (const std::shared_ptr<ShellPipe> pipe = run.pipe.lock())
            pipe->stop();
    }
}
