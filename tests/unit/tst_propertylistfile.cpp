// SPDX-License-Identifier: MIT
//
// Reading the bytes of a property list's file, and everything else that may stand in its place.
#include "platform/propertylists/PropertyList.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

class TestPropertyListFile : public QObject
{
    Q_OBJECT

private slots:
    void fileIsReadWhole();
    void emptyFileIsRead();
    void fileAboveTheLimitGivesNothing();
    void folderPipeAndMissingFileGiveNothing();
    void linkCycleGivesNothing();
    void pathWithZeroByteGivesNothing();
};

void TestPropertyListFile::fileIsReadWhole()
{
    const QTemporaryDir folder;
    const QByteArray content = QByteArray("0123456789").repeated(50'000);
    QFile file(folder.filePath(u"list"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    QVERIFY(readPropertyListFile(file.fileName()) == content);
}

void TestPropertyListFile::emptyFileIsRead()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"empty"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(readPropertyListFile(file.fileName()) == QByteArray());
}

void TestPropertyListFile::fileAboveTheLimitGivesNothing()
{
    const QTemporaryDir folder;
    constexpr qint64 limit = 4 * 1024 * 1024;
    QFile file(folder.filePath(u"large"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(limit + 1));
    QVERIFY(!readPropertyListFile(file.fileName()));
    QVERIFY(file.resize(limit));
    QVERIFY(readPropertyListFile(file.fileName()));
}

void TestPropertyListFile::folderPipeAndMissingFileGiveNothing()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!readPropertyListFile(pipe));
    QVERIFY(!readPropertyListFile(folder.path()));
    QVERIFY(!readPropertyListFile(folder.filePath(u"missing"_s)));
    QVERIFY(!readPropertyListFile(u"/dev/zero"_s));
}

void TestPropertyListFile::linkCycleGivesNothing()
{
    const QTemporaryDir folder;
    const QString a = folder.filePath(u"a"_s);
    const QString b = folder.filePath(u"b"_s);
    QVERIFY(QFile::link(a, b) && QFile::link(b, a));
    QVERIFY(!readPropertyListFile(a));
}

void TestPropertyListFile::pathWithZeroByteGivesNothing()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"list"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!readPropertyListFile(file.fileName() + QChar(u'\0') + u"tail"_s));
}

QTEST_APPLESS_MAIN(TestPropertyListFile)
#include "tst_propertylistfile.moc"
