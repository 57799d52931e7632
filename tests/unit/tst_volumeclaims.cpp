// SPDX-License-Identifier: MIT
//
// Which bundle serves a volume: what the bundles claim, which of two claims holds, and that the claims know
// just the bundles that the catalogue knows.
#include "BundleFolder.h"

#include "filesystems/FilesystemCatalogue.h"
#include "filesystems/VolumeClaims.h"
#include "platform/SystemLog.h"

#include <QTest>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray claimXml(const QByteArray &types, const QByteArray &rest)
{
    return "<dict><key>CFBundleIdentifier</key><string>test.bundle</string>"
           "<key>FSPersonalities</key><dict><key>Any</key><dict/></dict>"
           "<key>FSLinuxTypes</key><array>"
        + types + "</array>" + rest + "</dict>";
}

QByteArray ordered(const QByteArray &type, int order)
{
    return claimXml("<string>" + type + "</string>",
        "<key>FSProbeOrder</key><integer>" + QByteArray::number(order) + "</integer>");
}

QByteArray variantXml(const QByteArray &type, const QByteArray &version, const QByteArray &subtypeXml)
{
    return "<dict><key>IdType</key><string>" + type + "</string><key>IdVersion</key><string>" + version
        + "</string><key>FSSubType</key>" + subtypeXml + "</dict>";
}

QString kindOf(const QStringList &directories, const QString &type)
{
    const auto claim = VolumeClaims::read(directories).find(type, {});
    return claim ? claim->kind : u"(none)"_s;
}

} // namespace

class TestVolumeClaims : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lowestProbeOrderWins();
    void bundleWithoutAnOrderComesLast();
    void variantsAreToldByTypeAndVersion();
    void variantsWithOddNumbersAreLeftOut();
    void oddTypesAreLeftOut();
    void firstDirectoryHidesTheSecond();
    void brokenBundleHidesNothing();
    void linksAreNotFollowed();
    void bundleThatMayNotBeReadClaimsNothing();
    void bundleThatIsNotTrustedComesLast();
    void bundleOfSomebodyElseIsToldOnce();
    void suffixIsCaseSensitive();
    void bundleThatTheCatalogueDoesNotKnowClaimsNothing();
    void readerSeesWhatIsReplacedInPlace();
    void missingDirectoryIsNoHarm();
};

void TestVolumeClaims::lowestProbeOrderWins()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"late"_s, ordered("ext4", 2000)));
    QVERIFY(folder.addBundle(u"early"_s, ordered("ext4", 1000)));
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"early"_s);
    QCOMPARE(kindOf({ folder.path() }, u"xfs"_s), u"(none)"_s);
}

void TestVolumeClaims::bundleWithoutAnOrderComesLast()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"none"_s, claimXml("<string>ext4</string>", {})));
    QVERIFY(folder.addBundle(
        u"text"_s, claimXml("<string>xfs</string>", "<key>FSProbeOrder</key><string>1</string>")));
    QVERIFY(folder.addBundle(u"some"_s,
        claimXml("<string>ext4</string><string>xfs</string>",
            "<key>FSProbeOrder</key><integer>999999</integer>")));
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"some"_s);
    QCOMPARE(kindOf({ folder.path() }, u"xfs"_s), u"some"_s);
}

void TestVolumeClaims::variantsAreToldByTypeAndVersion()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"fat"_s,
        claimXml("<string>vfat</string><string>msdos</string>",
            "<key>FSLinuxSubtypes</key><array>" + variantXml("vfat", "FAT16", "<integer>2</integer>")
                + variantXml("vfat", "", "<integer>3</integer>") + "</array>")));
    const VolumeClaims claims = VolumeClaims::read({ folder.path() });
    QCOMPARE(claims.find(u"vfat"_s, u"FAT16"_s)->subtype, std::optional<qint16>(2));
    QCOMPARE(claims.find(u"vfat"_s, u"FAT32"_s)->subtype, std::optional<qint16>(3)); // any version
    QCOMPARE(claims.find(u"msdos"_s, u"FAT16"_s)->kind, u"fat"_s);
    QCOMPARE(claims.find(u"msdos"_s, u"FAT16"_s)->subtype, std::nullopt);
}

