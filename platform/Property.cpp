// SPDX-License-Identifier: MIT
#include "platform/Property.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int longestLogText = 300;

// 2^63 and 2^64 as floating-point numbers: the first values that no longer fit.
constexpr double signedLimit = 9223372036854775808.0;
constexpr double unsignedLimit = 18446744073709551616.0;

int threeWay(auto a, auto b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

int compareIntegers(qint64 a, quint64 b)
{
    return a < 0 ? -1 : threeWay(static_cast<quint64>(a), b);
}

int compareWithDouble(qint64 a, double b)
{
    if (std::isnan(b))
        return 1;
    if (b >= signedLimit)
        return -1;
    if (b < -signedLimit)
        return 1;
    const auto whole = static_cast<qint64>(b);
    if (a != whole)
        return threeWay(a, whole);
    return threeWay(0.0, b - std::trunc(b));
}

int compareWithDouble(quint64 a, double b)
{
    if (std::isnan(b))
        return 1;
    if (b >= unsignedLimit)
        return -1;
    if (b < 0)
        return 1;
    const auto whole = static_cast<quint64>(b);
    if (a != whole)
        return threeWay(a, whole);
    return threeWay(0.0, b - std::trunc(b));
}

int compareDoubles(double a, double b)
{
    if (std::isnan(a) || std::isnan(b))
        return threeWay(!std::isnan(a), !std::isnan(b));
    return threeWay(a, b);
}

struct NumberComparison
{
    int operator()(qint64 a, qint64 b) const { return threeWay(a, b); }
    int operator()(quint64 a, quint64 b) const { return threeWay(a, b); }
    int operator()(qint64 a, quint64 b) const { return compareIntegers(a, b); }
    int operator()(quint64 a, qint64 b) const { return -compareIntegers(b, a); }
    int operator()(double a, double b) const { return compareDoubles(a, b); }
    int operator()(auto a, double b) const { return compareWithDouble(a, b); }
    int operator()(double a, auto b) const { return -compareWithDouble(b, a); }
};

template <typename Type>
const Type *valueAs(
    const PropertyDictionary &dictionary, const QString &key, const Type *(PropertyValue::*as)() const)
{
    const PropertyValue *value = dictionary.value(key);
    return value ? (value->*as)() : nullptr;
}

} // namespace

