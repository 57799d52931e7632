// SPDX-License-Identifier: MIT
//
// What BSD names say about a medium's place in the tree. Functions of values, any thread.
#pragma once

#include <QString>

#include <optional>

namespace TreeRules {

// The decimal value of the run of digits at the end of the name, -1 when it does not end in a digit. Weighed
// in 32-bit arithmetic: more than nine digits wrap.
qint32 trailingNumber(const QString &bsdName);

// The name of the medium that this one would be a partition of ("disk2" for "disk2s1"); std::nullopt when
// the name is not that of a partition.
std::optional<QString> parentBsdName(const QString &bsdName);

} // namespace TreeRules
