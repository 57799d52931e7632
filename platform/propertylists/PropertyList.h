// SPDX-License-Identifier: MIT
//
// Reading property lists. A reader never crashes, and never recurses or allocates without bound, even on
// harmful bytes. Any thread.
#pragma once

#include "platform/Property.h"

#include <optional>

// Reads an XML or binary property list and keeps the order of dictionary keys. Returns std::nullopt when the
// data is malformed, nested deeper than a property list of ours could be, or larger than the limit of
// readPropertyListFile().
std::optional<PropertyValue> readPropertyList(const QByteArray &data);

// Reads a strings table: an XML or binary property list, or the old text form ("key" = "value"; with nested
// dictionaries, arrays and data) in UTF-8 or in UTF-16 of either byte order. Returns std::nullopt when it is
// malformed or its root is no dictionary.
std::optional<PropertyDictionary> readStringsTable(const QByteArray &data);

// The bytes of a regular file of at most 4 MiB. Returns std::nullopt when it cannot be read, is larger or is
// no regular file.
std::optional<QByteArray> readPropertyListFile(const QString &path);
