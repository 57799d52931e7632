// SPDX-License-Identifier: MIT
#pragma once

#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <QStringList>

// The name of a personality as its bundle words it in the first of the languages ("de", "pt_BR") that it
// speaks, read from the bundle anew. What stands in the way is logged and answered with the record's fallback
// name. Any thread that owns the record.
QString getFilesystemTypeString(const ZorvexDiskManagerFSBundle &record, const QStringList &languages);
