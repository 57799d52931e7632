// SPDX-License-Identifier: MIT
//
// What the user is told of a volume label that is refused.
#include "platform/Localization.h"
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestVolumeLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusal_data();
    void refusal();
    void acceptedLabelShowsNothing();
};

void TestVolumeLabel::refusal_data()
{
    QTest::addColumn<QByteArray>("textKey"); // empty for the fixed text
    QTest::newRow("zorvex_ntfs") << QByteArray("INVALID_NTFS_VOLUME_NAME_TEXT");
    QTest::newRow("fusefs_qvontfs") << QByteArray("INVALID_NTFS_VOLUME_NAME_TEXT");
    QTest::newRow("msdos") << QByteArray("INVALID_FAT_VOLUME_NAME_TEXT");
    QTest::newRow("zorvex_fatplus") << QByteArray("INVALID_FAT_VOLUME_NAME_TEXT");
    QTest::newRow("exfat") << QByteArray("INVALID_EXFAT_VOLUME_NAME_TEXT");
    QTest::newRow("zorvex_exfat") << QByteArray("INVALID_EXFAT_VOLUME_NAME_TEXT");
    QTest::newRow("ext4") << QByteArray();
}

void TestVolumeLabel::refusal()
{
    QFETCH(QByteArray, textKey);
    for (const QString &language : { u"en"_s, u"de"_s }) {
        TestController test(language);
        test.launch();
        ZorvexDiskManagerFSBundle bundle;
        bundle.bundleName = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(!test.controller().validateVolumeLabel(u"x"_s.repeated(256), bundle));
        QCOMPARE(test.sheets().size(), 1);
        const AlertSheet *const sheet = test.sheets().constFirst();
        QCOMPARE(sheet->text(), localizedString("INVALID_VOLUME_LABEL_TEXT"));
        QCOMPARE(sheet->informativeText(),
            textKey.isEmpty() ? u"A KVLX volume name can be at most 255 bytes long."_s
                              : localizedString(textKey.constData()));
        QVERIFY(!sheet->informativeText().isEmpty());
        QCOMPARE(test.log.lines(), QStringList());
    }
}

void TestVolumeLabel::acceptedLabelShowsNothing()
{
    TestController test;
    test.launch();
    ZorvexDiskManagerFSBundle bundle;
    bundle.bundleName = u"msdos"_s;
    QVERIFY(test.controller().validateVolumeLabel(u"DATA"_s, bundle));
    QVERIFY(test.sheets().isEmpty());
}

QTEST_MAIN(TestVolumeLabel)
#include "tst_volumelabel.moc"
