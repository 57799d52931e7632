// SPDX-License-Identifier: MIT
//
// Operations on their worker threads: live, side by side, and when the window goes. A script stands in the
// tool's place.
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <atomic>
#include <cerrno>

using namespace Qt::Literals::StringLiterals;

class TestWorkers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsOfTheTool_data();
    void argumentsOfTheTool();
    void outputIsShownWhileItComes();
    void formatTabIsNotBroughtIn();
    void secondAlertIsDroppedAndTheRunEnds();
    void twoVolumesWhileAnotherIsSelected();
    void nothingSelectedStartsNothing();
    void windowThatClosesLetsTheWorkerGo();
    void twoFormatsSideBySide();
    void noThreadLeft_data();
    void noThreadLeft();

private:
    static std::unique_ptr<TestController> launched(const QByteArray &script, bool isWritable = true);
};

namespace {

const QByteArray waitForGo = QByteArrayLiteral("read go <&3\n");

DiskRecord volumeOf(TestController &test)
{
    return test.recordOf(u"disk2s1"_s);
}

QString shownOutput(TestController &test)
{
    return test.controller().checkRepairOutputView->toPlainText();
}

// Output without end, until it is stopped.
struct EndlessRun
{
    std::atomic<bool> isStopped = false;
    std::atomic<bool> isOver = false;
    std::atomic<int> bytesRead = 0;
};

class EndlessPipe : public ShellPipe
{
public:
    explicit EndlessPipe(EndlessRun &run)
        : m_run(run)
    {
    }
    ~EndlessPipe() override { m_run.isOver = true; }
    bool open(const QByteArray &) override { return true; }
    ssize_t readByte(char *byte) override
    {
        *byte = m_run.bytesRead++ % 10 == 9 ? '\n' : 'x';
        return m_run.isStopped ? 0 : 1;
    }
    int close() override { return 0; }

private:
    EndlessRun &m_run;
};

} // namespace

std::unique_ptr<TestController> TestWorkers::launched(const QByteArray &script, bool isWritable)
{
    auto test = std::make_unique<TestController>();
    writeWholeBundle(test->localDirectory(), u"msdos"_s, u"FAT"_s);
    test->setDiskutilScript(script);
    test->launch();
    for (int i = 1; i <= 3; ++i) {
        const MemoryDiskRef volume = makePartition(u"disk2s%1"_s.arg(i), i * 1024);
        volume->description->insert(DAKey::volumeKind, u"msdos"_s);
        volume->description->insert(DAKey::mediaWritable, isWritable);
        test->add(volume);
    }
    test->select(u"disk2s1"_s);
    test->controller().rightTabView->setCurrentWidget(test->controller().maintenanceTab);
    return test;
}

void TestWorkers::argumentsOfTheTool_data()
{
    QTest::addColumn<bool>("isRepair");
    QTest::newRow("verifyVolume") << false;
    QTest::newRow("repairVolume") << true;
}

void TestWorkers::argumentsOfTheTool()
{
    QFETCH(bool, isRepair);
    const auto test = launched("for a in \"$@\"; do echo \"$a\"; done");
    QTest::mouseClick(
        isRepair ? test->controller().repairButton : test->controller().checkButton, Qt::LeftButton);
    QTRY_VERIFY(!volumeOf(*test)->operationInProgress);
    QCOMPARE(volumeOf(*test)->checkRepairOutput->bytes(),
        QByteArray(QByteArray(QTest::currentDataTag()) + "\n/dev/disk2s1\n"));
}

void TestWorkers::outputIsShownWhileItComes()
{
    const auto test = launched("echo first\n" + waitForGo + "echo last");
    QTest::mouseClick(test->controller().checkButton, Qt::LeftButton);
    QTRY_COMPARE(shownOutput(*test), u"first"_s); // a line end comes with what follows
    QVERIFY(volumeOf(*test)->operationInProgress);
    test->letScriptsGoOn();
    QTRY_COMPARE(shownOutput(*test), u"first\nlast\n"_s);
    QTRY_VERIFY(!volumeOf(*test)->operationInProgress);
}

void TestWorkers::formatTabIsNotBroughtIn()
{
    const auto test = launched(waitForGo, false);
    const auto &controller = test->controller();
    QCOMPARE(controller.rightTabView->count(), 2);
    QTest::mouseClick(controller.checkButton, Qt::LeftButton);
    QVERIFY(!volumeOf(*test)->operationInProgressShowFormatTab);
    QCOMPARE(controller.rightTabView->count(), 2);
    test->letScriptsGoOn();
    QTRY_VERIFY(controller.checkButton->isEnabled());
}

void TestWorkers::secondAlertIsDroppedAndTheRunEnds()
{
    const auto test = launched("exit 1");
    test->controller().errorMessage(u"another"_s);
    test->controller().clickCheckButton(nullptr);
    QTRY_VERIFY(!volumeOf(*test)->operationInProgress);
    QCOMPARE(test->sheets().size(), 1);
    QCOMPARE(test->log.lines().filter(u"Silently dropping"_s).size(), 1);
}

