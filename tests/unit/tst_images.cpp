// SPDX-License-Identifier: MIT
#include <QImage>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class ImagesTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsThereInEveryResolution_data();
    void imageIsThereInEveryResolution();
    void applicationIconIsThereInEverySize();
};

void ImagesTest::imageIsThereInEveryResolution_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("drive_icon") << 16;
    QTest::newRow("drive_icon_zvx") << 16;
    QTest::newRow("drive_icon_big") << 64;
    QTest::newRow("drive_icon_zvx_big") << 64;
    QTest::newRow("drive_mount") << 16;
    QTest::newRow("drive_unmount") << 16;
    QTest::newRow("zorvex_ntfs_icon") << 16;
    for (const char *glyph : { "media_card", "media_disc", "media_drive", "media_image", "media_usb",
             "state_info", "state_locked", "state_ok", "state_warning" })
        QTest::newRow(glyph) << 16;
    for (const char *picture : { "sheet_critical", "sheet_info", "sheet_warning" })
        QTest::newRow(picture) << 48;
}

void ImagesTest::imageIsThereInEveryResolution()
{
    QFETCH(int, size);
    const QString path = u":/images/"_s + QLatin1String(QTest::currentDataTag());
    for (const int scale : { 1, 2, 3 }) {
        const QString suffix = scale == 1 ? u".png"_s : u"@%1x.png"_s.arg(scale);
        const QImage image(path + suffix);
        QCOMPARE(image.size(), QSize(size, size) * scale);
        QVERIFY(image.hasAlphaChannel());
    }
}

void ImagesTest::applicationIconIsThereInEverySize()
{
    for (const int size : { 16, 32, 48, 64, 128 }) {
        const QImage image(u":/images/application_%1.png"_s.arg(size));
        QCOMPARE(image.size(), QSize(size, size));
        QVERIFY(image.hasAlphaChannel());
    }
}

QTEST_GUILESS_MAIN(ImagesTest)
#include "tst_images.moc"