void TestVolumeClaims::variantsWithOddNumbersAreLeftOut()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"fat"_s,
        claimXml("<string>vfat</string>",
            "<key>FSLinuxSubtypes</key><array><string>vfat</string>"
                + variantXml("vfat", "FAT12", "<integer>40000</integer>")
                + variantXml("vfat", "FAT12", "<string>7</string>")
                + variantXml("vfat", "FAT16", "<real>1.5</real>")
                + variantXml("vfat", "FAT32", "<integer>-32768</integer>") + "</array>")));
    const VolumeClaims claims = VolumeClaims::read({ folder.path() });
    QCOMPARE(claims.find(u"vfat"_s, u"FAT12"_s)->subtype, std::nullopt);
    QCOMPARE(claims.find(u"vfat"_s, u"FAT16"_s)->subtype, std::nullopt);
    QCOMPARE(claims.find(u"vfat"_s, u"FAT32"_s)->subtype, std::optional<qint16>(-32768));
}

void TestVolumeClaims::oddTypesAreLeftOut()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"mixed"_s, claimXml("<integer>1</integer><string>ext4</string>", {})));
    QVERIFY(folder.addBundle(u"text"_s,
        "<dict><key>CFBundleIdentifier</key><string>test.bundle</string><key>FSPersonalities</key>"
        "<dict><key>Any</key><dict/></dict><key>FSLinuxTypes</key><string>xfs</string></dict>"));
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"mixed"_s);
    QCOMPARE(kindOf({ folder.path() }, u"xfs"_s), u"(none)"_s);
    QCOMPARE(kindOf({ folder.path() }, {}), u"(none)"_s);
}

void TestVolumeClaims::firstDirectoryHidesTheSecond()
{
    BundleFolder system;
    BundleFolder local;
    QVERIFY(system.addBundle(u"same"_s, ordered("ext4", 2000)));
    QVERIFY(local.addBundle(u"same"_s, ordered("xfs", 1)));
    QCOMPARE(kindOf({ system.path(), local.path() }, u"ext4"_s), u"same"_s);
    QCOMPARE(kindOf({ system.path(), local.path() }, u"xfs"_s), u"(none)"_s);
}

void TestVolumeClaims::brokenBundleHidesNothing()
{
    BundleFolder system;
    BundleFolder local;
    QVERIFY(system.addBundle(u"same"_s, "<dict><key>FSLinuxTypes</key>"));
    QVERIFY(local.addBundle(u"same"_s, ordered("ext4", 1)));
    QCOMPARE(kindOf({ system.path(), local.path() }, u"ext4"_s), u"same"_s);
}

void TestVolumeClaims::linksAreNotFollowed()
{
    BundleFolder elsewhere;
    BundleFolder folder;
    QVERIFY(elsewhere.addBundle(u"linked"_s, ordered("ext4", 1)));
    QVERIFY(QFile::link(elsewhere.bundlePath(u"linked"_s), folder.bundlePath(u"linked"_s)));
    QVERIFY(folder.addBundle(u"real"_s, ordered("ext4", 1000)));
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"real"_s);
}

void TestVolumeClaims::bundleThatMayNotBeReadClaimsNothing()
{
    BundleFolder system;
    BundleFolder local;
    QVERIFY(system.addBundle(u"same"_s, ordered("ext4", 1)));
    QVERIFY(local.addBundle(u"same"_s, ordered("xfs", 1)));
    const BundleGuard guard = [&system](const QString &path) { return !path.startsWith(system.path()); };
    const QStringList directories { system.path(), local.path() };
    const VolumeClaims claims = VolumeClaims::read(directories, guard);
    QVERIFY(!claims.find(u"ext4"_s, {}));
    QVERIFY(claims.find(u"xfs"_s, {})); // nor does it hide another
    QVERIFY(!volumeClaimReader(directories, guard)()(u"ext4"_s, {}));
    const auto lists = scanFilesystemDirectories(directories, {}, guard);
    QCOMPARE(lists->all.size(), std::size_t { 1 });
}

