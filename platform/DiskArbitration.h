// SPDX-License-Identifier: MIT
//
// Disk arbitration: a session reports the machine's media through four callbacks and carries out mount,
// unmount, eject and rename requests. On Linux it talks to UDisks2; tests have one that keeps its media in
// memory.
//
// Main thread only. No call waits: every request answers later, from the main run loop, through its
// completion.
#pragma once

#include "platform/Passphrase.h"
#include "platform/Property.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

// Keys of a medium's description.
namespace DAKey {
inline const QString mediaBSDName = QStringLiteral("DAMediaBSDName");
inline const QString mediaBlockSize = QStringLiteral("DAMediaBlockSize");
inline const QString mediaContent = QStringLiteral("DAMediaContent");
inline const QString mediaEjectable = QStringLiteral("DAMediaEjectable");
inline const QString mediaLeaf = QStringLiteral("DAMediaLeaf");
inline const QString mediaName = QStringLiteral("DAMediaName");
inline const QString mediaRemovable = QStringLiteral("DAMediaRemovable");
inline const QString mediaSize = QStringLiteral("DAMediaSize");
inline const QString mediaWhole = QStringLiteral("DAMediaWhole");
inline const QString mediaWritable = QStringLiteral("DAMediaWritable");
inline const QString deviceInternal = QStringLiteral("DADeviceInternal");
inline const QString volumeKind = QStringLiteral("DAVolumeKind");
inline const QString volumeMountable = QStringLiteral("DAVolumeMountable");
inline const QString volumeName = QStringLiteral("DAVolumeName");
inline const QString volumePath = QStringLiteral("DAVolumePath");
} // namespace DAKey

// Keys of a medium's registry entry.
namespace IOMediaKey {
inline const QString base = QStringLiteral("Base"); // byte offset in the parent medium
inline const QString partitionID = QStringLiteral("Partition ID"); // partition number, from 1
} // namespace IOMediaKey

// What the system's probe finds on a medium.
struct ProbedContent
{
    enum class Kind {
        Nothing, // that it recognises, which does not mean that there is no data
        Filesystem,
        Encrypted,
        LvmMember,
        RaidMember,
        Swap,
        Other,
    };

    Kind kind = Kind::Nothing;
    QString type; // in the probe's own word, such as crypto_LUKS; empty for Nothing
    friend bool operator==(const ProbedContent &, const ProbedContent &) = default;
};

// One medium as the service knows it. Two handles of one medium are the same object. A handle keeps the last
// that was known of its medium after the medium has gone.
class DADisk
{
public:
    DADisk() = default;
    DADisk(const DADisk &) = delete;
    DADisk &operator=(const DADisk &) = delete;
    virtual ~DADisk() = default;

    // DADiskCopyDescription: what the service knows of the medium. Returns std::nullopt when that is nothing.
    virtual std::optional<PropertyDictionary> copyDescription() const = 0;

    // DADiskCopyIOMedia with all its properties. Returns std::nullopt when the medium has no registry entry.
    // Other properties than before are reported as a change of the description.
    virtual std::optional<PropertyDictionary> copyIOMediaProperties() const = 0;

    // The device node, such as /dev/sda1; empty when there is none.
    virtual QString deviceNode() const = 0;

    // The number by which file system bundles tell the variants of one file system apart (FSSubType), from
    // the medium's own data. Returns std::nullopt when it is unknown.
    virtual std::optional<qint16> filesystemSubtype() const = 0;

    virtual ProbedContent probedContent() const = 0;

    // The medium's part in encryption.
    enum class Encryption {
        None,
        Encrypted, // locked, or with a medium of its own for what is unlocked on it
        Unlocked, // what can be read of an encrypted medium
    };
    virtual Encryption encryption() const = 0;
};

using DADiskRef = std::shared_ptr<DADisk>;

