// SPDX-License-Identifier: MIT
//
// The volume label that the user typed, before anything is formatted.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "operations/label_rules.h"
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

} // namespace

bool ZorvexDiskManagerAppDelegate::validateVolumeLabel(
    const QString &label, const ZorvexDiskManagerFSBundle &forFilesystem)
{
    const LabelRules::RuleSet ruleSet = LabelRules::ruleSetOf(forFilesystem.bundleName);
    if (LabelRules::isValidLabel(label, ruleSet))
        return true;
    errorMessageWithTitle(localizedString("INVALID_VOLUME_LABEL_TEXT"), refusalText(ruleSet));
    return false;
}
