// SPDX-License-Identifier: MIT
#include "ui/icon_rules.h"

#include "filesystems/filesystem_names.h"

#include "platform/no_widgets.h"

namespace IconRules {

namespace {

bool isMarked(const QString &volumeKind, bool needBigImage)
{
    if (needBigImage)
        return volumeKind == QLatin1String("fusefs_qvontfs") || volumeKind == QLatin1String("zorvex_ntfs");
    return isOwnFilesystem(volumeKind);
}

} // namespace

QString diskIconName(const std::optional<QString> &volumeKind, bool needBigImage)
{
    QString name = QStringLiteral("drive_icon");
    if (volumeKind && isMarked(*volumeKind, needBigImage))
        name += QLatin1String("_zvx");
    if (needBigImage)
        name += QLatin1String("_big");
    return name + QLatin1String(".png");
}

} // namespace IconRules