void TestVolumeClaims::bundleThatIsNotTrustedComesLast()
{
    BundleFolder system;
    BundleFolder local;
    QVERIFY(system.addBundle(u"same"_s, ordered("ext4", 1)));
    QVERIFY(system.addBundle(u"first"_s, ordered("vfat", 1)));
    QVERIFY(local.addBundle(u"same"_s, ordered("xfs", 1)));
    QVERIFY(local.addBundle(u"late"_s, ordered("vfat", 2000)));
    QVERIFY(system.addBundle(u"lone"_s, ordered("udf", 1)));
    const BundleGuard guard = [&system](const QString &path) { return !path.startsWith(system.path()); };
    const auto claims = volumeClaimReader({ system.path(), local.path() }, guard, Distrusted::Last)();
    QCOMPARE(claims(u"vfat"_s, {})->kind, u"late"_s);
    QCOMPARE(claims(u"udf"_s, {})->kind, u"lone"_s);
    QVERIFY(claims(u"xfs"_s, {}));
    QVERIFY(!claims(u"ext4"_s, {})); // the name is another's
}

void TestVolumeClaims::bundleOfSomebodyElseIsToldOnce()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"local"_s, ordered("ext4", 1)));
    QStringList log;
    const SystemLogRedirection redirection([&log](const QString &line) { log.append(line); });
    const BundleGuard guard = guardOfTrustedBundles({ getuid() + 1, {} });
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!VolumeClaims::read({ folder.path() }, guard).find(u"ext4"_s, {}));
        QVERIFY(scanFilesystemDirectories({ folder.path() }, {}, guard)->all.empty());
    }
    QCOMPARE(log.size(), 1);
    const QString beginning
        = u"The bundle %1 is not read with administrator rights: "_s.arg(folder.bundlePath(u"local"_s));
    QVERIFY2(log.first().startsWith(beginning), qPrintable(log.first()));
}

void TestVolumeClaims::suffixIsCaseSensitive()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"shouting"_s, ordered("ext4", 1)));
    QVERIFY(QFile::rename(folder.bundlePath(u"shouting"_s), folder.path() + u"/shouting.FS"_s));
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"(none)"_s);
}

void TestVolumeClaims::bundleThatTheCatalogueDoesNotKnowClaimsNothing()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(
        u"anonymous"_s, "<dict><key>FSLinuxTypes</key><array><string>ext4</string></array></dict>"));
    const auto lists = scanFilesystemDirectories({ folder.path() });
    QVERIFY(lists && lists->all.empty());
    QCOMPARE(kindOf({ folder.path() }, u"ext4"_s), u"(none)"_s);
}

// A package that is upgraded replaces the file and leaves the folder as it was.
void TestVolumeClaims::readerSeesWhatIsReplacedInPlace()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"one"_s, ordered("ext4", 1)));
    const VolumeClaimReader read = volumeClaimReader({ folder.path() });
    QCOMPARE(read()(u"ext4"_s, {})->kind, u"one"_s);
    QVERIFY(folder.addBundle(u"one"_s, ordered("xfs", 1)));
    QVERIFY(!read()(u"ext4"_s, {}));
    QCOMPARE(read()(u"xfs"_s, {})->kind, u"one"_s);
}

void TestVolumeClaims::missingDirectoryIsNoHarm()
{
    BundleFolder folder;
    QVERIFY(folder.addBundle(u"one"_s, ordered("ext4", 1)));
    QCOMPARE(kindOf({ folder.path() + u"/missing"_s, folder.path() }, u"ext4"_s), u"one"_s);
}

QTEST_APPLESS_MAIN(TestVolumeClaims)
#include "tst_volumeclaims.moc"
