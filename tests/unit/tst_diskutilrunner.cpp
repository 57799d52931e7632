// SPDX-License-Identifier: MIT
//
// The diskutil runner: real programs through the real shell where one can be made to do it, a made-up pipe
// where none can.
#include "operations/DiskutilRunner.h"
#include "platform/SystemLog.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// Runs a script where the tool would be.
class ScriptPipe : public PosixShellPipe
{
public:
    explicit ScriptPipe(const QByteArray &script)
    {
        QFile file(m_folder.filePath(u"diskutil"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write("#!/bin/sh\n" + script + '\n') < 0)
            qFatal("the script cannot be written");
        file.close();
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        m_path = QFile::encodeName(file.fileName());
    }

    bool open(const QByteArray &command) override
    {
        m_command = command;
        return PosixShellPipe::open(QByteArray(command).replace("/usr/sbin/diskutil", m_path));
    }

    const QByteArray &command() const { return m_command; }

private:
    QTemporaryDir m_folder;
    QByteArray m_path;
    QByteArray m_command;
};

void collect(void *context, std::size_t length, const char *bytes)
{
    static_cast<QByteArrayList *>(context)->append(QByteArray(bytes, static_cast<qsizetype>(length)));
    errno = EXDEV; // a handler may leave anything here
}

} // namespace

class TestDiskutilRunner : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void commandLineIsBuiltFromVerbAndArguments();
    void argumentsReachTheToolAsQuoted();
    void standardErrorIsPartOfTheOutput();
    void exitCodeZeroIsSuccessWhateverTheOutput();
    void noOutputNeverCallsTheHandler();
    void linesReachTheHandlerInOrder();
    void lineReachesTheHandlerBeforeTheToolEnds();
    void verifyWithErrors();
    void repairWithErrors();
    void verifyThatFailedDoesNotRepeatTheOutput();
    void eraseThatFailedShowsTheOutput();
    void longOutputIsCutInTheLog();
    void verdictCodeOfEraseIsAFailure();
    void exitCode255IsNotNegative();
    void messageOfAnEarlierRunIsCleared();
    void killedTool_data();
    void killedTool();
    void outputThatIsNotUtf8IsShownAsFarAsItGoes();
    void placeholdersInTheOutputStayAsTheyAre();
    void toolThatIsMissing();

    void complaintOfTheShellIsInTheOutput();
    void shellRunsOneProgramAndNothingElse_data();
    void shellRunsOneProgramAndNothingElse();
    void whatIsRunIsInTheLog();
    void realPipeReportsMisuse();
    void realPipeIsClosedOnExec();
    void runsOnTwoThreadsDoNotDisturbEachOther();

private:
    qint32 run(const QString &verb, ShellPipe &pipe, DiskutilOutputHandler handler = nullptr)
    {
        const SystemLogRedirection redirection([this](const QString &line) {
            if (!line.startsWith(u"Running: "_s)) // which has a test of its own
                m_log.append(line);
        });
        return invokeDiskutilWithVerb(verb, u"'/dev/disk2s1'"_s, handler, &m_chunks, m_message, pipe);
    }

    qint32 runScript(const QString &verb, const QByteArray &script, DiskutilOutputHandler handler = nullptr)
    {
        ScriptPipe pipe(script);
        return run(verb, pipe, handler);
    }

    QByteArrayList m_chunks;
    QStringList m_log;
    std::optional<QString> m_message;
};

void TestDiskutilRunner::init()
{
    m_chunks.clear();
    m_log.clear();
    m_message.reset();
}

void TestDiskutilRunner::commandLineIsBuiltFromVerbAndArguments()
{
    ScriptPipe pipe("exit 0");
    QCOMPARE(invokeDiskutilWithVerb(u"eraseVolume"_s, u"'exFAT' 'Größe %1 $HOME' '/dev/disk2s1'"_s, nullptr,
                 nullptr, m_message, pipe),
        0);
    QCOMPARE(pipe.command(),
        QByteArray("'/usr/sbin/diskutil' 'eraseVolume' 'exFAT' 'Größe %1 $HOME' '/dev/disk2s1' 2>&1"));
}

void TestDiskutilRunner::argumentsReachTheToolAsQuoted()
{
    ScriptPipe pipe("for a in \"$@\"; do printf '[%s]' \"$a\"; done");
    QCOMPARE(invokeDiskutilWithVerb(u"eraseVolume"_s, u"'FAT 32' 'a $b \"c\"' '/dev/disk2s1'"_s, collect,
                 &m_chunks, m_message, pipe),
        0);
    QCOMPARE(m_chunks.join(), QByteArray("[eraseVolume][FAT 32][a $b \"c\"][/dev/disk2s1]"));
}

