// SPDX-License-Identifier: MIT
//
// Media that appear one right after the other, in memory, in the real tree and the real window: whole disks
// with four partitions each, reported as a disk service does, and in an order without any. Prints the median
// of the times from the first report to the window that has them all drawn, for twice as many media each
// time.
#include "tests/support/TestController.h"

#include "ui/OutlineView.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int partitionsPerDisk = 4;
constexpr int runs = 5;

std::vector<MemoryDiskRef> makeMedia(int count)
{
    std::vector<MemoryDiskRef> media;
    for (int disk = 0; static_cast<int>(media.size()) < count; ++disk) {
        const QString name = u"disk%1"_s.arg(disk);
        media.push_back(makeDisk(name));
        for (int i = 1; i <= partitionsPerDisk && static_cast<int>(media.size()) < count; ++i) {
            media.push_back(makePartition(name + u"s%1"_s.arg(i), qint64 { i } << 20, u"Volume %1"_s.arg(i)));
        }
    }
    return media;
}

double millisecondsFor(const std::vector<MemoryDiskRef> &media)
{
    TestController test;
    test.launch();
    QElapsedTimer clock;
    clock.start();
    for (const MemoryDiskRef &medium : media)
        test.service.addDisk(medium);
    test.window().grab();
    const auto time = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    const auto rows = static_cast<std::size_t>(test.controller().leftOutlineView->numberOfRows());
    if (rows != media.size())
        qFatal("%zu rows of %zu media", rows, media.size());
    return time;
}

void measure(const char *order, bool isShuffled)
{
    for (const int count : { 125, 250, 500, 1000, 2000 }) {
        std::vector<double> times;
        for (int run = 0; run < runs; ++run) {
            std::vector<MemoryDiskRef> media = makeMedia(count);
            if (isShuffled)
                std::shuffle(media.begin(), media.end(), std::mt19937(static_cast<unsigned>(run)));
            times.push_back(millisecondsFor(media));
        }
        std::sort(times.begin(), times.end());
        std::printf("%4d media, %s: %8.1f ms\n", count, order, times[times.size() / 2]);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    measure("each disk before its partitions", false);
    measure("in any order", true);
}
