// SPDX-License-Identifier: MIT
//
// The look of the user's desktop, as it is told to the program that runs as root.
#include "app/DesktopLook.h"
#include "app/LookMessages.h"
#include "app/LookProcess.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace Qt::Literals::StringLiterals;

class TestDesktopLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void windowsOfAnotherProcessLookTheSame();
    void variablesAreHandedOver();
    void whatIsNotDataIsLeftOut_data();
    void whatIsNotDataIsLeftOut();
    void variableThatIsThereStays();
    void processTellsTheLook();
    void processThatTellsNothingHoldsNothingUp_data();
    void processThatTellsNothingHoldsNothingUp();
    void changesAreTold();
    void windowTakesWhatIsTold();
    void windowTakesTheLastOfMany();
    void windowListensToNothingElse_data();
    void windowListensToNothingElse();

private:
    const QPalette m_palette = QApplication::palette();
    const QFont m_font = QApplication::font();
};

namespace {

// A program in the place of the one that tells the look.
class Script
{
public:
    explicit Script(const QByteArray &commands)
    {
        QFile file(path());
        if (file.open(QIODevice::WriteOnly))
            file.write("#!/bin/sh\n" + commands + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("DISPLAY", ":0");
    }
    QString path() const { return m_folder.filePath(u"tell"_s); }

    // That it has written to "$0.pid".
    pid_t process() const
    {
        QFile file(path() + u".pid"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    }

private:
    QTemporaryDir m_folder;
};

DesktopLook darkLook()
{
    DesktopLook look;
    QPalette palette(QColor(40, 44, 48), QColor(30, 32, 36));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(1, 2, 3));
    look.palette = palette;
    QFont font(QApplication::font());
    font.setPointSizeF(13.5);
    font.setBold(true);
    look.font = font;
    look.iconTheme = u"Some Theme-dark_2.0"_s;
    return look;
}

} // namespace

void TestDesktopLook::cleanup()
{
    QApplication::setPalette(m_palette);
    QApplication::setFont(m_font);
    for (const char *name : { "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "XCURSOR_THEME", "XCURSOR_SIZE" })
        qunsetenv(name);
}

void TestDesktopLook::windowsOfAnotherProcessLookTheSame()
{
    const DesktopLook given = darkLook();
    const DesktopLook taken = DesktopLook::fromText(given.toText());
    taken.apply();
    const QLabel label;
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        for (const auto role :
            { QPalette::Window, QPalette::WindowText, QPalette::Highlight, QPalette::Link })
            QCOMPARE(label.palette().color(group, role), given.palette->color(group, role));
    }
    QCOMPARE(label.font().pointSizeF(), 13.5);
    QCOMPARE(label.font().weight(), QFont::Bold);
    QCOMPARE(label.font().family(), given.font->family());
    QCOMPARE(QIcon::themeName(), given.iconTheme);
    QCOMPARE(DesktopLook::ofThisProcess().toText(), given.toText());
}

void TestDesktopLook::variablesAreHandedOver()
{
    const QList<std::pair<const char *, QByteArray>> wanted { { "QT_SCALE_FACTOR", "1.5" },
        { "QT_SCREEN_SCALE_FACTORS", "eDP-1=2;HDMI-A-1=1.25;" }, { "XCURSOR_THEME", "Big Cursors" },
        { "XCURSOR_SIZE", "48" } };
    for (const auto &[name, value] : wanted)
        qputenv(name, value);
    const QByteArray text = DesktopLook::ofThisProcess().toText();
    cleanup();
    DesktopLook::fromText(text).applyToEnvironment();
    for (const auto &[name, value] : wanted)
        QCOMPARE(qgetenv(name), value);
}

void TestDesktopLook::whatIsNotDataIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("other variable") << QByteArray("LD_PRELOAD /tmp/evil.so");
    QTest::newRow("plug-ins") << QByteArray("QT_PLUGIN_PATH /tmp");
    QTest::newRow("platform theme") << QByteArray("QT_QPA_PLATFORMTHEME evil");
    QTest::newRow("style") << QByteArray("QT_STYLE_OVERRIDE evil");
    QTest::newRow("icons by path") << QByteArray("icons ../../home/evil");
    QTest::newRow("icons by full path") << QByteArray("icons /home/evil");
    QTest::newRow("hidden icons") << QByteArray("icons ..");
    QTest::newRow("icons with a long name") << "icons " + QByteArray(65, 'a');
    QTest::newRow("cursor by path") << QByteArray("XCURSOR_THEME ../evil");
    QTest::newRow("cursor size") << QByteArray("XCURSOR_SIZE 100000");
    QTest::newRow("cursor path") << QByteArray("XCURSOR_PATH /tmp");
    QTest::newRow("scale of nothing") << QByteArray("QT_SCALE_FACTOR 0");
    QTest::newRow("huge scale") << QByteArray("QT_SCALE_FACTOR 90");
    QTest::newRow("scale that is no number") << QByteArray("QT_SCALE_FACTOR 1e9");
    QTest::newRow("scales with a path") << QByteArray("QT_SCREEN_SCALE_FACTORS /tmp/a=1");
    QTest::newRow("value with a second line") << QByteArray("QT_SCALE_FACTOR 2\r");
    QTest::newRow("short palette") << "palette " + QByteArray(479, '0');
    QTest::newRow("palette of other signs") << "palette " + QByteArray(480, 'x');
    QTest::newRow("font without a name") << QByteArray("font 10 400 upright ");
    QTest::newRow("font with a long name") << "font 10 400 upright " + QByteArray(101, 'a');
    QTest::newRow("font with a control character") << QByteArray("font 10 400 upright Sans\x01");
    QTest::newRow("huge font") << QByteArray("font 1000 400 upright Sans");
    QTest::newRow("font of no size") << QByteArray("font nan 400 upright Sans");
    QTest::newRow("font weight") << QByteArray("font 10 0 upright Sans");
    QTest::newRow("too long") << "icons breeze\n" + QByteArray(8192, 'x');
}

void TestDesktopLook::whatIsNotDataIsLeftOut()
{
    QFETCH(const QByteArray, text);
    const DesktopLook look = DesktopLook::fromText(text);
    QVERIFY(!look.palette);
    QVERIFY(!look.font);
    QCOMPARE(look.iconTheme, QString());
    QVERIFY(look.environment.empty());
}

// It was set by hand, for this process.
void TestDesktopLook::variableThatIsThereStays()
{
    qputenv("XCURSOR_SIZE", "24");
    DesktopLook::fromText("XCURSOR_SIZE 48\n").applyToEnvironment();
    QCOMPARE(qgetenv("XCURSOR_SIZE"), QByteArray("24"));
}

// It goes on until the socket is closed, whatever becomes of the process that has started it.
void TestDesktopLook::processTellsTheLook()
{
    const Script script("echo $$ >\"$0.pid\"; echo \"icons $1\" >&0; exec cat");
    FileDescriptor descriptor;
    {
        LookProcess process(script.path());
        process.start();
        descriptor = process.takeSocket();
    }
    QByteArray message;
    {
        const MessageSocket socket(std::move(descriptor));
        QVERIFY(socket.isOpen());
        QCOMPARE(socket.receive(message, DesktopLook::longestText), MessageSocket::Receipt::Message);
        QCOMPARE(message, QByteArray("icons -look\n"));
        QCOMPARE(waitpid(script.process(), nullptr, WNOHANG), 0);
    }
    const auto hasEnded = [&script] { return waitpid(script.process(), nullptr, WNOHANG) > 0; };
    QVERIFY(QTest::qWaitFor(hasEnded));
}

void TestDesktopLook::processThatTellsNothingHoldsNothingUp_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::newRow("hangs") << QByteArray("exec sleep 600");
    QTest::newRow("ends") << QByteArray("exit 0");
    QTest::newRow("crashes") << QByteArray("kill -SEGV $$");
}

