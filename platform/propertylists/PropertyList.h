// SPDX-License-Identifier: MIT
//
// Reading property lists. Whatever the bytes hold, a reader returns a value or nothing: it never crashes,
// recurses or allocates without bound. Any thread.
#pragma once

#include "platform/Property.h"

#include <optional>

// Reads an XML or binary property list, the order of dictionary keys kept. Nothing when the data is
// malformed, nested deeper than a property list of ours could be, or larger than the limit of
// readPropertyListFile().
std::optional<PropertyValue> readPropertyList(const QByteArray &data);

// Reads a strings table: an XML or binary property list, or the old text form ("key" = "value"; with nested
// dictionaries, arrays and data) in UTF-8 or in UTF-16 of either byte order. Nothing when it is malformed or
// its root is no dictionary.
std::optional<PropertyDictionary> readStringsTable(const QByteArray &data);

// The bytes of a regular file of at most 4 MiB; nothing when it cannot be read, is larger or no regular file.
std::optional<QByteArray> readPropertyListFile(const QString &path);
