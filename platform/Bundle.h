// SPDX-License-Identifier: MIT
//
// A bundle: a folder with Contents/Info.plist, and per-language folders Contents/Resources/<language>.lproj.
// Every call reads the disk. Any thread.
#pragma once

#include "platform/Property.h"

#include <QStringList>

#include <optional>

class Bundle
{
public:
    // The bundle at the path. Returns std::nullopt when there is no folder.
    static std::optional<Bundle> open(const QString &path);

    const QString &path() const { return m_path; }

    // Contents/Resources/<name>. Does not look whether there is such a file.
    QString resourcePath(const QString &name) const;

    // The information dictionary as Contents/Info.plist has it. Returns std::nullopt when it cannot be read.
    std::optional<PropertyDictionary> infoDictionary() const;

    // The information dictionary, with top-level values replaced by those of InfoPlist.strings in the first
    // of the languages for which the bundle has a readable one; unchanged when there is none. Languages are
    // localization names such as "de" or "pt_BR". Returns std::nullopt when there is no information
    // dictionary.
    std::optional<PropertyDictionary> localizedInfoDictionary(const QStringList &languages) const;

private:
    explicit Bundle(QString path);

    QString m_path;
};