void TestDiskutilRunner::standardErrorIsPartOfTheOutput()
{
    QCOMPARE(runScript(u"eraseVolume"_s, "echo one; echo two >&2; echo three; exit 3"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 3\nOutput:\none\ntwo\nthree\n"_s);
}

void TestDiskutilRunner::exitCodeZeroIsSuccessWhateverTheOutput()
{
    QCOMPARE(runScript(u"verifyVolume"_s, "echo 'Error: all is lost'; exit 0"), 0);
    QVERIFY(!m_message);
    QCOMPARE(m_log, QStringList());
}

void TestDiskutilRunner::noOutputNeverCallsTheHandler()
{
    QCOMPARE(runScript(u"verifyVolume"_s, "exit 0", collect), 0);
    QCOMPARE(m_chunks, QByteArrayList());
    QCOMPARE(runScript(u"eraseVolume"_s, "exit 4"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 4\nOutput:\n"_s);
}

void TestDiskutilRunner::linesReachTheHandlerInOrder()
{
    QCOMPARE(runScript(u"repairVolume"_s, R"(printf 'abc\ndef\n50%%\r100%%\r\n')", collect), 0);
    QCOMPARE(m_chunks, QByteArrayList({ "abc", "\ndef", "\n50%", "\r100%", "\r", "\n" }));
}

void TestDiskutilRunner::lineReachesTheHandlerBeforeTheToolEnds()
{
    // The tool waits for a file that the handler makes when the first line has come.
    const QTemporaryDir folder;
    struct Context
    {
        QString path;
        QByteArray output;
    } context { folder.filePath(u"seen"_s), {} };
    const DiskutilOutputHandler handler = [](void *pointer, std::size_t length, const char *bytes) {
        auto *seen = static_cast<Context *>(pointer);
        seen->output.append(bytes, static_cast<qsizetype>(length));
        QFile file(seen->path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("the file cannot be made");
    };
    ScriptPipe pipe(
        "echo first; while [ ! -e '" + QFile::encodeName(context.path) + "' ]; do :; done; echo second");
    QCOMPARE(invokeDiskutilWithVerb(u"verifyVolume"_s, u"''"_s, handler, &context, m_message, pipe), 0);
    QCOMPARE(context.output, QByteArray("first\nsecond\n"));
}

void TestDiskutilRunner::verifyWithErrors()
{
    QCOMPARE(runScript(u"verifyVolume"_s, "echo bad; exit 1", collect), EIO);
    QCOMPARE(m_message, u"Encountered errors when checking the volume.\nFilesystem needs to be repaired."_s);
    QCOMPARE(m_log, QStringList());
}

void TestDiskutilRunner::repairWithErrors()
{
    QCOMPARE(runScript(u"repairVolume"_s, "echo bad; exit 1", collect), EIO);
    QCOMPARE(m_message, u"Encountered errors when repairing the volume."_s);
    QCOMPARE(m_log, QStringList());
}

void TestDiskutilRunner::verifyThatFailedDoesNotRepeatTheOutput()
{
    QCOMPARE(runScript(u"verifyVolume"_s, "echo no such disk; exit 2", collect), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 2"_s);
    QCOMPARE(m_log, QStringList(u"diskutil returned error code: 2 Output: no such disk\\n"_s));
}

void TestDiskutilRunner::longOutputIsCutInTheLog()
{
    QCOMPARE(runScript(u"eraseVolume"_s, "yes 'a line' | head -n 100000; echo why; exit 2"), EINVAL);
    QVERIFY(m_message->size() > 700000);
    QCOMPARE(m_log.size(), 1);
    QVERIFY(m_log.constFirst().size() < 20000);
    const QString start = u"diskutil returned error code: 2 Output: [...]\\na line\\n"_s;
    QVERIFY2(m_log.constFirst().startsWith(start), qPrintable(m_log.constFirst().left(80)));
    QVERIFY(m_log.constFirst().endsWith(u"a line\\nwhy\\n"_s));
}

void TestDiskutilRunner::eraseThatFailedShowsTheOutput()
{
    QCOMPARE(runScript(u"eraseVolume"_s, "echo no such disk; exit 2"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 2\nOutput:\nno such disk\n"_s);
    QCOMPARE(m_log, QStringList(u"diskutil returned error code: 2 Output: no such disk\\n"_s));
}

void TestDiskutilRunner::verdictCodeOfEraseIsAFailure()
{
    QCOMPARE(runScript(u"eraseVolume"_s, "printf 'a\\nb'; exit 1"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 1\nOutput:\na\nb"_s);
}

void TestDiskutilRunner::exitCode255IsNotNegative()
{
    QCOMPARE(runScript(u"repairVolume"_s, "exit 255", collect), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 255"_s);
}

void TestDiskutilRunner::messageOfAnEarlierRunIsCleared()
{
    m_message = u"earlier"_s;
    QCOMPARE(runScript(u"verifyVolume"_s, "exit 0"), 0);
    QVERIFY(!m_message);
}

void TestDiskutilRunner::killedTool_data()
{
    QTest::addColumn<int>("signal");
    for (const int signal : { 1, 6, 9, 11, 15 })
        QTest::addRow("signal %d", signal) << signal;
}

void TestDiskutilRunner::killedTool()
{
    QFETCH(const int, signal);
    // The limit keeps a core file from being written, which the status would tell.
    QCOMPARE(
        runScript(u"eraseVolume"_s, "ulimit -c 0; echo dying; kill -" + QByteArray::number(signal) + " $$"),
        EIO);
    QCOMPARE(m_message,
        "Fatal error when invoking diskutil.\nProcess terminated on signal "_L1 + QString::number(signal)
            + u'.');
    QCOMPARE(m_log, QStringList());
}

void TestDiskutilRunner::outputThatIsNotUtf8IsShownAsFarAsItGoes()
{
    QCOMPARE(runScript(u"eraseVolume"_s, R"(printf 'caf\351 \303\251\n'; exit 2)"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 2\nOutput:\ncaf\uFFFD é\n"_s);
    QCOMPARE(runScript(u"verifyVolume"_s, R"(printf 'caf\351')", collect), 0);
    QCOMPARE(m_chunks, QByteArrayList({ "caf\xE9" }));
}

void TestDiskutilRunner::placeholdersInTheOutputStayAsTheyAre()
{
    QCOMPARE(runScript(u"eraseVolume"_s, "echo '%1 %s %n %@'; exit 2"), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 2\nOutput:\n%1 %s %n %@\n"_s);
}

void TestDiskutilRunner::toolThatIsMissing()
{
    // The shell reports it like any command: exit code 127 and a line of its own.
    class MissingToolPipe : public PosixShellPipe
    {
    public:
        bool open(const QByteArray &command) override
        {
            return PosixShellPipe::open(
                QByteArray(command).replace("/usr/sbin/diskutil", "/nonexistent/diskutil"));
        }
    } pipe;
    QCOMPARE(run(u"verifyVolume"_s, pipe, collect), EINVAL);
    QCOMPARE(m_message, u"diskutil returned error code: 127"_s);
    QVERIFY(m_chunks.join().contains("/nonexistent/diskutil"));
}

void TestDiskutilRunner::complaintOfTheShellIsInTheOutput()
{
    ScriptPipe pipe("exit 0");
    invokeDiskutilWithVerb(
        u"eraseVolume"_s, u"'ext4' 'Bob's Disk' '/dev/disk2s1'"_s, nullptr, nullptr, m_message, pipe);
    QVERIFY(m_message->startsWith(u"diskutil returned error code: 2\nOutput:\n"_s));
    QVERIFY2(
        m_message->contains(u"quoted string"_s, Qt::CaseInsensitive) || m_message->contains(u"matching"_s),
        qPrintable(*m_message));
}

void TestDiskutilRunner::shellRunsOneProgramAndNothingElse_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("isRefused");
    const auto row = [](const QString &label, bool isRefused) {
        QTest::newRow(qPrintable(label)) << label << isRefused;
    };
    row(u"Plain name"_s, false);
    row(u"$(touch TRAP) `touch TRAP` ; & | > TRAP #"_s, false); // quoted, so nothing but text
    row(u"two\nlines"_s, false);
    row(u"it's"_s, false); // an error to the shell
    row(u"a'b'c"_s, false); // the same as abc
    row(u"a' 'b"_s, false); // an argument more, which the tool refuses
    row(u"'; touch TRAP; '"_s, true);
    row(u"'& touch TRAP &'"_s, true);
    row(u"'|touch 'TRAP"_s, true);
    row(u"' >TRAP '"_s, true);
    row(u"'$(touch TRAP)'"_s, true);
    row(u"'`touch TRAP`'"_s, true);
    row(u"'\ntouch 'TRAP"_s, true);
    row(u"' '/dev/disk1' #"_s, true); // would end the line before the device
    row(u"'\\'"_s, true);
    row(u"'*'"_s, true);
    row(u"'~'"_s, true);
    row(u"'\"'"_s, true);
}

void TestDiskutilRunner::shellRunsOneProgramAndNothingElse()
{
    QFETCH(QString, label);
    QFETCH(const bool, isRefused);
    const QTemporaryDir folder;
    const QString trap = folder.filePath(u"trap"_s);
    label.replace(u"TRAP"_s, trap);
    // The last argument is the device, whatever the label makes of the others.
    ScriptPipe pipe("for a; do :; done; [ \"$a\" = /dev/disk2s1 ] || : >'" + QFile::encodeName(trap) + '\'');
    invokeDiskutilWithVerb(
        u"eraseVolume"_s, u"'ext4' '%1' '/dev/disk2s1'"_s.arg(label), nullptr, nullptr, m_message, pipe);
    QVERIFY2(!QFile::exists(trap), "the label was run");
    // It goes to the shell as it stands.
    QCOMPARE(QString::fromUtf8(pipe.command()),
        u"'/usr/sbin/diskutil' 'eraseVolume' 'ext4' '%1' '/dev/disk2s1' 2>&1"_s.arg(label));
    const QString refusal
        = u"Error while invoking diskutil command to format volume: Invalid argument (22)"_s;
    QCOMPARE(m_message == refusal, isRefused);
}

void TestDiskutilRunner::whatIsRunIsInTheLog()
{
    for (const QString &label : { u"Plain"_s, u"';reboot;'"_s, u"\u202Ea\nb"_s }) {
        m_log.clear();
        ScriptPipe pipe("exit 0");
        const SystemLogRedirection redirection([this](const QString &line) { m_log.append(line); });
        invokeDiskutilWithVerb(
            u"eraseVolume"_s, u"'ext4' '%1' '/dev/disk2s1'"_s.arg(label), nullptr, nullptr, m_message, pipe);
        QVERIFY(m_log.constFirst().startsWith(u"Running: '"_s));
        QVERIFY(m_log.constFirst().endsWith(
            u"'eraseVolume' 'ext4' '%1' '/dev/disk2s1' 2>&1"_s.arg(escapedForLog(label))));
    }
}

void TestDiskutilRunner::realPipeReportsMisuse()
{
    PosixShellPipe pipe;
    char byte = 0;
    QCOMPARE(pipe.readByte(&byte), -1);
    QCOMPARE(errno, EBADF);
    QCOMPARE(pipe.close(), -1);
    QCOMPARE(errno, EBADF);
    QVERIFY(pipe.open("sh -c 'exit 3'"));
    QVERIFY(!pipe.open("true"));
    QCOMPARE(errno, EBUSY);
    QCOMPARE(pipe.readByte(&byte), 0);
    QCOMPARE(pipe.close(), 0x300);
}

void TestDiskutilRunner::realPipeIsClosedOnExec()
{
    const int lowestFree = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    QVERIFY(lowestFree >= 0);
    ::close(lowestFree);
    PosixShellPipe pipe;
    QVERIFY(pipe.open("true"));
    QVERIFY(fcntl(lowestFree, F_GETFD) & FD_CLOEXEC);
    QCOMPARE(pipe.close(), 0);
    QCOMPARE(fcntl(lowestFree, F_GETFD), -1);
}

void TestDiskutilRunner::runsOnTwoThreadsDoNotDisturbEachOther()
{
    // Each tool ends only when the other has started, so that neither could run alone.
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.path());
    struct Run
    {
        QByteArrayList chunks;
        std::optional<QString> message;
        qint32 code = -1;
    };
    const auto runTool = [&path](Run &result, const QByteArray &own, const QByteArray &other) {
        ScriptPipe pipe("echo " + own + "; : > '" + path + '/' + own + "'; while [ ! -e '" + path + '/'
            + other + "' ]; do :; done; exit 1");
        result.code = invokeDiskutilWithVerb(
            u"repairVolume"_s, u"''"_s, collect, &result.chunks, result.message, pipe);
    };
    Run first;
    Run second;
    std::thread thread([&] { runTool(first, "first", "second"); });
    runTool(second, "second", "first");
    thread.join();
    QCOMPARE(first.code, EIO);
    QCOMPARE(second.code, EIO);
    QCOMPARE(first.chunks, QByteArrayList({ "first", "\n" }));
    QCOMPARE(second.chunks, QByteArrayList({ "second", "\n" }));
}

QTEST_APPLESS_MAIN(TestDiskutilRunner)
#include "tst_diskutilrunner.moc"
