// SPDX-License-Identifier: MIT
//
// What files were read to be. Files are read anew each time, but the same bytes are not parsed twice: the
// catalogue is scanned whenever the window comes to the front and a disk is selected, and hardly ever finds
// anything new.
#pragma once

#include "platform/Property.h"

#include <optional>

class QByteArray;
class QString;

using DictionaryReader = std::optional<PropertyDictionary> (*)(const QByteArray &bytes);

// The dictionary that the reader makes of the file's bytes; nothing when the file cannot be read or is no
// dictionary. One file is always read with the same reader. Any thread.
std::optional<PropertyDictionary> readDictionaryFile(const QString &path, DictionaryReader reader);
