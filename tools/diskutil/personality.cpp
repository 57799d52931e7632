// SPDX-License-Identifier: MIT
#include "tools/diskutil/personality.h"

#include <algorithm>

#include "platform/no_widgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    const QString *text = value ? value->asString() : nullptr;
    return text ? *text : QString();
}

std::optional<qint64> numberOf(const PropertyDictionary &dictionary, const QString &key)
{
    const PropertyValue *value = dictionary.value(key);
    const PropertyNumber *number = value ? value->asNumber() : nullptr;
    return number ? number->toLongLong() : std::nullopt;
}

QStringList textsOf(const PropertyDictionary &dictionary, const QString &key)
{
    QStringList texts;
    const PropertyValue *value = dictionary.value(key);
    const PropertyArray *array = value ? value->asArray() : nullptr;
    if (!array)
        return texts;
    for (const PropertyValue &element : *array) {
        if (const QString *text = element.asString())
            texts.append(*text);
    }
    return texts;
}

// An executable is a name in the bundle, never a path out of it.
std::optional<BundleTool> toolOf(
    const PropertyDictionary &dictionary, const QString &executableKey, const QString &argumentsKey)
{
    const QString executable = textOf(dictionary, executableKey);
    if (executable.isEmpty() || executable.contains(u'/') || executable.startsWith(u'.'))
        return std::nullopt;
    return BundleTool { executable, textsOf(dictionary, argumentsKey) };
}

Personality readPersonality(const QString &key, const PropertyDictionary &dictionary)
{
    return {
        key,
        numberOf(dictionary, u"FSSubType"_s),
        numberOf(dictionary, u"FSFormatMinimumSize"_s),
        numberOf(dictionary, u"FSFormatMaximumSize"_s),
        toolOf(dictionary, u"FSFormatExecutable"_s, u"FSFormatArguments"_s),
        toolOf(dictionary, u"FSVerificationExecutable"_s, u"FSVerificationArguments"_s),
        toolOf(dictionary, u"FSRepairExecutable"_s, u"FSRepairArguments"_s),
    };
}

LabelRule readLabelRule(const PropertyDictionary &information)
{
    LabelRule rule;
    const auto limit = numberOf(information, u"FSLabelLimit"_s);
    const auto unit = labelUnitNamed(textOf(information, u"FSLabelUnit"_s));
    if (limit && unit) {
        rule.limit = *limit;
        rule.unit = *unit;
    }
    rule.forbidden = textOf(information, u"FSLabelForbiddenCharacters"_s);
    rule.forbiddenFirst = textOf(information, u"FSLabelForbiddenFirstCharacters"_s);
    return rule;
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

FilesystemBundle readFilesystemBundle(
    const QString &path, const QString &name, const PropertyDictionary &information)
{
    FilesystemBundle bundle { path, name, {}, readLabelRule(information),
        textsOf(information, u"FSLinuxTools"_s), textsOf(information, u"FSLinuxPackages"_s),
        textsOf(information, u"FSLinuxTypes"_s) };
    const PropertyValue *value = information.value(u"FSPersonalities"_s);
    if (const PropertyDictionary *personalities = value ? value->asDictionary() : nullptr) {
        for (const auto &[key, personality] : *personalities) {
            if (const PropertyDictionary *dictionary = personality.asDictionary())
                bundle.personalities.push_back(readPersonality(key, *dictionary));
        }
    }
    return bundle;
}

PersonalityChoice personalityNamed(const std::vector<FilesystemBundle> &bundles, const QString &key)
{
    for (const FilesystemBundle &bundle : bundles) {
        for (const Personality &personality : bundle.personalities) {
            if (personality.key == key)
                return { &bundle, &personality };
        }
    }
    return {};
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
