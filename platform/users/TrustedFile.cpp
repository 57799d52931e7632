// SPDX-License-Identifier: MIT
#include "platform/TrustedFile.h"

#include "platform/SystemLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr uid_t administrator = 0;

enum class Kind { File, Folder, Either };

bool isOfKind(mode_t mode, Kind wanted)
{
    const bool isFile = S_ISREG(mode);
    const bool isFolder = S_ISDIR(mode);
    return (isFile && wanted != Kind::Folder) || (isFolder && wanted != Kind::File);
}

std::optional<QString> reasonForDistrustOfComponent(const QString &path, Kind wanted)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        return u"%1: %2"_s.arg(path, errnoText(errno));
    if (!isOfKind(status.st_mode, wanted))
        return u"%1 is not what it should be"_s.arg(path);
    if (status.st_uid != administrator)
        return u"%1 does not belong to the administrator"_s.arg(path);
    // Who may write by an access control list shows in the group's bits as well.
    if (status.st_mode & (S_IWGRP | S_IWOTH))
        return u"%1 can be written by others than the administrator"_s.arg(path);
    return std::nullopt;
}

std::optional<QString> reasonForDistrustOfPath(const QString &path, Kind wanted)
{
    if (!path.startsWith(u'/'))
        return u"%1 is no absolute path"_s.arg(path);
    const QStringList names = path.split(u'/', Qt::SkipEmptyParts);
    QString component = u"/"_s;
    auto reason = reasonForDistrustOfComponent(component, Kind::Folder);
    for (qsizetype i = 0; i < names.size() && !reason; ++i) {
        if (names.at(i) == u".."_s)
            return u"%1 leads out of its folder"_s.arg(path);
        component += component.endsWith(u'/') ? names.at(i) : QString(u'/' + names.at(i));
        reason = reasonForDistrustOfComponent(component, i + 1 == names.size() ? wanted : Kind::Folder);
    }
    return reason;
}

} // namespace

std::optional<QString> reasonForDistrust(const QString &path)
{
    return reasonForDistrustOfPath(path, Kind::File);
}

std::optional<QString> reasonForDistrustOfTree(const QString &path)
{
    auto reason = reasonForDistrustOfPath(path, Kind::Folder);
    QStringList folders { path };
    while (!reason && !folders.isEmpty()) {
        const QDir folder(folders.takeLast());
        for (const QFileInfo &entry :
            folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
            reason = reasonForDistrustOfComponent(entry.filePath(), Kind::Either);
            if (reason)
                break;
            if (entry.isDir())
                folders.append(entry.filePath());
        }
    }
    return reason;
}
