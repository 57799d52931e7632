// SPDX-License-Identifier: MIT
#include "platform/UDisksMedium.h"

#include "platform/disturbing_characters.h"

#include <QFileInfo>
#include <QHash>

namespace {

// One block device in the store, with short names for what is asked of it again and again.
class BlockReader
{
public:
    BlockReader(const UDisksStore &store, QString path)
        : m_store(store)
        , m_path(std::move(path))
        , m_whole(store.wholeDiskOf(m_path))
        , m_drive(store.objectPath(m_path, UDisks::block, "Drive"))
    {
    }

    // Which media are listed.
    bool isListed() const
    {
        if (!m_store.hasInterface(m_path, UDisks::block))
            return false;
        if (m_store.number(m_path, UDisks::block, "Size") == 0)
            return false; // an empty card slot, an unused loop device
        if (m_store.flag(m_path, UDisks::block, "HintIgnore"))
            return false; // the machine's owner says so
        // Partitions that were added by hand stay behind when a loop disk is detached, until the next one
        // takes their place.
        if (m_store.number(m_whole, UDisks::block, "Size") == 0)
            return false;
        const QString node = deviceNode();
        return !node.startsWith(QLatin1String("/dev/ram")) && !node.startsWith(QLatin1String("/dev/zram"));
    }

    QString deviceNode() const { return m_store.fileName(m_path, UDisks::block, "Device"); }
    bool isPartition() const { return m_store.hasInterface(m_path, UDisks::partition); }

    bool hasPartitions() const { return m_store.hasPartitions(m_path); }

    // A loop disk counts as external: it can be detached like a stick can be pulled.
    bool isDetachableLoop() const
    {
        return !m_store.fileName(m_whole, UDisks::loop, "BackingFile").isEmpty();
    }

    bool isRemovable() const
    {
        return m_store.flag(m_drive, UDisks::drive, "MediaRemovable") || isDetachableLoop();
    }

    bool isEjectable() const
    {
        return m_store.flag(m_drive, UDisks::drive, "Ejectable") || isDetachableLoop();
    }

    bool isInternal() const
    {
        static const QStringList removableBuses { QStringLiteral("usb"), QStringLiteral("ieee1394"),
            QStringLiteral("sdio") };
        return m_store.flag(m_path, UDisks::block, "HintSystem") && !isDetachableLoop()
            && !removableBuses.contains(m_store.text(m_drive, UDisks::drive, "ConnectionBus"));
    }

    QString content() const
    {
        if (isPartition()) {
            const QString type = m_store.text(m_path, UDisks::partition, "Type");
            return type.startsWith(QLatin1String("0x")) ? mbrContent(type) : type.toUpper();
        }
        const QString table = m_store.text(m_path, UDisks::partitionTable, "Type");
        if (table == QLatin1String("gpt"))
            return QStringLiteral("GUID_partition_scheme");
        return table == QLatin1String("dos") ? QStringLiteral("FDisk_partition_scheme") : QString();
    }

    QString mediaName() const
    {
        if (isPartition())
            return m_store.text(m_path, UDisks::partition, "Name");
        const QString backingFile = m_store.fileName(m_path, UDisks::loop, "BackingFile");
        if (!backingFile.isEmpty())
            return QFileInfo(backingFile).fileName();
        const QString vendor = m_store.text(m_drive, UDisks::drive, "Vendor");
        const QString model = m_store.text(m_drive, UDisks::drive, "Model");
        return QString(vendor + u' ' + model).simplified();
    }

