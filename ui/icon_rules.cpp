// SPDX-License-Identifier: MIT
#include "ui/icon_rules.h"

#include "filesystems/FilesystemNames.h"

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace IconRules {

namespace {

bool isMarked(const QString &volumeKind, bool needBigImage)
{
    if (needBigImage)
        return volumeKind == "fusefs_qvontfs"_L1 || volumeKind == "zorvex_ntfs"_L1;
    return isOwnFilesystem(volumeKind);
}

} // namespace

QString diskIconName(const std::optional<QString> &volumeKind, bool needBigImage)
{
    QString name = u"drive_icon"_s;
    if (volumeKind && isMarked(*volumeKind, needBigImage))
        name += "_zvx"_L1;
    if (needBigImage)
        name += "_big"_L1;
    return name + ".png"_L1;
}

} // namespace IconRules
