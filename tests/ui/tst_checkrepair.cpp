// SPDX-License-Identifier: MIT
//
// Check and repair with a program of the test's own in the tool's place: what the user sees while it runs and
// after.
#include "tests/support/TestController.h"
#include "tests/support/WindowTime.h"
#include "tests/ui/SheetWatch.h"

#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/StatusRow.h"

#include <QAccessible>
#include <QAction>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Two volumes of a file system that can be checked and repaired. The tool runs a script.
struct CheckTest : TestController
{
    explicit CheckTest(const QByteArray &script)
    {
        writeBundle(systemDirectory(), u"probe"_s,
            "<key>CFBundleIdentifier</key><string>org.example</string><key>FSPersonalities</"
            "key><dict><key>P</key>"
            "<dict><key>FSName</key><string>Probe</string><key>FSFormatExecutable</key><string>x</string>"
            "<key>FSVerificationExecutable</key>"
            "<string>x</string><key>FSRepairExecutable</key><string>x</string></dict></dict>");
        setDiskutilScript(script);
        launch();
        for (const MemoryDiskRef &volume : { first, second }) {
            volume->description->insert(DAKey::volumeKind, u"probe"_s);
            add(volume);
        }
        record = recordOf(u"disk2s1"_s);
        select(u"disk2s1"_s);
    }

    QString shown() { return controller().checkRepairOutputView->toPlainText(); }
    QString alertText() const
    {
        return sheets().isEmpty() ? QString() : sheets().constFirst()->informativeText();
    }

    MemoryDiskRef first = makePartition(u"disk2s1"_s, 1000);
    MemoryDiskRef second = makePartition(u"disk2s2"_s, 2000);
    DiskRecord record;
};

// A check with output in many pieces, handed over one by one, and a panel that takes some time to be rebuilt.
struct OutputRun
{
    static constexpr int pieces = 2000;

    explicit OutputRun(qint64 rebuildMilliseconds)
    {
        CheckTest test("head -c " + QByteArray::number(pieces) + " /dev/zero | tr '\\0' '\\n'\n");
        QEventLoop loop; // which, unlike that of QTRY_VERIFY, does not rest between two pieces
        QElapsedTimer clock;
        clock.start();
        test.controller().checkButton->click();
        QObject::connect(&test.controller(), &ZorvexDiskManagerAppDelegate::panelDidChange, &loop, [&] {
            QElapsedTimer rebuild;
            rebuild.start();
            while (rebuild.elapsed() < rebuildMilliseconds) { }
            ++rebuilds;
            if (!test.record->operationInProgress)
                loop.quit();
        });
        loop.exec();
        --rebuilds; // that of the end
        milliseconds = clock.elapsed();
        if (test.record->checkRepairOutput->bytes() != QByteArray(pieces, '\n'))
            qFatal("output is missing");
    }

    QString figures() const { return u"%1 times in %2 ms"_s.arg(rebuilds).arg(milliseconds); }

    qint64 rebuilds = 0; // while output came
    qint64 milliseconds = 0;
};

} // namespace

class TestCheckRepair : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanCheckLeavesItsOutput();
    void menuItemRunsTheTool_data();
    void menuItemRunsTheTool();
    void verdictOfACheck();
    void verdictOfARepair();
    void otherFailureCarriesNoOutput();
    void refusalIsToldAsItsSentence_data();
    void refusalIsToldAsItsSentence();
    void verdictStaysOnThePage_data();
    void verdictStaysOnThePage();
    void checkCanBeStopped();
    void escapeStopsACheckOnItsPage();
    void lostDiskGetsNoVerdict_data();
    void lostDiskGetsNoVerdict();
    void stateWhileItRuns();
    void progressIsShownInTheBar();
    void rewrittenLineShowsItsLastState();
    void newRunEmptiesTheOldOutput();
    void outputOfAnotherDiskIsKeptForIt();
    void outputThatIsNotUtf8IsShown();
    void scrolledUpViewStays();
    void diskThatVanishesMeanwhile();
    void panelIsRebuiltAtMostOnceAFrame();
    void slowPanelLeavesTheTimeToTheOutput();
    void endlessOutputLetsTheWindowGo();
};

