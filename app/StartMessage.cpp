// SPDX-License-Identifier: MIT
#include "app/StartMessage.h"

#include "platform/Localization.h"

#include <QApplication>
#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString noDisplay = u"offscreen"_s;

// Qt ends a process that finds no display. The last of these needs none.
void choosePlatform()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    QString platforms = noDisplay;
    if (qEnvironmentVariableIsSet("DISPLAY"))
        platforms.prepend(u"xcb;"_s);
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        platforms.prepend(u"wayland;"_s);
    qputenv("QT_QPA_PLATFORM", platforms.toLatin1());
}

} // namespace

void showStartProblem(StartProblem problem)
{
    const QStringList localizations = preferredLocalizations(bundleLocalizations(), userLanguages());
    loadLocalization(localizations.value(0));
    const bool isRightToLeft = isRightToLeftIdentifier(localizations, currentLocaleIdentifier());
    QApplication::setLayoutDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    const StartupRules::ProblemTexts texts = StartupRules::textsOf(problem);
    QMessageBox message(QMessageBox::Warning, localizedString("WINDOW_TITLE"), localizedString(texts.title));
    message.setInformativeText(localizedString(texts.text));
    message.addButton(u"OK"_s, QMessageBox::AcceptRole);
    message.exec();
}

void showStartProblem(StartProblem problem, int argc, char **argv)
{
    choosePlatform();
    QApplication application(argc, argv);
    if (QGuiApplication::platformName() == noDisplay)
        return;
    QApplication::setDesktopFileName(u"org.zorvex.DiskManager"_s);
    showStartProblem(problem);
}
