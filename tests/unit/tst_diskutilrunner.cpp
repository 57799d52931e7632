// SPDX-License-Identifier: MIT
//
// The diskutil runner: real programs through the real shell where one can be made to do it, a made-up pipe
// where none can.
#include "operations/diskutil_decoding.h"
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

constexpr int noErrorNumber = 0;

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

// Says what the system says when it fails.
class FailingPipe : public ShellPipe
{
public:
    bool open(const QByteArray &) override
    {
        ++openings;
        errno = openError;
        return opens;
    }
    ssize_t readByte(char *byte) override
    {
        if (m_at < output.size()) {
            *byte = output[m_at++];
            return 1;
        }
        errno = readError;
        return readFails ? -1 : 0;
    }
    int close() override
    {
        ++closings;
        errno = closeError;
        return status;
    }

    bool opens = true;
    int openError = noErrorNumber;
    QByteArray output;
    bool readFails = false;
    int readError = noErrorNumber;
    int status = 0;
    int closeError = noErrorNumber;
    int openings = 0;
    int closings = 0;

private:
    qsizetype m_at = 0;
};

void collect(void *context, std::size_t length, const char *bytes)
{
    static_cast<QByteArrayList *>(context)->append(QByteArray(bytes, static_cast<qsizetype>(length)));
    errno = EXDEV; // a handler may leave anything here
}

QByteArrayList chunksOf(const QByteArray &output)
{
    QByteArrayList chunks;
    DiskutilOutputChunker chunker([&chunks](std::string_view chunk) {
        chunks.append(QByteArray(chunk.data(), static_cast<qsizetype>(chunk.size())));
    });
    for (const char byte : output)
        chunker.add(byte);
    chunker.finish();
    return chunks;
}

QString failureText(QLatin1String what, int error)
{
    return what + ": "_L1 + errnoText(error) + " ("_L1 + QString::number(error) + u')';
}

} // namespace

class TestDiskutilRunner : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void outputIsCutIntoChunks_data();
    void outputIsCutIntoChunks();
    void statusIsDecoded_data();
    void statusIsDecoded();
    void verbsHaveNouns();

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
    void verdictCodeOfEraseIsAFailure();
    void exitCode255IsNotNegative();
    void messageOfAnEarlierRunIsCleared();
    void killedTool_data();
    void killedTool();
    void outputThatIsNotUtf8IsShownAsFarAsItGoes();
    void placeholdersInTheOutputStayAsTheyAre();
    void toolThatIsMissing();

    void shellThatCannotBeStarted_data();
    void shellThatCannotBeStarted();
    void failedReadIsReportedAfterTheRest();
    void failedReadWinsOverTheExitStatus();
    void failedReadWithoutErrorNumberIsAGeneralFailure();
    void failedCloseNamesFormatting();
    void failedReadWinsOverFailedClose();
    void keptOutputIsLimited();

    void realPipeReportsMisuse();
    void realPipeIsClosedOnExec();
    void runsOnTwoThreadsDoNotDisturbEachOther();

private:
    qint32 run(const QString &verb, ShellPipe &pipe, DiskutilOutputHandler handler = nullptr)
    {
        const SystemLogRedirection redirection([this](const QString &line) { m_log.append(line); });
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

void TestDiskutilRunner::outputIsCutIntoChunks_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArrayList>("chunks");
    const auto row = [](const char *name, const QByteArray &output, const QByteArrayList &chunks) {
        QTest::newRow(name) << output << chunks;
    };
    const QByteArray x512(512, 'x');
    row("no output", "", {});
    row("two lines", "abc\ndef\n", { "abc", "\ndef", "\n" });
    row("no terminator", "abc", { "abc" });
    row("begins with a line feed", "\nabc", { "", "\nabc" });
    row("only a line feed", "\n", { "", "\n" });
    row("two line feeds", "\n\n", { "", "\n", "\n" });
    row("carriage return and line feed", "ab\r\n", { "ab", "\r", "\n" });
    row("progress", "1%\r2%\r", { "1%", "\r2%", "\r" });
    row("line of 1000 bytes", QByteArray(1000, 'x'), { x512, QByteArray(488, 'x') });
    row("line of 511 bytes", x512.left(511) + '\n', { x512.left(511), "\n" });
    row("line of 512 bytes", x512 + '\n', { x512, "", "\n" });
    row("terminator counts in the next chunk", '\n' + QByteArray(600, 'x'),
        { "", '\n' + x512.left(511), QByteArray(89, 'x') });
    row("zero byte", QByteArray("a\0b\n", 4), { QByteArray("a\0b", 3), "\n" });
}

