// SPDX-License-Identifier: MIT
#include <QImage>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class ImagesTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsThereInBothResolutions_data();
    void imageIsThereInBothResolutions();
    void applicationIconIsThereInEverySize();
};

void ImagesTest::imageIsThereInBothResolutions_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("drive_icon") << 16;
    QTest::newRow("drive_icon_zvx") << 16;
    QTest::newRow("drive_icon_big") << 64;
    QTest::newRow("drive_icon_zvx_big") << 64;
    QTest::newRow("drive_mount") << 16;
    QTest::newRow("drive_unmount") << 16;
    QTest::newRow("zorvex_ntfs_icon") << 16;
}

void ImagesTest::imageIsThereInBothResolutions()
{
    QFETCH(int, size);
    const QString path = u":/images/"_s + QLatin1String(QTest::currentDataTag());
    const QImage normal(path + u".png"_s);
    const QImage fine(path + u"@2x.png"_s);
    QCOMPARE(normal.size(), QSize(size, size));
    QCOMPARE(fine.size(), QSize(2 * size, 2 * size));
    QVERIFY(normal.hasAlphaChannel());
    QVERIFY(fine.hasAlphaChannel());
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
