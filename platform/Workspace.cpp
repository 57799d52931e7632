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
const QString fileManagerPath = u"/org/freedesktop/FileManager1"_s;
const QString showFolders = u"ShowFolders"_s;

// A file manager that starts for this needs time, but one that hangs must not leave the click unanswered.
constexpr int fileManagerTimeLimit = 20000; // milliseconds

void answerLater(const Workspace::Completion &completion, bool success)
{
    QMetaObject::invokeMethod(qApp, [completion, success] { completion(success); }, Qt::QueuedConnection);
}

// xdg-open ends with 0 once it has handed the path to a program. A program of the desktop runs as the user
// who sits at it, and never as root at their wish.
void openWithDesktop(const QString &path, const Workspace::Completion &completion)
{
    startProgram(desktopUser(), u"xdg-open"_s, { path }, qApp, completion);
}

void askFileManager(const QString &folder, const Workspace::Completion &completion)
{
    auto message = QDBusMessage::createMethodCall(fileManager, fileManagerPath, fileManager, showFolders);
    message.setArguments({ QStringList { folder }, QString() });
    onReply(QDBusConnection::sessionBus().asyncCall(message, fileManagerTimeLimit), qApp,
        [completion](const QDBusMessage &reply) { completion(reply.type() != QDBusMessage::ErrorMessage); });
}

// The bus of a user's session may refuse root. A program of the user's asks in its place.
void askFileManagerOf(
    const std::optional<DesktopUser> &user, QString folder, const Workspace::Completion &completion)
{
    folder.replace(u',', u"%2C"_s); // dbus-send takes it for the end of the first folder
    startProgram(user, u"dbus-send"_s,
        { u"--session"_s, u"--print-reply"_s, u"--reply-timeout=%1"_s.arg(fileManagerTimeLimit),
            u"--dest="_s + fileManager, fileManagerPath, fileManager + u'.' + showFolders,
            u"array:string:"_s + folder, u"string:"_s },
        qApp, completion);
}

} // namespace

void DesktopWorkspace::openInFileManager(const QString &path, Completion completion)
{
    const QString folder = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    const auto openOtherwise = [path, completion](bool isOpen) {
        if (isOpen)
            completion(true);
        else
            openWithDesktop(path, completion);
    };
    if (const std::optional<DesktopUser> user = desktopUser())
        askFileManagerOf(user, folder, openOtherwise);
    else if (hasSessionBus())
        askFileManager(folder, openOtherwise);
    else
        openWithDesktop(path, completion);
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
