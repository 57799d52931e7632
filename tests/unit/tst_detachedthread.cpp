// SPDX-License-Identifier: MIT
#include "platform/DetachedThread.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <memory>

class TestDetachedThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsOnAThreadOfItsOwn();
};

void TestDetachedThread::runsOnAThreadOfItsOwn()
{
    const auto done = std::make_shared<QSemaphore>();
    const auto where = std::make_shared<Qt::HANDLE>(nullptr);
    QCOMPARE(startDetachedThread([done, where] {
        *where = QThread::currentThreadId();
        done->release();
    }),
        0);
    QVERIFY(done->tryAcquire(1, 10000));
    QVERIFY(*where != QThread::currentThreadId());
}

QTEST_APPLESS_MAIN(TestDetachedThread)
#include "tst_detachedthread.moc"
