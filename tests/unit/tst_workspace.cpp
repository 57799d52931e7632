// SPDX-License-Identifier: MIT
//
// Opening paths with the desktop's programs. The desktop is a script that notes how it was called.
#include "platform/DesktopUser.h"
#include "platform/Workspace.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <memory>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

class WorkspaceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void documentIsHandedToTheViewer();
    void documentThatCannotBeOpened_data();
    void documentThatCannotBeOpened();
    void viewerThatFailsIsTold();
    void folderIsHandedToTheDesktopWithoutAFileManagerOnTheBus();
    void noFileManagerIsTold();
    void programsOfTheDesktopRunAsItsUser();
    void fileManagerOfAnotherUserIsAskedInTheirName();
    void nothingIsRunForAUserWhoCannotBeLookedUp();

private:
    void writeDesktop(const QByteArray &script);
    void writeProgram(const QString &name, const QByteArray &script);
    std::optional<bool> openDocument(const QString &path);
    std::optional<bool> openFolder(const QString &path);
    QString note() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_path;
    DesktopWorkspace m_workspace;
};

void WorkspaceTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QFile::setPermissions(m_folder->path(),
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::WriteOther
            | QFile::ExeOther);
    m_path = qgetenv("PATH");
    for (const char *variable : { "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "PKEXEC_UID", "SUDO_UID" })
        qunsetenv(variable);
}

void WorkspaceTest::cleanup()
{
    qputenv("PATH", m_path);
    qunsetenv("PKEXEC_UID");
}

// The only xdg-open that is found from here on.
void WorkspaceTest::writeDesktop(const QByteArray &script)
{
    writeProgram(u"xdg-open"_s, script);
}

// The programs of this folder are the only ones that are found from here on.
void WorkspaceTest::writeProgram(const QString &name, const QByteArray &script)
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\nPATH=/usr/bin:/bin\n" + script);
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    qputenv("PATH", QFile::encodeName(m_folder->path()));
}

std::optional<bool> WorkspaceTest::openDocument(const QString &path)
{
    auto answer = std::make_shared<std::optional<bool>>();
    m_workspace.openDocument(path, [answer](bool success) { *answer = success; });
    const bool isLater = !answer->has_value();
    [[maybe_unused]] const bool hasAnswered = QTest::qWaitFor([&answer] { return answer->has_value(); });
    return isLater ? *answer : std::nullopt;
}

std::optional<bool> WorkspaceTest::openFolder(const QString &path)
{
    auto answer = std::make_shared<std::optional<bool>>();
    m_workspace.openInFileManager(path, [answer](bool success) { *answer = success; });
    [[maybe_unused]] const bool hasAnswered = QTest::qWaitFor([&answer] { return answer->has_value(); });
    return *answer;
}

