// SPDX-License-Identifier: MIT
//
// Which files may be trusted. The user who runs this test stands for the administrator.
#include "platform/SystemLog.h"
#include "platform/TrustedFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

class TestTrustedFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void trustedFile();
    void writableComponent_data();
    void writableComponent();
    void fileOfSomebodyElse();
    void missingFile();
    void folderInThePlaceOfTheFile();
    void fileInThePlaceOfAFolder();
    void linkInThePlaceOfTheFile();
    void linkInThePlaceOfAFolder();
    void pathThatIsNotAbsolute();
    void pathThatLeadsOutOfItsFolder();
    void superfluousSlashes();
    void trustedTree();
    void treeThatIsAFile();
    void whatATreeMustNotHold_data();
    void whatATreeMustNotHold();
    void folderOfATreeThatCannotBeRead();
    void pathAboveATreeCounts();

private:
    QByteArray realPath(const QByteArray &path) const { return QFile::encodeName(m_folder->path()) + path; }
    void write(const QByteArray &path) const;
    bool setMode(const QByteArray &path, mode_t mode) const
    {
        return chmod(realPath(path).constData(), mode) == 0;
    }
    TrustedOwner owner() const { return { geteuid(), m_folder->path() }; }
    QString distrust(const QByteArray &path) const
    {
        return reasonForDistrust(QFile::decodeName(path), owner()).value_or(QString());
    }
    QString distrustOfTree(const QByteArray &path) const
    {
        return reasonForDistrustOfTree(QFile::decodeName(path), owner()).value_or(QString());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestTrustedFile::write(const QByteArray &path) const
{
    QFile file(QFile::decodeName(realPath(path)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(setMode(path, 0644));
}

void TestTrustedFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char *folder : { "/a", "/a/b", "/a/b/c" }) {
        QVERIFY(mkdir(realPath(folder).constData(), 0755) == 0);
        QVERIFY(setMode(folder, 0755));
    }
    write("/a/b/file");
    write("/a/b/c/.hidden");
}

void TestTrustedFile::trustedFile()
{
    QCOMPARE(distrust("/a/b/file"), QString());
    QVERIFY(setMode("/a/b/file", 0500));
    QCOMPARE(distrust("/a/b/file"), QString());
}

void TestTrustedFile::writableComponent_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<uint>("mode");
    for (const char *path : { "/", "/a", "/a/b", "/a/b/file" }) {
        QTest::addRow("%s by the group", path) << QByteArray(path) << 0775U;
        QTest::addRow("%s by others", path) << QByteArray(path) << 0757U;
        QTest::addRow("%s by all, sticky", path) << QByteArray(path) << 01777U;
    }
}

void TestTrustedFile::writableComponent()
{
    QFETCH(QByteArray, path);
    QFETCH(uint, mode);
    QVERIFY(setMode(path, mode));
    QCOMPARE(distrust("/a/b/file"),
        QFile::decodeName(path) + u" can be written by others than the administrator"_s);
}

void TestTrustedFile::fileOfSomebodyElse()
{
    const TrustedOwner other { geteuid() + 1, m_folder->path() };
    QCOMPARE(reasonForDistrust(u"/a/b/file"_s, other).value_or(QString()),
        u"/ does not belong to the administrator"_s);
    QVERIFY(reasonForDistrustOfTree(u"/a"_s, other));
}

void TestTrustedFile::missingFile()
{
    QCOMPARE(distrust("/a/b/none"), u"/a/b/none: "_s + errnoText(ENOENT));
    QCOMPARE(distrust("/none/file"), u"/none: "_s + errnoText(ENOENT));
    QCOMPARE(distrustOfTree("/a/none"), u"/a/none: "_s + errnoText(ENOENT));
}

void TestTrustedFile::folderInThePlaceOfTheFile()
{
    QCOMPARE(distrust("/a/b"), u"/a/b is not what it should be"_s);
}

