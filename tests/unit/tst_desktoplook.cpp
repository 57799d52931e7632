// SPDX-License-Identifier: MIT
//
// The look of the user's desktop, as it is told to the program that runs as root.
#include "app/DesktopLook.h"
#include "app/LookProcess.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

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
    void processThatDoesNotAnswerHoldsNothingUp();
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
    for (const char *name : { "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "XCURSOR_THEME", "XCURSOR_SIZE" })
        qunsetenv(name);
}

void TestDesktopLook::windowsOfAnotherProcessLookTheSame()
{
    const QPalette oldPalette = QApplication::palette();
    const QFont oldFont = QApplication::font();
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
    QApplication::setPalette(oldPalette);
    QApplication::setFont(oldFont);
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

void TestDesktopLook::processTellsTheLook()
{
    const Script script("echo \"icons $1\"");
    LookProcess process(script.path());
    process.start();
    QCOMPARE(process.finish(), QByteArray("icons -look\n"));
}

// What it has told so far is cut off somewhere, and would be taken for another look.
void TestDesktopLook::processThatDoesNotAnswerHoldsNothingUp()
{
    const Script script("echo $$ >\"$0.pid\"; echo 'XCURSOR_SIZE 4'; exec sleep 600");
    QElapsedTimer time;
    time.start();
    LookProcess process(script.path());
    process.start();
    QCOMPARE(process.finish(), QByteArray());
    QVERIFY(time.elapsed() < 30'000);
    QFile pid(script.path() + u".pid"_s);
    QVERIFY(pid.open(QIODevice::ReadOnly));
    QVERIFY(!QFile::exists(u"/proc/"_s + QString::fromLatin1(pid.readAll().trimmed())));
}

QTEST_MAIN(TestDesktopLook)
#include "tst_desktoplook.moc"