void TestDesktopLook::processThatTellsNothingHoldsNothingUp()
{
    QFETCH(const QByteArray, commands);
    const Script script("echo $$ >\"$0.pid\"; " + commands);
    QElapsedTimer time;
    time.start();
    {
        LookProcess process(script.path());
        process.start();
        QVERIFY(!process.takeSocket().isOpen());
    }
    QVERIFY(time.elapsed() < 30'000);
    QVERIFY(!QFile::exists(u"/proc/%1"_s.arg(script.process())));
}

void TestDesktopLook::changesAreTold()
{
    auto [ours, theirs] = MessageSocket::makePair();
    LookTeller teller(std::move(theirs));
    QSignalSpy end(&teller, &LookTeller::listenerHasGone);
    QByteArray told;
    const auto isTold = [&told, &socket = ours] {
        return socket.receive(told, DesktopLook::longestText) == MessageSocket::Receipt::Message;
    };
    QVERIFY(isTold());
    QCOMPARE(told, DesktopLook::ofThisProcess().toText());

    QApplication::setPalette(*darkLook().palette);
    QVERIFY(QTest::qWaitFor(isTold));
    QCOMPARE(DesktopLook::fromText(told).palette->color(QPalette::Window), QColor(30, 32, 36));
    QApplication::setFont(*darkLook().font);
    QVERIFY(QTest::qWaitFor(isTold));
    QCOMPARE(DesktopLook::fromText(told).font->pointSizeF(), 13.5);
    // A desktop tells the windows of another theme of icons.
    QIcon::setThemeName(u"other"_s);
    for (QWindow *window : QGuiApplication::allWindows()) {
        QEvent event(QEvent::ThemeChange);
        QCoreApplication::sendEvent(window, &event);
    }
    QVERIFY(QTest::qWaitFor(isTold));
    QCOMPARE(DesktopLook::fromText(told).iconTheme, u"other"_s);

    QVERIFY(end.isEmpty());
    ours = MessageSocket();
    QVERIFY(end.wait());
}

void TestDesktopLook::windowTakesWhatIsTold()
{
    auto [ours, theirs] = MessageSocket::makePair();
    const int listened = ours.number();
    LookFollower follower(ours.take());
    QVERIFY(!follower.latest().palette);
    QVERIFY(theirs.send(darkLook().toText()));
    QCOMPARE(follower.latest().palette->color(QPalette::Window), QColor(30, 32, 36));
    follower.follow();
    const QLabel label;
    const auto background = [&label] { return label.palette().color(QPalette::Window); };

    QVERIFY(theirs.send(darkLook().toText()));
    QTRY_COMPARE(background(), QColor(30, 32, 36));
    // What is no look changes nothing, and what follows it is taken.
    QVERIFY(theirs.send("palette " + QByteArray(480, 'x') + "\nfont 1000 400 upright Sans\n"));
    QVERIFY(theirs.send(QByteArray(DesktopLook::longestText + 1, 'x')));
    DesktopLook larger;
    larger.font = m_font;
    larger.font->setPointSizeF(17);
    QVERIFY(theirs.send(larger.toText()));
    QTRY_COMPARE(label.font().pointSizeF(), 17);
    QCOMPARE(background(), QColor(30, 32, 36));

    // The last look stays.
    theirs = MessageSocket();
    QTRY_VERIFY(!MessageSocket::isMessageSocket(listened));
    QCOMPARE(background(), QColor(30, 32, 36));
    QCOMPARE(label.font().pointSizeF(), 17);
}

void TestDesktopLook::windowTakesTheLastOfMany()
{
    auto [ours, theirs] = MessageSocket::makePair();
    LookFollower follower(ours.take());
    follower.follow();
    DesktopLook look = darkLook();
    const QLabel label;
    for (int blue = 0; blue < 200; ++blue) {
        look.palette->setColor(QPalette::Window, QColor(1, 2, blue));
        QVERIFY(QTest::qWaitFor([&, &socket = theirs] { return socket.send(look.toText()); }));
    }
    QTRY_COMPARE(label.palette().color(QPalette::Window), QColor(1, 2, 199));
}

void TestDesktopLook::windowListensToNothingElse_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : { "nothing", "endless file", "named pipe", "stream" })
        QTest::addRow("%s", kind) << QString::fromLatin1(kind);
}

void TestDesktopLook::windowListensToNothingElse()
{
    QFETCH(const QString, kind);
    const QTemporaryDir folder;
    const QByteArray pipe = QFile::encodeName(folder.filePath(u"pipe"_s));
    FileDescriptor descriptor;
    int ends[2] = { -1, -1 };
    if (kind == "endless file"_L1) {
        descriptor = FileDescriptor(open("/dev/zero", O_RDONLY | O_CLOEXEC));
    } else if (kind == "named pipe"_L1) {
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        descriptor = FileDescriptor(open(pipe.constData(), O_RDWR | O_CLOEXEC));
    } else if (kind == "stream"_L1) {
        QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        descriptor = FileDescriptor(ends[0]);
    }
    const FileDescriptor other(ends[1]);
    const int number = descriptor.number();
    LookFollower follower(std::move(descriptor));
    QVERIFY(number < 0 || fcntl(number, F_GETFD) == -1);
    QVERIFY(!follower.latest().palette);
    follower.follow();
}

QTEST_MAIN(TestDesktopLook)
#include "tst_desktoplook.moc"
