// SPDX-License-Identifier: MIT
//
// Lines of the log, from any thread.
#include "platform/SystemLog.h"

#include <QStringList>
#include <QTest>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

class TestSystemLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesOfManyWorkersAllArrive();
    void redirectionStaysUntilALateWorkerHasLeft();
};

void TestSystemLog::linesOfManyWorkersAllArrive()
{
    QStringList lines;
    {
        const SystemLogRedirection redirection([&lines](const QString &line) { lines.append(line); });
        std::vector<std::thread> workers;
        for (int i = 0; i < 8; ++i) {
            workers.emplace_back([] {
                for (int j = 0; j < 100; ++j)
                    systemLog(u"line"_s);
            });
        }
        for (std::thread &worker : workers)
            worker.join();
    }
    QCOMPARE(lines.size(), 8 * 100);
}

void TestSystemLog::redirectionStaysUntilALateWorkerHasLeft()
{
    std::promise<void> entered;
    std::promise<void> mayLeave;
    std::atomic<bool> isInside = false;
    auto redirection = std::make_unique<SystemLogRedirection>([&](const QString &) {
        isInside = true;
        entered.set_value();
        mayLeave.get_future().wait();
        isInside = false;
    });
    std::thread worker([] { systemLog(u"late"_s); });
    entered.get_future().wait();
    std::thread releaser([&] { mayLeave.set_value(); });
    redirection.reset();
    const bool wasInside = isInside;
    releaser.join();
    worker.join();
    QVERIFY(!wasInside);
}

QTEST_GUILESS_MAIN(TestSystemLog)
#include "tst_systemlog.moc"
