// SPDX-License-Identifier: MIT
//
// From what UDisks2 says of a block device to the description of a medium. Functions of values, main thread.
#pragma once

#include "platform/BlockDevice.h"
#include "platform/DiskArbitration.h"
#include "platform/Property.h"
#include "platform/udisks/UDisksStore.h"

#include <functional>
#include <optional>

struct UDisksMedium
{
    BlockDeviceFacts facts;
    QString deviceNode;
    PropertyDictionary description;
    PropertyDictionary mediaProperties;
    std::optional<qint16> subtype;
    ProbedContent content;
    DADisk::Encryption encryption = DADisk::Encryption::None;
};

using BlockDeviceFactsReader = std::function<std::optional<BlockDeviceFacts>(const QString &deviceNode)>;

// The medium of this block device. Returns std::nullopt when there is none in it, when it is not to be shown,
// or when the device has just gone.
std::optional<UDisksMedium> readUDisksMedium(const UDisksStore &store, const QString &path,
    const VolumeClaimLookup &findClaim, const BlockDeviceFactsReader &readFacts);

// The content hint of a partition of an MBR disk, from its type as UDisks2 writes it ("0x83").
QString mbrContent(const QString &type);
