// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyListGuard.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace {

// The one version whose layout is known here. Newer releases of libplist read others as well.
constexpr std::string_view header = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t longestInteger = 16;

// The kinds of objects: the upper four bits of the marker byte.
enum Kind : unsigned {
    Simple = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    AsciiString = 0x5,
    Utf16String = 0x6,
    Uid = 0x8,
    Array = 0xA,
    Dictionary = 0xD,
};

// The totals of one object with all its references followed.
struct Extent
{
    std::size_t values = 1;
    std::size_t bytes = 0;
    std::size_t height = 1;
    bool isText = false; // fit for a key
};

enum class Visit : std::uint8_t { NotYet, Open, Done };

class BinaryGuard
{
public:
    explicit BinaryGuard(std::string_view data)
        : m_data(data)
    {
    }

    bool check()
    {
        if (!m_data.starts_with(header) || !readTrailer())
            return false;
        m_visits.resize(m_objects);
        m_extents.resize(m_objects);
        return measure(m_root, 1).has_value();
    }

private:
    // A big-endian number of 1 to 16 bytes, of which the upper ones must be zero beyond 64 bits.
    std::optional<std::uint64_t> number(std::size_t at, std::size_t size) const
    {
        if (size == 0 || size > longestInteger || at > m_data.size() || size > m_data.size() - at)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            if (value >> 56)
                return std::nullopt;
            value = value << 8 | static_cast<std::uint8_t>(m_data[at + i]);
        }
        return value;
    }

    bool readTrailer()
    {
        if (m_data.size() < header.size() + trailerSize)
            return false;
        const std::size_t trailer = m_data.size() - trailerSize;
        m_offsetSize = static_cast<std::uint8_t>(m_data[trailer + 6]);
        m_referenceSize = static_cast<std::uint8_t>(m_data[trailer + 7]);
        m_objects = number(trailer + 8, 8).value_or(0);
        m_root = number(trailer + 16, 8).value_or(0);
        m_offsetTable = number(trailer + 24, 8).value_or(0);
        return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 && m_referenceSize <= 8
            && m_root < m_objects && m_objects <= PropertyListLimits::values && m_offsetTable < trailer
            && m_objects <= (trailer - m_offsetTable) / m_offsetSize;
    }

    // The number of members of the object at the place, which is moved to the first of them.
    std::optional<std::uint64_t> memberCount(std::size_t &at) const
    {
        const unsigned low = static_cast<std::uint8_t>(m_data[at]) & 0xFU;
        ++at;
        if (low != 0xF)
            return low;
        const auto marker = number(at, 1);
        if (!marker || *marker >> 4 != Integer)
            return std::nullopt;
        const std::size_t size = std::size_t { 1 } << (*marker & 0xFU);
        const auto count = number(at + 1, size);
        at += 1 + size;
        return count;
    }

    // Each reachable object is measured once. References and bytes are limited over all objects together,
    // because objects may overlap in the file.
    std::optional<Extent> measure(std::uint64_t object, std::size_t depth)
    {
        if (object >= m_objects || depth > PropertyListLimits::depth || m_visits[object] == Visit::Open)
            return std::nullopt;
        if (m_visits[object] == Visit::Done)
            return m_extents[object];
        m_visits[object] = Visit::Open;
        const auto offset = number(m_offsetTable + object * m_offsetSize, m_offsetSize);
        if (!offset || *offset < header.size() || *offset >= m_offsetTable)
            return std::nullopt;
        const auto extent = measureAt(*offset, depth);
        if (!extent || extent->values > PropertyListLimits::values
            || extent->bytes > PropertyListLimits::expandedBytes
            || extent->height > PropertyListLimits::depth)
            return std::nullopt;
        m_visits[object] = Visit::Done;
        m_extents[object] = *extent;
        return extent;
    }

    std::optional<Extent> measureAt(std::size_t at, std::size_t depth)
    {
        const unsigned marker = static_cast<std::uint8_t>(m_data[at]);
        const unsigned kind = marker >> 4;
        switch (kind) {
        case Simple:
        case Uid:
            return Extent {};
        case Integer:
        case Real:
        case Date:
            return (std::size_t { 1 } << (marker & 0xFU)) <= longestInteger ? std::optional(Extent {})
                                                                            : std::nullopt;
        case Data:
        case AsciiString:
        case Utf16String:
            return measureBytes(at, kind);
        case Array:
        case Dictionary:
            return measureContainer(at, kind, depth);
        default:
            return std::nullopt;
        }
    }

    std::optional<Extent> measureBytes(std::size_t at, unsigned kind)
    {
        // A unit of UTF-16 takes two bytes here and up to three as UTF-8.
        const std::size_t unit = kind == Utf16String ? 2 : 1;
        const auto count = memberCount(at);
        if (!count || at > m_data.size() || *count > (m_data.size() - at) / unit)
            return std::nullopt;
        Extent extent;
        extent.bytes = *count * (kind == Utf16String ? 3 : 1);
        m_bytes += extent.bytes;
        extent.isText = kind != Data;
        // libplist cuts a string at a zero character, and ends the program when the string is a key.
        if (m_bytes > PropertyListLimits::expandedBytes
            || (extent.isText && hasZeroUnit(m_data.substr(at, *count * unit), unit)))
            return std::nullopt;
        return extent;
    }

    static bool hasZeroUnit(std::string_view bytes, std::size_t unit)
    {
        for (std::size_t at = 0; at < bytes.size(); at += unit) {
            if (bytes[at] == '\0' && bytes[at + unit - 1] == '\0')
                return true;
        }
        return false;
    }

    std::optional<Extent> measureContainer(std::size_t at, unsigned kind, std::size_t depth)
    {
        const auto count = memberCount(at);
        if (!count || *count > PropertyListLimits::values)
            return std::nullopt;
        const std::size_t references = kind == Dictionary ? 2 * *count : *count;
        m_references += references;
        if (m_references > 2 * PropertyListLimits::values || at > m_data.size()
            || references > (m_data.size() - at) / m_referenceSize)
            return std::nullopt;
        Extent extent;
        for (std::size_t i = 0; i < references; ++i) {
            const auto object = number(at + i * m_referenceSize, m_referenceSize);
            const auto member = object ? measure(*object, depth + 1) : std::nullopt;
            if (!member || (kind == Dictionary && i < *count && !member->isText))
                return std::nullopt;
            extent.values += member->values;
            extent.bytes += member->bytes;
            extent.height = std::max(extent.height, member->height + 1);
        }
        return extent;
    }

    std::string_view m_data;
    std::size_t m_offsetSize = 0;
    std::size_t m_referenceSize = 0;
    std::uint64_t m_objects = 0;
    std::uint64_t m_root = 0;
    std::uint64_t m_offsetTable = 0;
    std::size_t m_references = 0;
    std::size_t m_bytes = 0;
    std::vector<Visit> m_visits;
    std::vector<Extent> m_extents;
};

} // namespace

bool isBoundedBinaryPropertyList(std::string_view data)
{
    return BinaryGuard(data).check();
}
