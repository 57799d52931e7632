// SPDX-License-Identifier: MIT
#include "operations/label_rules.h"

#include "platform/SystemLog.h"

#include <QStringConverter>

#include <algorithm>
#include <optional>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace LabelRules {

namespace {

constexpr qsizetype longestNtfsLabel = 128; // UTF-16 code units
constexpr qsizetype longestFatLabel = 11; // bytes
constexpr qsizetype longestExFatLabel = 11; // UTF-16 code units
constexpr qsizetype longestOtherLabel = 255; // bytes of UTF-8

bool isForbidden(char16_t unit)
{
    return unit < 0x20 || u"\"*/:<>?\\|"_s.contains(QChar(unit));
}

bool isRepresentable(const QString &label)
{
    // Stateless: half a surrogate pair at the end is an error and not the beginning of more.
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QByteArray encoded = encoder(label);
    return !encoder.hasError();
}

// The precomposed form; std::nullopt when there is none. Qt is not known to fail for a representable label,
// but an empty form would pass as an empty label, which is valid.
std::optional<QString> composed(const QString &label, const char *encoding)
{
    QString form = label.normalized(QString::NormalizationForm_C);
    if (form.isEmpty() && !label.isEmpty()) {
        systemLog(u"Unexpected: Unable to get composed volume label from string which can be "
                  "converted to %1 encoding."_s.arg(QLatin1String(encoding)));
        return std::nullopt;
    }
    return form;
}

bool isValidNtfsLabel(const QString &label)
{
    if (!isRepresentable(label))
        return false;
    const std::optional<QString> form = composed(label, "UTF-16");
    return form && form->size() <= longestNtfsLabel;
}

bool isValidFatLabel(const QString &label)
{
    // What has no bytes in UTF-8 is another character or none in toUtf8(), as the release of Qt decides.
    if (!isRepresentable(label))
        return false;
    const QByteArray bytes = label.toUtf8();
    return bytes.size() <= longestFatLabel && std::none_of(bytes.begin(), bytes.end(), [](char byte) {
        const auto unit = static_cast<unsigned char>(byte);
        return unit >= 0x80 || (unit >= 'a' && unit <= 'z') || isForbidden(unit);
    });
}

bool isValidExFatLabel(const QString &label)
{
    if (!isRepresentable(label))
        return false;
    const std::optional<QString> form = composed(label, "UTF-16");
    return form && form->size() <= longestExFatLabel
        && std::none_of(form->begin(), form->end(), [](QChar unit) { return isForbidden(unit.unicode()); });
}

bool isValidOtherLabel(const QString &label)
{
    if (!isRepresentable(label))
        return false;
    const std::optional<QString> form = composed(label, "UTF-8");
    return form && form->toUtf8().size() <= longestOtherLabel;
}

} // namespace

RuleSet ruleSetOf(const QString &bundleName)
{
    if (bundleName == "fusefs_qvontfs"_L1 || bundleName == "zorvex_ntfs"_L1)
        return RuleSet::Ntfs;
    if (bundleName == "msdos"_L1 || bundleName == "zorvex_fatplus"_L1)
        return RuleSet::Fat;
    if (bundleName == "exfat"_L1 || bundleName == "zorvex_exfat"_L1)
        return RuleSet::ExFat;
    return RuleSet::Other;
}

bool isValidLabel(const QString &label, RuleSet ruleSet)
{
    switch (ruleSet) {
    case RuleSet::Ntfs:
        return isValidNtfsLabel(label);
    case RuleSet::Fat:
        return isValidFatLabel(label);
    case RuleSet::ExFat:
        return isValidExFatLabel(label);
    case RuleSet::Other:
        break;
    }
    return isValidOtherLabel(label);
}

} // namespace LabelRules