QString WorkspaceTest::note() const
{
    QFile file(m_folder->filePath(u"note"_s));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void WorkspaceTest::documentIsHandedToTheViewer()
{
    writeDesktop("printf '%s|' \"$#\" \"$1\" > \"${0%/*}/note\"");
    const QString path = m_folder->filePath(u"User Manual $(id).pdf"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(openDocument(path), std::optional<bool>(true));
    QCOMPARE(note(), u"1|"_s + path + u'|');
}

void WorkspaceTest::documentThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << u"missing.pdf"_s;
    QTest::newRow("unreadable") << u"unreadable.pdf"_s;
    QTest::newRow("a folder") << u"."_s;
}

void WorkspaceTest::documentThatCannotBeOpened()
{
    QFETCH(QString, name);
    writeDesktop("touch \"${0%/*}/note\"");
    QFile file(m_folder->filePath(u"unreadable.pdf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.setPermissions({});
    // Root reads everything; what may be read is asked for the real user.
    const uid_t user = getuid();
    if (user == 0)
        QCOMPARE(setresuid(65534, static_cast<uid_t>(-1), static_cast<uid_t>(-1)), 0);
    const std::optional<bool> answer = openDocument(m_folder->filePath(name));
    if (user == 0)
        QCOMPARE(setresuid(0, static_cast<uid_t>(-1), static_cast<uid_t>(-1)), 0);
    QCOMPARE(answer, std::optional<bool>(false));
    QVERIFY(!QFile::exists(m_folder->filePath(u"note"_s)));
}

void WorkspaceTest::viewerThatFailsIsTold()
{
    writeDesktop("exit 3");
    QFile file(m_folder->filePath(u"a.pdf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(openDocument(file.fileName()), std::optional<bool>(false));
}

void WorkspaceTest::folderIsHandedToTheDesktopWithoutAFileManagerOnTheBus()
{
    writeDesktop("printf '%s' \"$1\" > \"${0%/*}/note\"");
    QCOMPARE(openFolder(u"/media/a b"_s), std::optional<bool>(true));
    QCOMPARE(note(), u"/media/a b"_s);
}

void WorkspaceTest::noFileManagerIsTold()
{
    qputenv("PATH", QFile::encodeName(m_folder->path()));
    QCOMPARE(openFolder(u"/"_s), std::optional<bool>(false));
}

// As pkexec leaves it: root, at the wish of a user.
void WorkspaceTest::programsOfTheDesktopRunAsItsUser()
{
    if (geteuid() != 0) {
        QVERIFY(!desktopUser());
        return;
    }
    qputenv("PKEXEC_UID", "65534");
    writeDesktop("echo $(id -u) $(id -ru) $(id -G) $HOME $XDG_RUNTIME_DIR [$PKEXEC_UID] > \"${0%/*}/note\"");
    QCOMPARE(openFolder(u"/"_s), std::optional<bool>(true));
    QCOMPARE(note(), u"65534 65534 65534 /nonexistent /run/user/65534 []\n"_s);
    qputenv("PKEXEC_UID", "0; id");
    QVERIFY(!desktopUser());
}

// The bus of their session may refuse root.
void WorkspaceTest::fileManagerOfAnotherUserIsAskedInTheirName()
{
    if (geteuid() != 0)
        QSKIP("Only root runs at somebody's wish.");
    qputenv("PKEXEC_UID", "65534");
    writeDesktop("touch \"${0%/*}/desktop\"");
    writeProgram(u"dbus-send"_s, "printf '%s|' \"$(id -u)\" \"$@\" >\"${0%/*}/note\"");
    QCOMPARE(openFolder(u"/media/a, b"_s), std::optional<bool>(true));
    QCOMPARE(note(),
        u"65534|--session|--print-reply|--reply-timeout=20000|--dest=org.freedesktop.FileManager1|"
        "/org/freedesktop/FileManager1|org.freedesktop.FileManager1.ShowFolders|array:string:file:///media/"
        "a%2C%20b|"
        "string:|"_s);
    QVERIFY(!QFile::exists(m_folder->filePath(u"desktop"_s)));

    writeProgram(u"dbus-send"_s, "exit 1");
    QCOMPARE(openFolder(u"/"_s), std::optional<bool>(true));
    QVERIFY(QFile::exists(m_folder->filePath(u"desktop"_s)));
}

// A directory service that is away knows nobody for a while. Then nothing is run, and not as root either.
void WorkspaceTest::nothingIsRunForAUserWhoCannotBeLookedUp()
{
    if (geteuid() != 0)
        QSKIP("Only root runs at somebody's wish.");
    qputenv("PKEXEC_UID", "61999"); // nobody's number
    writeDesktop("touch \"${0%/*}/note\"");
    QFile file(m_folder->filePath(u"a.pdf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(openDocument(file.fileName()), std::optional<bool>(false));
    QCOMPARE(openFolder(u"/"_s), std::optional<bool>(false));
    QVERIFY(!QFile::exists(m_folder->filePath(u"note"_s)));
    QVERIFY(desktopUser());
    QVERIFY(!desktopUser()->isKnown());
}

QTEST_GUILESS_MAIN(WorkspaceTest)
#include "tst_workspace.moc"
