// SPDX-License-Identifier: MIT
//
// What a job says of the services and tools that it uses. Pure functions, any thread.
#pragma once

#include "platform/DiskArbitration.h"
#include "tools/diskutil/ToolRunner.h"

#include <QString>

namespace JobTextRules {

// Why the disk service has refused, as the end of a sentence.
QString dissenterText(const DADissenterRef &dissenter);

// The command for the log. Every word in brackets, so that a name with spaces, quotes or brackets cannot pass
// for several.
QString commandText(const ToolCommand &command);

// How a tool that has failed came to its end.
QString endText(const ToolEnd &end);

} // namespace JobTextRules