std::optional<qint64> PropertyNumber::toLongLong() const
{
    if (const auto *value = std::get_if<qint64>(&m_value))
        return *value;
    if (const auto *value = std::get_if<quint64>(&m_value)) {
        if (*value > static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return static_cast<qint64>(*value);
    }
    const double value = std::get<double>(m_value);
    if (!(value >= -signedLimit && value < signedLimit) || value != std::trunc(value))
        return std::nullopt;
    return static_cast<qint64>(value);
}

qint64 PropertyNumber::longLongValue() const
{
    if (const auto *value = std::get_if<qint64>(&m_value))
        return *value;
    if (const auto *value = std::get_if<quint64>(&m_value))
        return static_cast<qint64>(*value);
    const double value = std::get<double>(m_value);
    if (std::isnan(value))
        return 0;
    if (value >= signedLimit)
        return std::numeric_limits<qint64>::max();
    if (value < -signedLimit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

int PropertyNumber::compare(const PropertyNumber &other) const
{
    return std::visit(NumberComparison {}, m_value, other.m_value);
}

QString PropertyNumber::toString() const
{
    return std::visit([](auto value) { return QString::number(value); }, m_value);
}

PropertyValue::PropertyValue(PropertyArray value)
    : m_value(std::make_shared<const PropertyArray>(std::move(value)))
{
}

PropertyValue::PropertyValue(PropertyDictionary value)
    : m_value(std::make_shared<const PropertyDictionary>(std::move(value)))
{
}

PropertyType PropertyValue::type() const
{
    static constexpr PropertyType types[] = { PropertyType::Null, PropertyType::String, PropertyType::Boolean,
        PropertyType::Number, PropertyType::Url, PropertyType::Data, PropertyType::Date, PropertyType::Array,
        PropertyType::Dictionary };
    return types[m_value.index()];
}

const PropertyArray *PropertyValue::asArray() const
{
    const auto *shared = std::get_if<std::shared_ptr<const PropertyArray>>(&m_value);
    return shared ? shared->get() : nullptr;
}

const PropertyDictionary *PropertyValue::asDictionary() const
{
    const auto *shared = std::get_if<std::shared_ptr<const PropertyDictionary>>(&m_value);
    return shared ? shared->get() : nullptr;
}

bool PropertyValue::booleanValue() const
{
    if (const bool *value = asBoolean())
        return *value;
    const PropertyNumber *number = asNumber();
    return number && !(*number == PropertyNumber(qint64 { 0 }));
}

QString PropertyValue::logText() const
{
    QString text;
    switch (type()) {
    case PropertyType::Null:
        text = u"(null)"_s;
        break;
    case PropertyType::String:
        text = *asString();
        break;
    case PropertyType::Boolean:
        text = *asBoolean() ? u"1"_s : u"0"_s;
        break;
    case PropertyType::Number:
        text = asNumber()->toString();
        break;
    case PropertyType::Url:
        text = asUrl()->toString();
        break;
    case PropertyType::Data:
        text = u"<%1 bytes>"_s.arg(asData()->size());
        break;
    case PropertyType::Date:
        text = std::get<QDateTime>(m_value).toString(Qt::ISODate);
        break;
    case PropertyType::Array:
        text = u"(array of %1)"_s.arg(asArray()->size());
        break;
    case PropertyType::Dictionary:
        text = u"{dictionary of %1}"_s.arg(asDictionary()->size());
        break;
    }
    if (text.size() > longestLogText)
        text = text.left(longestLogText) + QChar(0x2026);
    return text;
}

bool operator==(const PropertyValue &a, const PropertyValue &b)
{
    if (a.m_value.index() != b.m_value.index())
        return false;
    if (const PropertyArray *array = a.asArray())
        return *array == *b.asArray();
    if (const PropertyDictionary *dictionary = a.asDictionary())
        return *dictionary == *b.asDictionary();
    return a.m_value == b.m_value;
}

PropertyDictionary::PropertyDictionary(std::initializer_list<Entry> entries)
{
    for (const Entry &entry : entries)
        insert(entry.first, entry.second);
}

PropertyDictionary PropertyDictionary::fromUniqueEntries(std::vector<Entry> entries)
{
    PropertyDictionary dictionary;
    dictionary.m_entries = std::make_shared<std::vector<Entry>>(std::move(entries));
    return dictionary;
}

const std::vector<PropertyDictionary::Entry> &PropertyDictionary::entries() const
{
    static const std::vector<Entry> none;
    return m_entries ? *m_entries : none;
}

std::vector<PropertyDictionary::Entry> &PropertyDictionary::ownEntries()
{
    if (!m_entries)
        m_entries = std::make_shared<std::vector<Entry>>();
    else if (m_entries.use_count() > 1)
        m_entries = std::make_shared<std::vector<Entry>>(*m_entries);
    return *m_entries;
}

const PropertyValue *PropertyDictionary::value(const QString &key) const
{
    const auto found
        = std::find_if(begin(), end(), [&key](const Entry &entry) { return entry.first == key; });
    return found == end() ? nullptr : &found->second;
}

const QString *PropertyDictionary::string(const QString &key) const
{
    return valueAs(*this, key, &PropertyValue::asString);
}

const PropertyNumber *PropertyDictionary::number(const QString &key) const
{
    return valueAs(*this, key, &PropertyValue::asNumber);
}

const PropertyArray *PropertyDictionary::array(const QString &key) const
{
    return valueAs(*this, key, &PropertyValue::asArray);
}

const PropertyDictionary *PropertyDictionary::dictionary(const QString &key) const
{
    return valueAs(*this, key, &PropertyValue::asDictionary);
}

QString PropertyDictionary::text(const QString &key) const
{
    const QString *found = string(key);
    return found ? *found : QString();
}

QStringList PropertyDictionary::texts(const QString &key) const
{
    QStringList found;
    if (const PropertyArray *values = array(key)) {
        for (const PropertyValue &value : *values) {
            if (const QString *element = value.asString())
                found.append(*element);
        }
    }
    return found;
}

void PropertyDictionary::insert(const QString &key, PropertyValue value)
{
    std::vector<Entry> &own = ownEntries();
    const auto found
        = std::find_if(own.begin(), own.end(), [&key](const Entry &entry) { return entry.first == key; });
    if (found == own.end())
        own.emplace_back(key, std::move(value));
    else
        found->second = std::move(value);
}

void PropertyDictionary::remove(const QString &key)
{
    std::erase_if(ownEntries(), [&key](const Entry &entry) { return entry.first == key; });
}