void TestTrustedFile::fileInThePlaceOfAFolder()
{
    QCOMPARE(distrust("/a/b/file/file"), u"/a/b/file is not what it should be"_s);
}

void TestTrustedFile::linkInThePlaceOfTheFile()
{
    QVERIFY(symlink("file", realPath("/a/b/link").constData()) == 0);
    QCOMPARE(distrust("/a/b/link"), u"/a/b/link is not what it should be"_s);
}

void TestTrustedFile::linkInThePlaceOfAFolder()
{
    QVERIFY(symlink("a", realPath("/link").constData()) == 0);
    QCOMPARE(distrust("/link/b/file"), u"/link is not what it should be"_s);
    QCOMPARE(distrustOfTree("/link/b"), u"/link is not what it should be"_s);
    QCOMPARE(distrustOfTree("/link"), u"/link is not what it should be"_s);
}

void TestTrustedFile::pathThatIsNotAbsolute()
{
    QCOMPARE(distrust("a/b/file"), u"a/b/file is no absolute path"_s);
    QCOMPARE(distrust(""), u" is no absolute path"_s);
    QCOMPARE(distrustOfTree("a"), u"a is no absolute path"_s);
}

void TestTrustedFile::pathThatLeadsOutOfItsFolder()
{
    QCOMPARE(distrust("/a/b/c/../file"), u"/a/b/c/../file leads out of its folder"_s);
    QCOMPARE(distrustOfTree("/a/.."), u"/a/.. leads out of its folder"_s);
}

void TestTrustedFile::superfluousSlashes()
{
    QCOMPARE(distrust("//a///b/file"), QString());
    QCOMPARE(distrustOfTree("/a/b/"), QString());
}

void TestTrustedFile::trustedTree()
{
    QCOMPARE(distrustOfTree("/a"), QString());
    QCOMPARE(distrustOfTree("/a/b/c"), QString());
}

void TestTrustedFile::treeThatIsAFile()
{
    QCOMPARE(distrustOfTree("/a/b/file"), u"/a/b/file is not what it should be"_s);
}

void TestTrustedFile::whatATreeMustNotHold_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("writable file") << QByteArray("/a/b/file") << QByteArray("writable");
    QTest::newRow("writable hidden file") << QByteArray("/a/b/c/.hidden") << QByteArray("writable");
    QTest::newRow("writable folder") << QByteArray("/a/b/c") << QByteArray("writable");
    QTest::newRow("link") << QByteArray("/a/b/c/x") << QByteArray("link");
    QTest::newRow("broken link") << QByteArray("/a/b/x") << QByteArray("broken link");
    QTest::newRow("pipe") << QByteArray("/a/b/c/x") << QByteArray("pipe");
}

void TestTrustedFile::whatATreeMustNotHold()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, kind);
    const QByteArray real = realPath(path);
    if (kind == "writable")
        QVERIFY(setMode(path, 0777));
    else if (kind == "pipe")
        QVERIFY(mkfifo(real.constData(), 0600) == 0);
    else
        QVERIFY(symlink(kind == "link" ? ".hidden" : "nowhere", real.constData()) == 0);
    const QString reason = distrustOfTree("/a");
    QVERIFY2(reason.startsWith(QFile::decodeName(path) + u' '), qPrintable(reason));
    QVERIFY2(
        reason.contains(kind == "writable" ? u"can be written"_s : u"is not what"_s), qPrintable(reason));
}

// A name that is no valid text cannot be opened by its text.
void TestTrustedFile::folderOfATreeThatCannotBeRead()
{
    QVERIFY(mkdir(realPath("/a/b/\xff").constData(), 0700) == 0);
    QVERIFY(distrustOfTree("/a").contains(errnoText(ENOENT)));
}

void TestTrustedFile::pathAboveATreeCounts()
{
    QVERIFY(setMode("/a", 0777));
    QCOMPARE(distrustOfTree("/a/b"), u"/a can be written by others than the administrator"_s);
}

QTEST_GUILESS_MAIN(TestTrustedFile)
#include "tst_trustedfile.moc"
