// SPDX-License-Identifier: MIT
#include "platform/TrustedFile.h"

#include "platform/DirectoryReader.h"
#include "platform/SystemLog.h"

#include <QFile>
#include <QStringList>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Kind { File, Folder, Either };

bool isOfKind(mode_t mode, Kind wanted)
{
    const bool isFile = S_ISREG(mode);
    const bool isFolder = S_ISDIR(mode);
    return (isFile && wanted != Kind::Folder) || (isFolder && wanted != Kind::File);
}

// Paths are bytes here, so that files whose names are no valid text are seen as well.
class Examiner
{
public:
    explicit Examiner(const TrustedOwner &owner)
        : m_owner(owner.user)
        , m_root(QFile::encodeName(owner.folder))
    {
    }

    std::optional<QString> reasonForDistrustOfPath(const QByteArray &path, Kind wanted) const
    {
        const QString text = QFile::decodeName(path);
        if (!path.startsWith('/'))
            return u"%1 is no absolute path"_s.arg(text);
        QByteArrayList names = path.split('/');
        names.removeAll(QByteArray());
        if (names.contains(".."))
            return u"%1 leads out of its folder"_s.arg(text);
        QByteArray component = "/";
        auto reason = reasonForDistrustOfComponent(component, Kind::Folder);
        for (qsizetype i = 0; i < names.size() && !reason; ++i) {
            component += i == 0 ? names.at(i) : '/' + names.at(i);
            reason = reasonForDistrustOfComponent(component, i + 1 == names.size() ? wanted : Kind::Folder);
        }
        return reason;
    }

    // The folder itself is not looked at.
    std::optional<QString> reasonForDistrustOfContent(const QByteArray &folder) const
    {
        QByteArrayList folders { folder };
        std::optional<QString> reason;
        while (!reason && !folders.isEmpty()) {
            const QByteArray path = folders.takeLast();
            DirectoryReader reader(QFile::decodeName(realPath(path)));
            if (reader.openingError() != 0)
                return u"%1: %2"_s.arg(QFile::decodeName(path), errnoText(reader.openingError()));
            while (const auto entry = reason ? std::nullopt : reader.next()) {
                if (entry->name == "." || entry->name == "..")
                    continue;
                const QByteArray component = path + '/' + entry->name;
                reason = reasonForDistrustOfComponent(component, Kind::Either);
                if (!reason && isFolder(component))
                    folders.append(component);
            }
        }
        return reason;
    }

private:
    std::optional<QString> reasonForDistrustOfComponent(const QByteArray &path, Kind wanted) const
    {
        const QString text = QFile::decodeName(path);
        struct stat status = {};
        if (lstat(realPath(path).constData(), &status) != 0)
            return u"%1: %2"_s.arg(text, errnoText(errno));
        if (!isOfKind(status.st_mode, wanted))
            return u"%1 is not what it should be"_s.arg(text);
        if (status.st_uid != m_owner)
            return u"%1 does not belong to the administrator"_s.arg(text);
        // An access control list that lets others write shows in the group's bits as well.
        if (status.st_mode & (S_IWGRP | S_IWOTH))
            return u"%1 can be written by others than the administrator"_s.arg(text);
        return std::nullopt;
    }

    QByteArray realPath(const QByteArray &path) const { return m_root + path; }

    bool isFolder(const QByteArray &path) const
    {
        struct stat status = {};
        return lstat(realPath(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
    }

    uid_t m_owner;
    QByteArray m_root;
};

} // namespace

std::optional<QString> reasonForDistrust(const QString &path, const TrustedOwner &owner)
{
    return Examiner(owner).reasonForDistrustOfPath(QFile::encodeName(path), Kind::File);
}

std::optional<QString> reasonForDistrustOfTree(const QString &path, const TrustedOwner &owner)
{
    const Examiner examiner(owner);
    const QByteArray folder = QFile::encodeName(path);
    const auto reason = examiner.reasonForDistrustOfPath(folder, Kind::Folder);
    return reason ? reason : examiner.reasonForDistrustOfContent(folder);
}
