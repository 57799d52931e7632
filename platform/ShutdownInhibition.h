// SPDX-License-Identifier: MIT
//
// Keeps the machine from being shut down or put to sleep. Main thread only.
#pragma once

#include <QString>

#include <memory>

// Asks logind, and does not wait for it: the machine stays up as long as what is returned is there. Does
// nothing where logind is not running or refuses. The reason is shown to the user who wants to shut the
// machine down.
std::shared_ptr<void> inhibitShutdown(const QString &reason);
