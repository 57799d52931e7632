// SPDX-License-Identifier: MIT
//
// Which volume labels a file system can hold. Functions of values, any thread.
#pragma once

#include <QString>

namespace LabelRules {

enum class RuleSet { Ntfs, Fat, ExFat, Other };

// The rules that hold for a bundle, by its exact name.
RuleSet ruleSetOf(const QString &bundleName);

// Whether a volume can bear the label. The label is measured, never altered. A label that no Unicode encoding
// can represent (an unpaired surrogate) is refused; so is one without a composed form, with a line in
// the log.
bool isValidLabel(const QString &label, RuleSet ruleSet);

} // namespace LabelRules