void TestCheckRepair::cleanCheckLeavesItsOutput()
{
    CheckTest test("printf '%s|' \"$@\"\necho all is well\n");
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.shown(), u"verifyVolume|/dev/disk2s1|all is well\n"_s);
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(test.controller().checkButton->isEnabled() && test.controller().repairButton->isEnabled());
    QVERIFY(!test.record->operationInProgressShowFormatTab
        && !test.record->operationInProgressShowMaintenanceTab);
}

void TestCheckRepair::menuItemRunsTheTool_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<Qt::Key>("key"); // with Ctrl; a repair has none
    QTest::addColumn<QString>("verb");
    QTest::newRow("check") << u"actionCheck"_s << Qt::Key_K << u"verifyVolume"_s;
    QTest::newRow("repair") << u"actionRepair"_s << Qt::Key_unknown << u"repairVolume"_s;
}

void TestCheckRepair::menuItemRunsTheTool()
{
    QFETCH(QString, action);
    QFETCH(Qt::Key, key);
    QFETCH(QString, verb);
    CheckTest test("read -r line <&3\nprintf '%s|' \"$@\"\n"); // not over before it was seen
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    const auto choose = [&] { test.action(action)->trigger(); };
    const auto type = [&] { QTest::keyClick(test.window().windowHandle(), key, Qt::ControlModifier); };
    QList<std::function<void()>> starts { choose };
    if (key != Qt::Key_unknown)
        starts.append(type);
    for (const std::function<void()> &start : std::as_const(starts)) {
        test.record->checkRepairOutput.reset();
        controller.rightTabView->setCurrentWidget(controller.infoTab);
        start(); // the key's events may see the tool end already
        QCOMPARE(controller.rightTabView->currentWidget(), controller.maintenanceTab);
        test.letScriptsGoOn();
        QTRY_VERIFY(!test.record->operationInProgress);
        QCOMPARE(test.shown(), QString(verb + u"|/dev/disk2s1|"_s));
        QVERIFY(test.sheets().isEmpty());
    }
}

void TestCheckRepair::verdictOfACheck()
{
    CheckTest test("echo broken\nexit 1\n");
    test.log.clear();
    const SheetWatch watch(test.record);
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(watch.wasBusy, QList { true }); // the alert comes before the end
    QCOMPARE(test.alertText(),
        u"Encountered errors when checking the volume.\nFilesystem needs to be repaired."_s);
    QCOMPARE(test.log.lines().size(), 2); // what was run, and what came of it
    QVERIFY(test.log.lines().constFirst().endsWith(u"' 'verifyVolume' '/dev/disk2s1' 2>&1"_s));
    QCOMPARE(test.log.lines().constLast(), u"Error returned by invokeDiskutilWithVerb: 5"_s);
    QCOMPARE(test.shown(), u"broken\n"_s);
}

void TestCheckRepair::verdictOfARepair()
{
    CheckTest test("printf '%s|' \"$@\"\nexit 1\n");
    test.controller().repairButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.alertText(), u"Encountered errors when repairing the volume."_s);
    QCOMPARE(test.shown(), u"repairVolume|/dev/disk2s1|"_s);
}

void TestCheckRepair::otherFailureCarriesNoOutput()
{
    CheckTest test("echo words\nexit 2\n");
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.alertText(), u"diskutil returned error code: 2"_s);
    QVERIFY(test.log.lines().contains(u"Error returned by invokeDiskutilWithVerb: 22"_s));
}