    const QString &path() const { return m_path; }
    const UDisksStore &store() const { return m_store; }

private:
    const UDisksStore &m_store;
    QString m_path;
    QString m_whole;
    QString m_drive;
};

void insertName(PropertyDictionary &description, const QString &key, const QString &name)
{
    const QString harmless = harmlessName(name);
    if (!harmless.isEmpty())
        description.insert(key, harmless);
}

void describeVolume(UDisksMedium &medium, const BlockReader &block, const FileSystemClaims &claims)
{
    const UDisksStore &store = block.store();
    PropertyDictionary &description = medium.description;
    description.insert(DAKey::volumeMountable, store.hasInterface(block.path(), UDisks::filesystem));
    const QStringList mountPoints = store.fileNames(block.path(), UDisks::filesystem, "MountPoints");
    if (!mountPoints.isEmpty())
        description.insert(DAKey::volumePath, QUrl::fromLocalFile(mountPoints.first()));
    insertName(description, DAKey::volumeName, store.text(block.path(), UDisks::block, "IdLabel"));

    const QString type = store.text(block.path(), UDisks::block, "IdType");
    if (type.isEmpty() || store.text(block.path(), UDisks::block, "IdUsage") != QLatin1String("filesystem"))
        return;
    const auto claimed = claims.find(type, store.text(block.path(), UDisks::block, "IdVersion"));
    description.insert(DAKey::volumeKind, claimed ? claimed->kind : type);
    if (claimed)
        medium.subtype = claimed->subtype;
}

} // namespace

QString mbrContent(const QString &type)
{
    static const QHash<uint, QString> names {
        { 0x01, QStringLiteral("DOS_FAT_12") },
        { 0x04, QStringLiteral("DOS_FAT_16_S") },
        { 0x05, QStringLiteral("DOS_Extended") },
        { 0x06, QStringLiteral("DOS_FAT_16") },
        { 0x07, QStringLiteral("Windows_NTFS") },
        { 0x0b, QStringLiteral("DOS_FAT_32") },
        { 0x0c, QStringLiteral("DOS_FAT_32") },
        { 0x0e, QStringLiteral("DOS_FAT_16") },
        { 0x0f, QStringLiteral("Win95_Extended") },
        { 0x82, QStringLiteral("Linux_Swap") },
        { 0x83, QStringLiteral("Linux") },
        { 0x8e, QStringLiteral("Linux_LVM") },
        { 0xaf, QStringLiteral("Apple_HFS") },
    };
    bool valid = false;
    const uint number = type.toUInt(&valid, 16);
    if (!valid)
        return type;
    const auto name = names.constFind(number);
    return name == names.constEnd() ? QStringLiteral("0x%1").arg(number, 2, 16, QLatin1Char('0')) : *name;
}

QString harmlessName(const QString &name)
{
    QString result = name;
    for (QChar &c : result) {
        if (disturbsLine(c))
            c = QChar(QChar::ReplacementCharacter);
    }
    return result;
}

std::optional<UDisksMedium> readUDisksMedium(const UDisksStore &store, const QString &path,
    const FileSystemClaims &claims, const BlockDeviceFactsReader &readFacts)
{
    const BlockReader block(store, path);
    if (!block.isListed())
        return std::nullopt;
    const QString node = block.deviceNode();
    const std::optional<BlockDeviceFacts> facts = readFacts(node);
    if (!facts)
        return std::nullopt;

    UDisksMedium medium { *facts, node, {}, {}, {} };
    PropertyDictionary &description = medium.description;
    description.insert(DAKey::mediaBSDName, facts->bsdName);
    description.insert(DAKey::mediaWhole, !block.isPartition());
    description.insert(DAKey::mediaLeaf, !block.hasPartitions());
    description.insert(DAKey::mediaContent, block.content());
    description.insert(DAKey::mediaRemovable, block.isRemovable());
    description.insert(DAKey::mediaEjectable, block.isEjectable());
    description.insert(DAKey::deviceInternal, block.isInternal());
    description.insert(DAKey::mediaWritable, !store.flag(path, UDisks::block, "ReadOnly"));
    description.insert(DAKey::mediaBlockSize, PropertyNumber(facts->logicalBlockSize));
    description.insert(DAKey::mediaSize, PropertyNumber(store.number(path, UDisks::block, "Size")));
    insertName(description, DAKey::mediaName, block.mediaName());
    describeVolume(medium, block, claims);

    if (block.isPartition()) {
        medium.mediaProperties.insert(
            IOMediaKey::base, PropertyNumber(store.number(path, UDisks::partition, "Offset")));
        medium.mediaProperties.insert(
            IOMediaKey::partitionID, PropertyNumber(store.number(path, UDisks::partition, "Number")));
    }
    return medium;
}
