// SPDX-License-Identifier: MIT
//
// What is asked before the window closes: a tool that writes is not stopped by accident.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"

#include <QMainWindow>
#include <QSessionManager>

#include <algorithm>

namespace {

QString closeQuestionTitle(const std::vector<DiskRecord> &written)
{
    if (written.size() > 1)
        return localizedString("CLOSE_QUESTION_SEVERAL_TITLE");
    const ZorvexDiskManagerDisk &disk = *written.front();
    const QString format = disk.runningOperation == RunningOperation::Repair
        ? localizedString("CLOSE_QUESTION_REPAIRING_FMT")
        : localizedString("CLOSE_QUESTION_FORMATTING_FMT");
    return formatLocalized(format, { nameToShow(ZorvexDiskManagerAppDelegate::getDisplayNameForDisk(disk)) });
}

} // namespace

std::vector<DiskRecord> ZorvexDiskManagerAppDelegate::writtenDisks() const
{
    std::vector<DiskRecord> disks;
    for (const Run &run : m_runs) {
        const RunningOperation operation = run.disk->runningOperation;
        if (operation == RunningOperation::Format || operation == RunningOperation::Repair)
            disks.push_back(run.disk);
    }
    return disks;
}

bool ZorvexDiskManagerAppDelegate::windowShouldClose()
{
    const std::vector<DiskRecord> written = writtenDisks();
    if (written.empty() || m_isStopping)
        return true;
    if (m_closeQuestion)
        return false;
    auto *const alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(localizedString("CLOSE_QUESTION_STOP_BUTTON_TITLE"));
    alert->addButtonWithTitle(localizedString("CLOSE_QUESTION_WAIT_BUTTON_TITLE"));
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->setMessageText(closeQuestionTitle(written));
    alert->setInformativeText(localizedString("CLOSE_QUESTION_TEXT"));
    m_closeQuestion = alert;
    alert->beginSheetModalForWindow(window, [this](int returnCode) {
        m_closeQuestion = nullptr; // it goes a little later
        if (returnCode == AlertSheet::firstButtonReturn)
            stopAndClose();
    });
    return false;
}

// The tools may go on when nobody reads what they say any more, so each is told to end.
void ZorvexDiskManagerAppDelegate::stopAndClose()
{
    m_isStopping = true;
    for (const Run &run : m_runs) {
        if (const std::shared_ptr<ShellPipe> pipe = run.pipe.lock())
            pipe->stop();
    }
    window->close();
}

void ZorvexDiskManagerAppDelegate::endMootCloseQuestion()
{
    if (m_closeQuestion && writtenDisks().empty())
        m_closeQuestion->reject();
}

// The session waits for the answer. Where it cannot be asked, it ends, and the tools run to their ends.
void ZorvexDiskManagerAppDelegate::sessionWillEnd(QSessionManager &manager)
{
    if (writtenDisks().empty() || !manager.allowsInteraction())
        return;
    if (!windowShouldClose())
        manager.cancel();
    manager.release();
}