void TestCheckRepair::refusalIsToldAsItsSentence_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("alert");
    QTest::newRow("refusal") << "echo 'diskutil: disk2s1 is in use: dm-0 uses it' >&2\nexit 6\n"_ba
                             << u"diskutil returned error code: 6\ndisk2s1 is in use: dm-0 uses it"_s;
    QTest::newRow("after a tool's words")
        << "echo Started\nprintf '10%%\\r20%%\\r\\n'\necho 'diskutil: it failed'\necho End\nexit 18\n"_ba
        << u"diskutil returned error code: 18\nit failed"_s;
    QTest::newRow("shell")
        << "exec sh -c 'exec /nonexistent/diskutil'\n"_ba
        << u"diskutil returned error code: 127\nsh: 1: exec: /nonexistent/diskutil: not found"_s;
    QTest::newRow("verdict") << "echo 'a diskutil: x'\nexit 1\n"_ba
                             << u"Encountered errors when checking the volume.\n"
                                "Filesystem needs to be repaired."_s;
}

void TestCheckRepair::refusalIsToldAsItsSentence()
{
    QFETCH(const QByteArray, script);
    QFETCH(const QString, alert);
    CheckTest test(script);
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.alertText(), alert);
}

void TestCheckRepair::verdictStaysOnThePage_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("isRepair");
    QTest::addColumn<QString>("verdict");
    QTest::newRow("clean") << "exit 0\n"_ba << false << u"disk2s1: no errors found"_s;
    QTest::newRow("errors") << "exit 1\n"_ba << false << u"disk2s1: errors found, repair it"_s;
    QTest::newRow("refused") << "exit 6\n"_ba << false << u"disk2s1: not finished, nothing is known"_s;
    QTest::newRow("killed") << "kill -9 $$\n"_ba << false << u"disk2s1: not finished, nothing is known"_s;
    QTest::newRow("repaired") << "exit 0\n"_ba << true << u"disk2s1: in order after the repair"_s;
    QTest::newRow("not repaired") << "exit 1\n"_ba << true << u"disk2s1: errors remain"_s;
}

void TestCheckRepair::verdictStaysOnThePage()
{
    QFETCH(const QByteArray, script);
    QFETCH(const bool, isRepair);
    QFETCH(const QString, verdict);
    CheckTest test(script);
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    QCOMPARE(controller.maintenanceStatusRow->text(), localizedString("CHECK_HINT_TEXT"));
    (isRepair ? controller.repairButton : controller.checkButton)->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(controller.maintenanceStatusRow->text(), verdict);
    controller.leftOutlineView->selectRow(-1);
    controller.leftOutlineView->selectRow(controller.leftOutlineView->rowForItem(test.record));
    QCOMPARE(controller.maintenanceStatusRow->text(), verdict);
}

void TestCheckRepair::checkCanBeStopped()
{
    CheckTest test("echo begun\nread line <&3\n");
    StatusRow *const row = test.controller().maintenanceStatusRow;
    auto *const stop = row->findChild<QPushButton *>();
    QVERIFY(!stop->isVisibleTo(row));
    test.controller().checkButton->click();
    QTRY_VERIFY(test.shown().contains(u"begun"_s));
    QVERIFY(stop->isVisibleTo(row));
    stop->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.sheets().size(), 0);
    QCOMPARE(row->text(), u"disk2s1: not finished, nothing is known"_s);
    QVERIFY(!stop->isVisibleTo(row));
    test.controller().repairButton->click();
    QTRY_VERIFY(test.shown().contains(u"begun"_s));
    QVERIFY(!stop->isVisibleTo(row)); // it writes
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
}

void TestCheckRepair::escapeStopsACheckOnItsPage()
{
    CheckTest test("echo begun\nread line <&3\n");
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    controller.rightTabView->setCurrentWidget(controller.maintenanceTab);
    controller.checkButton->click();
    QTRY_VERIFY(test.shown().contains(u"begun"_s));
    controller.leftOutlineView->setFocus();
    QTest::keyClick(controller.leftOutlineView, Qt::Key_Escape);
    QVERIFY(test.record->operationInProgress);
    controller.checkRepairOutputView->setFocus();
    QTRY_VERIFY(controller.checkRepairOutputView->hasFocus());
    QTest::keyClick(controller.checkRepairOutputView, Qt::Key_Escape);
    QTRY_VERIFY(!test.record->operationInProgress);

    controller.repairButton->click();
    QTRY_VERIFY(test.shown().contains(u"begun"_s));
    QTest::keyClick(controller.checkRepairOutputView, Qt::Key_Escape);
    QVERIFY(test.record->operationInProgress); // it writes
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QVERIFY(!controller.maintenanceStatusRow->text().contains(u"not finished"_s));
}

