// SPDX-License-Identifier: MIT
#include "platform/Workspace.h"

#include "platform/DesktopUser.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString fileManager = u"org.freedesktop.FileManager1"_s;

// A file manager that is started for this needs time, but one that hangs must not leave the click unanswered.
constexpr int fileManagerTimeLimit = 20000; // milliseconds

void answerLater(const Workspace::Completion &completion, bool success)
{
    QMetaObject::invokeMethod(qApp, [completion, success] { completion(success); }, Qt::QueuedConnection);
}

// The bus that the file manager is on. Without one Qt would have a bus started, on which nobody is.
QDBusConnection desktopBus()
{
    const QString none = u"none"_s;
    if (const std::optional<DesktopUser> user = desktopUser()) {
        const QString address = user->busAddress();
        return address.isEmpty() ? QDBusConnection(none)
                                 : QDBusConnection::connectToBus(address, u"desktop-user"_s);
    }
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool hasBus = qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")
        || (!folder.isEmpty() && QFileInfo::exists(folder + u"/bus"_s));
    return hasBus ? QDBusConnection::sessionBus() : QDBusConnection(none);
}

// xdg-open ends with 0 once it has handed the path to a program.
void openWithDesktop(const QString &path, const Workspace::Completion &completion)
{
    auto *process = new QProcess(qApp);
    QObject::connect(process, &QProcess::finished, process,
        [process, completion](int exitCode, QProcess::ExitStatus status) {
            process->deleteLater();
            completion(status == QProcess::NormalExit && exitCode == 0);
        });
    QObject::connect(
        process, &QProcess::errorOccurred, process, [process, completion](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return;
            process->deleteLater();
            completion(false);
        });
    // A program of the desktop runs as the user who sits at it, and never as root at his wish.
    if (const std::optional<DesktopUser> user = desktopUser())
        user->prepare(*process);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(u"xdg-open"_s, { path });
}

} // namespace

void DesktopWorkspace::openInFileManager(const QString &path, Completion completion)
{
    QDBusConnection bus = desktopBus();
    if (!bus.isConnected()) {
        openWithDesktop(path, completion);
        return;
    }
    auto message = QDBusMessage::createMethodCall(
        fileManager, u"/org/freedesktop/FileManager1"_s, fileManager, u"ShowFolders"_s);
    message.setArguments(
        { QStringList { QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) }, QString() });
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, fileManagerTimeLimit), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, path, completion] {
        watcher->deleteLater();
        if (watcher->isError())
            openWithDesktop(path, completion);
        else
            completion(true);
    });
}

void DesktopWorkspace::openDocument(const QString &path, Completion completion)
{
    if (const QFileInfo document(path); !document.isFile() || !document.isReadable()) {
        answerLater(completion, false);
        return;
    }
    openWithDesktop(path, completion);
}
