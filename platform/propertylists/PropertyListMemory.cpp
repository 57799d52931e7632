// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyListMemory.h"

#include "platform/propertylists/PropertyList.h"

#include <QHash>
#include <QMutex>

namespace {

constexpr qsizetype mostFiles = 256;
constexpr qsizetype mostBytes = qsizetype { 64 } * 1024; // a larger file is parsed each time

struct ParsedFile
{
    QByteArray bytes;
    std::optional<PropertyDictionary> dictionary;
};

class Memory
{
public:
    std::optional<ParsedFile> find(const QString &path)
    {
        const QMutexLocker locker(&m_mutex);
        const auto found = m_files.constFind(path);
        return found == m_files.constEnd() ? std::nullopt : std::optional(*found);
    }

    void remember(const QString &path, const ParsedFile &file)
    {
        const QMutexLocker locker(&m_mutex);
        if (m_files.size() >= mostFiles)
            m_files.clear();
        m_files.insert(path, file);
    }

private:
    QMutex m_mutex;
    QHash<QString, ParsedFile> m_files;
};

Memory &memory()
{
    static Memory instance;
    return instance;
}

} // namespace

std::optional<PropertyDictionary> readDictionaryFile(const QString &path, DictionaryReader reader)
{
    const std::optional<QByteArray> bytes = readPropertyListFile(path);
    if (!bytes)
        return std::nullopt;
    if (bytes->size() > mostBytes)
        return reader(*bytes);
    const std::optional<ParsedFile> known = memory().find(path);
    if (known && known->bytes == *bytes)
        return known->dictionary;
    const ParsedFile parsed { *bytes, reader(*bytes) };
    memory().remember(path, parsed);
    return parsed.dictionary;
}