void TestCheckRepair::lostDiskGetsNoVerdict_data()
{
    QTest::addColumn<bool>("isRepair");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    const QString gone = u"“disk2s1” is no longer there"_s;
    const QString unreadable = u"“disk2s1” cannot be read to its end"_s;
    QTest::newRow("gone during a check")
        << false << "23"_ba << gone
        << u"It was removed before the check had ended. Whether the file system has errors is not known. "
           "Connect the disk again and repeat the check."_s;
    QTest::newRow("gone before the tool was there")
        << false << "3"_ba << gone
        << u"It was removed before the check had ended. Whether the file system has errors is not known. "
           "Connect the disk again and repeat the check."_s;
    QTest::newRow("gone during a repair")
        << true << "23"_ba << gone
        << u"It was removed before the repair had ended. The file system may be damaged. Connect the disk "
           "again and check it."_s;
    for (const bool isRepair : { false, true })
        QTest::addRow("unreadable, %s", isRepair ? "repair" : "check")
            << isRepair << "24"_ba << unreadable
            << u"The device reports errors, so it is not known what state the file system is in. Such a disk "
               "may be failing: copy what you need from it while you can."_s;
}

void TestCheckRepair::lostDiskGetsNoVerdict()
{
    QFETCH(const bool, isRepair);
    QFETCH(const QByteArray, status);
    QFETCH(const QString, title);
    QFETCH(const QString, text);
    CheckTest test("echo 'diskutil: words'\nexit " + status + '\n');
    (isRepair ? test.controller().repairButton : test.controller().checkButton)->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), title);
    QCOMPARE(test.alertText(), text);
}

void TestCheckRepair::stateWhileItRuns()
{
    CheckTest test("echo begun\nread -r line <&3\n");
    const ZorvexDiskManagerAppDelegate &controller = test.controller();
    controller.checkButton->click();
    QTRY_COMPARE(test.shown(), u"begun"_s);
    QVERIFY(test.record->operationInProgress);
    QVERIFY(
        test.record->operationInProgressShowFormatTab && test.record->operationInProgressShowMaintenanceTab);
    QVERIFY(!controller.checkButton->isEnabled() && !controller.repairButton->isEnabled());
    QVERIFY(controller.rightTabView->indexOf(controller.maintenanceTab) >= 0);
    QVERIFY(controller.rightTabView->indexOf(controller.formatTab) >= 0);
    QVERIFY(controller.maintenanceStatusRow->showsOperation());
    QVERIFY(!controller.formatStatusRow->showsOperation());
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QVERIFY(!controller.maintenanceStatusRow->showsOperation());
    QCOMPARE(test.shown(), u"begun\n"_s);
}

void TestCheckRepair::progressIsShownInTheBar()
{
    CheckTest test("printf 'pass 1: 40%%\\rpass 1: 42%%\\r'\nread -r line <&3\n");
    test.controller().checkButton->click();
    const auto *bar = test.controller().maintenanceStatusRow->findChild<QProgressBar *>();
    QTRY_COMPARE(bar->value(), 42);
    QCOMPARE(bar->maximum(), 100);
    QAccessibleInterface *const told = QAccessible::queryAccessibleInterface(const_cast<QProgressBar *>(bar));
    QCOMPARE(told->role(), QAccessible::ProgressBar);
    QCOMPARE(told->text(QAccessible::Name), u"Checking “disk2s1”…"_s);
    QCOMPARE(told->valueInterface()->currentValue().toInt(), 42);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
}

