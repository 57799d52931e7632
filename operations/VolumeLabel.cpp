// SPDX-License-Identifier: MIT
//
// The volume label that the user typed, before anything is formatted.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "filesystems/LabelRule.h"
#include "operations/label_rules.h"
#include "platform/Bundle.h"
#include "platform/DisturbingCharacters.h"
#include "platform/Localization.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString refusalText(LabelRules::RuleSet ruleSet)
{
    switch (ruleSet) {
    case LabelRules::RuleSet::Ntfs:
        return localizedString("INVALID_NTFS_VOLUME_NAME_TEXT");
    case LabelRules::RuleSet::Fat:
        return localizedString("INVALID_FAT_VOLUME_NAME_TEXT");
    case LabelRules::RuleSet::ExFat:
        return localizedString("INVALID_EXFAT_VOLUME_NAME_TEXT");
    case LabelRules::RuleSet::Other:
        break;
    }
    return u"A KVLX volume name can be at most 255 bytes long."_s;
}

LabelRule ruleOfBundle(const QString &path)
{
    const auto bundle = Bundle::open(path);
    const auto information = bundle ? bundle->infoDictionary() : std::nullopt;
    return information ? readLabelRule(*information) : LabelRule();
}

QString spaced(const QString &characters)
{
    QStringList list;
    for (const QChar c : characters)
        list.append(c);
    return list.join(u' ');
}

// The sentence that names the limit which the label does not keep.
QString objectionText(const LabelObjection &objection, const LabelRule &rule, const QString &filesystem)
{
    using Reason = LabelObjection::Reason;
    const QString limit = QString::number(objection.limit);
    switch (objection.reason) {
    case Reason::NoText:
    case Reason::ControlCharacter:
        break;
    case Reason::NotAscii:
        return formatLocalized(localizedString("LABEL_ASCII_ONLY_FMT"), { filesystem });
    case Reason::ForbiddenCharacter:
        return formatLocalized(localizedString("LABEL_FORBIDDEN_CHARACTERS_FMT"),
            { filesystem, nameToShow(spaced(rule.forbidden)) });
    case Reason::ForbiddenFirstCharacter:
        return objection.character == u' '
            ? formatLocalized(localizedString("LABEL_LEADING_SPACE_FMT"), { filesystem })
            : formatLocalized(localizedString("LABEL_FORBIDDEN_FIRST_CHARACTER_FMT"),
                  { filesystem, nameToShow(objection.character) });
    case Reason::TooLong:
        return formatLocalized(
            localizedString(
                rule.unit == LabelRule::Unit::Bytes ? "LABEL_BYTES_LIMIT_FMT" : "LABEL_CHARACTERS_LIMIT_FMT"),
            { filesystem, limit });
    }
    return formatLocalized(localizedString("LABEL_UNPRINTABLE_FMT"), { filesystem });
}

std::optional<QString> givenObjection(const QString &label, const ZorvexDiskManagerFSBundle &filesystem)
{
    const LabelRules::RuleSet ruleSet = LabelRules::ruleSetOf(filesystem.bundleName);
    return LabelRules::isValidLabel(label, ruleSet) ? std::nullopt : std::optional(refusalText(ruleSet));
}

// How long a label may be, in a sentence; empty when the file system sets no limit.
QString labelLimitText(const ZorvexDiskManagerFSBundle &forFilesystem, const QString &name)
{
    const LabelRules::RuleSet ruleSet = LabelRules::ruleSetOf(forFilesystem.bundleName);
    if (ruleSet != LabelRules::RuleSet::Other)
        return refusalText(ruleSet);
    const LabelRule rule = ruleOfBundle(forFilesystem.path());
    if (rule.unit == LabelRule::Unit::Unlimited)
        return {};
    return formatLocalized(
        localizedString(
            rule.unit == LabelRule::Unit::Bytes ? "LABEL_BYTES_LIMIT_FMT" : "LABEL_CHARACTERS_LIMIT_FMT"),
        { name, QString::number(rule.limit) });
}

} // namespace

std::optional<QString> ZorvexDiskManagerAppDelegate::bundleObjection(
    const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem) const
{
    const LabelRule rule = ruleOfBundle(forFilesystem.path());
    const auto objection = objectionToLabel(rule, label);
    return objection
        ? std::optional(objectionText(*objection, rule, nameToShow(getFilesystemTypeString(forFilesystem))))
        : std::nullopt;
}

std::optional<QString> ZorvexDiskManagerAppDelegate::volumeLabelObjection(
    const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem) const
{
    const std::optional<QString> given = givenObjection(label, forFilesystem);
    return given ? given : bundleObjection(label, forFilesystem);
}

QString ZorvexDiskManagerAppDelegate::formatRemark(
    const ZorvexDiskManagerFSBundle *forFilesystem, const QString &name) const
{
    const QString missing = missingPackagesText(forFilesystem);
    return !forFilesystem || !missing.isEmpty() ? missing : labelLimitText(*forFilesystem, name);
}

bool ZorvexDiskManagerAppDelegate::reportObjection(const std::optional<QString> &objection)
{
    if (objection)
        errorMessageWithTitle(localizedString("INVALID_VOLUME_LABEL_TEXT"), *objection);
    return !objection;
}

bool ZorvexDiskManagerAppDelegate::validateVolumeLabel(
    const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem)
{
    return reportObjection(givenObjection(label, forFilesystem));
}

bool ZorvexDiskManagerAppDelegate::bundleAllowsLabel(
    const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem)
{
    return reportObjection(bundleObjection(label, forFilesystem));
}
