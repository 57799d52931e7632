// SPDX-License-Identifier: MIT
//
// Starts the program: chooses the real services and brings the interface up.
#include "app/MainWindow.h"
#include "app/ZorvexDiskManagerAppDelegate.h"
#include "platform/FileSystemClaims.h"
#include "platform/Localization.h"
#include "platform/UDisksSession.h"

#include <QApplication>
#include <QIcon>
#include <QMainWindow>

#include <cstdlib>

namespace {

ApplicationPlatform realPlatform()
{
    ApplicationPlatform platform;
    platform.createSession = [] { return createUDisksSession(FileSystemClaims(filesystemDirectories())); };
    platform.mountTable = std::make_shared<KernelMountTable>();
    platform.workspace = std::make_shared<DesktopWorkspace>();
    platform.createShellPipe = [] { return std::make_unique<PosixShellPipe>(); };
    platform.preferredLocalizations = preferredLocalizations(bundleLocalizations(), userLanguages());
    platform.localeIdentifier = currentLocaleIdentifier();
    platform.filesystemDirectories = filesystemDirectories();
    platform.userManualPath = QStringLiteral("/Library/Application Support/Zorvex NTFS/User Manual.pdf");
    return platform;
}

int runInterface(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zorvex-disk-manager"));
    QApplication::setApplicationVersion(QStringLiteral(ZORVEX_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.zorvex.DiskManager"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.zorvex.DiskManager")));

    ApplicationPlatform platform = realPlatform();
    loadLocalization(platform.preferredLocalizations->value(0));
    ZorvexDiskManagerAppDelegate controller(std::move(platform));
    const std::unique_ptr<QMainWindow> window = loadMainWindow(controller);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &controller,
        &ZorvexDiskManagerAppDelegate::applicationWillTerminate);
    controller.applicationDidFinishLaunching();
    window->show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    // A worker may still be inside the tool's run when the interface has ended. The process goes without
    // taking down the static objects under it.
    std::_Exit(runInterface(argc, argv));
}