void TestCheckRepair::rewrittenLineShowsItsLastState()
{
    CheckTest test("printf 'Checking 10%%\\rChecking 20%%'\n");
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.shown(), u"Checking 20%"_s);
    QCOMPARE(test.record->checkRepairOutput->bytes(), QByteArray("Checking 20%"));
}

void TestCheckRepair::newRunEmptiesTheOldOutput()
{
    CheckTest test("echo once more\nread -r line <&3\n");
    test.record->checkRepairOutput.emplace();
    test.record->checkRepairOutput->append("old", 3);
    test.controller().checkButton->click();
    QTRY_COMPARE(test.shown(), u"once more"_s);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
}

void TestCheckRepair::outputOfAnotherDiskIsKeptForIt()
{
    CheckTest test("echo begun\nread -r line <&3\necho ended\n");
    test.controller().checkButton->click();
    QTRY_COMPARE(test.shown(), u"begun"_s);
    test.select(u"disk2s2"_s);
    QCOMPARE(test.shown(), QString());
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.shown(), QString());
    test.select(u"disk2s1"_s);
    QCOMPARE(test.shown(), u"begun\nended\n"_s);
}

void TestCheckRepair::outputThatIsNotUtf8IsShown()
{
    CheckTest test("printf 'a\\377b\\n'\n");
    test.controller().checkButton->click();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.record->checkRepairOutput->bytes(), QByteArray("a\377b\n"));
    QCOMPARE(test.shown(), QString(u"a"_s + QChar(QChar::ReplacementCharacter) + u"b\n"_s));
}

void TestCheckRepair::scrolledUpViewStays()
{
    CheckTest test("seq 200\nread -r line <&3\nseq 200\n");
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);
    test.controller().checkButton->click();
    QScrollBar *const bar = test.controller().checkRepairOutputView->verticalScrollBar();
    QTRY_VERIFY(test.shown().endsWith(u"\n200"_s));
    QTRY_COMPARE(bar->value(), bar->maximum());
    bar->setValue(3);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(bar->value(), 3);
    QVERIFY(bar->maximum() > 300);
}

void TestCheckRepair::diskThatVanishesMeanwhile()
{
    CheckTest test("echo begun\nread -r line <&3\necho ended\nexit 1\n");
    test.controller().checkButton->click();
    QTRY_COMPARE(test.shown(), u"begun"_s);
    test.service.removeDisk(test.first);
    test.letScriptsGoOn();
    QTRY_VERIFY(!test.record->operationInProgress);
    QCOMPARE(test.record->checkRepairOutput->bytes(), QByteArray("begun\nended\n"));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.controller().leftOutlineView->numberOfRows(), 1);
}

void TestCheckRepair::panelIsRebuiltAtMostOnceAFrame()
{
    constexpr qint64 frame = 15; // milliseconds; a timer may be early by one
    const OutputRun run(0);
    QVERIFY2(run.rebuilds * frame <= run.milliseconds, qPrintable(run.figures()));
}

void TestCheckRepair::slowPanelLeavesTheTimeToTheOutput()
{
    constexpr qint64 rebuild = 20; // milliseconds, at least
    constexpr qint64 rest = 7 * rebuild; // that of eight, with what a timer may be early
    const OutputRun run(rebuild);
    QVERIFY2((run.rebuilds - 1) * (rebuild + rest) <= run.milliseconds, qPrintable(run.figures()));
}

void TestCheckRepair::endlessOutputLetsTheWindowGo()
{
    std::optional<WindowTime> time;
    {
        CheckTest test("exec yes line after line\n");
        test.controller().checkButton->click();
        QTRY_VERIFY(test.shown().size() > 1000);
        time.emplace();
    }
    QVERIFY2(time->milliseconds() < 5000, "the window waited for the tool");
}

QTEST_MAIN(TestCheckRepair)
#include "tst_checkrepair.moc"
