// SPDX-License-Identifier: MIT
//
// The command-line tool and the file system's own tools fail in every way that a program can: killed,
// stopped, without end, with too much or with hostile output, missing; and the disk or the log is full. On
// real loop disks.
#include "tests/support/FaultCheck.h"
#include "tests/support/PatientFilesystem.h"
#include "tests/support/RecordingApplication.h"
#include "tests/support/WindowTime.h"

#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int limit = 120000; // milliseconds
constexpr int longLimit = 500000; // of 100 MB, byte by byte

QList<LoopDisk::Partition> oneVolume()
{
    return { { 20, QString::fromLatin1(LoopDisk::linuxType), u"ext4"_s, u"Backup"_s } };
}

struct Scene
{
    Scene()
        : disk(oneVolume())
        , check(window)
    {
        patient.makePipe(disk);
        const bool isThere = QTest::qWaitFor(
            [this] {
                volume = window.recordOf(disk.node(1));
                return volume && volume->mountable && volume->volumeKind == u"patient"_s;
            },
            limit);
        if (!isThere)
            qFatal("the volume does not appear");
        window.select(volume);
    }

    void beginCheck() { window.controller().checkButton->click(); }

    bool hasBegun()
    {
        return QTest::qWaitFor([this] { return shown().contains(u"looking at"_s); }, limit);
    }

    // Waits for the end in the event loop itself. A loop that rests when it finds no event, as that of
    // QTRY_VERIFY does, holds up the tool: each piece of the output waits for the main thread.
    bool hasEnded(int milliseconds = limit)
    {
        QEventLoop loop;
        QObject::connect(&window.controller(), &ZorvexDiskManagerAppDelegate::panelDidChange, &loop, [&] {
            if (!volume->operationInProgress)
                loop.quit();
        });
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        if (volume->operationInProgress)
            loop.exec();
        return !volume->operationInProgress;
    }

    QString shown() { return window.controller().checkRepairOutputView->toPlainText(); }

    PatientFilesystem patient;
    LoopDisk disk;
    RealWindow window;
    FaultCheck check;
    DiskRecord volume;
};

// The run of diskutil that the window has started: the shell gives way to it.
pid_t diskutilPid()
{
    QFile file(u"/proc/self/task"_s);
    for (const QString &thread : QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(u"/proc/self/task/%1/children"_s.arg(thread));
        if (children.open(QIODevice::ReadOnly)) {
            const QByteArray first = children.readAll().simplified().split(' ').constFirst();
            if (!first.isEmpty())
                return static_cast<pid_t>(first.toLong());
        }
    }
    return 0;
}

qint64 residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly)
        ? file.readAll().split(' ').at(1).toLongLong() * sysconf(_SC_PAGESIZE)
        : 0;
}

// Something in the place of the installed tool while it lives.
class CoveredTool
{
public:
    enum class How { NotExecutable, Missing };

    explicit CoveredTool(How how)
    {
        if (how == How::NotExecutable) {
            m_point = u"/usr/sbin/diskutil"_s;
            runProgram(u"mount"_s, { u"--bind"_s, u"/dev/null"_s, m_point });
            return;
        }
        // A device of this number hides the file of its name in the layer below.
        m_point = u"/usr/sbin"_s;
        mknod(QFile::encodeName(m_layer.filePath(u"diskutil"_s)).constData(), S_IFCHR, 0);
        runProgram(u"mount"_s,
            { u"-t"_s, u"overlay"_s, u"-o"_s, u"lowerdir=%1:/usr/sbin"_s.arg(m_layer.path()), u"covered"_s,
                m_point });
    }
    ~CoveredTool() { runProgram(u"umount"_s, { m_point }); }
    CoveredTool(const CoveredTool &) = delete;
    CoveredTool &operator=(const CoveredTool &) = delete;

private:
    QTemporaryDir m_layer;
    QString m_point;
};

} // namespace

class TestToolFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toolThatIsKilled_data();
    void toolThatIsKilled();
    void toolThatIsStopped();
    void toolThatCannotBeRun_data();
    void toolThatCannotBeRun();
    void formatterThatFails();
    void checkerThatPrintsWithoutMeasure();
    void checkerThatPrintsHarm_data();
    void checkerThatPrintsHarm();
    void fullDiskUnderTheVolume();
    void fullDiskUnderTheLog();
};

void TestToolFaults::toolThatIsKilled_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("alert");
    QTest::newRow("SIGKILL") << SIGKILL
                             << u"Fatal error when invoking diskutil.\nProcess terminated on signal 9."_s;
    QTest::newRow("SIGTERM") << SIGTERM
                             << u"diskutil returned error code: 19\ninterrupted (Terminated)\n"
                                "the file system verification on %1 was stopped"_s; // in good order
}

void TestToolFaults::toolThatIsKilled()
{
    QFETCH(const int, number);
    QFETCH(const QString, alert);
    Scene scene;
    scene.beginCheck();
    QVERIFY(scene.hasBegun());
    kill(diskutilPid(), number);
    QTRY_VERIFY_WITH_TIMEOUT(!scene.volume->operationInProgress, limit);
    const QString expected = alert.contains(u'%') ? alert.arg(*scene.volume->bsdName) : alert;
    QCOMPARE(scene.check.problem({ expected }), QString());
    // What it had started goes with it.
    QTRY_COMPARE_WITH_TIMEOUT(
        runProgram(u"pgrep"_s, { u"-f"_s, scene.patient.verifyTool() + u' ' + scene.disk.node(1) }), 1,
        limit);
}

void TestToolFaults::toolThatIsStopped()
{
    Scene scene;
    scene.beginCheck();
    QVERIFY(scene.hasBegun());
    const pid_t tool = diskutilPid();
    kill(tool, SIGSTOP);
    scene.patient.release(scene.disk, "go on");
    QVERIFY(scene.check.windowAnswers());
    QVERIFY(scene.volume->operationInProgress);
    kill(tool, SIGCONT);
    QTRY_VERIFY_WITH_TIMEOUT(!scene.volume->operationInProgress, limit);
    QVERIFY(scene.shown().contains(u"go on"_s));
    QCOMPARE(scene.check.problem({}), QString());
}

void TestToolFaults::toolThatCannotBeRun_data()
{
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<int>("code");
    QTest::newRow("missing") << true << 127;
    QTest::newRow("not executable") << false << 126;
}

void TestToolFaults::toolThatCannotBeRun()
{
    QFETCH(const bool, isMissing);
    QFETCH(const int, code);
    Scene scene;
    const QByteArray before = scene.disk.imageHash();
    {
        const CoveredTool covered(isMissing ? CoveredTool::How::Missing : CoveredTool::How::NotExecutable);
        scene.beginCheck();
        QTRY_VERIFY_WITH_TIMEOUT(!scene.volume->operationInProgress, limit);
        QTRY_COMPARE_WITH_TIMEOUT(scene.window.sheets().size(), 1, limit);
        const QString reason = scene.window.sheets().constFirst()->informativeText();
        QVERIFY2(
            reason.startsWith(u"diskutil returned error code: %1\nsh: "_s.arg(code)), qPrintable(reason));
        QCOMPARE(scene.check.problem({ reason }), QString());
        scene.window.controller().formatFilesystemsPopupButton->setCurrentText(u"Patient"_s);
        scene.window.controller().formatButton->click();
        scene.window.endSheet(AlertSheet::firstButtonReturn);
        QTRY_VERIFY_WITH_TIMEOUT(!scene.volume->operationInProgress, limit);
        QTRY_COMPARE_WITH_TIMEOUT(scene.window.sheets().size(), 1, limit);
        const QString told = scene.window.sheets().constFirst()->informativeText();
        QVERIFY2(
            told.startsWith(u"diskutil returned error code: %1\nOutput:\n"_s.arg(code)), qPrintable(told));
        QCOMPARE(scene.check.problem({ told }), QString());
    }
    QCOMPARE(scene.disk.imageHash(), before);
}

