// SPDX-License-Identifier: MIT
#include "filesystems/DisplayName.h"

#include "platform/Bundle.h"
#include "platform/SystemLog.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QLatin1String reasonFor(const PropertyValue *value)
{
    return value ? "Unexpected object type."_L1 : "Key not found."_L1;
}

// The localized name. Returns std::nullopt after a log line that says why.
std::optional<QString> localizedName(const ZorvexDiskManagerFSBundle &record, const QStringList &languages)
{
    const auto bundle = Bundle::open(record.path());
    const auto info = bundle ? bundle->localizedInfoDictionary(languages) : std::nullopt;
    if (!info) {
        systemLog("Could not get localized info dictionary from bundle: "_L1 + record.path());
        return std::nullopt;
    }
    const PropertyValue *personalities = info->value(u"FSPersonalities"_s);
    if (!personalities || !personalities->asDictionary()) {
        systemLog("Could not get FSPersonalities dictionary from bundle info dictionary: "_L1
            + reasonFor(personalities));
        return std::nullopt;
    }
    const PropertyValue *personality = personalities->asDictionary()->value(record.fsPersonality);
    if (!personality || !personality->asDictionary()) {
        systemLog("Could not get \""_L1 + record.fsPersonality
            + "\" dictionary from localized bundle info dictionary: "_L1 + reasonFor(personality));
        return std::nullopt;
    }
    const PropertyValue *name = personality->asDictionary()->value(u"FSName"_s);
    if (!name || !name->asString()) {
        systemLog("Could not get FSName value from FS personality dictionary: "_L1
            + (name ? "Unexpected object type ("_L1 + name->logText() + ")."_L1 : u"Key not found."_s));
        return std::nullopt;
    }
    return *name->asString();
}

} // namespace

QString shownSpelling(const QString &bundleName, QString name)
{
    if (bundleName == "exfat"_L1)
        name.replace("ExFAT"_L1, "exFAT"_L1);
    return name;
}

QString getFilesystemTypeString(const ZorvexDiskManagerFSBundle &record, const QStringList &languages)
{
    const std::optional<QString> name = localizedName(record, languages);
    return name ? shownSpelling(record.bundleName, *name) : record.fallbackName();
}
