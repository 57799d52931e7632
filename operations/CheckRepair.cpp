// SPDX-License-Identifier: MIT
//
// Checking and repairing a volume on a worker thread, its output shown as it comes.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/CheckRepairOutputChunk.h"
#include "operations/DiskutilRunner.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// Output is shown at most this often. A chunk is taken in at once; what it changes on screen is shown with
// that of the chunks that follow it within a frame, so that a tool that prints fast is not held up by the
// drawing.
constexpr std::chrono::milliseconds shortestOutputInterval { 16 };

// The tool waits while the window is brought up to date. If that takes long, as on a busy machine, it is done
// so seldom that most of the time is left for the output. The user still sees that the tool is at work.
constexpr int outputIntervalFactor = 8;
constexpr std::chrono::milliseconds longestOutputInterval { 500 };

std::chrono::milliseconds outputIntervalAfter(std::chrono::milliseconds refresh)
{
    return std::clamp(outputIntervalFactor * refresh, shortestOutputInterval, longestOutputInterval);
}

QString verbFor(bool isRepair)
{
    return isRepair ? u"repairVolume"_s : u"verifyVolume"_s;
}

// The output handler's context during one run.
struct CheckRepairContext
{
    const DiskRecord &disk;
    MainThreadRelay &relay;
};

void HandleCheckRepairOutput(void *context, std::size_t length, const char *bytes)
{
    const auto &run = *static_cast<const CheckRepairContext *>(context);
    const CheckRepairOutputChunk chunk { run.disk, bytes, length };
    // The chunk lives on this thread's stack: it is safe because the relay returns only when it has been
    // taken in or never will be.
    run.relay.performAndWait([&chunk] { chunk.disk->delegate->updateCheckRepairOutput(chunk); });
}

// The runner's message, and below it why the tool has refused. The rest of the output is on the Maintenance
// page.
QString withComplaints(const QString &message, const std::optional<OutputBuffer> &output)
{
    const QString complaints = output ? diskutilComplaints(output->bytes()) : QString();
    return complaints.isEmpty() ? message : QString(message + u'\n' + complaints);
}

// Whatever else ends a run says nothing of the volume.
void noteRunEnd(ZorvexDiskManagerDisk &disk, const std::optional<DiskutilFailure> &failure)
{
    FinishedRun run;
    run.isRepair = disk.runningOperation == RunningOperation::Repair;
    if (!failure)
        run.outcome = FinishedRun::Outcome::Clean;
    else if (failure->exitStatus == diskutilFoundErrors)
        run.outcome = FinishedRun::Outcome::Errors;
    run.ended = QTime::currentTime();
    run.took = std::chrono::duration_cast<std::chrono::seconds>(
        std::chrono::steady_clock::now() - disk.operationBegan);
    disk.finishedRun = run;
}

} // namespace

void ZorvexDiskManagerAppDelegate::clickCheckButton(QObject *sender)
{
    clickCheckRepairButton(sender, false);
}

void ZorvexDiskManagerAppDelegate::clickRepairButton(QObject *sender)
{
    clickCheckRepairButton(sender, true);
}

void ZorvexDiskManagerAppDelegate::stopCheck()
{
    if (const DiskRecord disk = selectedDisk(); disk && disk->runningOperation == RunningOperation::Check)
        runningOperations.stopTool(disk);
}

void ZorvexDiskManagerAppDelegate::clickCheckRepairButton(QObject *, bool isRepair)
{
    const DiskRecord disk = selectedDisk();
    if (!disk || (isRepair && hasSelectionJustMoved()))
        return;
    if (disk->checkRepairOutput)
        disk->checkRepairOutput->clear();
    m_outputInterval = shortestOutputInterval;
    beginOperation(disk, isRepair ? RunningOperation::Repair : RunningOperation::Check);

    const std::shared_ptr<ShellPipe> pipe = createPipeFor(disk);
    // The name is taken here: the record belongs to this thread.
    const int error = m_platform.startThread(
        [disk, bsdName = disk->description(), relay = m_relay, pipe, work = isRepair ? &doRepair : &doCheck] {
            work(disk, bsdName, relay, *pipe);
        });
    if (error != 0) {
        errorMessage(diskutilNotInvokedMessage(verbFor(isRepair), error));
        checkRepairFinished(disk);
    }
}

