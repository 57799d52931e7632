// SPDX-License-Identifier: MIT
//
// What must hold of every value that a reader returns, whatever it was given.
#pragma once

#include "platform/Property.h"
#include "platform/propertylists/PropertyListGuard.h"

#include <cstdlib>

class PropertyBounds
{
public:
    // Aborts when the value is nested deeper or holds more than the limits allow.
    void check(const PropertyValue &value, std::size_t depth = 1)
    {
        if (depth > PropertyListLimits::depth + 1 || ++m_values > 2 * PropertyListLimits::values)
            std::abort();
        if (value.logText().size() > longestLogText)
            std::abort();
        if (const PropertyArray *array = value.asArray()) {
            for (const PropertyValue &member : *array)
                check(member, depth + 1);
        }
        if (const PropertyDictionary *dictionary = value.asDictionary()) {
            for (const auto &entry : *dictionary)
                check(entry.second, depth + 1);
        }
    }

private:
    static constexpr qsizetype longestLogText = 400;

    std::size_t m_values = 0;
};
