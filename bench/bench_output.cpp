// SPDX-License-Identifier: MIT
//
// The live output of a check: a tool that prints as fast as it can, through the real shell, the real
// hand-over and into the real window. Prints lines a second, for the first and the last thousand as well, and
// the longest time that the window was deaf; then the same for one long line without a terminator, and for
// nothing but terminators, each of which is handed over by itself.
#include "tests/support/TestController.h"

#include "ui/OutputView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int lineCount = 20000;
constexpr int lineLength = 60; // bytes, with the line feed
constexpr int longLineLength = 2'000'000; // bytes
constexpr int returnCount = 100'000;
constexpr int bundleCount = 12;

// Runs a script in the tool's place and notes when each thousandth line was read.
class TimingPipe : public PosixShellPipe
{
public:
    TimingPipe(QString tool, QElapsedTimer &clock, std::vector<qint64> &times)
        : m_tool(std::move(tool))
        , m_clock(clock)
        , m_times(times)
    {
    }

    bool open(const QByteArray &) override { return PosixShellPipe::open(QFile::encodeName(m_tool)); }

    ssize_t readByte(char *byte) override
    {
        const ssize_t result = PosixShellPipe::readByte(byte);
        if (result == 1 && *byte == '\n' && ++m_lines % 1000 == 0)
            m_times.push_back(m_clock.nsecsElapsed());
        return result;
    }

private:
    QString m_tool;
    QElapsedTimer &m_clock;
    std::vector<qint64> &m_times;
    int m_lines = 0;
};

void installBundles(const TestController &test)
{
    for (int i = 0; i < bundleCount; ++i) {
        const QString name = i == 0 ? u"bench"_s : u"bench%1"_s.arg(i);
        writeBundle(test.systemDirectory(), name,
            "<key>CFBundleIdentifier</key><string>org.example.bench</string><key>FSPersonalities</key><dict>"
            "<key>Bench</key><dict><key>FSName</key><string>Bench</string>"
            "<key>FSFormatExecutable</key><string>format</string>"
            "<key>FSVerificationExecutable</key><string>verify</string></dict></dict>");
    }
}

struct Run
{
    double seconds = 0;
    double longestDeafness = 0; // milliseconds
    std::vector<qint64> times; // of each thousandth line, nanoseconds
    qsizetype shownBytes = 0;
};

Run measure(const QByteArray &script)
{
    Run run;
    TestController test;
    installBundles(test);
    QElapsedTimer clock;
    test.setDiskutilScript(script);
    test.platform().createShellPipe
        = [&] { return std::make_unique<TimingPipe>(test.diskutil, clock, run.times); };
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"Bench"_s);
    volume->description->insert(DAKey::volumeKind, u"bench"_s);
    const DiskRecord disk = test.add(volume);
    test.select(u"disk2s1"_s);
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);

    QElapsedTimer sinceEvent;
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        run.longestDeafness
            = std::max(run.longestDeafness, static_cast<double>(sinceEvent.nsecsElapsed()) / 1e6);
        sinceEvent.restart();
        if (!disk->operationInProgress)
            QCoreApplication::exit();
    });
    clock.start();
    sinceEvent.start();
    test.controller().checkButton->click();
    heartbeat.start(0);
    QCoreApplication::exec();
    run.seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    run.shownBytes = test.controller().checkRepairOutputView->toPlainText().size();
    return run;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const Run lines
        = measure("yes " + QByteArray(lineLength - 1, 'x') + " | head -n " + QByteArray::number(lineCount));
    const auto thousand = [&lines](std::size_t i) {
        const qint64 start = i == 0 ? 0 : lines.times[i - 1];
        return 1000e9 / static_cast<double>(lines.times[i] - start);
    };
    std::printf(
        "%d lines of %d bytes: %.0f lines a second\n", lineCount, lineLength, lineCount / lines.seconds);
    std::printf("first thousand: %.0f lines a second, last thousand: %.0f\n", thousand(1),
        thousand(lines.times.size() - 1));
    std::printf("longest time without an event: %.1f ms; %lld characters shown\n", lines.longestDeafness,
        static_cast<long long>(lines.shownBytes));

    const Run line = measure("head -c " + QByteArray::number(longLineLength) + " /dev/zero | tr '\\0' .");
    std::printf(
        "one line of %d bytes: %.2f s, longest time without an event: %.1f ms; %lld characters shown\n",
        longLineLength, line.seconds, line.longestDeafness, static_cast<long long>(line.shownBytes));

    const Run returns = measure("head -c " + QByteArray::number(returnCount) + " /dev/zero | tr '\\0' '\\r'");
    std::printf("%d carriage returns: %.2f s, longest time without an event: %.1f ms\n", returnCount,
        returns.seconds, returns.longestDeafness);
    return 0;
}
