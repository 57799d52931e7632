// SPDX-License-Identifier: MIT
//
// The contents of parsed files. A file is read each time, but the same bytes are not parsed twice: the
// catalogue is scanned whenever the window comes to the front and a disk is selected, and bundles hardly ever
// change.
#pragma once

#include "platform/Property.h"

#include <optional>

class QByteArray;
class QString;

using DictionaryReader = std::optional<PropertyDictionary> (*)(const QByteArray &bytes);

// The dictionary that the reader makes of the file's bytes. Returns std::nullopt when the file cannot be read
// or is no dictionary. One file is always read with the same reader. Any thread.
std::optional<PropertyDictionary> readDictionaryFile(const QString &path, DictionaryReader reader);
