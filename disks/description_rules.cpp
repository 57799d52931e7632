// SPDX-License-Identifier: MIT
#include "disks/description_rules.h"

#include "platform/DiskArbitration.h"

#include <array>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace DescriptionRules {

namespace {

// How one key is read: returns false when the value is of another type than the key's.
struct KeyReader
{
    const QString &key;
    bool (*read)(DescriptionFields &fields, const PropertyValue &value);
};

template <auto member, auto convert> bool readAs(DescriptionFields &fields, const PropertyValue &value)
{
    return (fields.*member = (value.*convert)()) != nullptr;
}

bool readBlockSize(DescriptionFields &, const PropertyValue &value)
{
    return value.asNumber() != nullptr;
}

using Fields = DescriptionFields;
using Value = PropertyValue;

const std::array<KeyReader, 15> &keyReaders()
{
    static const std::array<KeyReader, 15> readers { {
        { DAKey::mediaRemovable, readAs<&Fields::removable, &Value::asBoolean> },
        { DAKey::mediaContent, readAs<&Fields::content, &Value::asString> },
        { DAKey::mediaWhole, readAs<&Fields::whole, &Value::asBoolean> },
        { DAKey::mediaLeaf, readAs<&Fields::leaf, &Value::asBoolean> },
        { DAKey::mediaBSDName, readAs<&Fields::bsdName, &Value::asString> },
        { DAKey::mediaEjectable, readAs<&Fields::ejectable, &Value::asBoolean> },
        { DAKey::mediaBlockSize, readBlockSize },
        { DAKey::volumeMountable, readAs<&Fields::mountable, &Value::asBoolean> },
        { DAKey::mediaWritable, readAs<&Fields::writable, &Value::asBoolean> },
        { DAKey::deviceInternal, readAs<&Fields::internal, &Value::asBoolean> },
        { DAKey::volumePath, readAs<&Fields::volumePath, &Value::asUrl> },
        { DAKey::mediaName, readAs<&Fields::mediaName, &Value::asString> },
        { DAKey::volumeName, readAs<&Fields::volumeName, &Value::asString> },
        { DAKey::volumeKind, readAs<&Fields::volumeKind, &Value::asString> },
        { DAKey::mediaSize, readAs<&Fields::mediaSize, &Value::asNumber> },
    } };
    return readers;
}

QString wrongTypeLine(const QString &key, PropertyType type)
{
    const auto number = static_cast<qulonglong>(type);
    if (key == DAKey::mediaBSDName)
        return u"Unexpected value class for %1: %2"_s.arg(key).arg(number);
    return u"Unexpected type for %1: %2"_s.arg(key).arg(number);
}

} // namespace

bool DescriptionFields::isComplete() const
{
    return removable && content && whole && leaf && bsdName && ejectable && blockSize && mountable
        && writable;
}

std::optional<QString> readDescriptionEntry(
    DescriptionFields &fields, const QString &key, const PropertyValue &value)
{
    for (const KeyReader &reader : keyReaders()) {
        if (reader.key != key)
            continue;
        if (!reader.read(fields, value))
            return wrongTypeLine(key, value.type());
        if (key == DAKey::mediaBlockSize) {
            fields.blockSize = value.asNumber()->toLongLong();
            if (!fields.blockSize)
                return u"Unable to convert DAMediaBlockSize to 'long long'"_s;
        }
        return std::nullopt;
    }
    return std::nullopt;
}

bool isHiddenContent(const QString &content)
{
    return content == "Apple_partition_map"_L1
        || content == "C12A7328-F81F-11D2-BA4B-00A0C93EC93B"_L1 // EFI system partition
        || content == "426F6F74-0000-11AA-AA11-00306543ECAC"_L1; // boot partition
}

} // namespace DescriptionRules
