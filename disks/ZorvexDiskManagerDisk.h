// SPDX-License-Identifier: MIT
//
// The disk record: a snapshot of one medium's description, with the state of the operation that runs on it.
// Main thread only: a worker holds a record, and reads nothing of it.
#pragma once

#include "disks/OutputBuffer.h"
#include "platform/DiskArbitration.h"

#include <QString>
#include <QTime>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

class ZorvexDiskManagerAppDelegate;
class ZorvexDiskManagerDiskListItem;

// What runs on a medium while its operationInProgress is set.
enum class RunningOperation { None, Mount, Unmount, Eject, Format, Check, Repair };

// How the last check or repair of a medium ended.
struct FinishedRun
{
    enum class Outcome { Clean, Errors, Unfinished };

    bool isRepair = false;
    Outcome outcome = Outcome::Unfinished;
    QTime ended; // time of day
    std::chrono::seconds took {};
};

class ZorvexDiskManagerDisk;

// A record, shared by the tree, the outline view and the operation that runs on it; null for none.
using DiskRecord = std::shared_ptr<ZorvexDiskManagerDisk>;

class ZorvexDiskManagerDisk
{
public:
    // A new record with every field zero, false or absent; null when memory is short.
    static DiskRecord alloc() noexcept;

    ZorvexDiskManagerDisk() = default;
    ZorvexDiskManagerDisk(const ZorvexDiskManagerDisk &) = delete;
    ZorvexDiskManagerDisk &operator=(const ZorvexDiskManagerDisk &) = delete;
    ~ZorvexDiskManagerDisk();

    // Drops what the record owns. The disk handle stays.
    void cleanupZorvexDiskManagerDisk();

    // A partial copy: enough to name and place the medium, nothing that drives an operation. Null when memory
    // is short.
    DiskRecord copyWithZone() const;

    // The BSD name, "(null)" when there is none.
    QString description() const;

    // The name of the medium in Linux, such as /dev/sda1; empty when it has none.
    QString deviceNode() const;

    DADiskRef daDisk;
    qint32 removable = 0;
    std::optional<QString> content; // partition type GUID or name
    qint32 whole = 0;
    qint32 leaf = 0; // no partitions below it
    std::optional<QString> bsdName; // the record's identity
    qint32 ejectable = 0;
    qint64 preferred_block_size = 0; // bytes
    std::optional<QUrl> volumePath; // mount point; absent when not mounted
    bool mountable = false;
    bool writable = false;
    bool internal = false;
    std::optional<QString> mediaName;
    std::optional<QString> volumeName;
    std::optional<QString> volumeKind; // name of the bundle that claims the file system
    qint32 subtype = 0; // kept by the information panel
    std::optional<PropertyNumber> mediaSize; // bytes
    ZorvexDiskManagerAppDelegate *delegate = nullptr; // not owned
    bool operationInProgress = false;
    bool waitsForAnswer = false; // the operation goes on when the user has answered a question
    bool operationInProgressShowFormatTab = false;
    bool operationInProgressShowMaintenanceTab = false;
    RunningOperation runningOperation = RunningOperation::None; // for the activity bar
    std::chrono::steady_clock::time_point operationBegan;
    std::optional<FinishedRun> finishedRun; // until the next one begins
    // The node that holds this record, in spite of the name; not owned, null once the medium has gone.
    ZorvexDiskManagerDiskListItem *parent_item = nullptr;
    std::optional<OutputBuffer> checkRepairOutput;
};

// Fills the record from the disk's description. Returns false on success and true when the disk is refused or
// its description is unusable; then the record is untouched, unless only an optional value was of a wrong
// type. When memory is short the record is untouched and the result is false all the same.
bool zorvex_disk_manager_update_disk_description(const DADiskRef &disk, ZorvexDiskManagerDisk &record);
