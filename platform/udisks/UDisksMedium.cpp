// SPDX-License-Identifier: MIT
#include "platform/udisks/UDisksMedium.h"

#include "platform/DisturbingCharacters.h"

#include <QFileInfo>
#include <QHash>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace {

// One block device in the store, with short names for what is often asked.
class BlockReader
{
public:
    BlockReader(const UDisksStore &store, QString path)
        : m_store(store)
        , m_path(std::move(path))
        , m_whole(store.bottomDiskOf(m_path))
        , m_drive(store.objectPath(isUnlocked() ? m_whole : m_path, UDisks::block, "Drive"))
    {
    }

    // Which media are listed.
    bool isListed() const
    {
        if (!m_store.hasInterface(m_path, UDisks::block))
            return false;
        if (m_store.number(m_path, UDisks::block, "Size") == 0)
            return false; // an empty card slot, an unused loop device
        if (m_store.flag(m_path, UDisks::partition, "IsContainer"))
            return false; // an extended partition is a partition map
        // A rule of the machine hides partitions by their type, and volumes by their label as well. Who gave
        // a volume that label wants to see it.
        if (m_store.flag(m_path, UDisks::block, "HintIgnore") && !hasFilesystem())
            return false;
        // Partitions that were added by hand stay behind when a loop disk is detached, until the next one
        // takes their place.
        if (m_store.number(m_whole, UDisks::block, "Size") == 0)
            return false;
        const QString node = deviceNode();
        return !node.startsWith("/dev/ram"_L1) && !node.startsWith("/dev/zram"_L1);
    }

    QString deviceNode() const { return m_store.fileName(m_path, UDisks::block, "Device"); }
    bool isPartition() const { return m_store.hasInterface(m_path, UDisks::partition); }

    // The service knows of no drive for what is unlocked: it is that of the disk at the bottom.
    bool isUnlocked() const
    {
        return !m_store.objectPath(m_path, UDisks::block, "CryptoBackingDevice").isEmpty();
    }

    DADisk::Encryption encryption() const
    {
        if (m_store.isEncrypted(m_path))
            return DADisk::Encryption::Encrypted;
        return isUnlocked() ? DADisk::Encryption::Unlocked : DADisk::Encryption::None;
    }

    bool hasPartitions() const { return m_store.hasPartitions(m_path); }
    bool hasFilesystem() const { return m_store.hasInterface(m_path, UDisks::filesystem); }

    // Whether it has a file system or an encrypted one, or could be given one.
    bool isMountable() const { return !hasPartitions() && (hasFilesystem() || !isReserved()); }

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
        static const QStringList removableBuses { u"usb"_s, u"ieee1394"_s, u"sdio"_s };
        return m_store.flag(m_path, UDisks::block, "HintSystem") && !isDetachableLoop()
            && !removableBuses.contains(m_store.text(m_drive, UDisks::drive, "ConnectionBus"));
    }

    QString content() const
    {
        if (isPartition())
            return partitionContent(m_store.text(m_path, UDisks::partition, "Type"));
        const QString table = m_store.text(m_path, UDisks::partitionTable, "Type");
        if (table == "gpt"_L1)
            return u"GUID_partition_scheme"_s;
        return table == "dos"_L1 ? u"FDisk_partition_scheme"_s : QString();
    }

    QString mediaName() const
    {
        if (isPartition())
            return m_store.text(m_path, UDisks::partition, "Name");
        const QString backingFile = m_store.fileName(m_path, UDisks::loop, "BackingFile");
        if (!backingFile.isEmpty())
            return QFileInfo(backingFile).fileName();
        if (isUnlocked())
            return {}; // the drive's is that of the encrypted medium
        return driveName(m_store.text(m_drive, UDisks::drive, "Vendor").simplified(),
            m_store.text(m_drive, UDisks::drive, "Model").simplified());
    }

    ProbedContent probedContent() const
    {
        const QString type = m_store.text(m_path, UDisks::block, "IdType");
        if (type.isEmpty())
            return {};
        return { contentKind(m_store.text(m_path, UDisks::block, "IdUsage"), type), type };
    }

    const QString &path() const { return m_path; }
    const UDisksStore &store() const { return m_store; }

