// SPDX-License-Identifier: MIT
#include "platform/propertylists/StringsTableText.h"

#include "platform/propertylists/DictionaryBuilder.h"
#include "platform/propertylists/PropertyListGuard.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

bool startsWithBytes(const QByteArray &data, std::initializer_list<unsigned char> bytes)
{
    if (static_cast<std::size_t>(data.size()) < bytes.size())
        return false;
    const char *at = data.constData();
    return std::all_of(bytes.begin(), bytes.end(),
        [&at](unsigned char byte) { return static_cast<unsigned char>(*at++) == byte; });
}

// A text always begins with an ASCII character: a quote, a comment, a brace, a token or a blank. Without a
// mark, one zero byte in the first two means UTF-16 and shows its byte order.
QStringConverter::Encoding encodingOf(const QByteArray &data)
{
    if (startsWithBytes(data, { 0xFF, 0xFE }))
        return QStringConverter::Utf16LE;
    if (startsWithBytes(data, { 0xFE, 0xFF }))
        return QStringConverter::Utf16BE;
    if (data.size() >= 2 && data[0] == '\0' && data[1] != '\0')
        return QStringConverter::Utf16BE;
    if (data.size() >= 2 && data[0] != '\0' && data[1] == '\0')
        return QStringConverter::Utf16LE;
    return QStringConverter::Utf8;
}

std::optional<QString> decode(const QByteArray &data)
{
    const QStringConverter::Encoding encoding = encodingOf(data);
    if (encoding != QStringConverter::Utf8 && data.size() % 2 != 0)
        return std::nullopt;
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(data);
    // The decoder accepts halves of surrogate pairs.
    return decoder.hasError() || !text.isValidUtf16() ? std::nullopt : std::optional(std::move(text));
}

bool isTokenCharacter(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9')
        || QStringView(u"_$/:.-").contains(c);
}

int digitValue(QChar c)
{
    const char16_t unit = c.unicode();
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'a' && unit <= u'f')
        return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10;
    return 16;
}

bool isBlank(QChar c)
{
    return (c >= u'\t' && c <= u'\r') || c == u' ' || c == QChar(0x2028) || c == QChar(0x2029);
}

class StringsTableParser
{
public:
    explicit StringsTableParser(QStringView text)
        : m_text(text)
    {
    }

    std::optional<PropertyDictionary> parse()
    {
        if (!skipBlanks())
            return std::nullopt;
        const bool braced = take(u'{');
        std::optional<PropertyDictionary> dictionary = parseEntries(1);
        if (!dictionary || (braced && !take(u'}')) || !skipBlanks() || !atEnd())
            return std::nullopt;
        return dictionary;
    }

private:
    bool atEnd() const { return m_at == m_text.size(); }
    QChar current() const { return atEnd() ? QChar(u'\0') : m_text[m_at]; }