// Status of a refused request. kDAReturn… names stand in the user's error texts.
enum class DAReturn : quint32 {
    Success = 0,
    Error = 0xF8DA0001,
    Busy = 0xF8DA0002,
    BadArgument = 0xF8DA0003,
    ExclusiveAccess = 0xF8DA0004,
    NoResources = 0xF8DA0005,
    NotFound = 0xF8DA0006,
    NotMounted = 0xF8DA0007,
    NotPermitted = 0xF8DA0008,
    NotPrivileged = 0xF8DA0009,
    NotReady = 0xF8DA000A,
    NotWritable = 0xF8DA000B,
    Unsupported = 0xF8DA000C,
};

// Why a request was refused.
struct DADissenter
{
    quint32 status = 0; // a DAReturn, or another number that a service made up
    std::optional<QString> statusString; // the service's own words
    bool isDeclined = false; // the user said no to a question: nothing that they need to be told
};

// Null when the request was granted.
using DADissenterRef = std::shared_ptr<const DADissenter>;

DADissenterRef makeDissenter(DAReturn status, std::optional<QString> statusString = {});

// For a request that ended because the user declined a question that came with it.
DADissenterRef makeDeclinedDissenter(std::optional<QString> statusString = {});

// Option bits of a request; 0 is the default.
enum DAUnmountOption : quint32 {
    kDADiskUnmountOptionDefault = 0,
    kDADiskUnmountOptionWhole = 0x1,
    kDADiskUnmountOptionForce = 0x80000,
};
inline constexpr quint32 kDADiskMountOptionDefault = 0;
inline constexpr quint32 kDADiskEjectOptionDefault = 0;
inline constexpr quint32 kDADiskRenameOptionDefault = 0;

// Runs exactly once, on the main thread, after the requesting call has returned. Not run when the session is
// given back first.
using DADiskCompletion = std::function<void(const DADiskRef &disk, const DADissenterRef &dissenter)>;

using DADiskPeekCallback = std::function<void(const DADiskRef &disk)>;
using DADiskAppearedCallback = std::function<void(const DADiskRef &disk)>;
using DADiskDisappearedCallback = std::function<void(const DADiskRef &disk)>;
using DADiskDescriptionChangedCallback = std::function<void(const DADiskRef &disk, const QStringList &keys)>;

// Asks the user for the passphrase of an encrypted medium; again when the last one was wrong. It answers
// once, later; with none when the user declines. The session may have gone by then.
using PassphraseAnswer = std::function<void(std::optional<Passphrase> passphrase)>;
using PassphraseQuestion = std::function<void(const DADiskRef &disk, bool isRetry, PassphraseAnswer answer)>;

// One client of the service. Nothing is delivered before scheduleWithRunLoop() or after
// unscheduleFromRunLoop(). A whole disk is reported before its partitions and taken back after them.
class DASession
{
public:
    DASession() = default;
    DASession(const DASession &) = delete;
    DASession &operator=(const DASession &) = delete;
    virtual ~DASession() = default;

    // Callbacks are registered before scheduling, one of each kind, for every disk and every key.
    virtual void registerDiskPeekCallback(DADiskPeekCallback callback, int order);
    virtual void registerDiskAppearedCallback(DADiskAppearedCallback callback);
    virtual void registerDiskDisappearedCallback(DADiskDisappearedCallback callback);
    virtual void registerDiskDescriptionChangedCallback(DADiskDescriptionChangedCallback callback);

    // For a client that follows several events at less cost together: called with a function that reports
    // them to the callbacks, and no disappearance among them. Without it they are reported as they are.
    void setBurstCallback(std::function<void(const std::function<void()> &report)> callback);

    // Called once after scheduling: all media that are present have been reported, or the service cannot be
    // reached (its media are reported if it comes later).
    void setInitialListingCallback(std::function<void(bool serviceAvailable)> callback);

    // Called when the service comes, after its media have been reported, and when it has gone with them.
    void setServiceCallback(std::function<void(bool isAvailable)> callback);

    // Without a question, what is locked cannot be mounted.
    void setPassphraseQuestion(PassphraseQuestion question);

    // From here on every medium that is present is reported as appeared, and what happens later as it
    // happens.
    virtual void scheduleWithRunLoop() = 0;
    virtual void unscheduleFromRunLoop() = 0;

