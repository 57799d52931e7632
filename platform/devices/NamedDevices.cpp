// SPDX-License-Identifier: MIT
#include "platform/devices/NamedDevices.h"

#include "platform/devices/SysfsDevice.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// The place of locked and unlocked volumes.
const QByteArray mapperFolder = "/dev/mapper/";

QByteArrayList linesOf(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
}

// What udev has found out about a block device, from its database; empty when it has no such property.
// libudev reads the same files, but those of the running system only.
QByteArray udevProperty(dev_t device, const QByteArray &name, const SystemRoot &system)
{
    const QByteArray path = system.folder + "/run/udev/data/b" + QByteArray::number(major(device)) + ':'
        + QByteArray::number(minor(device));
    const QByteArray start = "E:" + name + '=';
    for (const QByteArray &line : linesOf(path)) {
        if (line.startsWith(start))
            return line.mid(start.size());
    }
    return {};
}

// udev writes characters that are not safe in a file name as \x20.
QByteArray withoutEscapes(const QByteArray &text)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isEscape = text.at(i) == '\\' && text.mid(i + 1, 1) == "x" && i + 3 < text.size();
        result += isEscape ? QByteArray::fromHex(text.mid(i + 2, 2)) : text.mid(i, 1);
        i += isEscape ? 3 : 0;
    }
    return result;
}

std::vector<dev_t> allBlockDevices(const SystemRoot &system)
{
    std::vector<dev_t> devices;
    const QDir folder(QFile::decodeName(system.folder + "/sys/dev/block"));
    for (const QString &name :
        folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted))
        devices.push_back(makedev(name.section(u':', 0, 0).toUInt(), name.section(u':', 1, 1).toUInt()));
    return devices;
}

std::vector<dev_t> devicesWithTag(
    const QByteArray &property, const QByteArray &value, const SystemRoot &system)
{
    std::vector<dev_t> devices;
    for (const dev_t device : allBlockDevices(system)) {
        const QByteArray own = withoutEscapes(udevProperty(device, property, system));
        if (!own.isEmpty() && own == value)
            devices.push_back(device);
    }
    return devices;
}

std::vector<dev_t> devicesThere(const QByteArray &source, const SystemRoot &system)
{
    static const QHash<QByteArray, QByteArray> propertiesOfTags {
        { "UUID", "ID_FS_UUID_ENC" },
        { "LABEL", "ID_FS_LABEL_ENC" },
        { "PARTUUID", "ID_PART_ENTRY_UUID" },
        { "PARTLABEL", "ID_PART_ENTRY_NAME" },
    };
    const qsizetype tagLength = source.indexOf('=');
    const QByteArray property = propertiesOfTags.value(source.left(tagLength));
    if (tagLength > 0 && !property.isEmpty())
        return devicesWithTag(property, source.mid(tagLength + 1), system);
    // Nothing else is looked at: the path of a file may lead to a server that does not answer.
    const auto device
        = source.startsWith("/dev/") ? blockDeviceNumber(source, system) : std::optional<dev_t>();
    return device ? std::vector { *device } : std::vector<dev_t>();
}

// What is unlocked under this name; empty when /etc/crypttab does not have it.
QByteArray encryptedSource(const QByteArray &name, const SystemRoot &system)
{
    for (const QByteArray &line : linesOf(system.folder + "/etc/crypttab")) {
        const QByteArrayList words = line.simplified().split(' ');
        if (words.size() > 1 && words.at(0) == name)
            return words.at(1);
    }
    return {};
}

} // namespace

std::vector<dev_t> devicesNamed(const QByteArray &source, const SystemRoot &system)
{
    std::vector<dev_t> devices = devicesThere(source, system);
    if (devices.empty() && source.startsWith(mapperFolder))
        devices = devicesThere(encryptedSource(source.mid(mapperFolder.size()), system), system);
    return devices;
}

bool isBootPartition(dev_t device, const SystemRoot &system)
{
    static const QByteArrayList types {
        "c12a7328-f81f-11d2-ba4b-00a0c93ec93b", // ESP
        "bc13c2ff-59e6-4262-a352-b275fd6f7172", // XBOOTLDR
        "0xef", // both on an MBR disk
        "0xea",
    };
    return types.contains(udevProperty(device, "ID_PART_ENTRY_TYPE", system).toLower());
}
