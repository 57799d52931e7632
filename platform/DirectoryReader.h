// SPDX-License-Identifier: MIT
//
// The entries of one directory, in the order in which the file system has them. Any thread; one object
// belongs to one thread.
#pragma once

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <optional>

class DirectoryReader
{
public:
    enum class EntryType { Directory, Other };

    struct Entry
    {
        QByteArray name; // the bytes as they are stored, whatever their encoding
        EntryType type; // from the directory itself: a symbolic link or an unknown type is Other
    };

    explicit DirectoryReader(const QString &path);
    ~DirectoryReader();
    DirectoryReader(const DirectoryReader &) = delete;
    DirectoryReader &operator=(const DirectoryReader &) = delete;

    // The errno value of opening the directory; 0 when it is open.
    int openingError() const { return m_openingError; }

    // The next entry, "." and ".." included. Returns std::nullopt at the end or when the directory is not
    // open.
    std::optional<Entry> next();

private:
    DIR *m_directory = nullptr;
    int m_openingError = 0;
};
