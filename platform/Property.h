// SPDX-License-Identifier: MIT
//
// The typed values that the platform hands over: what a medium's description, its registry entry and a
// property list are made of. Values are shared implicitly; copying one is cheap. Any thread.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

class PropertyValue;
class PropertyDictionary;

using PropertyArray = std::vector<PropertyValue>;

// A number object: an integer of either sign or a floating-point number.
class PropertyNumber
{
public:
    PropertyNumber() = default;
    explicit PropertyNumber(qint64 value)
        : m_value(value)
    {
    }
    explicit PropertyNumber(quint64 value)
        : m_value(value)
    {
    }
    explicit PropertyNumber(double value)
        : m_value(value)
    {
    }

    // The value as a signed 64-bit integer. Returns std::nullopt when it cannot be represented without loss.
    std::optional<qint64> toLongLong() const;

    // The value truncated to a signed 64-bit integer as the platform's number object does it: the low 64 bits
    // of an integer, the nearest representable integer towards zero of a floating-point number.
    qint64 longLongValue() const;

    // -1, 0 or 1, by numeric value. A number that is not a number equals only itself and comes first.
    int compare(const PropertyNumber &other) const;

    QString toString() const;

    friend bool operator==(const PropertyNumber &a, const PropertyNumber &b) { return a.compare(b) == 0; }

private:
    std::variant<qint64, quint64, double> m_value { qint64 { 0 } };
};

// The run-time type number of a value. The numbers appear in log lines and stay as they are.
enum class PropertyType : unsigned long {
    Null = 16,
    String = 7,
    Dictionary = 18,
    Array = 19,
    Data = 20,
    Boolean = 21,
    Number = 22,
    Url = 29,
    Date = 42,
};

class PropertyValue
{
public:
    PropertyValue() = default;
    PropertyValue(QString value)
        : m_value(std::move(value))
    {
    }
    PropertyValue(bool value)
        : m_value(value)
    {
    }
    PropertyValue(PropertyNumber value)
        : m_value(value)
    {
    }
    PropertyValue(QUrl value)
        : m_value(std::move(value))
    {
    }
    PropertyValue(QByteArray value)
        : m_value(std::move(value))
    {
    }
    PropertyValue(QDateTime value)
        : m_value(std::move(value))
    {
    }
    PropertyValue(PropertyArray value);
    PropertyValue(PropertyDictionary value);
    PropertyValue(const char *) = delete; // would become a boolean

    PropertyType type() const;

    // Each is null when the value is of another type. The pointer lives as long as this value is unchanged.
    const QString *asString() const { return std::get_if<QString>(&m_value); }
    const bool *asBoolean() const { return std::get_if<bool>(&m_value); }
    const PropertyNumber *asNumber() const { return std::get_if<PropertyNumber>(&m_value); }
    const QUrl *asUrl() const { return std::get_if<QUrl>(&m_value); }
    const QByteArray *asData() const { return std::get_if<QByteArray>(&m_value); }
    const PropertyArray *asArray() const;
    const PropertyDictionary *asDictionary() const;

    // The truth of a boolean or of a number (not zero); false for anything else.
    bool booleanValue() const;

    // A one-line text for the log, at most a few hundred characters whatever the value holds.
    QString logText() const;

    friend bool operator==(const PropertyValue &a, const PropertyValue &b);

private:
    std::variant<std::monostate, QString, bool, PropertyNumber, QUrl, QByteArray, QDateTime,
        std::shared_ptr<const PropertyArray>, std::shared_ptr<const PropertyDictionary>>
        m_value;
};

// Keys and values in the order in which they were added. A key occurs once. Copies share one storage until
// one of them is changed.
class PropertyDictionary
{
public:
    using Entry = std::pair<QString, PropertyValue>;

    PropertyDictionary() = default;
    PropertyDictionary(std::initializer_list<Entry> entries);

    // Takes entries in which no key occurs twice, which the caller makes sure of.
    static PropertyDictionary fromUniqueEntries(std::vector<Entry> entries);

    // The value of the key, or null when there is none.
    const PropertyValue *value(const QString &key) const;

    // The value of the key when it is of this type; null when it is of another, or there is none.
    const QString *string(const QString &key) const;
    const PropertyNumber *number(const QString &key) const;
    const PropertyArray *array(const QString &key) const;
    const PropertyDictionary *dictionary(const QString &key) const;

    // The text of the key; empty when there is none. The texts of an array; other elements are left out.
    QString text(const QString &key) const;
    QStringList texts(const QString &key) const;

    // Replaces the value of an existing key in its place, or appends a new entry.
    void insert(const QString &key, PropertyValue value);
    void remove(const QString &key);

    std::size_t size() const { return entries().size(); }
    bool isEmpty() const { return entries().empty(); }
    auto begin() const { return entries().begin(); }
    auto end() const { return entries().end(); }

    // Whether both are unchanged copies of one dictionary, and so equal. Equal dictionaries need not be
    // copies.
    bool isCopyOf(const PropertyDictionary &other) const { return m_entries == other.m_entries; }

    friend bool operator==(const PropertyDictionary &a, const PropertyDictionary &b)
    {
        return a.isCopyOf(b) || a.entries() == b.entries();
    }

private:
    const std::vector<Entry> &entries() const;
    std::vector<Entry> &ownEntries();

    std::shared_ptr<std::vector<Entry>> m_entries; // null when there are none
};
