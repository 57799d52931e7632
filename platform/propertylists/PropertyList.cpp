// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyList.h"

#include "platform/FileDescriptor.h"
#include "platform/propertylists/DictionaryBuilder.h"
#include "platform/propertylists/PropertyListGuard.h"
#include "platform/propertylists/StringsTableText.h"

#include <QFile>
#include <QTimeZone>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct PlistDeleter
{
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPointer = std::unique_ptr<void, PlistDeleter>;

struct MallocDeleter
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename T> using MallocPointer = std::unique_ptr<T, MallocDeleter>;

constexpr std::string_view binaryMagic = "bplist";
constexpr std::string_view utf8ByteOrderMark = "\xEF\xBB\xBF";

std::string_view bytesOf(const QByteArray &data)
{
    return { data.constData(), static_cast<std::size_t>(data.size()) };
}

bool isBinary(std::string_view bytes)
{
    return bytes.starts_with(binaryMagic);
}

bool looksLikeXml(std::string_view bytes)
{
    const std::size_t start = bytes.find_first_not_of(" \t\r\n");
    return start != bytes.npos && bytes[start] == '<';
}

PropertyNumber integerOf(plist_t node)
{
    uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    if (bits <= static_cast<uint64_t>(std::numeric_limits<qint64>::max()))
        return PropertyNumber(static_cast<qint64>(bits));
    // libplist 2.2 has no call that distinguishes a negative number from one beyond the signed range. Only
    // its XML shows the sign.
    char *text = nullptr;
    uint32_t size = 0;
    plist_to_xml(node, &text, &size);
    const MallocPointer<char> owner(text);
    if (text && std::string_view(text, size).find("<integer>-") != std::string_view::npos)
        return PropertyNumber(static_cast<qint64>(bits));
    return PropertyNumber(quint64 { bits });
}

qint64 secondsSinceEpoch(plist_t node)
{
#ifdef ZORVEX_PLIST_HAS_UNIX_DATES
    int64_t seconds = 0;
    plist_get_unix_date_val(node, &seconds);
    return seconds;
#else
    // Dates count from the first moment of 2001.
    constexpr qint64 referenceDate = 978307200;
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return referenceDate + seconds;
#endif
}

PropertyValue dateOf(plist_t node)
{
    return QDateTime::fromSecsSinceEpoch(secondsSinceEpoch(node), QTimeZone::utc());
}

PropertyValue convert(plist_t node);

PropertyDictionary dictionaryOf(plist_t node)
{
    DictionaryBuilder builder;
    plist_dict_iter iteration = nullptr;
    plist_dict_new_iter(node, &iteration);
    const MallocPointer<void> owner(iteration);
    while (true) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iteration, &key, &value);
        const MallocPointer<char> keyOwner(key);
        if (!key || !value)
            return builder.take();
        builder.insert(QString::fromUtf8(key), convert(value));
    }
}

PropertyArray arrayOf(plist_t node)
{
    PropertyArray array;
    plist_array_iter iteration = nullptr;
    plist_array_new_iter(node, &iteration);
    const MallocPointer<void> owner(iteration);
    while (true) {
        plist_t value = nullptr;
        plist_array_next_item(node, iteration, &value);
        if (!value)
            return array;
        array.push_back(convert(value));
    }
}

// The recursion is as deep as the list. The guard has limited that.
PropertyValue convert(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return PropertyNumber(value);
    }
    case PLIST_STRING: {
        uint64_t size = 0;
        const char *text = plist_get_string_ptr(node, &size);
        return QString::fromUtf8(text, static_cast<qsizetype>(size));
    }
    case PLIST_DATA: {
        uint64_t size = 0;
        const char *bytes = plist_get_data_ptr(node, &size);
        return QByteArray(bytes, static_cast<qsizetype>(size));
    }
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        // The references of keyed archives mean nothing here.
        return {};
    }
}

std::optional<QByteArray> readAll(int descriptor, qsizetype expected)
{
    // One byte more than expected, so that a file of the expected size needs a single read for its content.
    QByteArray bytes(expected + 1, Qt::Uninitialized);
    qsizetype size = 0;
    while (true) {
        const ssize_t count
            = read(descriptor, bytes.data() + size, static_cast<std::size_t>(bytes.size() - size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        size += count;
        if (count == 0) {
            bytes.truncate(size);
            return bytes;
        }
        if (static_cast<std::size_t>(size) > PropertyListLimits::bytes)
            return std::nullopt;
        if (size == bytes.size())
            bytes.resize(2 * size);
    }
}

} // namespace

std::optional<PropertyValue> readPropertyList(const QByteArray &data)
{
    std::string_view bytes = bytesOf(data);
    if (bytes.size() > PropertyListLimits::bytes)
        return std::nullopt;
    if (bytes.starts_with(utf8ByteOrderMark))
        bytes.remove_prefix(utf8ByteOrderMark.size());
    const bool binary = isBinary(bytes);
    const bool bounded = binary ? isBoundedBinaryPropertyList(bytes)
                                : looksLikeXml(bytes) && isBoundedXmlPropertyList(bytes);
    if (!bounded)
        return std::nullopt;
    // The format is named, so that the guard and the reader never take the bytes for different things.
    plist_t root = nullptr;
    if (binary)
        plist_from_bin(bytes.data(), static_cast<quint32>(bytes.size()), &root);
    else
        plist_from_xml(bytes.data(), static_cast<quint32>(bytes.size()), &root);
    const PlistPointer owner(root);
    if (!root)
        return std::nullopt;
    return convert(root);
}

std::optional<PropertyDictionary> readStringsTable(const QByteArray &data)
{
    std::string_view bytes = bytesOf(data);
    if (bytes.size() > PropertyListLimits::bytes)
        return std::nullopt;
    if (bytes.starts_with(utf8ByteOrderMark))
        bytes.remove_prefix(utf8ByteOrderMark.size());
    if (!isBinary(bytes) && !looksLikeXml(bytes))
        return parseStringsTableText(data);
    const std::optional<PropertyValue> root = readPropertyList(data);
    const PropertyDictionary *dictionary = root ? root->asDictionary() : nullptr;
    return dictionary ? std::optional(*dictionary) : std::nullopt;
}

std::optional<QByteArray> readPropertyListFile(const QString &path)
{
    if (path.contains(QChar(u'\0')))
        return std::nullopt;
    // A named pipe in the place of the file must not hold up the caller.
    const FileDescriptor file(
        open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > static_cast<off_t>(PropertyListLimits::bytes))
        return std::nullopt;
    return readAll(file.number(), status.st_size);
}
