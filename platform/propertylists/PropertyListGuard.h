// SPDX-License-Identifier: MIT
//
// What is checked of a property list before libplist sees it. libplist frees nested values by recursion and
// copies a value of a binary list as often as it is referred to, so a few hundred kilobytes can exhaust the
// stack and one kilobyte can ask for more memory than there is. Any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace PropertyListLimits {
inline constexpr std::size_t bytes = std::size_t { 4 } * 1024 * 1024; // of a file
inline constexpr std::size_t expandedBytes = 4 * bytes; // of all strings and data, each reference counted
inline constexpr std::size_t values = 65536; // of all kinds together, each reference counted
inline constexpr std::size_t depth = 64;
} // namespace PropertyListLimits

// Whether the markup stays within the limits however it is read. Stricter than XML in what no property list
// has: attributes on values and document type declarations of its own.
bool isBoundedXmlPropertyList(std::string_view xml);

// Whether the object table is free of cycles and stays within the limits when every reference is followed.
bool isBoundedBinaryPropertyList(std::string_view data);
