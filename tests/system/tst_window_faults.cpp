// SPDX-License-Identifier: MIT
//
// What happens while a check or a format runs: another disk is selected, the disk goes, the window is closed.
#include "tests/support/FaultCheck.h"
#include "tests/support/PatientFilesystem.h"
#include "tests/support/RealWindow.h"
#include "tests/support/RecordingApplication.h"

#include "platform/BlockDevice.h"
#include "ui/AlertSheet.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 30000; // milliseconds

QList<LoopDisk::Partition> oneVolume()
{
    return { { 20, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, u"Backup"_s } };
}

// Runs a program in the mount namespace of the disk service, which is the machine's own.
int onTheMachine(const QString &program, const QStringList &arguments)
{
    const QStringList enter { u"--target"_s, QString::number(diskServicePid()), u"--mount"_s, program };
    return runProgram(u"nsenter"_s, enter + arguments);
}

DiskRecord volumeOf(RealWindow &window, const LoopDisk &disk)
{
    const bool isThere = QTest::qWaitFor(
        [&] {
            const DiskRecord volume = window.recordOf(disk.node(1));
            return volume && volume->volumeKind == u"patient"_s;
        },
        limit);
    return isThere ? window.recordOf(disk.node(1)) : nullptr;
}

} // namespace

class TestWindowFaults : public QObject
{
    Q_OBJECT

public:
    // The body of a child process: starts a check and closes the window as soon as the tool has begun.
    static int checkAndClose(const QString &node);

private Q_SLOTS:
    void droppedFilesystemAppearsAtTheNextActivation();
    void eachOutputGoesToItsOwnRecord();
    void diskThatGoesDuringACheck();
    void diskThatGoesDuringAFormat();
    void windowThatIsClosedDuringACheck();
    void volumeOfTheSystemIsNotForced();
    void driverThatHangsFreezesNothing();

private:
    PatientFilesystem m_patient;
};

void TestWindowFaults::droppedFilesystemAppearsAtTheNextActivation()
{
    const LoopDisk disk(oneVolume());
    m_patient.makePipe(disk);
    m_patient.remove();
    RealWindow window;
    const QComboBox *menu = window.controller().formatFilesystemsPopupButton;
    QCOMPARE(menu->findText(u"Patient"_s), -1);
    m_patient.install();
    QCOMPARE(menu->findText(u"Patient"_s), -1);
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&window.window(), &activation);
    QVERIFY(menu->findText(u"Patient"_s) >= 0);

    QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(1)), limit);
    const DiskRecord volume = window.recordOf(disk.node(1));
    window.select(volume);
    window.controller().formatFilesystemsPopupButton->setCurrentText(u"Patient"_s);
    window.controller().formatVolumeLabelField->setText(u"Renewed"_s);
    window.controller().formatButton->click();
    window.endSheet(AlertSheet::firstButtonReturn);
    QVERIFY(volume->operationInProgress);
    m_patient.release(disk, "go on");
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QVERIFY(window.sheets().isEmpty());
    QCOMPARE(probed(disk.node(1), u"LABEL"_s), u"Renewed"_s);
}

void TestWindowFaults::eachOutputGoesToItsOwnRecord()
{
    const LoopDisk first(oneVolume());
    const LoopDisk second(oneVolume());
    const LoopDisk third(oneVolume());
    m_patient.makePipe(first);
    m_patient.makePipe(second);
    RealWindow window;
    const DiskRecord volumes[]
        = { volumeOf(window, first), volumeOf(window, second), volumeOf(window, third) };
    QVERIFY(volumes[0] && volumes[1] && volumes[2]);
    OutputView *const view = window.controller().checkRepairOutputView;
    for (const DiskRecord &volume : { volumes[0], volumes[1] }) {
        window.select(volume);
        window.controller().checkButton->click();
        QTRY_VERIFY_WITH_TIMEOUT(view->toPlainText().contains(u"looking at"_s), limit);
    }
    window.select(volumes[2]);
    QCOMPARE(view->toPlainText(), QString());
    m_patient.release(first, "answer for the first");
    m_patient.release(second, "answer for the second");
    QTRY_VERIFY_WITH_TIMEOUT(!volumes[0]->operationInProgress && !volumes[1]->operationInProgress, limit);
    QCOMPARE(view->toPlainText(), QString());
    window.select(volumes[0]);
    QVERIFY(view->toPlainText().contains(u"answer for the first"_s));
    QVERIFY(!view->toPlainText().contains(u"answer for the second"_s));
    window.select(volumes[1]);
    QVERIFY(view->toPlainText().contains(u"answer for the second"_s));
    QVERIFY(window.sheets().isEmpty());
}

