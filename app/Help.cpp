// SPDX-License-Identifier: MIT
//
// The user manual, the About panel and the mount path that looks and works like a link.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "app/AboutPanel.h"
#include "app/help_rules.h"
#include "platform/SystemLog.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"

#include <QLabel>
#include <QMainWindow>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

void ZorvexDiskManagerAppDelegate::clickHelpMenuItem(QObject *)
{
    m_platform.workspace->openDocument(m_platform.userManualPath, [self = QPointer(this)](bool success) {
        if (self && !success)
            self->errorMessageWithTitle(localizedString("USER_MANUAL_NOT_FOUND_TITLE"),
                localizedString("USER_MANUAL_NOT_FOUND_TEXT"));
    });
}

void ZorvexDiskManagerAppDelegate::clickAboutButton(QObject *sender)
{
    orderFrontStandardAboutPanel(window, sender);
}

void ZorvexDiskManagerAppDelegate::makeHyperlink(
    LinkTextView *textView, const QString &fromString, const QUrl &)
{
    const QColor color = HelpRules::usesSystemLinkColor(systemMajorVersion())
        ? textView->palette().color(QPalette::Active, QPalette::Link)
        : QColor(Qt::blue);
    textView->setLink(HelpRules::leftToRightText(fromString), color, infoDiskSpaceLabel->font());
}

void ZorvexDiskManagerAppDelegate::textViewDidChangeSelection()
{
    const LinkTextView::Selection selection = infoMountedPathView->selection();
    const int row = leftOutlineView->selectedRow();
    if (HelpRules::isClickOnLink(
            selection.location, selection.length, row, infoMountedPathView->textLength()))
        showInFileManager();
}

void ZorvexDiskManagerAppDelegate::showInFileManager()
{
    const DiskRecord disk = selectedDisk();
    if (!disk || !disk->volumePath)
        return;
    const QString path = disk->volumePath->toLocalFile();
    m_platform.workspace->openInFileManager(path, [self = QPointer(this), path](bool success) {
        if (success)
            return;
        systemLog(u"Unable to open \"%1\" in Finder."_s.arg(path));
        if (self)
            self->errorMessageWithTitle(localizedString("FOLDER_NOT_OPENED_TITLE"),
                formatLocalized(localizedString("FOLDER_NOT_OPENED_TEXT_FMT"), { path }));
    });
}
