// SPDX-License-Identifier: MIT
#include "platform/DesktopUser.h"

#include "platform/UserGroups.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto sessionBus = "DBUS_SESSION_BUS_ADDRESS";

// Variables that pkexec and sudo set, or that describe root.
const QStringList foreignVariables { u"PKEXEC_UID"_s, u"SUDO_UID"_s, u"SUDO_GID"_s, u"SUDO_USER"_s,
    u"SUDO_COMMAND"_s, u"QT_QPA_PLATFORM"_s, u"MAIL"_s, QLatin1String(sessionBus) };

constexpr std::size_t entrySize = 65536;
constexpr int groupsAtFirst = 64;

bool isSocketOf(const QString &path, uid_t user)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISSOCK(status.st_mode)
        && status.st_uid == user;
}

std::vector<gid_t> groupsOf(const char *name, gid_t group)
{
    int count = groupsAtFirst;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    if (getgrouplist(name, group, groups.data(), &count) == -1) {
        groups.resize(static_cast<std::size_t>(count));
        getgrouplist(name, group, groups.data(), &count);
    }
    groups.resize(std::min(groups.size(), static_cast<std::size_t>(count)));
    return groups;
}

// A process that is not started yet and deletes itself when it has ended.
QProcess *makeProcess(
    const std::optional<DesktopUser> &user, QObject *context, std::function<void(const ProgramEnd &end)> done)
{
    auto *process = new QProcess(context);
    const auto finish = [process, done = std::move(done)](bool hasSucceeded) {
        process->deleteLater();
        // With all output in files there is nothing to read, and Qt would complain of the try.
        done({ hasSucceeded, process->isReadable() ? process->readAllStandardError() : QByteArray() });
    };
    QObject::connect(
        process, &QProcess::finished, process, [finish](int exitCode, QProcess::ExitStatus status) {
            finish(status == QProcess::NormalExit && exitCode == 0);
        });
    // A program that has started and crashes finishes as well.
    QObject::connect(process, &QProcess::errorOccurred, process, [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(false);
    });
    if (user)
        user->prepare(*process);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    return process;
}

} // namespace

QString DesktopUser::runtimeFolder() const
{
    return u"/run/user/%1"_s.arg(user);
}

QString DesktopUser::busAddress() const
{
    const QString socket = runtimeFolder() + u"/bus"_s;
    return isSocketOf(socket, user) ? u"unix:path="_s + socket : QString();
}

QProcessEnvironment DesktopUser::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : foreignVariables)
        environment.remove(variable);
    environment.insert(u"HOME"_s, home);
    environment.insert(u"USER"_s, name);
    environment.insert(u"LOGNAME"_s, name);
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtimeFolder());
    if (const QString address = busAddress(); !address.isEmpty())
        environment.insert(QLatin1String(sessionBus), address);
    return environment;
}

void DesktopUser::prepare(QProcess &process) const
{
    process.setProcessEnvironment(environment());
    process.setChildProcessModifier(identityChange());
    process.setWorkingDirectory(u"/"_s);
}

// Runs between fork and exec.
std::function<void()> DesktopUser::identityChange() const
{
    return [user = user, group = group, groups = groups] {
        // Otherwise, the program would run as root.
        if (setgroups(groups.size(), groups.data()) != 0 || setresgid(group, group, group) != 0
            || setresuid(user, user, user) != 0)
            _exit(EXIT_FAILURE);
    };
}

std::optional<DesktopUser> desktopUser()
{
    const std::optional<uid_t> invoking = invokingUser();
    if (!invoking || *invoking == 0)
        return std::nullopt;
    std::vector<char> buffer(entrySize);
    passwd entry = {};
    passwd *found = nullptr;
    getpwuid_r(*invoking, &entry, buffer.data(), buffer.size(), &found);
    if (!found)
        return std::nullopt;
    return DesktopUser { found->pw_uid, found->pw_gid, groupsOf(found->pw_name, found->pw_gid),
        QFile::decodeName(found->pw_name), QFile::decodeName(found->pw_dir) };
}

void startProgram(const std::optional<DesktopUser> &user, const QString &program,
    const QStringList &arguments, QObject *context, std::function<void(bool hasSucceeded)> done)
{
    QProcess *const process = makeProcess(
        user, context, [done = std::move(done)](const ProgramEnd &end) { done(end.hasSucceeded); });
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, arguments);
}

void startProgramForErrors(const std::optional<DesktopUser> &user, const QString &program,
    const QStringList &arguments, QObject *context, std::function<void(const ProgramEnd &end)> done)
{
    makeProcess(user, context, std::move(done))->start(program, arguments);
}

QString waylandSocket(const QString &runtimeFolder, uid_t user)
{
    const QStringList names
        = QDir(runtimeFolder).entryList({ u"wayland-*"_s }, QDir::System | QDir::Files, QDir::Name);
    const auto found = std::find_if(names.begin(), names.end(),
        [&](const QString &name) { return isSocketOf(runtimeFolder + u'/' + name, user); });
    return found == names.end() ? QString() : runtimeFolder + u'/' + *found;
}

void doWithoutSessionBus()
{
    if (desktopUser() && !qEnvironmentVariableIsSet(sessionBus))
        qputenv(sessionBus, "disabled:");
}

void nameRuntimeFolderOfRoot()
{
    constexpr auto runtimeFolder = "XDG_RUNTIME_DIR";
    if (geteuid() == 0 && !qEnvironmentVariableIsSet(runtimeFolder))
        qputenv(runtimeFolder, "/run/zorvex-disk-manager-window");
}

QString accessibilitySocket(const QByteArray &address, const QString &runtimeFolder, uid_t user)
{
    const QByteArray prefix = "unix:path="_ba;
    if (!address.startsWith(prefix) || address.contains(';'))
        return {};
    // The identifier of the bus follows. A path with escapes is not one that the bus chooses.
    const QString path = QFile::decodeName(address.mid(prefix.size()).split(',').constFirst());
    const bool isBelow = path.startsWith(runtimeFolder + u'/') && QDir::cleanPath(path) == path;
    return isBelow && !path.contains(u'%') && isSocketOf(path, user) ? path : QString();
}

void adoptAccessibilityBus(const DesktopUser &user, const QByteArray &address)
{
    const QString socket = accessibilitySocket(address, user.runtimeFolder(), user.user);
    if (!socket.isEmpty())
        qputenv("AT_SPI_BUS_ADDRESS", QFile::encodeName(u"unix:path="_s + socket));
}

bool hasSessionBus()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return qEnvironmentVariableIsSet(sessionBus)
        || (!folder.isEmpty() && QFileInfo::exists(folder + u"/bus"_s));
}

void adoptDisplayOfDesktopUser()
{
    const std::optional<DesktopUser> user = desktopUser();
    if (!user || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    const QString socket = waylandSocket(user->runtimeFolder(), user->user);
    if (socket.isEmpty())
        return;
    qputenv("WAYLAND_DISPLAY", QFile::encodeName(socket));
    // An X11 display that pkexec handed on comes first. Where there is none, or where it refuses root, the
    // window opens on Wayland.
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariableIsSet("DISPLAY") ? "xcb;wayland" : "wayland;xcb");
}