void TestDiskutilRunner::outputIsCutIntoChunks()
{
    QFETCH(const QByteArray, output);
    QFETCH(const QByteArrayList, chunks);
    QCOMPARE(chunksOf(output), chunks);
    FailingPipe pipe;
    pipe.output = output;
    QCOMPARE(run(u"verifyVolume"_s, pipe, collect), 0);
    QCOMPARE(m_chunks, chunks);
}

void TestDiskutilRunner::statusIsDecoded_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("verb");
    QTest::addColumn<int>("code"); // 0 for success
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, int status, const QString &verb, int code, const QString &message) {
        QTest::newRow(name) << status << verb << code << message;
    };
    const QString fatal = u"Fatal error when invoking diskutil.\nProcess terminated on signal "_s;
    row("success", 0, u"eraseVolume"_s, 0, {});
    row("erase 1", 0x100, u"eraseVolume"_s, 22, u"diskutil returned error code: 1"_s);
    row("verify 1", 0x100, u"verifyVolume"_s, 5,
        u"Encountered errors when checking the volume.\nFilesystem needs to be repaired."_s);
    row("repair 1", 0x100, u"repairVolume"_s, 5, u"Encountered errors when repairing the volume."_s);
    row("verify 2", 0x200, u"verifyVolume"_s, 22, u"diskutil returned error code: 2"_s);
    row("repair 255", 0xFF00, u"repairVolume"_s, 22, u"diskutil returned error code: 255"_s);
    row("other verb 1", 0x100, u"mountVolume"_s, 22, u"diskutil returned error code: 1"_s);
    row("signal 9", 9, u"eraseVolume"_s, 5, QString(fatal + "9."_L1));
    row("signal 11 with core dump", 11 | 0x80, u"verifyVolume"_s, 5, QString(fatal + "11 (core dumped)."_L1));
    row("signal 1", 1, u"verifyVolume"_s, 5, QString(fatal + "1."_L1));
    row("signal 126", 126, u"verifyVolume"_s, 5, QString(fatal + "126."_L1));
    row("stopped by 17", 0x117F, u"verifyVolume"_s, 5, u"Process stopped when invoking diskutil (0x117F)."_s);
    row("stopped by 19", 0x137F, u"verifyVolume"_s, 5, u"Unknown error when invoking diskutil (0x137F)."_s);
    row("stopped by 26", 0x1A7F, u"verifyVolume"_s, 5, u"Process stopped when invoking diskutil (0x1A7F)."_s);
    row("stopped with core flag", 0x13FF, u"verifyVolume"_s, 5,
        u"Unknown error when invoking diskutil (0x13FF)."_s);
    row("stopped with more bits", 0x1137F, u"verifyVolume"_s, 5,
        u"Process stopped when invoking diskutil (0x1137F)."_s);
    row("bare stop mark", 0x7F, u"verifyVolume"_s, 5, u"Process stopped when invoking diskutil (0x7F)."_s);
}

void TestDiskutilRunner::statusIsDecoded()
{
    QFETCH(const int, status);
    QFETCH(const QString, verb);
    QFETCH(const int, code);
    QFETCH(const QString, message);
    const auto failure = decodeDiskutilStatus(status, verb);
    QCOMPARE(failure.has_value(), code != 0);
    QCOMPARE(failure ? failure->code : 0, code);
    QCOMPARE(failure ? failure->message : QString(), message);
    QCOMPARE(failure && failure->output == DiskutilFailure::OutputUse::ExplainsFailure, code == 22);
}

