// SPDX-License-Identifier: MIT
#include "platform/Workspace.h"

#include "platform/dbus/PendingReply.h"
#include "platform/DesktopUser.h"
#include "platform/DesktopUserMount.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString fileManager = u"org.freedesktop.FileManager1"_s;

// A file manager that starts for this needs time, but one that hangs must not leave the click unanswered.
constexpr int fileManagerTimeLimit = 20000; // milliseconds

void answerLater(const Workspace::Completion &completion, bool success)
{
    QMetaObject::invokeMethod(qApp, [completion, success] { completion(success); }, Qt::QueuedConnection);
}

// The bus that the file manager is on. Where there is none, Qt would start one, without a file manager on it.
QDBusConnection desktopBus()
{
    const QString none = u"none"_s;
    if (const std::optional<DesktopUser> user = desktopUser()) {
        const QString address = user->isKnown() ? user->busAddress() : QString();
        return address.isEmpty() ? QDBusConnection(none)
                                 : QDBusConnection::connectToBus(address, u"desktop-user"_s);
    }
    return hasSessionBus() ? QDBusConnection::sessionBus() : QDBusConnection(none);
}

// xdg-open ends with 0 once it has handed the path to a program. A program of the desktop runs as the user
// who sits at it, and never as root at their wish.
void openWithDesktop(const QString &path, const Workspace::Completion &completion)
{
    startProgram(desktopUser(), u"xdg-open"_s, { path }, qApp, completion);
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
    onReply(
        bus.asyncCall(message, fileManagerTimeLimit), qApp, [path, completion](const QDBusMessage &reply) {
            if (reply.type() == QDBusMessage::ErrorMessage)
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

void DesktopWorkspace::findFolderAccess(const QString &path, Completion completion)
{
    ::findFolderAccess(path, qApp, std::move(completion));
}
