// SPDX-License-Identifier: MIT
#include "platform/DirectoryReader.h"

#include <QFile>

#include <cerrno>

DirectoryReader::DirectoryReader(const QString &path)
{
    if (path.contains(QChar(u'\0'))) {
        m_openingError = ENOENT;
        return;
    }
    m_directory = opendir(QFile::encodeName(path).constData());
    if (!m_directory)
        m_openingError = errno;
}

DirectoryReader::~DirectoryReader()
{
    if (m_directory)
        closedir(m_directory);
}

std::optional<DirectoryReader::Entry> DirectoryReader::next()
{
    const dirent *entry = m_directory ? readdir(m_directory) : nullptr;
    if (!entry)
        return std::nullopt;
    return Entry { QByteArray(entry->d_name),
        entry->d_type == DT_DIR ? EntryType::Directory : EntryType::Other };
}
