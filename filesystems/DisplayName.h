// SPDX-License-Identifier: MIT
#pragma once

#include "filesystems/ZorvexDiskManagerFSBundle.h"

#include <QStringList>

// How a personality's name is spelled where it is shown. Any thread.
QString shownSpelling(const QString &bundleName, QString name);

// The name of a personality in the first of the languages ("de", "pt_BR") for which its bundle has one, read
// from the bundle at each call. Returns the record's fallback name, after a log line that says why, when it
// cannot be read. The thread that owns the record.
QString getFilesystemTypeString(const ZorvexDiskManagerFSBundle &record, const QStringList &languages);
