// SPDX-License-Identifier: MIT
#include "platform/RuntimeFolder.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto runtimeVariable = "XDG_RUNTIME_DIR";
constexpr auto programsName = "/zorvex-disk-manager"_L1;

constexpr mode_t forTheUser = 0700;
constexpr mode_t readableForAll = 0755;

bool isPrivate(const QString &path, uid_t user)
{
    struct stat status = {};
    return path.startsWith(u'/') && lstat(QFile::encodeName(path).constData(), &status) == 0
        && S_ISDIR(status.st_mode) && status.st_uid == user && !(status.st_mode & (S_IWGRP | S_IWOTH));
}

} // namespace

QString programsRuntimeFolder(uid_t user)
{
    if (user == 0)
        return "/run"_L1 + programsName;
    // Where it always is comes first: the name must not depend on where the program was started from.
    for (const QString &folder : { u"/run/user/%1"_s.arg(user), qEnvironmentVariable(runtimeVariable) }) {
        if (isPrivate(folder, user))
            return folder + programsName;
    }
    return "/tmp"_L1 + programsName + u"-%1"_s.arg(user);
}

FileDescriptor openOwnFolder(const QString &path, mode_t permissions)
{
    const QByteArray name = QFile::encodeName(path);
    const bool isNew = mkdir(name.constData(), permissions) == 0;
    FileDescriptor folder(open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!folder.isOpen() || fstat(folder.number(), &status) != 0 || status.st_uid != geteuid()
        || (status.st_mode & (S_IWGRP | S_IWOTH)))
        return {};
    // The caller's mask may have taken away what others need.
    if (isNew && fchmod(folder.number(), permissions) != 0)
        return {};
    return folder;
}

void provideRuntimeFolder()
{
    if (geteuid() != 0 || qEnvironmentVariableIsSet(runtimeVariable))
        return;
    const QString parent = programsRuntimeFolder(0);
    const QString folder = parent + "/runtime"_L1;
    if (openOwnFolder(parent, readableForAll).isOpen() && openOwnFolder(folder, forTheUser).isOpen())
        qputenv(runtimeVariable, QFile::encodeName(folder));
}