void TestDiskutilRunner::verbsHaveNouns()
{
    QCOMPARE(diskutilVerbNoun(u"eraseVolume"_s), u"format"_s);
    QCOMPARE(diskutilVerbNoun(u"verifyVolume"_s), u"check"_s);
    QCOMPARE(diskutilVerbNoun(u"repairVolume"_s), u"repair"_s);
    QCOMPARE(diskutilVerbNoun(u"list"_s), u"?"_s);
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

void TestDiskutilRunner::shellThatCannotBeStarted_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("start");
    const auto row = [](const QString &verb, int error, int code, const QString &noun) {
        QTest::addRow("%s %d", qPrintable(verb), error)
            << verb << error << code
            << QString("Error while invoking diskutil command to "_L1 + noun + " volume: "_L1);
    };
    row(u"eraseVolume"_s, EMFILE, EMFILE, u"format"_s);
    row(u"verifyVolume"_s, EAGAIN, EAGAIN, u"check"_s);
    row(u"repairVolume"_s, ENOMEM, ENOMEM, u"repair"_s);
    row(u"list"_s, EMFILE, EMFILE, u"?"_s);
    row(u"eraseVolume"_s, 0, EIO, u"format"_s);
}

void TestDiskutilRunner::shellThatCannotBeStarted()
{
    QFETCH(const QString, verb);
    QFETCH(const int, error);
    QFETCH(const int, code);
    QFETCH(const QString, start);
    FailingPipe pipe;
    pipe.opens = false;
    pipe.openError = error;
    pipe.output = "never read";
    QCOMPARE(run(verb, pipe, collect), code);
    QCOMPARE(m_message, start + errnoText(error) + " ("_L1 + QString::number(error) + u')');
    QCOMPARE(pipe.openings, 1);
    QCOMPARE(pipe.closings, 0);
    QCOMPARE(m_chunks, QByteArrayList());
}

void TestDiskutilRunner::failedReadIsReportedAfterTheRest()
{
    FailingPipe pipe;
    pipe.output = "half a line";
    pipe.readFails = true;
    pipe.readError = EINTR;
    QCOMPARE(run(u"verifyVolume"_s, pipe, collect), EINTR);
    QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, EINTR));
    QCOMPARE(m_chunks, QByteArrayList({ "half a line" }));
    QCOMPARE(pipe.closings, 1);
}

void TestDiskutilRunner::failedReadWinsOverTheExitStatus()
{
    for (const int status : { 0, 0x100, 0x200, 9, 0x137F }) {
        FailingPipe pipe;
        pipe.readFails = true;
        pipe.readError = ENXIO;
        pipe.status = status;
        QCOMPARE(run(u"verifyVolume"_s, pipe), ENXIO);
        QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, ENXIO));
        QCOMPARE(m_log, QStringList());
    }
}

void TestDiskutilRunner::failedReadWithoutErrorNumberIsAGeneralFailure()
{
    FailingPipe pipe;
    pipe.readFails = true;
    QCOMPARE(run(u"verifyVolume"_s, pipe), EIO);
    QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, 0));
}

void TestDiskutilRunner::failedCloseNamesFormatting()
{
    for (const QString &verb : { u"eraseVolume"_s, u"verifyVolume"_s }) {
        FailingPipe pipe;
        pipe.status = -1;
        pipe.closeError = ECHILD;
        QCOMPARE(run(verb, pipe, collect), ECHILD);
        QCOMPARE(m_message, failureText("Error while executing diskutil for formatting volume"_L1, ECHILD));
        pipe.closeError = 0;
        QCOMPARE(run(verb, pipe, collect), EIO);
        QCOMPARE(m_message, failureText("Error while executing diskutil for formatting volume"_L1, 0));
    }
}

void TestDiskutilRunner::failedReadWinsOverFailedClose()
{
    FailingPipe pipe;
    pipe.readFails = true;
    pipe.readError = ENXIO;
    pipe.status = -1;
    pipe.closeError = ECHILD;
    QCOMPARE(run(u"eraseVolume"_s, pipe), ENXIO);
    QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, ENXIO));
}

void TestDiskutilRunner::keptOutputIsLimited()
{
    FailingPipe pipe;
    pipe.output = QByteArray(static_cast<qsizetype>(diskutilOutputLimit) + 1000, 'x');
    pipe.status = 0x200;
    QCOMPARE(run(u"eraseVolume"_s, pipe), EINVAL);
    QVERIFY(m_message);
    const QString head = u"diskutil returned error code: 2\nOutput:\n"_s;
    QCOMPARE(m_message->size(), head.size() + static_cast<qsizetype>(diskutilOutputLimit));
    QVERIFY(m_message->endsWith(u"xxx"_s));
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
