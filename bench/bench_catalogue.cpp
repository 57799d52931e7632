// SPDX-License-Identifier: MIT
//
// What one refresh of the catalogue costs: the scan of twelve bundles, the merge of the four lists and the
// display name of each personality, every file read again. Each bundle has strings tables in twelve
// languages. The user's language is the one looked for last, which is the dearest case.
#include "filesystems/DisplayName.h"
#include "filesystems/FilesystemCatalogue.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <numeric>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int bundles = 12;
constexpr int warmUps = 20;
constexpr int runs = 200;
constexpr double longestMean = 2.0; // ms

const QStringList &languages()
{
    static const QStringList names { u"ar"_s, u"de"_s, u"en"_s, u"es"_s, u"fr"_s, u"it"_s, u"ja"_s, u"ko"_s,
        u"pt_BR"_s, u"ru"_s, u"zh_Hans"_s, u"zh_Hant"_s };
    return names;
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size();
}

QByteArray keyAndString(const QByteArray &key, const QByteArray &value)
{
    return "<key>" + key + "</key><string>" + value + "</string>\n";
}

QByteArray infoOf(const QByteArray &name)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
           "1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<dict>\n"
        + keyAndString("CFBundleIdentifier", "org.example." + name) + keyAndString("CFBundleName", name)
        + keyAndString("CFBundleVersion", "1.0") + "<key>FSLinuxTypes</key><array><string>" + name
        + "</string></array>\n<key>FSPersonalities</key><dict><key>" + name + "</key><dict>\n"
        + keyAndString("FSName", name) + keyAndString("FSFormatExecutable", "newfs_" + name)
        + keyAndString("FSFormatArguments", "-q") + keyAndString("FSVerificationExecutable", "fsck_" + name)
        + keyAndString("FSVerificationArguments", "-n") + keyAndString("FSRepairExecutable", "fsck_" + name)
        + keyAndString("FSRepairArguments", "-y")
        + "<key>FSSubType</key><integer>1</integer><key>FSFormatMinimumSize</key><integer>1048576</integer>"
          "<key>FSFormatMaximumSize</key><integer>17592186044416</integer></dict></dict></dict></plist>\n";
}

bool makeBundles(const QString &folder)
{
    for (int i = 0; i < bundles; ++i) {
        const QByteArray name = "filesystem" + QByteArray::number(i);
        const QString contents = folder + u'/' + QString::fromLatin1(name) + ".fs/Contents/"_L1;
        if (!write(contents + "Info.plist"_L1, infoOf(name)))
            return false;
        for (const QString &language : languages()) {
            const QByteArray strings = "/* The name that the user sees */\n\"FSPersonalities\" = {\n  \""
                + name + "\" = {\n    \"FSName\" = \"" + name + " (" + language.toUtf8() + ")\";\n  };\n};\n";
            if (!write(contents + "Resources/"_L1 + language + ".lproj/InfoPlist.strings"_L1, strings))
                return false;
        }
    }
    return true;
}

struct Catalogue
{
    std::optional<FilesystemBundleList> all;
    std::optional<FilesystemBundleList> format;
    std::optional<FilesystemBundleList> check;
    std::optional<FilesystemBundleList> repair;
};

// False when a name is missing.
bool refresh(Catalogue &catalogue, const QStringList &directories, const QStringList &userLanguages)
{
    const auto lists = scanFilesystemDirectories(directories);
    if (!lists)
        return false;
    mergeFilesystemList(catalogue.all, lists->all);
    mergeFilesystemList(catalogue.format, lists->format);
    mergeFilesystemList(catalogue.check, lists->check);
    mergeFilesystemList(catalogue.repair, lists->repair);
    return catalogue.format->size() == bundles
        && std::all_of(
            catalogue.format->begin(), catalogue.format->end(), [&](const FilesystemBundleRef &record) {
                return getFilesystemTypeString(*record, userLanguages).endsWith(u')');
            });
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    if (!makeBundles(folder.path())) {
        std::fputs("the bundles cannot be made\n", stderr);
        return 1;
    }
    const QStringList userLanguages { u"nl_BE"_s, u"pl_PL"_s, u"zh_TW"_s };
    Catalogue catalogue;
    std::vector<double> milliseconds;
    for (int i = 0; i < warmUps + runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (!refresh(catalogue, { folder.path() }, userLanguages)) {
            std::fputs("a display name is missing\n", stderr);
            return 1;
        }
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
        if (i >= warmUps)
            milliseconds.push_back(elapsed.count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    const double mean = std::accumulate(milliseconds.begin(), milliseconds.end(), 0.0) / runs;
    std::printf(
        "scan, merge and %d display names: mean %.3f ms, median %.3f ms, slowest %.3f ms of %d runs\n",
        bundles, mean, milliseconds[runs / 2], milliseconds.back(), runs);
    return mean <= longestMean ? 0 : 1;
}
