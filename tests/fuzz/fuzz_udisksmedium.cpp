// SPDX-License-Identifier: MIT
//
// What the disk service says of a disk and a partition on it, with values of any type and text.
#include "disks/description_rules.h"
#include "platform/disturbing_characters.h"
#include "platform/UDisksMedium.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>

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
        return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/disk")));
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
            { QStringLiteral("Device"), QStringLiteral("Drive"), QStringLiteral("Size"),
                QStringLiteral("HintIgnore"), QStringLiteral("HintSystem"), QStringLiteral("ReadOnly"),
                QStringLiteral("IdLabel"), QStringLiteral("IdType"), QStringLiteral("IdUsage"),
                QStringLiteral("IdVersion"), QStringLiteral("CryptoBackingDevice") } },
        { UDisks::partition,
            { QStringLiteral("Table"), QStringLiteral("Type"), QStringLiteral("Name"),
                QStringLiteral("Number"), QStringLiteral("Offset") } },
        { UDisks::partitionTable, { QStringLiteral("Type") } },
        { UDisks::filesystem, { QStringLiteral("MountPoints") } },
        { UDisks::loop, { QStringLiteral("BackingFile") } },
        { UDisks::drive,
            { QStringLiteral("Vendor"), QStringLiteral("Model"), QStringLiteral("MediaRemovable"),
                QStringLiteral("Ejectable"), QStringLiteral("ConnectionBus") } },
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
    DescriptionFields fields;
    for (const auto &[key, value] : medium.description) {
        // Whatever types the service has sent, the program gets its own.
        if (readDescriptionEntry(fields, key, value))
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
    static const FileSystemClaims claims { QStringList() };
    const auto readFacts
        = [](const QString &) { return BlockDeviceFacts { QStringLiteral("disk2s1"), 2, 1, 512 }; };
    FuzzedDataProvider data(bytes, size);
    UDisksStore store;
    store.addInterfaces(QStringLiteral("/disk"), anyObject(data));
    store.addInterfaces(QStringLiteral("/part"), anyObject(data));
    store.changeProperties(QStringLiteral("/part"), UDisks::block,
        anyInterface(data, { QStringLiteral("Size"), QStringLiteral("IdLabel"), QStringLiteral("Drive") }));
    for (const QString &path : { QStringLiteral("/disk"), QStringLiteral("/part") }) {
        if (const auto medium = readUDisksMedium(store, path, claims, readFacts))
            requireWellFormed(*medium);
        if (!store.blockDevicesOn(path).contains(path))
            std::abort();
    }
    return 0;
}
