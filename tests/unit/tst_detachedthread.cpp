// SPDX-License-Identifier: MIT
#include "platform/DetachedThread.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <cerrno>
#include <memory>
#include <sys/resource.h>

class TestDetachedThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // First, while there is no stack of an earlier thread to take.
    void systemWithoutRoomForAnotherThread();
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

void TestDetachedThread::systemWithoutRoomForAnotherThread()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer needs the room that the test takes away");
#endif
    rlimit before {};
    QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
    rlimit none = before;
    none.rlim_cur = 1; // what there is stays; a thread's stack would be more
    const auto hasRun = std::make_shared<bool>(false);
    QCOMPARE(setrlimit(RLIMIT_AS, &none), 0);
    const int error = startDetachedThread([hasRun] { *hasRun = true; });
    QCOMPARE(setrlimit(RLIMIT_AS, &before), 0);
    QCOMPARE(error, EAGAIN);
    QVERIFY(!*hasRun);
}

QTEST_APPLESS_MAIN(TestDetachedThread)
#include "tst_detachedthread.moc"
