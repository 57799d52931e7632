// SPDX-License-Identifier: MIT
#include "operations/format_rules.h"

#include "filesystems/FilesystemNames.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace FormatRules {

QString defaultLabel(const QString &bundleName)
{
    const bool isFat = bundleName == "msdos"_L1 || bundleName == "zorvex_fatplus"_L1;
    return isFat ? u"UNTITLED"_s : u"Untitled"_s;
}

Labels labelsFor(const QString &typed, const QString &bundleName)
{
    if (typed.isEmpty())
        return { defaultLabel(bundleName), {} };
    if (isOwnFilesystem(bundleName))
        return { u"UNTITLED"_s, typed };
    return { typed, {} };
}

QString nothingSelectedText(bool hasFilesystem, bool hasDisk)
{
    return u"No%1%2%3 selected."_s.arg(hasFilesystem ? QString() : u" file system"_s,
        hasFilesystem || hasDisk ? QString() : u" and no"_s, hasDisk ? QString() : u" disk"_s);
}

QString eraseArguments(const QString &personality, const QString &label, const QString &bsdName)
{
    return u"'%1' '%2' '/dev/%3'"_s.arg(personality, label, bsdName);
}

} // namespace FormatRules
