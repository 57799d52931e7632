// SPDX-License-Identifier: MIT
#include "operations/format_rules.h"

#include "filesystems/filesystem_names.h"

#include "platform/no_widgets.h"

namespace FormatRules {

QString defaultLabel(const QString &bundleName)
{
    const bool isFat = bundleName == QLatin1String("msdos") || bundleName == QLatin1String("zorvex_fatplus");
    return isFat ? QStringLiteral("UNTITLED") : QStringLiteral("Untitled");
}

Labels labelsFor(const QString &typed, const QString &bundleName)
{
    if (typed.isEmpty())
        return { defaultLabel(bundleName), {} };
    if (isOwnFilesystem(bundleName))
        return { QStringLiteral("UNTITLED"), typed };
    return { typed, {} };
}

QString nothingSelectedText(bool hasFilesystem, bool hasDisk)
{
    return QStringLiteral("No%1%2%3 selected.")
        .arg(hasFilesystem ? QString() : QStringLiteral(" file system"),
            hasFilesystem || hasDisk ? QString() : QStringLiteral(" and no"),
            hasDisk ? QString() : QStringLiteral(" disk"));
}

QString eraseArguments(const QString &personality, const QString &label, const QString &bsdName)
{
    return QStringLiteral("'%1' '%2' '/dev/%3'").arg(personality, label, bsdName);
}

} // namespace FormatRules
