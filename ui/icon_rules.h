// SPDX-License-Identifier: MIT
//
// Names of images. Functions of values, any thread.
#pragma once

#include <QString>

#include <optional>

namespace IconRules {

// The icon of a medium with this kind of volume. The small one marks every file system of the program's own,
// the big one only the NTFS ones.
QString diskIconName(const std::optional<QString> &volumeKind, bool needBigImage);

} // namespace IconRules
