// SPDX-License-Identifier: MIT
//
// Arguments of diskutil, one a line, and the name that a volume is to bear.
#include "filesystems/LabelRule.h"
#include "operations/label_rules.h"
#include "tools/diskutil/CommandLine.h"

#include <QRegularExpression>

#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void tryLabel(const QString &label)
{
    using namespace LabelRules;
    static const QRegularExpression forbidden(u"[\\x{0}-\\x{1f}\"*/:<>?\\\\|]"_s);
    if (isValidLabel(label, RuleSet::Fat))
        require(label.size() <= 11 && label == label.toUpper() && !label.contains(forbidden));
    if (isValidLabel(label, RuleSet::ExFat))
        require(!label.contains(forbidden));
    if (isValidLabel(label, RuleSet::Other))
        require(label.normalized(QString::NormalizationForm_C).toUtf8().size() <= 255);
    isValidLabel(label, RuleSet::Ntfs);

    using Unit = LabelRule::Unit;
    for (const Unit unit : { Unit::Ascii, Unit::Bytes, Unit::Utf16, Unit::Osta }) {
        const LabelRule rule { unit, 11, u"*?"_s, u"-"_s };
        const auto reason = reasonAgainstLabel(rule, label);
        require(!reason || !reason->isEmpty());
        if (!reason)
            require(label.size() <= 11 && !label.contains(u'*') && !label.startsWith(u'-'));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QRegularExpression bsdName(u"\\Adisk[0-9]+(s[0-9]+)?\\z"_s);
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QStringList arguments = text.split(u'\n');
    const auto parsed = parseCommandLine(arguments);
    if (const auto *line = std::get_if<CommandLine>(&parsed)) {
        const bool needsDevice = line->verb != Verb::Help && line->verb != Verb::List;
        require(!needsDevice || arguments.contains(line->device));
        tryLabel(line->name);
    }
    for (const QString &argument : arguments) {
        const QString name = bsdNameOfArgument(argument);
        require(name.isEmpty() || bsdName.match(name).hasMatch());
        tryLabel(argument);
    }
    return 0;
}