// The record keeps what was printed, as much again is on its way to the screen at most. The output is read
// byte by byte, which takes the sanitizers far longer.
void TestToolFaults::formatterThatFails()
{
    Scene scene;
    scene.patient.setFormatTool("#!/bin/sh\necho 'no luck'\nexit 1\n");
    const ZorvexDiskManagerAppDelegate &controller = scene.window.controller();
    const auto format = [&](const QString &filesystem) {
        controller.formatFilesystemsPopupButton->setCurrentText(filesystem);
        controller.formatVolumeLabelField->setText(u"Fresh"_s);
        controller.formatButton->click();
        scene.window.endSheet(AlertSheet::firstButtonReturn);
        return QTest::qWaitFor([&] { return !scene.volume->operationInProgress; }, limit);
    };
    QVERIFY(format(u"Patient"_s));
    QTRY_COMPARE(scene.window.sheets().size(), 1);
    QVERIFY(scene.window.sheets().constFirst()->informativeText().contains(u"no luck"_s));
    scene.window.endSheet(AlertSheet::firstButtonReturn);
    QTRY_VERIFY(scene.window.sheets().isEmpty());

    // The old file system has gone, the page to make a new one has not.
    QTRY_VERIFY_WITH_TIMEOUT(!scene.volume->volumeKind, limit);
    QCOMPARE(probed(scene.disk.node(1), u"TYPE"_s), QString());
    QCOMPARE(controller.rightTabView->indexOf(controller.formatTab), 1);
    QVERIFY(controller.formatButton->isEnabled());
    QVERIFY(format(u"ext4"_s));
    QVERIFY(scene.window.sheets().isEmpty());
    QCOMPARE(probed(scene.disk.node(1), u"LABEL"_s), u"Fresh"_s);
}

void TestToolFaults::checkerThatPrintsWithoutMeasure()
{
#ifdef __SANITIZE_ADDRESS__
    constexpr qint64 printed = 4'000'000;
#else
    constexpr qint64 printed = 100'000'000;
#endif
    Scene scene;
    scene.patient.setVerifyTool("#!/bin/sh\necho \"looking at $1\"\nyes " + QByteArray(499, 'x')
        + " | head -c " + QByteArray::number(printed) + "\n");
    const qint64 before = residentBytes();
    scene.beginCheck();
    QVERIFY(scene.hasBegun());
    QTimer heart;
    WindowTime sinceBeat;
    qint64 longest = 0;
    connect(&heart, &QTimer::timeout, &heart, [&] {
        longest = std::max(longest, sinceBeat.milliseconds());
        sinceBeat = WindowTime();
    });
    heart.start(20);
    QVERIFY(scene.hasEnded(longLimit));
    heart.stop();
    qInfo("the window did not answer for %lld ms at most", static_cast<long long>(longest));
    QVERIFY(longest < 1000);
    const qsizetype kept = scene.volume->checkRepairOutput->bytes().size();
    QVERIFY(kept <= OutputBuffer::limit && kept >= std::min<qint64>(printed, OutputBuffer::limit / 2));
    qInfo("%lld MB more in memory", static_cast<long long>((residentBytes() - before) / 1'000'000));
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed for a while
    QVERIFY(residentBytes() - before < 8 * printed);
#endif
    QCOMPARE(scene.check.problem({}), QString());
}

