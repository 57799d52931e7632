// SPDX-License-Identifier: MIT
//
// A disk service that keeps its media in memory, for the cases that no real disk can be made to produce.
// Events are delivered at once, from within the call that causes them; a request waits until it is completed.
// Main thread only.
#pragma once

#include "platform/DiskArbitration.h"

#include <vector>

class MemoryDisk : public DADisk
{
public:
    std::optional<PropertyDictionary> copyDescription() const override { return description; }
    std::optional<PropertyDictionary> copyIOMediaProperties() const override { return mediaProperties; }
    QString deviceNode() const override { return node; }
    std::optional<qint16> filesystemSubtype() const override { return subtype; }
    ProbedContent probedContent() const override { return content; }
    Encryption encryption() const override { return partInEncryption; }

    std::optional<PropertyDictionary> description;
    std::optional<PropertyDictionary> mediaProperties;
    QString node;
    std::optional<qint16> subtype;
    ProbedContent content;
    Encryption partInEncryption = Encryption::None;
    std::weak_ptr<MemoryDisk> unlocked; // what is unlocked on an encrypted medium
};

using MemoryDiskRef = std::shared_ptr<MemoryDisk>;

class MemoryDiskSession;

class MemoryDiskService
{
public:
    enum class RequestKind { Mount, MountAgain, Unmount, Lock, Eject, Rename };

    struct Request
    {
        RequestKind kind = RequestKind::Mount;
        DADiskRef disk;
        quint32 options = 0;
        QString name; // the new name of a rename, or the user of a mount like the one before
        DADiskCompletion completion;
        QStringList mountOptions = {}; // of a mount like the one before
    };

    // Makes the session of this service; the service outlives it.
    std::unique_ptr<DASession> createSession();

    void addDisk(const MemoryDiskRef &disk);
    // Reports them in one burst, after changes of others.
    void addDisks(const std::vector<MemoryDiskRef> &disks, const std::vector<MemoryDiskRef> &changed = {});
    void removeDisk(const MemoryDiskRef &disk);
    void changeDisk(const MemoryDiskRef &disk, const QStringList &keys = {});

    // The service comes, or goes with all of its media.
    void setAvailable(bool isAvailable);

    // Asks the session's client for a passphrase.
    void askPassphrase(const DADiskRef &disk, bool isRetry, PassphraseAnswer answer);

    // Requests that have not been answered, oldest first.
    const std::vector<Request> &requests() const { return m_requests; }

    // How often the media were asked for again.
    int refreshCount() const { return m_refreshCount; }

    // Answers the oldest request. The completion may make the next one.
    void completeRequest(const DADissenterRef &dissenter = {});

private:
    friend class MemoryDiskSession;

    MemoryDiskSession *m_session = nullptr; // while it is scheduled
    std::vector<MemoryDiskRef> m_disks;
    std::vector<Request> m_requests;
    int m_refreshCount = 0;
    bool m_isAvailable = true;
};