void TestWorkers::twoVolumesWhileAnotherIsSelected()
{
    const auto test = launched("echo \"$2\"\n" + waitForGo + "echo end of \"$2\"");
    test->controller().clickCheckButton(nullptr);
    test->select(u"disk2s2"_s);
    test->controller().clickRepairButton(nullptr);
    test->select(u"disk2s3"_s);
    const DiskRecord first = volumeOf(*test);
    const DiskRecord second = test->recordOf(u"disk2s2"_s);
    QTRY_VERIFY(first->checkRepairOutput && second->checkRepairOutput);
    QCOMPARE(shownOutput(*test), QString());
    QVERIFY(test->controller().checkButton->isEnabled());
    test->letScriptsGoOn(2);
    QTRY_VERIFY(!first->operationInProgress && !second->operationInProgress);
    QCOMPARE(shownOutput(*test), QString());
    test->select(u"disk2s2"_s);
    QCOMPARE(shownOutput(*test), u"/dev/disk2s2\nend of /dev/disk2s2\n"_s);
    test->select(u"disk2s1"_s);
    QCOMPARE(shownOutput(*test), u"/dev/disk2s1\nend of /dev/disk2s1\n"_s);
}

void TestWorkers::nothingSelectedStartsNothing()
{
    const auto test = launched("echo run > \"$dir/run\"");
    test->controller().leftOutlineView->selectRow(-1);
    test->controller().clickCheckButton(nullptr);
    test->controller().clickRepairButton(nullptr);
    for (const char *name : { "disk2s1", "disk2s2", "disk2s3" })
        QVERIFY(!test->recordOf(QLatin1String(name))->operationInProgress);
}

void TestWorkers::windowThatClosesLetsTheWorkerGo()
{
    EndlessRun run;
    {
        TestController test;
        writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
        test.platform().createShellPipe = [&run] { return std::make_unique<EndlessPipe>(run); };
        test.launch();
        test.add(makePartition(u"disk2s1"_s, 1024));
        test.select(u"disk2s1"_s);
        test.controller().clickCheckButton(nullptr);
        QTRY_VERIFY(shownOutput(test).size() > 100);
    }
    const int bytesRead = run.bytesRead;
    QTRY_VERIFY(run.bytesRead > bytesRead + 1000); // it is not held up
    run.isStopped = true;
    QTRY_VERIFY(run.isOver);
}

void TestWorkers::twoFormatsSideBySide()
{
    const auto test = launched(waitForGo);
    const auto start = [&test](const QString &bsdName) {
        test->select(bsdName);
        test->controller().formatFilesystemsPopupButton->setCurrentIndex(0);
        test->controller().clickFormatButton(nullptr);
        press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
        return test->recordOf(bsdName);
    };
    const DiskRecord first = start(u"disk2s1"_s);
    const DiskRecord second = start(u"disk2s2"_s);
    QVERIFY(first->operationInProgress && second->operationInProgress);
    test->letScriptsGoOn();
    QTRY_VERIFY(first->operationInProgress != second->operationInProgress);
    test->letScriptsGoOn();
    QTRY_VERIFY(!first->operationInProgress && !second->operationInProgress);
    QVERIFY(test->sheets().isEmpty());
}

void TestWorkers::noThreadLeft_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("noun");
    QTest::newRow("check") << u"checkButton"_s << u"check"_s;
    QTest::newRow("repair") << u"repairButton"_s << u"repair"_s;
    QTest::newRow("format") << u"formatButton"_s << u"format"_s;
}

void TestWorkers::noThreadLeft()
{
    QFETCH(const QString, button);
    QFETCH(const QString, noun);
    TestController test;
    writeWholeBundle(test.localDirectory(), u"zorvex_ntfs"_s, u"NTFS"_s);
    test.setDiskutilScript("echo ran >\"$dir/ran\"");
    bool hasThreads = false;
    test.platform().startThread
        = [&](std::function<void()> task) { return hasThreads ? startDetachedThread(task) : EAGAIN; };
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"Before"_s);
    volume->description->insert(DAKey::volumeKind, u"zorvex_ntfs"_s);
    const DiskRecord record = test.add(volume);
    test.select(u"disk2s1"_s);
    const auto click = [&] {
        // A label that is typed would be given to the volume after the format.
        test.controller().formatVolumeLabelField->setText(u"After"_s);
        test.controller().formatFilesystemsPopupButton->setCurrentIndex(0);
        test.window().findChild<QPushButton *>(button)->click();
        if (button == u"formatButton")
            press(test.sheets().constFirst(), AlertSheet::firstButtonReturn);
    };
    click();
    QTRY_COMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->informativeText(),
        u"Error while invoking diskutil command to %1 volume: Resource temporarily unavailable (11)"_s.arg(
            noun));
    press(test.sheets().constFirst(), AlertSheet::firstButtonReturn);
    QVERIFY(!record->operationInProgress && !record->operationInProgressShowFormatTab
        && !record->operationInProgressShowMaintenanceTab);
    QVERIFY(test.service.requests().empty()); // nothing was formatted, so nothing is renamed
    QVERIFY(test.window().findChild<QPushButton *>(button)->isEnabled());
    // The next one finds a thread again.
    hasThreads = true;
    QTRY_VERIFY(test.sheets().isEmpty());
    click();
    QTRY_VERIFY(!test.fileFromScript(u"ran"_s).isEmpty());
    for (int i = 0; button == u"formatButton" && i < 3; ++i) {
        QTRY_VERIFY(!test.service.requests().empty());
        test.service.completeRequest();
    }
    QTRY_VERIFY(!record->operationInProgress);
}

QTEST_MAIN(TestWorkers)
#include "tst_workers.moc"
