// SPDX-License-Identifier: MIT
//
// From a worker thread to the main thread.
#include "platform/MainThreadRelay.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

class TestMainThreadRelay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tasksRunInOrderOnTheMainThread();
    void workerWaitsForItsTask();
    void taskHandedOverLastComesLast();
    void closingLetsAWaitingWorkerGo();
    void nothingRunsAfterClosing();
    void closedRelayDoesNotHoldAWorker();
    void tasksOfManyWorkersAllRun();
    void workerOutlivesItsCreator();
};

void TestMainThreadRelay::tasksRunInOrderOnTheMainThread()
{
    const auto relay = MainThreadRelay::create();
    std::vector<int> ran;
    bool isMainThread = true;
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i) {
            relay->perform([&, i] {
                isMainThread = isMainThread && QThread::currentThread() == qApp->thread();
                ran.push_back(i);
            });
        }
    });
    worker.join();
    QVERIFY(ran.empty());
    QTRY_COMPARE(ran.size(), std::size_t { 100 });
    QVERIFY(std::is_sorted(ran.begin(), ran.end()));
    QVERIFY(isMainThread);
}

void TestMainThreadRelay::workerWaitsForItsTask()
{
    const auto relay = MainThreadRelay::create();
    int onMainThread = 0;
    std::atomic<int> seen = -1;
    std::thread worker([&] {
        relay->performAndWait([&] { onMainThread = 7; });
        seen = onMainThread; // what the task wrote is here when the call returns
    });
    QTRY_COMPARE(seen.load(), 7);
    worker.join();
}

void TestMainThreadRelay::taskHandedOverLastComesLast()
{
    const auto relay = MainThreadRelay::create();
    QStringList ran;
    std::thread worker([&] {
        relay->performAndWait([&] { ran.append(u"output"_s); });
        relay->performAndWait([&] { ran.append(u"message"_s); });
        relay->perform([&] { ran.append(u"end"_s); });
    });
    QTRY_COMPARE(ran.size(), 3);
    worker.join();
    QCOMPARE(ran.join(u' '), u"output message end"_s);
}

void TestMainThreadRelay::closingLetsAWaitingWorkerGo()
{
    const auto relay = MainThreadRelay::create();
    std::atomic<bool> hasRun = false;
    std::atomic<bool> isWaiting = false;
    std::thread worker([&] {
        isWaiting = true;
        relay->performAndWait([&] { hasRun = true; });
    });
    while (!isWaiting)
        std::this_thread::yield();
    relay->close(); // no event is handled in between
    worker.join();
    QCoreApplication::processEvents(); // would hand over what is still on its way
    QVERIFY(!hasRun);
}

void TestMainThreadRelay::nothingRunsAfterClosing()
{
    const auto relay = MainThreadRelay::create();
    bool hasRun = false;
    std::thread worker([&] { relay->perform([&] { hasRun = true; }); });
    worker.join();
    relay->close();
    QCoreApplication::processEvents(); // would hand over what is still on its way
    QVERIFY(!hasRun);
}

void TestMainThreadRelay::closedRelayDoesNotHoldAWorker()
{
    const auto relay = MainThreadRelay::create();
    relay->close();
    relay->close();
    bool hasRun = false;
    std::thread worker([&] {
        relay->perform([&] { hasRun = true; });
        relay->performAndWait([&] { hasRun = true; });
    });
    worker.join();
    QCoreApplication::processEvents(); // would hand over what is still on its way
    QVERIFY(!hasRun);
}

void TestMainThreadRelay::tasksOfManyWorkersAllRun()
{
    const auto relay = MainThreadRelay::create();
    int count = 0;
    std::vector<std::thread> workers;
    for (int i = 0; i < 8; ++i) {
        workers.emplace_back([&] {
            for (int j = 0; j < 200; ++j)
                relay->performAndWait([&] { ++count; });
        });
    }
    QTRY_COMPARE(count, 8 * 200);
    for (std::thread &worker : workers)
        worker.join();
}

void TestMainThreadRelay::workerOutlivesItsCreator()
{
    auto relay = MainThreadRelay::create();
    std::atomic<bool> mayGoOn = false;
    bool hasRun = false;
    std::thread worker([&, own = relay] {
        while (!mayGoOn)
            std::this_thread::yield();
        own->performAndWait([&] { hasRun = true; });
    });
    relay->close();
    relay.reset();
    mayGoOn = true;
    worker.join();
    QVERIFY(!hasRun);
}

QTEST_GUILESS_MAIN(TestMainThreadRelay)
#include "tst_mainthreadrelay.moc"
