// SPDX-License-Identifier: MIT
//
// From an error of the bus to a dissenter. Any thread.
#pragma once

#include "platform/DiskArbitration.h"

// The dissenter of a D-Bus error name and message. A name that is not known is a general error; the service's
// own message is kept as the status string, without the prefix that the bus library puts before it.
DADissenterRef dissenterFromBusError(const QString &name, const QString &message);