    bool take(char16_t c)
    {
        if (atEnd() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    // Skips white space and comments. Returns false when a comment is not closed.
    bool skipBlanks()
    {
        while (!atEnd()) {
            if (isBlank(current())) {
                ++m_at;
            } else if (m_text.sliced(m_at).startsWith(u"//")) {
                while (!atEnd() && current() != u'\n' && current() != u'\r')
                    ++m_at;
            } else if (m_text.sliced(m_at).startsWith(u"/*")) {
                const qsizetype end = m_text.indexOf(u"*/", m_at + 2);
                if (end < 0)
                    return false;
                m_at = end + 2;
            } else {
                return true;
            }
        }
        return true;
    }

    // The entries up to a closing brace or the end of the text, which is left for the caller.
    std::optional<PropertyDictionary> parseEntries(std::size_t depth)
    {
        DictionaryBuilder builder;
        while (true) {
            if (!skipBlanks())
                return std::nullopt;
            if (atEnd() || current() == u'}')
                return builder.take();
            std::optional<QString> key = parseString();
            if (!key || !skipBlanks())
                return std::nullopt;
            PropertyValue value { *key };
            if (take(u'=')) {
                std::optional<PropertyValue> given = parseValue(depth);
                if (!given || !skipBlanks())
                    return std::nullopt;
                value = *std::move(given);
            }
            if (!take(u';') || ++m_values > PropertyListLimits::values)
                return std::nullopt;
            builder.insert(*std::move(key), std::move(value));
        }
    }

    std::optional<PropertyValue> parseValue(std::size_t depth)
    {
        if (depth >= PropertyListLimits::depth || !skipBlanks())
            return std::nullopt;
        if (take(u'{')) {
            std::optional<PropertyDictionary> dictionary = parseEntries(depth + 1);
            return dictionary && take(u'}') ? std::optional<PropertyValue>(*std::move(dictionary))
                                            : std::nullopt;
        }
        if (take(u'('))
            return parseArray(depth + 1);
        if (take(u'<'))
            return parseData();
        std::optional<QString> string = parseString();
        return string ? std::optional<PropertyValue>(*std::move(string)) : std::nullopt;
    }

    std::optional<PropertyValue> parseArray(std::size_t depth)
    {
        PropertyArray array;
        while (true) {
            if (!skipBlanks())
                return std::nullopt;
            if (take(u')'))
                return array;
            std::optional<PropertyValue> value = parseValue(depth);
            if (!value || !skipBlanks() || ++m_values > PropertyListLimits::values)
                return std::nullopt;
            array.push_back(*std::move(value));
            if (!take(u',') && current() != u')')
                return std::nullopt;
        }
    }

    std::optional<PropertyValue> parseData()
    {
        QByteArray bytes;
        while (true) {
            if (!skipBlanks())
                return std::nullopt;
            if (take(u'>'))
                return bytes;
            const int high = digitValue(current());
            const int low = m_at + 1 < m_text.size() ? digitValue(m_text[m_at + 1]) : 16;
            if (high > 15 || low > 15)
                return std::nullopt;
            bytes.append(static_cast<char>(high << 4 | low));
            m_at += 2;
        }
    }

    std::optional<QString> parseString()
    {
        if (current() == u'"' || current() == u'\'')
            return parseQuoted();
        const qsizetype start = m_at;
        while (!atEnd() && isTokenCharacter(current()))
            ++m_at;
        return m_at > start ? std::optional(m_text.sliced(start, m_at - start).toString()) : std::nullopt;
    }

    std::optional<QString> parseQuoted()
    {
        const QChar quote = m_text[m_at++];
        QString string;
        while (!atEnd()) {
            const QChar c = m_text[m_at++];
            if (c == quote)
                return string;
            if (c != u'\\')
                string += c;
            else if (atEnd())
                return std::nullopt;
            else
                string += parseEscape();
        }
        return std::nullopt;
    }

    // Reads at most this many digits of the base. Returns 0 when there is none.
    QChar parseDigits(int base, int limit)
    {
        int value = 0;
        for (int i = 0; i < limit && digitValue(current()) < base; ++i, ++m_at)
            value = value * base + digitValue(current());
        return QChar(value);
    }

    QChar parseEscape()
    {
        const QChar c = m_text[m_at++];
        switch (c.unicode()) {
        case u'a':
            return u'\a';
        case u'b':
            return u'\b';
        case u'f':
            return u'\f';
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'v':
            return u'\v';
        case u'U':
        case u'u':
            return parseDigits(16, 4);
        default:
            break;
        }
        if (digitValue(c) >= 8)
            return c;
        --m_at;
        return parseDigits(8, 3);
    }

    QStringView m_text;
    qsizetype m_at = 0;
    std::size_t m_values = 0;
};

} // namespace

std::optional<PropertyDictionary> parseStringsTableText(const QByteArray &data)
{
    const std::optional<QString> text = decode(data);
    return text ? StringsTableParser(*text).parse() : std::nullopt;
}
