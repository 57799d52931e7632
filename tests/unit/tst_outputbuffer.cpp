// SPDX-License-Identifier: MIT
//
// Output as a terminal would leave it.
#include "disks/OutputBuffer.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestOutputBuffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progressShowsItsLatestState();
    void carriageReturnAndLineFeedLeaveLineFeeds();
    void secondCarriageReturnWaitsForTheNextChunk();
    void lastCarriageReturnWaits();
    void emptyChunkIntoAnEmptyBuffer();
    void emptyChunkRescans();
    void onlyTheCurrentLineIsErased();
    void clearedBufferStartsAnew();
    void anyChunksGiveWhatThePlainRuleGives();
    void longProgressCostsItsLine();
    void outputBeyondTheLimitIsDroppedInFront_data();
    void outputBeyondTheLimitIsDroppedInFront();
};

namespace {

QByteArray afterChunks(std::initializer_list<QByteArray> chunks)
{
    OutputBuffer buffer;
    for (const QByteArray &chunk : chunks)
        buffer.append(chunk.constData(), chunk.size());
    return buffer.bytes();
}

// The rule as it reads: every chunk is followed by a pass over the whole buffer.
void applyCarriageReturns(QByteArray &buffer)
{
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < buffer.size();) {
        const char c = buffer.at(i++);
        if (c == '\r' && i < buffer.size()) {
            buffer.remove(lineStart, i - lineStart);
            i = lineStart + 1;
        } else if (c == '\n') {
            lineStart = i;
        }
    }
}

// Few different bytes make many carriage returns and line feeds, next to each other and at the ends.
QByteArray randomChunk(QRandomGenerator &random)
{
    static const QByteArray alphabet = QByteArrayLiteral("\r\r\r\n\nab");
    QByteArray chunk;
    const int length = random.bounded(9);
    for (int i = 0; i < length; ++i)
        chunk += alphabet.at(random.bounded(static_cast<int>(alphabet.size())));
    return chunk;
}

} // namespace

void TestOutputBuffer::progressShowsItsLatestState()
{
    QCOMPARE(afterChunks({ "Checking 10%", "\rChecking 20%" }), QByteArray("Checking 20%"));
    QCOMPARE(afterChunks({ "Checking 10%\r", "Checking 20%\r", "Checking 30%" }), QByteArray("Checking 30%"));
}

void TestOutputBuffer::carriageReturnAndLineFeedLeaveLineFeeds()
{
    QCOMPARE(afterChunks({ "one\r", "\n", "two\r", "\n" }), QByteArray("\n\n"));
    QCOMPARE(afterChunks({ "one\r\n", "two\r\n", "" }), QByteArray("\n\n"));
}

void TestOutputBuffer::secondCarriageReturnWaitsForTheNextChunk()
{
    QCOMPARE(afterChunks({ "a\r\rb" }), QByteArray("\rb"));
    QCOMPARE(afterChunks({ "a\r\rb", "c" }), QByteArray("bc"));
}

void TestOutputBuffer::lastCarriageReturnWaits()
{
    QCOMPARE(afterChunks({ "a\r" }), QByteArray("a\r"));
    QCOMPARE(afterChunks({ "a\r", "b" }), QByteArray("b"));
}

void TestOutputBuffer::emptyChunkIntoAnEmptyBuffer()
{
    QCOMPARE(afterChunks({ "" }), QByteArray());
}

void TestOutputBuffer::emptyChunkRescans()
{
    QCOMPARE(afterChunks({ "a\r\rb", "" }), QByteArray("b"));
}

void TestOutputBuffer::onlyTheCurrentLineIsErased()
{
    QCOMPARE(afterChunks({ "one\ntwo\rthree\n" }), QByteArray("one\nthree\n"));
    // The line feed behind an erased line is the byte that is not looked at: the line goes on for this pass.
    QCOMPARE(afterChunks({ "one\r\ntwo\rthree" }), QByteArray("three"));
}

void TestOutputBuffer::clearedBufferStartsAnew()
{
    OutputBuffer buffer;
    buffer.append("one\ntwo\r", 8);
    buffer.clear();
    QCOMPARE(buffer.bytes(), QByteArray());
    buffer.append("ab\rcd", 5);
    QCOMPARE(buffer.bytes(), QByteArray("cd"));
}

void TestOutputBuffer::anyChunksGiveWhatThePlainRuleGives()
{
    for (quint32 seed = 1; seed <= 4000; ++seed) {
        QRandomGenerator random(seed);
        OutputBuffer buffer;
        QByteArray plain;
        QByteArrayList chunks;
        for (int i = 0; i < 30; ++i) {
            chunks += randomChunk(random);
            buffer.append(chunks.last().constData(), chunks.last().size());
            plain += chunks.last();
            applyCarriageReturns(plain);
            QVERIFY2(buffer.bytes() == plain,
                qPrintable(u"seed %1: %2 and not %3 after %4"_s.arg(seed).arg(
                    QString::fromLatin1(buffer.bytes().toPercentEncoding()),
                    QString::fromLatin1(plain.toPercentEncoding()),
                    QString::fromLatin1(chunks.join('|').toPercentEncoding()))));
        }
    }
}

void TestOutputBuffer::longProgressCostsItsLine()
{
    // A rescan of everything for every chunk would take hours.
    OutputBuffer buffer;
    const QByteArray line = QByteArray(79, 'x') + '\n';
    for (int i = 0; i < 20000; ++i)
        buffer.append(line.constData(), line.size());
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200000; ++i)
        buffer.append("\rChecking 10%", 13);
    QCOMPARE(buffer.bytes().size(), 20000 * 80 + 12);
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
}

void TestOutputBuffer::outputBeyondTheLimitIsDroppedInFront_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("lines") << QByteArray(999, 'x') + '\n';
    QTest::newRow("no end") << QByteArray(1000, 'x');
}

void TestOutputBuffer::outputBeyondTheLimitIsDroppedInFront()
{
    QFETCH(const QByteArray, line);
    const QByteArray piece = line.repeated(1000);
    OutputBuffer buffer;
    for (qsizetype written = 0; written < 2 * OutputBuffer::limit; written += piece.size()) {
        buffer.append(piece.constData(), piece.size());
        QVERIFY(buffer.bytes().size() <= OutputBuffer::limit);
    }
    QVERIFY(buffer.bytes().size() > OutputBuffer::limit / 2);
    if (line.endsWith('\n'))
        QVERIFY(buffer.bytes().startsWith(line));
    // What comes then is taken as ever.
    buffer.append("\nold", 4);
    buffer.append("\rnew", 4);
    QVERIFY(buffer.bytes().endsWith("\nnew"));
}

QTEST_APPLESS_MAIN(TestOutputBuffer)
#include "tst_outputbuffer.moc"
