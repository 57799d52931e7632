// SPDX-License-Identifier: MIT
//
// How the end of a diskutil run is understood, and what no real program can be made to do: a pipe that fails.
#include "operations/DiskutilDecoding.h"
#include "operations/DiskutilRunner.h"
#include "platform/SystemLog.h"

#include <QTest>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int noErrorNumber = 0;

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

class TestDiskutilFailures : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void shellThatCannotBeStarted_data();
    void shellThatCannotBeStarted();
    void failedReadIsReportedAfterTheRest();
    void failedReadWinsOverTheExitStatus();
    void failedReadWithoutErrorNumberIsAGeneralFailure();
    void failedCloseNamesFormatting();
    void failedReadWinsOverFailedClose();
    void keptOutputIsLimited();
    void outputIsCutIntoChunks_data();
    void outputIsCutIntoChunks();
    void statusIsDecoded_data();
    void statusIsDecoded();
    void verbsHaveNouns();

private:
    qint32 run(const QString &verb, ShellPipe &pipe, DiskutilOutputHandler handler = nullptr)
    {
        const SystemLogRedirection redirection([this](const QString &line) { m_log.append(line); });
        return invokeDiskutilWithVerb(verb, u"'/dev/disk2s1'"_s, handler, &m_chunks, m_message, pipe);
    }

    QByteArrayList m_chunks;
    QStringList m_log;
    std::optional<QString> m_message;
};

void TestDiskutilFailures::init()
{
    m_chunks.clear();
    m_log.clear();
    m_message.reset();
}

void TestDiskutilFailures::shellThatCannotBeStarted_data()
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

void TestDiskutilFailures::shellThatCannotBeStarted()
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

void TestDiskutilFailures::failedReadIsReportedAfterTheRest()
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

void TestDiskutilFailures::failedReadWinsOverTheExitStatus()
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

void TestDiskutilFailures::failedReadWithoutErrorNumberIsAGeneralFailure()
{
    FailingPipe pipe;
    pipe.readFails = true;
    QCOMPARE(run(u"verifyVolume"_s, pipe), EIO);
    QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, 0));
}

void TestDiskutilFailures::failedCloseNamesFormatting()
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

void TestDiskutilFailures::failedReadWinsOverFailedClose()
{
    FailingPipe pipe;
    pipe.readFails = true;
    pipe.readError = ENXIO;
    pipe.status = -1;
    pipe.closeError = ECHILD;
    QCOMPARE(run(u"eraseVolume"_s, pipe), ENXIO);
    QCOMPARE(m_message, failureText("Error while reading data from diskutil process"_L1, ENXIO));
}

void TestDiskutilFailures::keptOutputIsLimited()
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

void TestDiskutilFailures::outputIsCutIntoChunks_data()
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

void TestDiskutilFailures::outputIsCutIntoChunks()
{
    QFETCH(const QByteArray, output);
    QFETCH(const QByteArrayList, chunks);
    QCOMPARE(chunksOf(output), chunks);
    FailingPipe pipe;
    pipe.output = output;
    QCOMPARE(run(u"verifyVolume"_s, pipe, collect), 0);
    QCOMPARE(m_chunks, chunks);
}

void TestDiskutilFailures::statusIsDecoded_data()
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

void TestDiskutilFailures::statusIsDecoded()
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

void TestDiskutilFailures::verbsHaveNouns()
{
    QCOMPARE(diskutilVerbNoun(u"eraseVolume"_s), u"format"_s);
    QCOMPARE(diskutilVerbNoun(u"eraseDisk"_s), u"format"_s);
    QCOMPARE(diskutilVerbNoun(u"verifyVolume"_s), u"check"_s);
    QCOMPARE(diskutilVerbNoun(u"repairVolume"_s), u"repair"_s);
    QCOMPARE(diskutilVerbNoun(u"list"_s), u"?"_s);
}

QTEST_APPLESS_MAIN(TestDiskutilFailures)
#include "tst_diskutilfailures.moc"
