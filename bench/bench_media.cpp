// SPDX-License-Identifier: MIT
//
// Media that appear and disappear, in memory, in the real tree and the real window: whole disks with four
// partitions each, reported as a disk service does and in an order without any; in one burst, one right after
// the other, and one by one with a pass of the event loop after each. Prints the median of the processor
// times from the first report to the window that has them all drawn, or none of them, for twice as many media
// each time.
#include "tests/support/TestController.h"

#include "ui/OutlineView.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int partitionsPerDisk = 4;
constexpr int runs = 3;

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

enum class Manner { Burst, InARow, OneByOne };

struct Times // in milliseconds
{
    double appearance = 0;
    double disappearance = 0;
};

Times timesOf(const std::vector<MemoryDiskRef> &media, Manner manner)
{
    TestController test;
    test.launch();
    const auto pass = [&] {
        if (manner == Manner::OneByOne)
            QCoreApplication::processEvents();
    };
    std::clock_t start = std::clock();
    const auto finish = [&] {
        test.window().grab();
        const std::clock_t before = std::exchange(start, std::clock());
        return 1000.0 * static_cast<double>(start - before) / CLOCKS_PER_SEC;
    };
    if (manner == Manner::Burst)
        test.service.addDisks(media);
    for (std::size_t i = 0; manner != Manner::Burst && i < media.size(); ++i) {
        test.service.addDisk(media[i]);
        pass();
    }
    Times times;
    times.appearance = finish();
    const auto rows = static_cast<std::size_t>(test.controller().leftOutlineView->numberOfRows());
    if (rows != media.size())
        qFatal("%zu rows of %zu media", rows, media.size());
    test.controller().leftOutlineView->selectRow(0);
    finish();
    for (auto medium = media.rbegin(); medium != media.rend(); ++medium) {
        test.service.removeDisk(*medium);
        pass();
    }
    times.disappearance = finish();
    return times;
}

double medianOf(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void measure(const char *text, Manner manner, bool isShuffled)
{
    for (const int count : { 250, 500, 1000, 2000, 4000 }) {
        std::vector<double> appearances;
        std::vector<double> disappearances;
        for (int run = 0; run < runs; ++run) {
            std::vector<MemoryDiskRef> media = makeMedia(count);
            if (isShuffled)
                std::shuffle(media.begin(), media.end(), std::mt19937(static_cast<unsigned>(run)));
            const Times times = timesOf(media, manner);
            appearances.push_back(times.appearance);
            disappearances.push_back(times.disappearance);
        }
        std::printf("%4d media, %s: %8.1f ms, and gone in %8.1f ms\n", count, text, medianOf(appearances),
            medianOf(disappearances));
    }
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    QApplication application(argc, argv);
    measure("in one burst", Manner::Burst, false);
    measure("in one burst, in any order", Manner::Burst, true);
    measure("in a row, each disk before its partitions", Manner::InARow, false);
    measure("in a row, in any order", Manner::InARow, true);
    measure("one by one, each disk before its partitions", Manner::OneByOne, false);
    measure("one by one, in any order", Manner::OneByOne, true);
}
