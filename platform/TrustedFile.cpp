// SPDX-License-Identifier: MIT
#include "platform/TrustedFile.h"

#include "platform/SystemLog.h"

#include <QFile>
#include <QStringList>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr uid_t administrator = 0;

std::optional<QString> reasonForDistrustOfComponent(const QString &path, mode_t wantedType)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        return u"%1: %2"_s.arg(path, errnoText(errno));
    if ((status.st_mode & S_IFMT) != wantedType)
        return u"%1 is not what it should be"_s.arg(path);
    if (status.st_uid != administrator)
        return u"%1 does not belong to the administrator"_s.arg(path);
    if (status.st_mode & (S_IWGRP | S_IWOTH))
        return u"%1 can be written by others than the administrator"_s.arg(path);
    return std::nullopt;
}

} // namespace

std::optional<QString> reasonForDistrust(const QString &path)
{
    if (!path.startsWith(u'/'))
        return u"%1 is no absolute path"_s.arg(path);
    const QStringList names = path.split(u'/', Qt::SkipEmptyParts);
    QString component = u"/"_s;
    auto reason = reasonForDistrustOfComponent(component, S_IFDIR);
    for (qsizetype i = 0; i < names.size() && !reason; ++i) {
        if (names.at(i) == u".."_s)
            return u"%1 leads out of its folder"_s.arg(path);
        component += component.endsWith(u'/') ? names.at(i) : QString(u'/' + names.at(i));
        reason = reasonForDistrustOfComponent(component, i + 1 == names.size() ? S_IFREG : S_IFDIR);
    }
    return reason;
}
