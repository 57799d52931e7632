// SPDX-License-Identifier: MIT
//
// How a medium gets busy and idle again: the one place where a record's operation flags are written.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "ui/OutlineView.h"

#include <QTabWidget>

void ZorvexDiskManagerAppDelegate::beginOperation(const DiskRecord &disk, RunningOperation operation)
{
    const bool isFormat = operation == RunningOperation::Format;
    const bool isCheckOrRepair
        = operation == RunningOperation::Check || operation == RunningOperation::Repair;
    disk->operationInProgress = true;
    runningOperations.begin(disk);
    disk->runningOperation = operation;
    disk->operationBegan = std::chrono::steady_clock::now();
    if (isFormat || isCheckOrRepair)
        disk->finishedRun.reset(); // it would tell of what is there no more
    // The operation shows its own tab, and keeps the other one if that is there already.
    disk->operationInProgressShowFormatTab
        = isFormat || (isCheckOrRepair && rightTabView->indexOf(formatTab) >= 0);
    disk->operationInProgressShowMaintenanceTab
        = isCheckOrRepair || (isFormat && rightTabView->indexOf(maintenanceTab) >= 0);
    refreshAfterStateChange();
}

void ZorvexDiskManagerAppDelegate::finishOperation(const DiskRecord &disk)
{
    disk->operationInProgress = false;
    disk->waitsForAnswer = false;
    runningOperations.finish(disk);
    disk->runningOperation = RunningOperation::None;
    disk->operationInProgressShowFormatTab = false;
    disk->operationInProgressShowMaintenanceTab = false;
    closeQuestion.operationDidFinish();
    refreshAfterStateChange();
}

void ZorvexDiskManagerAppDelegate::setWaitsForAnswer(const DiskRecord &disk, bool waits)
{
    disk->waitsForAnswer = waits;
    m_status.updateActivity();
}

std::shared_ptr<ShellPipe> ZorvexDiskManagerAppDelegate::createPipeFor(const DiskRecord &disk)
{
    std::shared_ptr<ShellPipe> pipe = m_platform.createShellPipe();
    runningOperations.setTool(disk, pipe);
    return pipe;
}

void ZorvexDiskManagerAppDelegate::refreshAfterStateChange()
{
    leftOutlineView->reloadData();
    outlineViewSelectionDidChange();
}
