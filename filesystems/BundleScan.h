// SPDX-License-Identifier: MIT
//
// Reads the file system bundles that are installed. The catalogue, the claims to volumes and diskutil are
// views of what this one scan finds, so that they never disagree about a bundle. Any thread.
#pragma once

#include "platform/Property.h"
#include "platform/TrustedFile.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

// One personality as its bundle describes it.
struct BundlePersonality
{
    qint32 index = 0; // its place in FSPersonalities; values that are no dictionary have one as well
    QString key;
    PropertyDictionary properties;
};

// More personalities than this are left out: each costs time in every list that is made of them.
inline constexpr qint32 mostPersonalities = 256;

// What a bundle says of itself in Contents/Info.plist.
struct BundleDescription
{
    QString baseDir; // the directory as it was scanned
    QString name; // of the folder, without ".fs"
    QString identifier; // never empty
    PropertyDictionary information;
    std::vector<BundlePersonality> personalities; // never empty
    bool isTrusted = true; // the guard lets it be read

    // The folder of the bundle.
    QString path() const;
};

// Takes a bundle. Returns whether it hides the bundles of the same name that come later.
using BundleVisitor = std::function<bool(const BundleDescription &bundle)>;

// Takes a line about something that could not be read.
using BundleScanLog = std::function<void(const QString &line)>;

// Says whether the bundle at this path may be read. An empty function lets all be read.
using BundleGuard = std::function<bool(const QString &bundlePath)>;

// What becomes of the bundles that the guard does not let be read. Those that come last are there to be
// refused by name: they hide no bundle, and are not to be taken where another would do.
enum class Distrusted { LeftOut, Last };

// The guard of a process that has root's rights: it lets those bundles be read that reasonForDistrustOfTree()
// has nothing against, and logs the reason once. The copies of one guard share what they have told, and
// belong to one thread.
BundleGuard guardOfTrustedBundles(const TrustedOwner &owner = {});

// The one that this process needs: guardOfTrustedBundles() for root, else an empty one.
BundleGuard guardOfThisProcess();

// Takes the identifier and the personalities out of an information dictionary. Returns std::nullopt when it
// has no identifier, or no personality.
std::optional<BundleDescription> describeBundle(const QString &baseDir, const QString &name,
    const PropertyDictionary &information, const BundleScanLog &log);

// Reads the bundles of the directories in the order of the directory entries, and hands on each that has an
// identifier and at least one personality. Links are not followed.
void scanBundles(const QStringList &directories, const BundleScanLog &log, const BundleVisitor &visit,
    const BundleGuard &guard = {}, Distrusted distrusted = Distrusted::LeftOut);

// "/System/Library/Filesystems" and "/Library/Filesystems". A bundle in the first hides one of the same name
// in the second.
const QStringList &filesystemDirectories();
