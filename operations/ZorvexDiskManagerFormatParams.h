// SPDX-License-Identifier: MIT
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "filesystems/ZorvexDiskManagerFSBundle.h"
#include "operations/FormatTarget.h"

#include <QString>

#include <memory>
#include <optional>

class MainThreadRelay;

// What one format operation carries from the button through the confirmation, the worker and the steps after
// it. It keeps the record of its disk alive, even when the disk has gone meanwhile. Written on the main
// thread before the worker starts.
class ZorvexDiskManagerFormatParams
{
public:
    ZorvexDiskManagerAppDelegate *delegate = nullptr; // not owned
    DiskRecord disk;
    FilesystemBundleRef filesystem;
    FormatTarget target; // as the question showed it
    QString volumeLabel; // for the formatter
    std::shared_ptr<MainThreadRelay> callerRunLoop;
    std::optional<QString> postFormatLabel; // for the rename that follows; absent when none does
};
