// SPDX-License-Identifier: MIT
//
// Starts the program: decides whether this process may run the interface, chooses the real services and
// brings the interface up.
#include "app/LookMessages.h"
#include "app/LookProcess.h"
#include "app/MainWindow.h"
#include "app/StartMessage.h"
#include "app/Startup.h"
#include "app/startup_rules.h"
#include "app/ZorvexDiskManagerAppDelegate.h"
#include "filesystems/BundleScan.h"
#include "filesystems/VolumeClaims.h"
#include "platform/Authorization.h"
#include "platform/DesktopUser.h"
#include "platform/Localization.h"
#include "platform/MessageSocket.h"
#include "platform/RuntimeFolder.h"
#include "platform/SingleInstance.h"

#include <QApplication>
#include <QIcon>
#include <QMainWindow>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

ApplicationPlatform realPlatform()
{
    ApplicationPlatform platform;
    platform.bundleGuard = guardOfThisProcess();
    // The disk service lists its media while the window is made. The controller still takes the session after
    // its first scan: until the session is scheduled, it reports and logs nothing.
    auto session = std::make_shared<std::unique_ptr<DASession>>(createDiskArbitrationSession(
        volumeClaimReader(filesystemDirectories(), platform.bundleGuard), MediaListing::Ahead));
    platform.createSession = [session] { return std::move(*session); };
    platform.mountTable = std::make_shared<KernelMountTable>();
    platform.workspace = std::make_shared<DesktopWorkspace>();
    platform.createShellPipe = [] { return std::make_unique<PosixShellPipe>(); };
    platform.preferredLocalizations = preferredLocalizations(bundleLocalizations(), userLanguages());
    platform.localeIdentifier = currentLocaleIdentifier();
    platform.filesystemDirectories = filesystemDirectories();
    platform.userManualPath = u"/Library/Application Support/Zorvex NTFS/User Manual.pdf"_s;
    return platform;
}

// From the program itself: finding the icon in the desktop's theme and drawing each size from its SVG takes
// as long as the rest of the window.
QIcon applicationIcon()
{
    QIcon icon;
    for (const int size : { 16, 32, 48, 64, 128 })
        icon.addFile(u":/images/application_%1.png"_s.arg(size), QSize(size, size));
    return icon;
}

void raiseWindow(QWidget *window, const QByteArray &token)
{
    // Qt takes the token from where the desktop would have put it.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    qunsetenv("XDG_ACTIVATION_TOKEN"); // it is good once, and not for the programs that are started from here
}

int runInterface(int argc, char **argv, LookFollower &look)
{
    InstanceAnswer answer = raiseInstance(ownInstance(), activationToken());
    if (answer == InstanceAnswer::Raised)
        return EXIT_SUCCESS;
    const DesktopLook first = look.latest();
    first.applyToEnvironment();
    QApplication application(argc, argv);
    first.apply();
    look.follow();
    SingleInstance instance(ownInstance());
    // When two start in the same instant, only the one that listens shows a window. One that hangs may still
    // work on a disk, and gets no other beside it.
    if (answer == InstanceAnswer::None)
        answer = instance.listenOrRaise(activationToken());
    if (answer == InstanceAnswer::Silent)
        showStartProblem(StartProblem::NoAnswer);
    if (answer != InstanceAnswer::None)
        return EXIT_SUCCESS;
    QApplication::setApplicationName(u"zorvex-disk-manager"_s);
    QApplication::setApplicationVersion(QStringLiteral(ZORVEX_VERSION));
    QApplication::setDesktopFileName(u"org.zorvex.DiskManager"_s);
    QApplication::setWindowIcon(applicationIcon());

    ApplicationPlatform platform = realPlatform();
    loadLocalization(platform.preferredLocalizations->value(0));
    ZorvexDiskManagerAppDelegate controller(std::move(platform));
    const std::unique_ptr<QMainWindow> window = loadMainWindow(controller);
    QObject::connect(&instance, &SingleInstance::activationRequested, window.get(),
        [&window](const QByteArray &token) { raiseWindow(window.get(), token); });
    controller.applicationDidFinishLaunching();
    window->show();
    return QApplication::exec();
}

// Tells the process at the other end of the standard input how the user's desktop looks, as long as it
// listens; else prints it.
void tellLook(int argc, char **argv)
{
    // There is no window here that a session could open again.
    qunsetenv("SESSION_MANAGER");
    const QApplication application(argc, argv);
    if (!MessageSocket::isMessageSocket(STDIN_FILENO)) {
        const QByteArray text = DesktopLook::ofThisProcess().toText();
        std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
        return;
    }
    const LookTeller teller { MessageSocket(FileDescriptor(STDIN_FILENO)) };
    QObject::connect(
        &teller, &LookTeller::listenerHasGone, &application, [] { QCoreApplication::quit(); },
        Qt::QueuedConnection);
    QCoreApplication::exec();
}

// Hands over to the process with administrator rights. It is started unless it runs already. Returns what the
// user is to be told.
std::optional<StartProblem> runElevated(int argc, char **argv)
{
    const InstanceAnswer answer = raiseInstance(elevatedInstance(), activationToken());
    if (answer == InstanceAnswer::Raised)
        return std::nullopt;
    if (answer == InstanceAnswer::Silent)
        return StartProblem::NoAnswer;
    QCoreApplication application(argc, argv);
    LookProcess look(QCoreApplication::applicationFilePath());
    look.start();
    const std::unique_ptr<Authorization> authorization = createAuthorization();
    authorization->setLookSource([&look] { return look.takeSocket(); });
    std::optional<StartProblem> problem;
    const auto finish = [&problem](AuthorizationStatus status) {
        problem = StartupRules::problemOf(status);
        QCoreApplication::quit();
    };
    QMetaObject::invokeMethod(
        &application, [&] { elevate(argv[0], *authorization, finish); }, Qt::QueuedConnection);
    QCoreApplication::exec();
    return problem;
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArrayList arguments(argv, argv + argc);
    if (StartupRules::isLook(arguments)) {
        tellLook(argc, argv);
        return EXIT_SUCCESS;
    }
    if (!mayRunInterface(arguments, lookUpGroupsOfUser)) {
        if (const auto problem = runElevated(argc, argv))
            showStartProblem(*problem, argc, argv);
        return EXIT_SUCCESS;
    }
    Handover handover;
    if (StartupRules::isElevated(arguments)) {
        handover = completeExecutionWithPrivileges();
        adoptDisplayOfDesktopUser();
        doWithoutSessionBus();
        provideRuntimeFolder();
        if (const std::optional<DesktopUser> user = desktopUser())
            adoptAccessibilityBus(*user, handover.accessibilityBus);
    }
    LookFollower look(std::move(handover.lookSocket));
    // A worker may still be running the tool after the interface has ended: no static object is destroyed
    // under it.
    std::_Exit(runInterface(argc, argv, look));
}
