// SPDX-License-Identifier: MIT
#include "platform/FilesystemClaims.h"

#include "platform/Bundle.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <limits>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// A bundle that does not say where it stands comes after all that do.
constexpr qint64 lastProbeOrder = std::numeric_limits<qint64>::max();

QString stringValue(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    const QString *text = value ? value->asString() : nullptr;
    return text ? *text : QString();
}

const PropertyArray *arrayValue(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    return value ? value->asArray() : nullptr;
}

const PropertyNumber *numberValue(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    return value ? value->asNumber() : nullptr;
}

// Changes whenever a bundle is put into the directory or taken out of it.
QByteArray directoryStamp(const QString &directory)
{
    struct stat status = {};
    if (stat(QFile::encodeName(directory).constData(), &status) != 0)
        return "absent;";
    return QByteArray::number(static_cast<qint64>(status.st_ino)) + ':'
        + QByteArray::number(static_cast<qint64>(status.st_mtim.tv_sec)) + '.'
        + QByteArray::number(static_cast<qint64>(status.st_mtim.tv_nsec)) + ';';
}

} // namespace

FilesystemClaims::FilesystemClaims(QStringList directories)
    : m_directories(std::move(directories))
{
}

std::optional<FilesystemClaims::Claim> FilesystemClaims::readClaim(
    const QString &bundlePath, const QString &bundleName)
{
    const auto bundle = Bundle::open(bundlePath);
    const auto info = bundle ? bundle->infoDictionary() : std::nullopt;
    const PropertyArray *types = info ? arrayValue(*info, u"FSLinuxTypes"_s) : nullptr;
    if (!types)
        return std::nullopt;

    Claim claim { bundleName, {}, lastProbeOrder, {} };
    for (const PropertyValue &type : *types) {
        if (const QString *name = type.asString())
            claim.types.append(*name);
    }
    if (const PropertyNumber *order = numberValue(*info, u"FSProbeOrder"_s))
        claim.probeOrder = order->longLongValue();
    if (const PropertyArray *subtypes = arrayValue(*info, u"FSLinuxSubtypes"_s)) {
        for (const PropertyValue &value : *subtypes) {
            const PropertyDictionary *entry = value.asDictionary();
            const PropertyNumber *number = entry ? numberValue(*entry, u"FSSubType"_s) : nullptr;
            if (number)
                claim.subtypes.push_back({ stringValue(*entry, u"IdType"_s),
                    stringValue(*entry, u"IdVersion"_s), static_cast<qint16>(number->longLongValue()) });
        }
    }
    return claim;
}

void FilesystemClaims::refresh()
{
    QByteArray stamp;
    for (const QString &directory : m_directories)
        stamp += directoryStamp(directory);
    if (stamp == m_stamp)
        return;
    m_stamp = stamp;
    m_claims.clear();
    QSet<QString> seen;
    for (const QString &directory : m_directories) {
        for (const QString &entry : QDir(directory).entryList({ u"*.fs"_s }, QDir::Dirs)) {
            const QString bundleName = entry.chopped(3);
            if (seen.contains(bundleName))
                continue;
            seen.insert(bundleName);
            if (auto claim = readClaim(directory + u'/' + entry, bundleName))
                m_claims.push_back(std::move(*claim));
        }
    }
    std::stable_sort(m_claims.begin(), m_claims.end(),
        [](const Claim &a, const Claim &b) { return a.probeOrder < b.probeOrder; });
}

std::optional<FilesystemClaims::Volume> FilesystemClaims::find(
    const QString &type, const QString &version) const
{
    const auto claim = std::find_if(m_claims.begin(), m_claims.end(),
        [&type](const Claim &candidate) { return candidate.types.contains(type); });
    if (claim == m_claims.end())
        return std::nullopt;
    const auto subtype
        = std::find_if(claim->subtypes.begin(), claim->subtypes.end(), [&](const Subtype &candidate) {
              return candidate.type == type && (candidate.version.isEmpty() || candidate.version == version);
          });
    Volume volume { claim->bundleName, {} };
    if (subtype != claim->subtypes.end())
        volume.subtype = subtype->number;
    return volume;
}