    // Asks the service for its media again, and reports what is no longer as it was reported. What the
    // bundles claim is read again as well.
    virtual void refresh() = 0;

    // Mounts the volume where the service decides. A mounted volume dissents with Busy. Of an encrypted
    // medium, what can be read of it is mounted; the passphrase is asked for if it is locked.
    virtual void mount(const DADiskRef &disk, quint32 options, DADiskCompletion completion) = 0;

    // Mounts the volume as it was: for the same user, which is nobody else's to have, and with these options.
    // With an empty user, the service decides.
    virtual void mountAgain(
        const DADiskRef &disk, const QString &user, const QStringList &options, DADiskCompletion completion)
        = 0;

    // What is unlocked on the encrypted medium; null when nothing is.
    virtual DADiskRef unlockedDisk(const DADiskRef &disk) const = 0;

    // Unmounts the volume, or with the option Whole all volumes of the disk one after another, stopping at
    // the first refusal. With Force open files do not hold a volume, but the volumes that the running system
    // stands on dissent with NotPermitted.
    virtual void unmount(const DADiskRef &disk, quint32 options, DADiskCompletion completion) = 0;

    // Locks the encrypted medium that this one is, or is unlocked on. One that is mounted, or in use in
    // another way, dissents.
    virtual void lock(const DADiskRef &disk, DADiskCompletion completion) = 0;

    // Locks what is unlocked on the disk, ejects it, and powers it off where it can be; a loop disk is
    // detached. A disk with a mounted volume dissents with Busy.
    virtual void eject(const DADiskRef &disk, quint32 options, DADiskCompletion completion) = 0;

    // Gives the volume a new name.
    virtual void rename(
        const DADiskRef &disk, const QString &name, quint32 options, DADiskCompletion completion)
        = 0;

protected:
    // A peek comes right before the medium's appearance.
    void deliverAppeared(const DADiskRef &disk) const;
    void deliverDisappeared(const DADiskRef &disk) const;
    void deliverDescriptionChanged(const DADiskRef &disk, const QStringList &keys) const;
    void deliverBurst(const std::function<void()> &report) const;
    void deliverListing(bool serviceAvailable);
    const PassphraseQuestion &passphraseQuestion() const { return m_passphraseQuestion; }

private:
    DADiskPeekCallback m_peek;
    DADiskAppearedCallback m_appeared;
    DADiskDisappearedCallback m_disappeared;
    DADiskDescriptionChangedCallback m_descriptionChanged;
    std::function<void(const std::function<void()> &report)> m_burst;
    std::function<void(bool serviceAvailable)> m_initialListing;
    std::function<void(bool isAvailable)> m_service;
    std::optional<bool> m_isServiceAvailable; // what it was told
    PassphraseQuestion m_passphraseQuestion;
};

// Makes a session, or returns null when the service cannot be reached at all.
using DASessionFactory = std::function<std::unique_ptr<DASession>()>;

// Which file system bundle serves a volume.
struct VolumeClaim
{
    QString kind; // the bundle's name
    std::optional<qint16> subtype; // the FSSubType of the volume's variant
};

// Finds the claim to a volume by what the system's probe says of it: its type (ext4, vfat, ...) and the
// version of that type. Returns std::nullopt when no bundle serves it.
using VolumeClaimLookup
    = std::function<std::optional<VolumeClaim>(const QString &type, const QString &version)>;

// Reads the claims of the bundles that are installed at this moment. Called on the main thread for each batch
// of media that is read.
using VolumeClaimReader = std::function<VolumeClaimLookup()>;

// When the service is asked for its media, which are reported from scheduling on. Asked ahead, it answers
// while the caller is busy with other things.
enum class MediaListing { WhenScheduled, Ahead };

// Makes the session with the machine's disk service; null when there is no system bus.
std::unique_ptr<DASession> createDiskArbitrationSession(
    VolumeClaimReader readClaims, MediaListing listing = MediaListing::WhenScheduled);