void TestWindowFaults::diskThatGoesDuringACheck()
{
    LoopDisk disk(oneVolume());
    m_patient.makePipe(disk);
    RealWindow window;
    const DiskRecord volume = volumeOf(window, disk);
    QVERIFY(volume);
    window.select(volume);
    window.controller().checkButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(
        window.controller().checkRepairOutputView->toPlainText().contains(u"looking at"_s), limit);
    disk.detach();
    QTRY_VERIFY_WITH_TIMEOUT(!window.recordOf(disk.node(1)), limit);
    m_patient.release(disk, "the disk has gone");
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QVERIFY(volume->checkRepairOutput->bytes().contains("the disk has gone"));
    QCOMPARE(window.sheets().size(), 1);
    QCOMPARE(window.sheets().constFirst()->text(), u"“Backup” is no longer there"_s);
    window.endSheet(AlertSheet::firstButtonReturn);
}

void TestWindowFaults::diskThatGoesDuringAFormat()
{
    LoopDisk disk(oneVolume());
    m_patient.makePipe(disk);
    RealWindow window;
    const DiskRecord volume = volumeOf(window, disk);
    QVERIFY(volume);
    window.select(volume);
    window.controller().formatFilesystemsPopupButton->setCurrentText(u"Patient"_s);
    window.controller().formatButton->click();
    window.endSheet(AlertSheet::firstButtonReturn);
    QVERIFY(volume->operationInProgress);
    QTRY_VERIFY_WITH_TIMEOUT(m_patient.hasFormatBegun(), limit);
    disk.detach();
    QTRY_VERIFY_WITH_TIMEOUT(!window.recordOf(disk.node(1)), limit);
    m_patient.release(disk, "go on");
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QCOMPARE(window.sheets().size(), 1);
    QVERIFY(window.sheets().constFirst()->informativeText().startsWith(u"diskutil returned error code: "_s));
    window.endSheet(AlertSheet::firstButtonReturn);
}

// A program serves NTFS here. It stands still, as it does on a dying disk.
void TestWindowFaults::driverThatHangsFreezesNothing()
{
    const LoopDisk disk({ { 40, QString::fromLatin1(LoopDisk::dataType), u"ntfs"_s, u"Slow"_s } });
    RealWindow window;
    FaultCheck check(window);
    const auto isThere
        = [&] { return window.recordOf(disk.node(1)) && window.recordOf(disk.node(1))->volumeKind; };
    QTRY_VERIFY_WITH_TIMEOUT(isThere(), limit);
    const DiskRecord volume = window.recordOf(disk.node(1));
    window.select(volume);
    window.controller().mountUnmountButton->click();
    const QLabel *const space = window.controller().infoDiskSpaceLabel;
    QTRY_VERIFY_WITH_TIMEOUT(space->text().contains(u" free of "_s), limit);
    const QString told = space->text();

    QByteArray driver;
    QCOMPARE(runProgram(u"pgrep"_s, { u"--full"_s, u"ntfs.*"_s + disk.node(1) }, &driver), 0);
    const pid_t pid = driver.trimmed().toInt();
    QVERIFY(pid > 0);
    QCOMPARE(kill(pid, SIGSTOP), 0);
    const auto goOn = qScopeGuard([pid] { kill(pid, SIGCONT); });
    window.controller().leftOutlineView->selectRow(-1);
    window.select(volume);
    for (int i = 0; i < 60; ++i) // as often as in a second of a check's output
        window.controller().outlineViewSelectionDidChange();
    QVERIFY(check.windowAnswers());
    QCOMPARE(space->text(), told);
    QCOMPARE(kill(pid, SIGCONT), 0);
    QCOMPARE(check.problem({}), QString());
    window.controller().mountUnmountButton->click();
    QTRY_VERIFY_WITH_TIMEOUT(!volume->volumePath && !volume->operationInProgress, limit);
}

