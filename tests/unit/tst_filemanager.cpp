// SPDX-License-Identifier: MIT
//
// Showing a folder in the file manager of a session bus. The file manager is the test's own; xdg-open is a
// script that notes how it was called. Run by dbus-run-session.
#include "platform/Workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"org.freedesktop.FileManager1"_s;
const QString path = u"/org/freedesktop/FileManager1"_s;

class FileManager : public QDBusVirtualObject
{
public:
    bool refuses = false;
    QStringList calls; // "method address…"

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        calls.append(message.member() + u' ' + message.arguments().value(0).toStringList().join(u' '));
        return connection.send(
            refuses ? message.createErrorReply(u"org.test.Refused"_s, u"no"_s) : message.createReply());
    }
};

} // namespace

class FileManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void folderIsShown_data();
    void folderIsShown();
    void oneThatRefusesLeavesItToTheDesktop();
    void noneOnTheBusLeavesItToTheDesktop();

private:
    std::optional<bool> openFolder(const QString &folder);
    QByteArray handedToDesktop() const;

    QTemporaryDir m_folder;
    DesktopWorkspace m_workspace;
};

void FileManagerTest::initTestCase()
{
    for (const char *variable : { "PKEXEC_UID", "SUDO_UID" })
        qunsetenv(variable);
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    QFile script(m_folder.filePath(u"xdg-open"_s));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nprintf '%s' \"$1\" > \"${0%/*}/note\"\n");
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    qputenv("PATH", QFile::encodeName(m_folder.path()));
}

std::optional<bool> FileManagerTest::openFolder(const QString &folder)
{
    std::optional<bool> answer;
    m_workspace.openInFileManager(folder, [&answer](bool success) { answer = success; });
    [[maybe_unused]] const bool hasAnswered = QTest::qWaitFor([&answer] { return answer.has_value(); });
    return answer;
}

QByteArray FileManagerTest::handedToDesktop() const
{
    QFile note(m_folder.filePath(u"note"_s));
    return note.open(QIODevice::ReadOnly) ? note.readAll() : QByteArray();
}

void FileManagerTest::folderIsShown_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("address");

    QTest::newRow("plain") << u"/media/user/DATA"_s << u"file:///media/user/DATA"_s;
    QTest::newRow("blank") << u"/media/My Disk"_s << u"file:///media/My%20Disk"_s;
    QTest::newRow("signs of an address") << u"/media/a#b?c%20d"_s << u"file:///media/a%23b%3Fc%2520d"_s;
    QTest::newRow("not ASCII") << u"/media/Größe"_s << u"file:///media/Gr%C3%B6%C3%9Fe"_s;
}

void FileManagerTest::folderIsShown()
{
    QFETCH(const QString, folder);
    QFETCH(const QString, address);
    QDBusConnection server = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"server"_s);
    FileManager manager;
    QVERIFY(server.registerVirtualObject(path, &manager));
    QVERIFY(server.registerService(service));
    QCOMPARE(openFolder(folder), std::optional<bool>(true));
    QCOMPARE(manager.calls, QStringList { u"ShowFolders "_s + address });
    QCOMPARE(handedToDesktop(), QByteArray());
    server.unregisterService(service);
    server.unregisterObject(path);
}

void FileManagerTest::oneThatRefusesLeavesItToTheDesktop()
{
    QDBusConnection server = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"server"_s);
    FileManager manager;
    manager.refuses = true;
    QVERIFY(server.registerVirtualObject(path, &manager));
    QVERIFY(server.registerService(service));
    QCOMPARE(openFolder(u"/media/a b"_s), std::optional<bool>(true));
    QCOMPARE(manager.calls.size(), 1);
    QCOMPARE(handedToDesktop(), QByteArray("/media/a b"));
    server.unregisterService(service);
    server.unregisterObject(path);
}

void FileManagerTest::noneOnTheBusLeavesItToTheDesktop()
{
    QFile::remove(m_folder.filePath(u"note"_s));
    QCOMPARE(openFolder(u"/media/DATA"_s), std::optional<bool>(true));
    QCOMPARE(handedToDesktop(), QByteArray("/media/DATA"));
}

QTEST_GUILESS_MAIN(FileManagerTest)
#include "tst_filemanager.moc"