private:
    // Partitions that belong to the machine's firmware or to another system's disk management.
    bool isReserved() const
    {
        static const QStringList types {
            u"21686148-6449-6e6f-744e-656564454649"_s, // BIOS boot
            u"9e1a2d38-c612-4316-aa26-8b49521e5a8b"_s, // PReP boot
            u"e3c9e316-0b5c-4db8-817d-f92df00215ae"_s, // Microsoft reserved
        };
        return types.contains(m_store.text(m_path, UDisks::partition, "Type").toLower());
    }

    // A file system counts once the service is ready to mount it.
    ProbedContent::Kind contentKind(const QString &usage, const QString &type) const
    {
        using Kind = ProbedContent::Kind;
        if (usage == "filesystem"_L1 && hasFilesystem())
            return Kind::Filesystem;
        if (usage == "crypto"_L1)
            return Kind::Encrypted;
        if (usage == "raid"_L1)
            return type.startsWith("LVM"_L1) ? Kind::LvmMember : Kind::RaidMember;
        return type == "swap"_L1 ? Kind::Swap : Kind::Other;
    }

    // Many models begin with their vendor.
    static QString driveName(const QString &vendor, const QString &model)
    {
        const auto asWords = [](const QString &text) { return QString(u' ' + text + u' '); };
        const bool isRepeated = asWords(model).contains(asWords(vendor), Qt::CaseInsensitive);
        return isRepeated ? model : QString(vendor + u' ' + model).trimmed();
    }

    // The type itself shows the kind of table. The service often reports a new table after its partitions.
    static QString partitionContent(const QString &type)
    {
        if (type.startsWith("0x"_L1))
            return mbrContent(type);
        const bool isOfGpt = !QUuid::fromString(type).isNull();
        return isOfGpt ? type.toUpper() : type;
    }

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

void describeVolume(UDisksMedium &medium, const BlockReader &block, const VolumeClaimLookup &findClaim)
{
    const UDisksStore &store = block.store();
    PropertyDictionary &description = medium.description;
    description.insert(DAKey::volumeMountable, block.isMountable());
    const QStringList mountPoints = store.fileNames(block.path(), UDisks::filesystem, "MountPoints");
    if (!mountPoints.isEmpty())
        description.insert(DAKey::volumePath, QUrl::fromLocalFile(mountPoints.first()));
    insertName(description, DAKey::volumeName, store.text(block.path(), UDisks::block, "IdLabel"));

    medium.content = block.probedContent();
    if (medium.content.kind != ProbedContent::Kind::Filesystem)
        return;
    const QString &type = medium.content.type;
    const auto claimed = findClaim(type, store.text(block.path(), UDisks::block, "IdVersion"));
    description.insert(DAKey::volumeKind, claimed ? claimed->kind : type);
    if (claimed)
        medium.subtype = claimed->subtype;
}

} // namespace

QString mbrContent(const QString &type)
{
    static const QHash<uint, QString> names {
        { 0x01, u"DOS_FAT_12"_s },
        { 0x04, u"DOS_FAT_16_S"_s },
        { 0x05, u"DOS_Extended"_s },
        { 0x06, u"DOS_FAT_16"_s },
        { 0x07, u"Windows_NTFS"_s },
        { 0x0b, u"DOS_FAT_32"_s },
        { 0x0c, u"DOS_FAT_32"_s },
        { 0x0e, u"DOS_FAT_16"_s },
        { 0x0f, u"Win95_Extended"_s },
        { 0x82, u"Linux_Swap"_s },
        { 0x83, u"Linux"_s },
        { 0x8e, u"Linux_LVM"_s },
        { 0xaf, u"Apple_HFS"_s },
    };
    bool valid = false;
    const uint number = type.toUInt(&valid, 16);
    if (!valid)
        return type;
    const auto name = names.constFind(number);
    return name == names.constEnd() ? u"0x%1"_s.arg(number, 2, 16, QLatin1Char('0')) : *name;
}

std::optional<UDisksMedium> readUDisksMedium(const UDisksStore &store, const QString &path,
    const VolumeClaimLookup &findClaim, const BlockDeviceFactsReader &readFacts)
{
    const BlockReader block(store, path);
    if (!block.isListed())
        return std::nullopt;
    const QString node = block.deviceNode();
    const std::optional<BlockDeviceFacts> facts = readFacts(node);
    if (!facts)
        return std::nullopt;

    UDisksMedium medium { *facts, node, {}, {}, {}, {}, block.encryption() };
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
    describeVolume(medium, block, findClaim);

    if (block.isPartition()) {
        medium.mediaProperties.insert(
            IOMediaKey::base, PropertyNumber(store.number(path, UDisks::partition, "Offset")));
        medium.mediaProperties.insert(
            IOMediaKey::partitionID, PropertyNumber(store.number(path, UDisks::partition, "Number")));
    }
    return medium;
}
