// SPDX-License-Identifier: MIT
#include "app/CloseQuestion.h"

#include "app/ZorvexDiskManagerAppDelegate.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"

#include <QMainWindow>

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

CloseQuestion::CloseQuestion(ZorvexDiskManagerAppDelegate &controller)
    : m_controller(controller)
{
}

bool CloseQuestion::windowShouldClose()
{
    const std::vector<DiskRecord> written = m_controller.runningOperations.writtenDisks();
    if (written.empty() || m_isStopping)
        return true;
    if (m_sheet)
        return false;
    auto *const alert = new AlertSheet(AlertSheet::Style::Warning);
    alert->addButtonWithTitle(localizedString("CLOSE_QUESTION_STOP_BUTTON_TITLE"));
    alert->addButtonWithTitle(localizedString("CLOSE_QUESTION_WAIT_BUTTON_TITLE"));
    alert->setDefaultReturn(AlertSheet::firstButtonReturn + 1);
    alert->setMessageText(closeQuestionTitle(written));
    alert->setInformativeText(localizedString("CLOSE_QUESTION_TEXT"));
    m_sheet = alert;
    alert->beginSheetModalForWindow(m_controller.window, [this](int returnCode) {
        m_sheet = nullptr; // it goes a little later
        if (returnCode == AlertSheet::firstButtonReturn)
            stopAndClose();
    });
    return false;
}

// The tools may go on when nobody reads what they say any more, so each is told to end.
void CloseQuestion::stopAndClose()
{
    m_isStopping = true;
    m_controller.runningOperations.stopTools();
    m_controller.window->close();
}

void CloseQuestion::operationDidFinish()
{
    if (m_sheet && m_controller.runningOperations.writtenDisks().empty())
        m_sheet->reject();
}

// The session waits for the answer. Where it cannot be asked, it ends, and the tools run to their ends.
void CloseQuestion::sessionWillEnd(const SessionEnd &end)
{
    if (m_controller.runningOperations.writtenDisks().empty() || !end.allowsInteraction())
        return;
    if (!windowShouldClose())
        end.cancel();
    end.release();
}
