// SPDX-License-Identifier: MIT
//
// Collects the entries of one dictionary in linear time, however many there are.
#pragma once

#include "platform/Property.h"

#include <unordered_map>

class DictionaryBuilder
{
public:
    // Replaces the value of an existing key in its place, or appends a new entry.
    void insert(QString key, PropertyValue value)
    {
        const auto [place, isNew] = m_places.try_emplace(key, m_entries.size());
        if (isNew)
            m_entries.emplace_back(std::move(key), std::move(value));
        else
            m_entries[place->second].second = std::move(value);
    }

    // The dictionary; the builder is empty afterwards.
    PropertyDictionary take()
    {
        m_places.clear();
        return PropertyDictionary::fromUniqueEntries(std::exchange(m_entries, {}));
    }

private:
    std::vector<PropertyDictionary::Entry> m_entries;
    std::unordered_map<QString, std::size_t> m_places;
};
