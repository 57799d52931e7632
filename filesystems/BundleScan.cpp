// SPDX-License-Identifier: MIT
#include "filesystems/BundleScan.h"

#include "platform/Bundle.h"
#include "platform/DirectoryReader.h"
#include "platform/SystemLog.h"

#include <QSet>
#include <QStringDecoder>

#include <memory>
#include <unistd.h>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QByteArrayView bundleSuffix = ".fs";

// The text of a name on disk. Returns std::nullopt when its bytes are not UTF-8.
std::optional<QString> decodeName(QByteArrayView bytes)
{
    // A byte order mark is part of the name, without which the file would not be found; and nothing follows
    // that could complete a character at the end.
    QStringDecoder decoder(QStringConverter::Utf8,
        QStringConverter::Flag::ConvertInitialBom | QStringConverter::Flag::Stateless);
    QString name = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(name));
}

QString bundlePath(const QString &baseDir, const QString &name)
{
    return baseDir + u'/' + name + ".fs"_L1;
}

class BundleScan
{
public:
    BundleScan(
        const BundleScanLog &log, const BundleVisitor &visit, const BundleGuard &guard, Distrusted distrusted)
        : m_log(log)
        , m_visit(visit)
        , m_guard(guard)
        , m_distrusted(distrusted)
    {
    }

    void scanDirectory(const QString &baseDir)
    {
        DirectoryReader reader(baseDir);
        if (const int error = reader.openingError()) {
            m_log("Error while opening directory \""_L1 + baseDir + "\": "_L1 + errnoText(error) + " ("_L1
                + QString::number(error) + u')');
            return;
        }
        while (const auto entry = reader.next()) {
            if (entry->type == DirectoryReader::EntryType::Directory && entry->name.endsWith(bundleSuffix))
                scanEntry(baseDir, QByteArrayView(entry->name).chopped(bundleSuffix.size()));
        }
    }

    void handOnWhatComesLast()
    {
        for (const BundleDescription &description : m_last) {
            if (!m_hidden.contains(description.name))
                handOn(description);
        }
    }

private:
    void scanEntry(const QString &baseDir, QByteArrayView nameBytes)
    {
        const std::optional<QString> name = decodeName(nameBytes);
        if (!name) {
            m_log(u"Error while allocating temporary string for fs bundle name."_s);
            return;
        }
        const QString path = bundlePath(baseDir, *name);
        if (m_hidden.contains(*name))
            return;
        const bool isTrusted = !m_guard || m_guard(path);
        if (!isTrusted && m_distrusted == Distrusted::LeftOut)
            return;
        const auto bundle = Bundle::open(path);
        const auto information = bundle ? bundle->infoDictionary() : std::nullopt;
        auto description = information ? describeBundle(baseDir, *name, *information, m_log) : std::nullopt;
        if (!description)
            return;
        description->isTrusted = isTrusted;
        if (isTrusted)
            handOn(*description);
        else
            m_last.push_back(*std::move(description));
    }

    void handOn(const BundleDescription &description)
    {
        if (m_visit(description))
            m_hidden.insert(description.name);
    }

    const BundleScanLog &m_log;
    const BundleVisitor &m_visit;
    const BundleGuard &m_guard;
    const Distrusted m_distrusted;
    QSet<QString> m_hidden; // names
    std::vector<BundleDescription> m_last;
};

} // namespace

QString BundleDescription::path() const
{
    return bundlePath(baseDir, name);
}

BundleGuard guardOfTrustedBundles(const TrustedOwner &owner)
{
    return [owner, told = std::make_shared<QSet<QString>>()](const QString &bundlePath) {
        const auto reason = reasonForDistrustOfTree(bundlePath, owner);
        if (reason && !told->contains(*reason)) {
            told->insert(*reason);
            systemLog(u"The bundle %1 is not read with administrator rights: %2"_s.arg(bundlePath, *reason));
        }
        return !reason;
    };
}

BundleGuard guardOfThisProcess()
{
    return geteuid() == 0 ? guardOfTrustedBundles() : BundleGuard();
}

std::optional<BundleDescription> describeBundle(const QString &baseDir, const QString &name,
    const PropertyDictionary &information, const BundleScanLog &log)
{
    const PropertyDictionary *personalities = information.dictionary(u"FSPersonalities"_s);
    BundleDescription description { baseDir, name, information.text(u"CFBundleIdentifier"_s), information,
        {} };
    if (description.identifier.isEmpty() || !personalities)
        return std::nullopt;
    qint32 index = 0;
    for (const auto &[key, value] : *personalities) {
        if (index == mostPersonalities) {
            log(u"Leaving out what is beyond %1 personalities in bundle \"%2\"."_s.arg(index).arg(name));
            break;
        }
        if (const PropertyDictionary *properties = value.asDictionary())
            description.personalities.push_back({ index, key, *properties });
        else
            log("Unexpected value in FSPersonalities dictionary: "_L1 + value.logText());
        ++index;
    }
    return description.personalities.empty() ? std::nullopt : std::optional(std::move(description));
}

void scanBundles(const QStringList &directories, const BundleScanLog &log, const BundleVisitor &visit,
    const BundleGuard &guard, Distrusted distrusted)
{
    BundleScan scan(log, visit, guard, distrusted);
    for (const QString &directory : directories)
        scan.scanDirectory(directory);
    scan.handOnWhatComesLast();
}

const QStringList &filesystemDirectories()
{
    static const QStringList directories { u"/System/Library/Filesystems"_s, u"/Library/Filesystems"_s };
    return directories;
}
