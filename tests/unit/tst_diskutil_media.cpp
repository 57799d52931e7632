// SPDX-License-Identifier: MIT
#include "tests/support/MemoryDiskSession.h"
#include "tools/diskutil/Medium.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestDiskutilMedia : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mediaAreListedAsAPersonCounts();
    void mediumFromItsDescription();
    void mediumWithoutDescription();
};

void TestDiskutilMedia::mediaAreListedAsAPersonCounts()
{
    std::vector<Medium> media(4);
    media[0].bsdName = u"disk10"_s;
    media[1].bsdName = u"disk2s10"_s;
    media[2].bsdName = u"disk2"_s;
    media[3].bsdName = u"disk2s1"_s;
    media[3].deviceNode = u"/dev/sdb1"_s;
    media[3].size = 1500;
    media[3].kind = u"msdos"_s;
    media[3].volumeName = u"STICK"_s;
    media[3].mountPoint = u"/media/STICK"_s;
    sortMedia(media);
    const QStringList lines = listText(media).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines.at(1).startsWith(u"disk2 "_s));
    QCOMPARE(lines.at(2), u"disk2s1     /dev/sdb1  1.5 kB   msdos  STICK  /media/STICK"_s);
    QVERIFY(lines.at(3).startsWith(u"disk2s10"_s));
    QVERIFY(lines.at(4).startsWith(u"disk10"_s));
}

void TestDiskutilMedia::mediumFromItsDescription()
{
    MemoryDisk disk;
    disk.node = u"/dev/sdb1"_s;
    disk.subtype = 2;
    disk.description = PropertyDictionary { { DAKey::mediaBSDName, u"disk2s1"_s },
        { DAKey::mediaSize, PropertyNumber(qint64 { 4000000 }) }, { DAKey::mediaWritable, true },
        { DAKey::mediaWhole, false }, { DAKey::volumeMountable, true }, { DAKey::volumeKind, u"msdos"_s },
        { DAKey::volumeName, u"STICK"_s }, { DAKey::volumePath, QUrl::fromLocalFile(u"/media/A B"_s) } };
    const Medium medium = readMedium(disk);
    QCOMPARE(medium.bsdName, u"disk2s1"_s);
    QCOMPARE(medium.size, 4000000);
    QCOMPARE(medium.subtype, std::optional<qint64>(2));
    QCOMPARE(medium.mountPoint, u"/media/A B"_s);
    QVERIFY(medium.isWritable && medium.isMountable && !medium.isWhole);
    const QString information = infoText(medium);
    QVERIFY(information.contains(u"Size:         4.0 MB (4000000 bytes)\n"_s));
    QVERIFY(information.contains(u"Mount point:  /media/A B\n"_s));
}

void TestDiskutilMedia::mediumWithoutDescription()
{
    MemoryDisk disk;
    disk.node = u"/dev/sdb1"_s;
    const Medium medium = readMedium(disk);
    QCOMPARE(medium.deviceNode, u"/dev/sdb1"_s);
    QVERIFY(medium.bsdName.isEmpty() && medium.mountPoint.isEmpty() && !medium.isWritable);
}

QTEST_APPLESS_MAIN(TestDiskutilMedia)
#include "tst_diskutil_media.moc"
