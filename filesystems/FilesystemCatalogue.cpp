// SPDX-License-Identifier: MIT
#include "filesystems/FilesystemCatalogue.h"

#include "filesystems/BundleScan.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <new>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t initialListCapacity = 32;

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

class CatalogueScan
{
public:
    explicit CatalogueScan(const CatalogueMemory &memory)
        : m_memory(memory)
    {
    }

    std::optional<FilesystemLists> scan(const QStringList &directories, const BundleGuard &guard)
    {
        if (!createLists()) {
            systemLog(u"Error while creating filesystem bundle lists."_s);
            return std::nullopt;
        }
        scanBundles(
            directories, [](const QString &line) { systemLog(line); },
            [this](const BundleDescription &bundle) { return addBundle(bundle); }, guard);
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

    // Returns whether a record was made of the bundle: only such a bundle hides others of its name.
    bool addBundle(const BundleDescription &bundle)
    {
        const std::size_t count = m_lists.all.size();
        for (const BundlePersonality &personality : bundle.personalities) {
            const FilesystemBundleRef record = m_memory.allocRecord();
            if (!record) {
                systemLog(u"Error while allocating memory for fs bundle container."_s);
                continue;
            }
            record->identifier = bundle.identifier;
            record->baseDir = bundle.baseDir;
            record->bundleName = bundle.name;
            record->fsPersonalityIndex = personality.index;
            record->fsPersonality = personality.key;
            record->requiredTools = bundle.information.texts(u"FSLinuxTools"_s);
            record->packages = bundle.information.texts(u"FSLinuxPackages"_s);
            addPersonality(record, personality.properties);
        }
        return m_lists.all.size() > count;
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

std::optional<FilesystemLists> scanFilesystemDirectories(
    const QStringList &directories, const CatalogueMemory &memory, const BundleGuard &guard)
{
    return CatalogueScan(memory).scan(directories, guard);
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
        (*known)->requiredTools = scanned->requiredTools;
        (*known)->packages = scanned->packages;
    }
    std::stable_sort(persistent->begin(), persistent->end(),
        [](const FilesystemBundleRef &a, const FilesystemBundleRef &b) { return a->compare(*b) < 0; });
}
