// SPDX-License-Identifier: MIT
#include "filesystems/catalogue_rules.h"

#include "platform/Bundle.h"
#include "platform/DirectoryReader.h"
#include "platform/SystemLog.h"

#include <QStringDecoder>

#include <algorithm>
#include <new>

#include "platform/no_widgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t initialListCapacity = 32;
constexpr QByteArrayView bundleSuffix = ".fs";

struct Capabilities
{
    bool canFormat;
    bool canCheck;
    bool canRepair;
};

Capabilities capabilitiesOf(const PropertyDictionary &personality)
{
    const PropertyValue *interactive = personality.value(u"FSFormatInteractive"_s);
    return {
        personality.value(u"FSFormatExecutable"_s) && (!interactive || interactive->booleanValue()),
        personality.value(u"FSVerificationExecutable"_s) != nullptr,
        personality.value(u"FSRepairExecutable"_s) != nullptr,
    };
}

std::optional<PropertyValue> fieldOf(const PropertyDictionary &personality, const QString &key)
{
    const PropertyValue *value = personality.value(key);
    return value ? std::optional(*value) : std::nullopt;
}

// The text of a name on disk, or nothing when its bytes are not UTF-8.
std::optional<QString> decodeName(QByteArrayView bytes)
{
    // A byte order mark is part of the name, without which the file would not be found; and nothing follows
    // that could complete a character at the end.
    QStringDecoder decoder(QStringConverter::Utf8,
        QStringConverter::Flag::ConvertInitialBom | QStringConverter::Flag::Stateless);
    QString name = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(name));
}

class CatalogueScan
{
public:
    explicit CatalogueScan(const CatalogueMemory &memory)
        : m_memory(memory)
    {
    }

    std::optional<FilesystemLists> scan(const QStringList &directories)
    {
        if (!createLists()) {
            systemLog(u"Error while creating filesystem bundle lists."_s);
            return std::nullopt;
        }
        for (const QString &directory : directories)
            scanDirectory(directory);
        return std::move(m_lists);
    }

private:
    bool createLists()
    {
        for (FilesystemBundleList *list :
            { &m_lists.all, &m_lists.format, &m_lists.check, &m_lists.repair }) {
            std::optional<FilesystemBundleList> created = m_memory.createList(initialListCapacity);
            if (!created)
                return false;
            *list = *std::move(created);
        }
        return true;
    }

    void scanDirectory(const QString &baseDir)
    {
        DirectoryReader reader(baseDir);
        if (const int error = reader.openingError()) {
            systemLog("Error while opening directory \""_L1 + baseDir + "\": "_L1 + errnoText(error) + " ("_L1
                + QString::number(error) + u')');
            return;
        }
        while (const auto entry = reader.next()) {
            if (entry->type == DirectoryReader::EntryType::Directory && entry->name.endsWith(bundleSuffix))
                scanEntry(baseDir, QByteArrayView(entry->name).chopped(bundleSuffix.size()));
        }
    }

    void scanEntry(const QString &baseDir, QByteArrayView nameBytes)
    {
        const std::optional<QString> bundleName = decodeName(nameBytes);
        if (!bundleName) {
            systemLog(u"Error while allocating temporary string for fs bundle name."_s);
            return;
        }
        const bool isHidden = std::any_of(m_lists.all.begin(), m_lists.all.end(),
            [&](const FilesystemBundleRef &record) { return record->bundleName == *bundleName; });
        if (isHidden)
            return;
        const auto bundle = Bundle::open(baseDir + u'/' + *bundleName + ".fs"_L1);
        const auto info = bundle ? bundle->infoDictionary() : std::nullopt;
        if (info)
            addPersonalities(baseDir, *bundleName, *info);
    }

