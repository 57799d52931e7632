// SPDX-License-Identifier: MIT
//
// What the window adds to a check: a volume of 1 GB with 50,000 files, checked by the bare checker and from
// the window by turns. Prints the medians in seconds.
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr int sizeMiB = 1024;
constexpr int runs = 5;
constexpr int limit = 120000; // milliseconds

// 500 folders of 100 files.
void fill(const LoopDisk &disk)
{
    const QTemporaryDir mountPoint;
    const QString script = QStringLiteral(
        "mount \"$0\" \"$1\" && cd \"$1\" && seq 500 | xargs mkdir && "
        "for i in $(seq 500); do (cd $i && seq 100 | xargs touch); done; cd / && umount \"$1\"");
    if (runProgram(QStringLiteral("sh"), { QStringLiteral("-c"), script, disk.node(1), mountPoint.path() })
        != 0)
        qFatal("the volume cannot be filled");
}

double bareCheck(const LoopDisk &disk)
{
    QElapsedTimer clock;
    clock.start();
    if (runProgram(QStringLiteral("e2fsck"), { QStringLiteral("-fn"), QStringLiteral("-C0"), disk.node(1) })
        != 0)
        qFatal("the checker found errors");
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

double checkFromTheWindow(RealWindow &window, const DiskRecord &volume)
{
    QElapsedTimer clock;
    clock.start();
    window.controller().checkButton->click();
    if (!volume->operationInProgress || !QTest::qWaitFor([&] { return !volume->operationInProgress; }, limit)
        || !window.sheets().isEmpty())
        qFatal("the check failed");
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

double median(std::array<double, runs> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const LoopDisk disk({ { sizeMiB, QString::fromLatin1(LoopDisk::linuxType), QStringLiteral("ext4"),
        QStringLiteral("Bench") } });
    fill(disk);
    RealWindow window;
    const auto volume = [&] { return window.recordOf(disk.node(1)); };
    if (!QTest::qWaitFor([&] { return volume() && volume()->volumeKind && volume()->mountable; }, limit))
        qFatal("the window does not show the volume");
    window.select(volume());
    std::array<double, runs> bare {};
    std::array<double, runs> fromTheWindow {};
    for (int run = 0; run < runs; ++run) {
        bare[static_cast<std::size_t>(run)] = bareCheck(disk);
        fromTheWindow[static_cast<std::size_t>(run)] = checkFromTheWindow(window, volume());
    }
    std::printf("{\"bare\": %.3f, \"window\": %.3f}\n", median(bare), median(fromTheWindow));
}
