// SPDX-License-Identifier: MIT
//
// A temporary folder in which a test makes bundles.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class BundleFolder
{
public:
    QString path() const { return m_folder.path(); }
    QString bundlePath(const QString &name) const { return m_folder.filePath(name + QStringLiteral(".fs")); }

    // Makes the bundle "name.fs" with an Info.plist of this XML as its root value. False when that fails.
    [[nodiscard]] bool addBundle(const QString &name, const QByteArray &rootXml) const
    {
        return write(bundlePath(name) + QStringLiteral("/Contents/Info.plist"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" + rootXml + "</plist>");
    }

    // The same for a bundle whose dictionary has an identifier and these personalities.
    [[nodiscard]] bool addPersonalities(const QString &name, const QByteArray &personalitiesXml) const
    {
        return addBundle(name,
            "<dict><key>CFBundleIdentifier</key><string>test." + name.toUtf8()
                + "</string><key>FSPersonalities</key><dict>" + personalitiesXml + "</dict></dict>");
    }

    [[nodiscard]] bool addStrings(const QString &name, const QString &language, const QByteArray &text) const
    {
        return write(bundlePath(name) + QStringLiteral("/Contents/Resources/") + language
                + QStringLiteral(".lproj/InfoPlist.strings"),
            text);
    }

    [[nodiscard]] static bool write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
            && file.write(content) == content.size();
    }

private:
    QTemporaryDir m_folder;
};
