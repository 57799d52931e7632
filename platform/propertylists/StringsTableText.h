// SPDX-License-Identifier: MIT
//
// The old text form of a strings table:
//
//     /* comment */ "key" = "value"; // comment
//     token = { nested = dictionary; list = ( one, "two" ); bytes = <0fbd77>; };
//     "a key that is its own value";
//
// optionally with braces around the whole. Any thread.
#pragma once

#include "platform/Property.h"

#include <optional>

// Reads the text, in UTF-8 or in UTF-16 of either byte order, with or without a byte order mark. Returns
// std::nullopt when it is malformed, not valid in its encoding, or beyond the limits of property lists. The
// time is linear in its size.
std::optional<PropertyDictionary> parseStringsTableText(const QByteArray &data);