    void addPersonalities(const QString &baseDir, const QString &bundleName, const PropertyDictionary &info)
    {
        const PropertyValue *identifierValue = info.value(u"CFBundleIdentifier"_s);
        const PropertyValue *personalitiesValue = info.value(u"FSPersonalities"_s);
        const QString *identifier = identifierValue ? identifierValue->asString() : nullptr;
        const PropertyDictionary *personalities
            = personalitiesValue ? personalitiesValue->asDictionary() : nullptr;
        if (!identifier || identifier->isEmpty() || !personalities)
            return;
        qint32 index = -1;
        for (const auto &[key, value] : *personalities) {
            ++index;
            const PropertyDictionary *personality = value.asDictionary();
            if (!personality) {
                systemLog("Unexpected value in FSPersonalities dictionary: "_L1 + value.logText());
                continue;
            }
            const FilesystemBundleRef record = m_memory.allocRecord();
            if (!record) {
                systemLog(u"Error while allocating memory for fs bundle container."_s);
                continue;
            }
            record->identifier = *identifier;
            record->baseDir = baseDir;
            record->bundleName = bundleName;
            record->fsPersonalityIndex = index;
            record->fsPersonality = key;
            addPersonality(record, *personality);
        }
    }

    void addPersonality(const FilesystemBundleRef &record, const PropertyDictionary &personality)
    {
        record->fsName = fieldOf(personality, u"FSName"_s);
        record->fsSubtype = fieldOf(personality, u"FSSubType"_s);
        record->fsFormatMinimumSize = fieldOf(personality, u"FSFormatMinimumSize"_s);
        record->fsFormatMaximumSize = fieldOf(personality, u"FSFormatMaximumSize"_s);
        const Capabilities capabilities = capabilitiesOf(personality);
        m_lists.all.push_back(record);
        if (capabilities.canFormat)
            m_lists.format.push_back(record);
        if (capabilities.canCheck)
            m_lists.check.push_back(record);
        if (capabilities.canRepair)
            m_lists.repair.push_back(record);
    }

    const CatalogueMemory &m_memory;
    FilesystemLists m_lists;
};

// A scanned record without a name matches whatever name the known one has.
bool isSamePersonality(const ZorvexDiskManagerFSBundle &scanned, const ZorvexDiskManagerFSBundle &known)
{
    return (!scanned.fsName || scanned.fsName == known.fsName)
        && scanned.fsPersonality == known.fsPersonality;
}

} // namespace

std::optional<FilesystemBundleList> CatalogueMemory::createFilesystemBundleList(std::size_t capacity) noexcept
{
    try {
        FilesystemBundleList list;
        list.reserve(capacity);
        return list;
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}

const QStringList &filesystemDirectories()
{
    static const QStringList directories { u"/System/Library/Filesystems"_s, u"/Library/Filesystems"_s };
    return directories;
}

std::optional<FilesystemLists> scanFilesystemDirectories(
    const QStringList &directories, const CatalogueMemory &memory)
{
    return CatalogueScan(memory).scan(directories);
}

void mergeFilesystemList(
    std::optional<FilesystemBundleList> &persistent, const FilesystemBundleList &temporary)
{
    if (!persistent) {
        persistent.emplace();
        persistent->reserve(temporary.size());
    }
    for (const FilesystemBundleRef &scanned : temporary) {
        const auto known = std::find_if(persistent->begin(), persistent->end(),
            [&scanned](const FilesystemBundleRef &record) { return isSamePersonality(*scanned, *record); });
        if (known == persistent->end()) {
            persistent->push_back(scanned);
            continue;
        }
        // The identifier, the subtype and the sizes stay as they were when the personality was first seen.
        (*known)->bundleName = scanned->bundleName;
        (*known)->baseDir = scanned->baseDir;
        (*known)->fsName = scanned->fsName;
        (*known)->fsPersonalityIndex = scanned->fsPersonalityIndex;
    }
    std::stable_sort(persistent->begin(), persistent->end(),
        [](const FilesystemBundleRef &a, const FilesystemBundleRef &b) { return a->compare(*b) < 0; });
}