int TestWindowFaults::checkAndClose(const QString &node)
{
    RealWindow window;
    const bool isThere
        = QTest::qWaitFor([&] { return window.recordOf(node) && window.recordOf(node)->volumeKind; }, limit);
    if (!isThere)
        return 2;
    window.select(window.recordOf(node));
    window.controller().checkButton->click();
    const auto hasBegun
        = [&] { return window.controller().checkRepairOutputView->toPlainText().contains(u"looking at"_s); };
    if (!QTest::qWaitFor(hasBegun, limit))
        return 3;
    QMetaObject::invokeMethod(&window.window(), &QWidget::close, Qt::QueuedConnection);
    QApplication::exec();
    return 0;
}

void TestWindowFaults::windowThatIsClosedDuringACheck()
{
    const LoopDisk disk(oneVolume());
    m_patient.makePipe(disk);
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), { u"--check-and-close"_s, disk.node(1) });
    QVERIFY(child.waitForFinished(2 * limit));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    // Others on this machine may check disks of their own.
    const QString diskutil
        = u"^/usr/sbin/diskutil .*%1$"_s.arg(readBlockDeviceFacts(disk.node(1)).value().bsdName);
    const QString tool = m_patient.verifyTool() + u' ' + disk.node(1);
    const auto isRunning = [&] {
        return runProgram(u"pgrep"_s, { u"-f"_s, tool }) == 0
            || runProgram(u"pgrep"_s, { u"-f"_s, diskutil }) == 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), limit);
}

void TestWindowFaults::volumeOfTheSystemIsNotForced()
{
    const LoopDisk disk(oneVolume());
    RealWindow window;
    const DiskRecord volume = volumeOf(window, disk);
    QVERIFY(volume);
    // A volume that holds /boot is the system's, whichever disk it lies on.
    QVERIFY(QDir().mkpath(u"/boot"_s));
    QCOMPARE(onTheMachine(u"mount"_s, { disk.node(1), u"/boot"_s }), 0);
    QTRY_VERIFY_WITH_TIMEOUT(volume->volumePath, limit);
    QProcess holder;
    holder.setWorkingDirectory(u"/boot"_s);
    holder.start(u"cat"_s, QStringList());
    QVERIFY(holder.waitForStarted());

    window.select(volume);
    window.controller().mountUnmountButton->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.sheets().size(), 1, limit);
    window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
    QCOMPARE(mountPointsOf(disk.node(1)), QStringList { u"/boot"_s });
    QTRY_COMPARE(window.sheets().size(), 1);
    QCOMPARE(window.sheets().constFirst()->informativeText(),
        u"Error while unmounting %1: The volume belongs to the running system."_s.arg(*volume->bsdName));
    window.endSheet(AlertSheet::firstButtonReturn);
    holder.kill();
    holder.waitForFinished();
    QCOMPARE(onTheMachine(u"umount"_s, { u"/boot"_s }), 0);
}

int main(int argc, char **argv)
{
    const RecordingApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--check-and-close"_L1)
        std::_Exit(TestWindowFaults::checkAndClose(arguments.value(2)));
    TestWindowFaults test;
    const int failures = QTest::qExec(&test, argc, argv);
    application.printLongestHandler();
    return failures;
}

#include "tst_window_faults.moc"