void ZorvexDiskManagerAppDelegate::doCheck(const DiskRecord &disk, const QString &bsdName,
    const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe)
{
    doCheckRepair(disk, bsdName, relay, pipe, false);
}

void ZorvexDiskManagerAppDelegate::doRepair(const DiskRecord &disk, const QString &bsdName,
    const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe)
{
    doCheckRepair(disk, bsdName, relay, pipe, true);
}

void ZorvexDiskManagerAppDelegate::doCheckRepair(const DiskRecord &disk, const QString &bsdName,
    const std::shared_ptr<MainThreadRelay> &relay, ShellPipe &pipe, bool isRepair)
{
    CheckRepairContext context { disk, *relay };
    const std::optional<DiskutilFailure> failure = runDiskutil(
        verbFor(isRepair), u"'/dev/%1'"_s.arg(bsdName), HandleCheckRepairOutput, &context, pipe);
    if (failure) {
        systemLog(u"Error returned by invokeDiskutilWithVerb: %1"_s.arg(failure->code));
        relay->performAndWait([&] { disk->delegate->reportCheckRepairFailure(*disk, *failure, isRepair); });
    }
    relay->perform([disk, failure] {
        noteRunEnd(*disk, failure);
        disk->delegate->checkRepairFinished(disk);
    });
}

// Nothing is known of the volume of a disk that has gone or cannot be read: that is no verdict. Who has
// stopped a run need not be told that it ended.
void ZorvexDiskManagerAppDelegate::reportCheckRepairFailure(
    const ZorvexDiskManagerDisk &disk, const DiskutilFailure &failure, bool isRepair)
{
    if (runningOperations.wasStopped(disk))
        return;
    const QStringList name { nameToShow(getDisplayNameForDisk(disk)) };
    // The disk had a row when the run began.
    if (failure.exitStatus == diskutilDeviceGone || failure.exitStatus == diskutilNoSuchDisk)
        errorMessageWithTitle(formatLocalized(localizedString("DEVICE_GONE_TITLE_FMT"), name),
            localizedString(isRepair ? "DEVICE_GONE_DURING_REPAIR_TEXT" : "DEVICE_GONE_DURING_CHECK_TEXT"));
    else if (failure.exitStatus == diskutilDeviceUnreadable)
        errorMessageWithTitle(formatLocalized(localizedString("DEVICE_UNREADABLE_TITLE_FMT"), name),
            localizedString("DEVICE_UNREADABLE_TEXT"));
    else
        errorMessage(withComplaints(failure.message, disk.checkRepairOutput));
}

void ZorvexDiskManagerAppDelegate::updateCheckRepairOutput(const CheckRepairOutputChunk &chunk)
{
    if (!chunk.disk->checkRepairOutput)
        chunk.disk->checkRepairOutput.emplace();
    chunk.disk->checkRepairOutput->append(chunk.bytes, static_cast<qsizetype>(chunk.length));
    scheduleOutputRefresh();
}

void ZorvexDiskManagerAppDelegate::scheduleOutputRefresh()
{
    if (m_outputRefreshScheduled)
        return;
    m_outputRefreshScheduled = true;
    QTimer::singleShot(m_outputInterval, this, [this] {
        m_outputRefreshScheduled = false;
        QElapsedTimer clock;
        clock.start();
        refreshAfterStateChange();
        m_outputInterval = outputIntervalAfter(std::chrono::milliseconds(clock.elapsed()));
    });
}

void ZorvexDiskManagerAppDelegate::checkRepairFinished(const DiskRecord &disk)
{
    finishOperation(disk);
}
