// SPDX-License-Identifier: MIT
//
// What the disk service says of a disk and a partition on it, with values of any type and text.
#include "disks/description_rules.h"
#include "platform/DisturbingCharacters.h"
#include "platform/udisks/UDisksMedium.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

QVariant anyValue(FuzzedDataProvider &data)
{
    const std::string text = data.ConsumeRandomLengthString(64);
    const QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
    switch (data.ConsumeIntegralInRange(0, 7)) {
    case 0:
        return bytes;
    case 1:
        return QVariant::fromValue(QByteArrayList { bytes, bytes });
    case 2:
        return QVariant::fromValue(QDBusObjectPath(u"/disk"_s));
    case 3:
        return data.ConsumeBool();
    case 4:
        return QVariant::fromValue(data.ConsumeIntegral<quint64>());
    case 5:
        return data.ConsumeIntegral<int>();
    default:
        return QString::fromUtf8(bytes);
    }
}

// An interface with each of the properties, most of them.
QVariantMap anyInterface(FuzzedDataProvider &data, const QStringList &properties)
{
    QVariantMap interface;
    for (const QString &property : properties) {
        if (data.ConsumeIntegralInRange(0, 9) > 0)
            interface.insert(property, anyValue(data));
    }
    return interface;
}

UDisksInterfaces anyObject(FuzzedDataProvider &data)
{
    static const QMap<QString, QStringList> properties {
        { UDisks::block,
            { u"Device"_s, u"Drive"_s, u"Size"_s, u"HintIgnore"_s, u"HintSystem"_s, u"ReadOnly"_s,
                u"IdLabel"_s, u"IdType"_s, u"IdUsage"_s, u"IdVersion"_s, u"CryptoBackingDevice"_s } },
        { UDisks::partition, { u"Table"_s, u"Type"_s, u"Name"_s, u"Number"_s, u"Offset"_s } },
        { UDisks::partitionTable, { u"Type"_s } },
        { UDisks::filesystem, { u"MountPoints"_s } },
        { UDisks::loop, { u"BackingFile"_s } },
        { UDisks::drive,
            { u"Vendor"_s, u"Model"_s, u"MediaRemovable"_s, u"Ejectable"_s, u"ConnectionBus"_s } },
    };
    UDisksInterfaces object;
    for (auto interface = properties.cbegin(); interface != properties.cend(); ++interface) {
        if (data.ConsumeBool())
            object.insert(interface.key(), anyInterface(data, interface.value()));
    }
    return object;
}

void requireWellFormed(const UDisksMedium &medium)
{
    DescriptionRules::DescriptionFields fields;
    for (const auto &[key, value] : medium.description) {
        // Whatever types the service has sent, the program gets its own.
        if (DescriptionRules::readDescriptionEntry(fields, key, value))
            std::abort();
    }
    for (const QString *name : { fields.mediaName, fields.volumeName }) {
        if (name && (name->isEmpty() || harmlessName(*name) != *name))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const VolumeClaimLookup claims = [](const QString &, const QString &) { return std::nullopt; };
    const auto readFacts = [](const QString &) { return BlockDeviceFacts { u"disk2s1"_s, 2, 1, 512 }; };
    FuzzedDataProvider data(bytes, size);
    UDisksStore store;
    store.addInterfaces(u"/disk"_s, anyObject(data));
    store.addInterfaces(u"/part"_s, anyObject(data));
    store.changeProperties(
        u"/part"_s, UDisks::block, anyInterface(data, { u"Size"_s, u"IdLabel"_s, u"Drive"_s }));
    for (const QString &path : { u"/disk"_s, u"/part"_s }) {
        if (const auto medium = readUDisksMedium(store, path, claims, readFacts))
            requireWellFormed(*medium);
        if (!store.blockDevicesOn(path).contains(path))
            std::abort();
    }
    return 0;
}
