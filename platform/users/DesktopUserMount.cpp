// SPDX-License-Identifier: MIT
#include "platform/DesktopUserMount.h"

#include "platform/FileDescriptor.h"
#include "platform/SystemLog.h"

#include <QFile>
#include <QVersionNumber>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString rootPath = u"/org/freedesktop/UDisks2/"_s;

// The first version that mounts for another user. Earlier ones ignore the option and mount for the caller.
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

// The service mounts for the user at the other end of the connection, so a process of that user has to ask:
// the service's own command-line client.
void mountForDesktopUser(
    const DesktopUser &user, const QString &objectPath, QObject *context, std::function<void(bool)> done)
{
    startProgram(user, u"udisksctl"_s,
        { u"mount"_s, u"--no-user-interaction"_s, u"--object-path"_s, objectPath.mid(rootPath.size()) },
        context, std::move(done));
}

void giveMountedVolume(const QString &mountPoint, const std::optional<DesktopUser> &user)
{
    if (!user)
        return;
    const FileDescriptor folder(
        open(QFile::encodeName(mountPoint).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.isOpen())
        return;
    if (fchown(folder.number(), user->user, user->group) != 0 && errno != EPERM)
        systemLog(u"The volume at %1 could not be made the user's: %2"_s.arg(mountPoint, errnoText(errno)));
}
