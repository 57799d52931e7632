// SPDX-License-Identifier: MIT
#include "platform/DesktopUserMount.h"

#include "platform/SystemLog.h"

#include <QFile>
#include <QProcess>
#include <QVersionNumber>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString rootPath = u"/org/freedesktop/UDisks2/"_s;

// The first to mount for another user. Earlier ones do not refuse the option: they mount for the caller.
const QVersionNumber firstThatMountsForOthers(2, 10);

} // namespace

std::optional<QVariantMap> mountOptions(const std::optional<DesktopUser> &user, const QString &serviceVersion)
{
    if (!user)
        return QVariantMap();
    if (QVersionNumber::fromString(serviceVersion) < firstThatMountsForOthers)
        return std::nullopt;
    return QVariantMap { { u"as-user"_s, user->name } };
}

// The service goes by who is at the other end of the connection, so another process has to ask: its own
// command-line client.
void mountForDesktopUser(
    const DesktopUser &user, const QString &objectPath, QObject *context, std::function<void(bool)> done)
{
    auto *process = new QProcess(context);
    const auto finish = [process, done = std::move(done)](bool isMounted) {
        process->deleteLater();
        done(isMounted);
    };
    QObject::connect(
        process, &QProcess::finished, process, [finish](int exitCode, QProcess::ExitStatus status) {
            finish(status == QProcess::NormalExit && exitCode == 0);
        });
    QObject::connect(process, &QProcess::errorOccurred, process, [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(false);
    });
    user.prepare(*process);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(u"udisksctl"_s,
        { u"mount"_s, u"--no-user-interaction"_s, u"--object-path"_s, objectPath.mid(rootPath.size()) });
}

void giveMountedVolume(const QString &mountPoint, const std::optional<DesktopUser> &user)
{
    if (!user)
        return;
    const int folder
        = open(QFile::encodeName(mountPoint).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return;
    if (fchown(folder, user->user, user->group) != 0 && errno != EPERM)
        systemLog(u"The volume at %1 could not be made the user's: %2"_s.arg(mountPoint, errnoText(errno)));
    close(folder);
}
