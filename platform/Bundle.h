// SPDX-License-Identifier: MIT
//
// A bundle: a folder with Contents/Info.plist, and per-language folders Contents/Resources/<language>.lproj.
// Every call reads the disk anew. Any thread.
#pragma once

#include "platform/Property.h"

#include <QStringList>

#include <optional>

class Bundle
{
public:
    // The bundle at the path, or nothing when there is no folder.
    static std::optional<Bundle> open(const QString &path);

    const QString &path() const { return m_path; }

    // Contents/Resources/<name>; whether there is such a file is not looked at.
    QString resourcePath(const QString &name) const;

    // The information dictionary as Contents/Info.plist has it; nothing when it cannot be read.
    std::optional<PropertyDictionary> infoDictionary() const;

    // The information dictionary with the top-level values of the first of the languages that the bundle has
    // a readable InfoPlist.strings for laid over it; the unlocalized one when there is none. Languages are
    // localization names such as "de" or "pt_BR"; nothing when there is no information dictionary.
    std::optional<PropertyDictionary> localizedInfoDictionary(const QStringList &languages) const;

private:
    explicit Bundle(QString path);

    QString m_path;
};
