// SPDX-License-Identifier: MIT
#pragma once

#include "filesystems/BundleScan.h"
#include "filesystems/disk_layout_rules.h"
#include "filesystems/LabelRule.h"
#include "platform/DeviceUse.h"

#include <QStringList>

#include <optional>
#include <vector>

enum class Operation { Erase, Verify, Repair };

// An executable of a bundle and the arguments that come before those of the operation.
struct BundleTool
{
    QString executable; // a file in the bundle's Contents/Resources
    QStringList arguments;
    Claimant claimant = Claimant::Program;
};

// One personality of a bundle with what diskutil does with it.
struct Personality
{
    QString key;
    QString name; // as the window's format menu shows it; the key when the bundle gives none
    std::optional<qint64> subtype;
    std::optional<qint64> minimumSize; // bytes
    std::optional<qint64> maximumSize; // bytes
    std::optional<BundleTool> format;
    std::optional<BundleTool> verification;
    std::optional<BundleTool> repair;
    PartitionTypes partitionTypes; // of a partition that eraseDisk makes for it

    const std::optional<BundleTool> &tool(Operation operation) const;
};

struct FilesystemBundle
{
    QString path;
    QString name; // without ".fs"
    std::vector<Personality> personalities;
    LabelRule labelRule;
    QStringList requiredTools; // programs that the bundle's executables run
    QStringList packages; // that have these programs
    QStringList linuxTypes; // what the system's probe calls the volumes that the bundle serves
    bool isTrusted = true; // what it has may be run
};

// What a bundle says of itself that diskutil needs. A value of another type than it should have counts as
// absent.
FilesystemBundle readFilesystemBundle(const BundleDescription &description);

struct PersonalityChoice
{
    const FilesystemBundle *bundle = nullptr;
    const Personality *personality = nullptr; // null when there is none
};

// The first personality of this name, the bundles in the given order: a key letter for letter, else a key,
// else a name of the format menu, both in any case. One of a bundle that is not trusted is taken only when no
// other has the name.
PersonalityChoice personalityNamed(const std::vector<FilesystemBundle> &bundles, const QString &name);

// The names of all personalities that can be made, as the format menu shows them, each once, in the given
// order.
QStringList namesOfFormats(const std::vector<FilesystemBundle> &bundles);

// The personality of the bundle of this name that does the operation for a volume of this subtype: the one of
// just this subtype, else one that stands for all of them.
PersonalityChoice personalityForVolume(const std::vector<FilesystemBundle> &bundles, const QString &kind,
    std::optional<qint64> subtype, Operation operation);

// Whether volumes made with one of these bundles are served by the other, and so may be reported as its.
bool servesSameVolumes(
    const std::vector<FilesystemBundle> &bundles, const QString &oneName, const QString &otherName);
