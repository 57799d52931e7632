// SPDX-License-Identifier: MIT
//
// Encrypted media in UDisks2: an encrypted device, and while it is unlocked the readable device on it. Each
// completion runs once, unless the bus goes first. Main thread only.
#pragma once

#include "platform/Passphrase.h"
#include "platform/udisks/UDisksBus.h"

#include <functional>

class UDisksEncryption
{
public:
    using Completion = std::function<void(const DADissenterRef &dissenter)>;

    // What an attempt to unlock has come to. The readable device is empty when it was refused.
    struct Unlocked
    {
        QString readableDevice;
        DADissenterRef dissenter;
        bool isWrongPassphrase = false;
    };

    explicit UDisksEncryption(UDisksBus &bus)
        : m_bus(bus)
    {
    }

    // Unlocks an encrypted device, and waits until its readable device is described.
    void unlock(
        const QString &path, const Passphrase &passphrase, std::function<void(const Unlocked &)> done);

    // Locks the device that is encrypted, or that this readable one is on. Locked already counts as done.
    void lock(const QString &path, Completion completion);

    // Locks in this order, up to the first refusal, whatever of these devices is a readable one.
    void lockAll(QStringList paths, Completion completion);

private:
    UDisksBus &m_bus;
};
