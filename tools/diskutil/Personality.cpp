// SPDX-License-Identifier: MIT
#include "tools/diskutil/Personality.h"

#include "filesystems/DisplayName.h"

#include <algorithm>
#include <array>
#include <functional>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<qint64> numberOf(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyNumber *number = dictionary.number(key);
    return number ? number->toLongLong() : std::nullopt;
}

// The tool whose keys begin with this. An executable is a name in the bundle, never a path out of it.
std::optional<BundleTool> toolOf(const PropertyDictionary &dictionary, const QString &prefix)
{
    const QString executable = dictionary.text(prefix + u"Executable"_s);
    if (executable.isEmpty() || executable.contains(u'/') || executable.startsWith(u'.'))
        return std::nullopt;
    const PropertyValue *const claims = dictionary.value(prefix + u"ClaimsDevice"_s);
    const bool leavesTheClaim = claims && claims->asBoolean() && !*claims->asBoolean();
    return BundleTool { executable, dictionary.texts(prefix + u"Arguments"_s),
        leavesTheClaim ? Claimant::ThisProcess : Claimant::Program };
}

PartitionTypes partitionTypesOf(const PropertyDictionary &dictionary)
{
    PartitionTypes types;
    const QString gpt = dictionary.text(u"FSPartitionTypeGPT"_s);
    const QString mbr = dictionary.text(u"FSPartitionTypeMBR"_s);
    if (DiskLayoutRules::isPartitionType(PartitionScheme::Gpt, gpt))
        types.gpt = gpt;
    if (DiskLayoutRules::isPartitionType(PartitionScheme::Mbr, mbr))
        types.mbr = mbr;
    return types;
}

Personality readPersonality(
    const QString &bundleName, const QString &key, const PropertyDictionary &dictionary)
{
    const QString name = dictionary.text(u"FSName"_s);
    return {
        key,
        name.isEmpty() ? key : shownSpelling(bundleName, name),
        numberOf(dictionary, u"FSSubType"_s),
        numberOf(dictionary, u"FSFormatMinimumSize"_s),
        numberOf(dictionary, u"FSFormatMaximumSize"_s),
        toolOf(dictionary, u"FSFormat"_s),
        toolOf(dictionary, u"FSVerification"_s),
        toolOf(dictionary, u"FSRepair"_s),
        partitionTypesOf(dictionary),
    };
}

const Personality *findPersonality(
    const FilesystemBundle &bundle, std::optional<qint64> subtype, Operation operation)
{
    const auto found = std::find_if(
        bundle.personalities.begin(), bundle.personalities.end(), [&](const Personality &candidate) {
            return candidate.subtype == subtype && candidate.tool(operation);
        });
    return found == bundle.personalities.end() ? nullptr : &*found;
}

const FilesystemBundle *bundleNamed(const std::vector<FilesystemBundle> &bundles, const QString &name)
{
    const auto found = std::find_if(bundles.begin(), bundles.end(),
        [&name](const FilesystemBundle &candidate) { return candidate.name == name; });
    return found == bundles.end() ? nullptr : &*found;
}

PersonalityChoice firstPersonality(const std::vector<FilesystemBundle> &bundles, bool isTrusted,
    const std::function<bool(const Personality &)> &matches)
{
    for (const FilesystemBundle &bundle : bundles) {
        const auto found = std::find_if(bundle.personalities.begin(), bundle.personalities.end(), matches);
        if (bundle.isTrusted == isTrusted && found != bundle.personalities.end())
            return { &bundle, &*found };
    }
    return {};
}

} // namespace

const std::optional<BundleTool> &Personality::tool(Operation operation) const
{
    switch (operation) {
    case Operation::Verify:
        return verification;
    case Operation::Repair:
        return repair;
    case Operation::Erase:
        break;
    }
    return format;
}

FilesystemBundle readFilesystemBundle(const BundleDescription &description)
{
    const PropertyDictionary &information = description.information;
    FilesystemBundle bundle { description.path(), description.name, {}, readLabelRule(information),
        information.texts(u"FSLinuxTools"_s), information.texts(u"FSLinuxPackages"_s),
        information.texts(u"FSLinuxTypes"_s), description.isTrusted };
    for (const BundlePersonality &personality : description.personalities)
        bundle.personalities.push_back(readPersonality(bundle.name, personality.key, personality.properties));
    return bundle;
}

PersonalityChoice personalityNamed(const std::vector<FilesystemBundle> &bundles, const QString &name)
{
    using Match = std::function<bool(const Personality &)>;
    const std::array<Match, 3> matches {
        [&](const Personality &candidate) { return candidate.key == name; },
        [&](const Personality &candidate) { return candidate.key.compare(name, Qt::CaseInsensitive) == 0; },
        [&](const Personality &candidate) { return candidate.name.compare(name, Qt::CaseInsensitive) == 0; },
    };
    for (const bool isTrusted : { true, false }) {
        for (const Match &match : matches) {
            if (const auto choice = firstPersonality(bundles, isTrusted, match); choice.personality)
                return choice;
        }
    }
    return {};
}

QStringList namesOfFormats(const std::vector<FilesystemBundle> &bundles)
{
    QStringList names;
    for (const FilesystemBundle &bundle : bundles) {
        for (const Personality &personality : bundle.personalities) {
            if (personality.format && !names.contains(personality.name, Qt::CaseInsensitive))
                names.append(personality.name);
        }
    }
    return names;
}

PersonalityChoice personalityForVolume(const std::vector<FilesystemBundle> &bundles, const QString &kind,
    std::optional<qint64> subtype, Operation operation)
{
    const FilesystemBundle *bundle = bundleNamed(bundles, kind);
    if (!bundle)
        return {};
    const Personality *personality = findPersonality(*bundle, subtype, operation);
    if (!personality)
        personality = findPersonality(*bundle, std::nullopt, operation);
    return { bundle, personality };
}

bool servesSameVolumes(
    const std::vector<FilesystemBundle> &bundles, const QString &oneName, const QString &otherName)
{
    const FilesystemBundle *one = bundleNamed(bundles, oneName);
    const FilesystemBundle *other = bundleNamed(bundles, otherName);
    return one && other
        && std::any_of(one->linuxTypes.begin(), one->linuxTypes.end(),
            [other](const QString &type) { return other->linuxTypes.contains(type); });
}
