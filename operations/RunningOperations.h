// SPDX-License-Identifier: MIT
//
// The operations that run, each with the tool that does its work. A medium that is pulled meanwhile leaves
// the tree, but not this list. Main thread only.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"

#include <memory>
#include <vector>

class ShellPipe;

class RunningOperations
{
public:
    void begin(const DiskRecord &disk);
    void finish(const DiskRecord &disk);

    // The operation on the disk goes on with a tool.
    void setTool(const DiskRecord &disk, const std::shared_ptr<ShellPipe> &pipe);

    // The media that are being repaired or formatted.
    std::vector<DiskRecord> writtenDisks() const;

    // Tells the tool of the disk to end, or each tool.
    void stopTool(const DiskRecord &disk);
    void stopTools();

    // Whether the disk's tool was told to end.
    bool wasStopped(const ZorvexDiskManagerDisk &disk) const;

private:
    struct Run
    {
        DiskRecord disk;
        std::weak_ptr<ShellPipe> pipe; // empty where no tool runs
        bool wasStopped = false;
    };

    static void stop(Run &run);

    std::vector<Run> m_runs;
};