void TestToolFaults::checkerThatPrintsHarm_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a line of 1 MB") << QByteArray("head -c 1000000 /dev/zero | tr '\\0' x; echo; echo end")
                                    << u"xxxx"_s;
    QTest::newRow("control sequences")
        << QByteArray("printf '\\033[2J\\033]0;title\\007\\b\\b end\\n'") << u"[2J"_s;
    QTest::newRow("invalid UTF-8") << QByteArray("printf '\\377\\376\\300\\257 end\\n'")
                                   << QString(QChar::ReplacementCharacter);
    QTest::newRow("zero bytes") << QByteArray("printf 'a\\000b end\\n'") << u"ab"_s;
    QTest::newRow("markup") << QByteArray("echo '<b>bold</b><img src=\"/etc/passwd\"> & end'")
                            << u"<b>bold</b>"_s;
    QTest::newRow("placeholders") << QByteArray("echo '%@ %n %1 %s end'") << u"%@ %n %1 %s"_s;
    QTest::newRow("nothing but carriage returns")
        << QByteArray("head -c 100000 /dev/zero | tr '\\0' '\\r'; echo end") << u"end"_s;
}

void TestToolFaults::checkerThatPrintsHarm()
{
    QFETCH(const QByteArray, script);
    QFETCH(const QString, shown);
    Scene scene;
    scene.patient.setVerifyTool("#!/bin/sh\n" + script + "\n");
    scene.beginCheck();
    QVERIFY(scene.hasEnded());
    QVERIFY(scene.shown().contains(u"end"_s));
    QVERIFY(scene.shown().contains(shown));
    QCOMPARE(scene.check.problem({}), QString());
}

// Writes to the disk fail: its image lies on a file system that is full.
void TestToolFaults::fullDiskUnderTheVolume()
{
    const QTemporaryDir folder;
    QCOMPARE(
        runProgram(u"mount"_s, { u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=2m"_s, u"small"_s, folder.path() }), 0);
    const QByteArray temporary = qgetenv("TMPDIR");
    {
        const PatientFilesystem patient;
        qputenv("TMPDIR", folder.path().toUtf8());
        const LoopDisk disk({ { 200, QString::fromLatin1(LoopDisk::linuxType), QString(), QString() } });
        qputenv("TMPDIR", temporary);
        RealWindow window;
        FaultCheck check(window);
        QTRY_VERIFY_WITH_TIMEOUT(window.recordOf(disk.node(1)), limit);
        const DiskRecord volume = window.recordOf(disk.node(1));
        window.select(volume);
        QComboBox *const menu = window.controller().formatFilesystemsPopupButton;
        menu->setCurrentText(u"ext4"_s);
        window.controller().formatButton->click();
        window.endSheet(AlertSheet::firstButtonReturn);
        QTRY_VERIFY_WITH_TIMEOUT(!volume->operationInProgress, limit);
        QTRY_COMPARE_WITH_TIMEOUT(window.sheets().size(), 1, limit);
        const QString told = window.sheets().constFirst()->informativeText();
        QVERIFY2(told.startsWith(u"diskutil returned error code: 18\n"_s), qPrintable(told));
        QCOMPARE(check.problem({ told }), QString());
    }
    QCOMPARE(runProgram(u"umount"_s, { folder.path() }), 0);
}

void TestToolFaults::fullDiskUnderTheLog()
{
    Scene scene;
    const int kept = dup(STDERR_FILENO);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    dup2(full, STDERR_FILENO);
    scene.beginCheck();
    const bool hasBegun = scene.hasBegun();
    scene.patient.release(scene.disk, "go on");
    const bool hasEnded = QTest::qWaitFor([&] { return !scene.volume->operationInProgress; }, limit);
    dup2(kept, STDERR_FILENO);
    close(kept);
    close(full);
    QVERIFY(hasBegun && hasEnded);
    QVERIFY(scene.shown().contains(u"go on"_s));
    QCOMPARE(scene.check.problem({}), QString());
}

int main(int argc, char **argv)
{
    return runRecorded<TestToolFaults>(argc, argv);
}

#include "tst_tool_faults.moc"
