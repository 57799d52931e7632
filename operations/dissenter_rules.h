// SPDX-License-Identifier: MIT
//
// What the user is told of a refused request. Functions of values, any thread.
#pragma once

#include "platform/DiskArbitration.h"

namespace DissenterRules {

// Whether textOf() is more than the bare number of the status, which tells a user nothing.
bool hasReason(const DADissenter &dissenter);

// The service's own words; without them the name of the status, or the text of the system error it wraps.
QString textOf(const DADissenter &dissenter);

} // namespace DissenterRules
