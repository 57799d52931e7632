// SPDX-License-Identifier: MIT
#include "platform/DesktopUserMount.h"

#include "platform/devices/SysfsDevice.h"
#include "platform/FileDescriptor.h"
#include "platform/SystemDevices.h"
#include "platform/SystemLog.h"

#include <QFile>
#include <QRegularExpression>
#include <QVersionNumber>

#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString rootPath = u"/org/freedesktop/UDisks2/"_s;

// The first version that mounts for another user. Earlier ones ignore the option and mount for the caller.
const QVersionNumber firstThatMountsForOthers(2, 10);

UserMountAnswer answerOf(const ProgramEnd &end)
{
    // "Error mounting /dev/sda1: GDBus.Error:NAME: MESSAGE"
    static const QRegularExpression busError(u"GDBus\\.Error:([^: ]+): (.*)$"_s);
    const auto match = busError.match(QString::fromUtf8(end.errorOutput).trimmed());
    return { end.hasSucceeded, match.captured(1), match.captured(2) };
}

// Where the disk service mounts what fstab does not name.
bool isPlaceForUsers(const QString &mountPoint)
{
    const bool isOfService = mountPoint.startsWith("/media/"_L1) || mountPoint.startsWith("/run/media/"_L1);
    return isOfService && !isInFstab(mountPoint);
}

// The C library has no function for openat2(2).
FileDescriptor openWithoutLinks(const QByteArray &path)
{
    open_how how = {};
    how.flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return FileDescriptor(
        static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.constData(), &how, sizeof how)));
}

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
// the service's own command-line client. It has no terminal, where it would ask for the password itself.
void mountForDesktopUser(const DesktopUser &user, const QString &objectPath, QObject *context,
    std::function<void(const UserMountAnswer &)> done, const QStringList &options)
{
    QStringList arguments { u"udisksctl"_s, u"mount"_s, u"--object-path"_s, objectPath.mid(rootPath.size()) };
    if (!options.isEmpty())
        arguments += { u"--options"_s, options.join(u',') };
    startProgramForErrors(user, u"setsid"_s, arguments, context,
        [done = std::move(done)](const ProgramEnd &end) { done(answerOf(end)); });
}

void findFolderAccess(const QString &path, QObject *context, std::function<void(bool isOpen)> done)
{
    // It says why it cannot read the folder itself. Only a closed door counts: a volume that is unmounted
    // meanwhile takes its folder along, and a disk that fails is out of everybody's reach.
    startProgramForErrors(desktopUser(), u"env"_s, { u"LC_ALL=C"_s, u"cat"_s, path + u"/."_s }, context,
        [done = std::move(done)](
            const ProgramEnd &end) { done(!end.errorOutput.contains("Permission denied")); });
}

void giveMountedVolume(
    const QString &mountPoint, const QString &deviceNode, const std::optional<DesktopUser> &user)
{
    if (!user || !user->isKnown() || !isPlaceForUsers(mountPoint))
        return;
    const SystemRoot running;
    const FileDescriptor folder = openWithoutLinks(QFile::encodeName(mountPoint));
    const auto mount = folder.isOpen() ? mountOf(folder.number(), {}, running) : std::nullopt;
    const auto device = blockDeviceNumber(QFile::encodeName(deviceNode), running);
    if (!mount || !device || mountedDevice(*mount, running) != device) {
        systemLog(u"%1 does not lead to %2, and its owner stays."_s.arg(mountPoint, deviceNode));
        return;
    }
    if (fchown(folder.number(), user->user, user->group) != 0 && errno != EPERM)
        systemLog(u"The volume at %1 could not be made the user's: %2"_s.arg(mountPoint, errnoText(errno)));
}
