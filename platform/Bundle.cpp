// SPDX-License-Identifier: MIT
#include "platform/Bundle.h"

#include "platform/propertylists/DictionaryBuilder.h"
#include "platform/propertylists/PropertyList.h"
#include "platform/propertylists/PropertyListMemory.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Name
{
    QLatin1String code;
    QLatin1String otherName;
};

// The names of languages before they had codes; folders of old bundles still have them.
constexpr Name oldNames[] = {
    { "de"_L1, "German"_L1 },
    { "en"_L1, "English"_L1 },
    { "es"_L1, "Spanish"_L1 },
    { "fr"_L1, "French"_L1 },
    { "it"_L1, "Italian"_L1 },
    { "ja"_L1, "Japanese"_L1 },
    { "nl"_L1, "Dutch"_L1 },
};

// Bundles name the script of Chinese, locales the country.
constexpr Name scripts[] = {
    { "zh_CN"_L1, "zh_Hans"_L1 },
    { "zh_SG"_L1, "zh_Hans"_L1 },
    { "zh_HK"_L1, "zh_Hant"_L1 },
    { "zh_MO"_L1, "zh_Hant"_L1 },
    { "zh_TW"_L1, "zh_Hant"_L1 },
};

void appendOnce(QStringList &names, const QString &name)
{
    if (!names.contains(name))
        names.append(name);
}

void appendBothSpellings(QStringList &names, const QString &language)
{
    appendOnce(names, language);
    appendOnce(names, QString(language).replace(u'_', u'-'));
    appendOnce(names, QString(language).replace(u'-', u'_'));
}

// The names under which a bundle may keep the language, the closest first.
QStringList folderNames(const QString &language)
{
    QStringList names;
    if (language.isEmpty() || language.contains(u'/'))
        return names;
    appendBothSpellings(names, language);
    const QString underscored = QString(language).replace(u'-', u'_');
    for (const Name &script : scripts) {
        if (underscored == script.code)
            appendBothSpellings(names, script.otherName);
    }
    // zh_Hant_TW, zh_Hant, zh
    for (qsizetype cut = underscored.lastIndexOf(u'_'); cut > 0; cut = underscored.lastIndexOf(u'_', cut - 1))
        appendBothSpellings(names, underscored.left(cut));
    const QString base = underscored.section(u'_', 0, 0);
    for (const Name &old : oldNames) {
        if (base == old.code)
            appendOnce(names, old.otherName);
    }
    return names;
}

PropertyDictionary laidOver(const PropertyDictionary &below, const PropertyDictionary &above)
{
    DictionaryBuilder builder;
    for (const auto &[key, value] : below)
        builder.insert(key, value);
    for (const auto &[key, value] : above)
        builder.insert(key, value);
    return builder.take();
}

} // namespace

Bundle::Bundle(QString path)
    : m_path(std::move(path))
{
}

std::optional<Bundle> Bundle::open(const QString &path)
{
    struct stat status = {};
    if (path.contains(QChar(u'\0')) || stat(QFile::encodeName(path).constData(), &status) != 0
        || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return Bundle(path);
}

QString Bundle::resourcePath(const QString &name) const
{
    return m_path + "/Contents/Resources/"_L1 + name;
}

std::optional<PropertyDictionary> Bundle::infoDictionary() const
{
    return readDictionaryFile(m_path + "/Contents/Info.plist"_L1, [](const QByteArray &bytes) {
        const std::optional<PropertyValue> root = readPropertyList(bytes);
        const PropertyDictionary *dictionary = root ? root->asDictionary() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    });
}

std::optional<PropertyDictionary> Bundle::localizedInfoDictionary(const QStringList &languages) const
{
    std::optional<PropertyDictionary> info = infoDictionary();
    if (!info)
        return std::nullopt;
    for (const QString &language : languages) {
        for (const QString &name : folderNames(language)) {
            if (const auto table
                = readDictionaryFile(resourcePath(name + ".lproj/InfoPlist.strings"_L1), readStringsTable))
                return laidOver(*info, *table);
        }
    }
    return info;
}
