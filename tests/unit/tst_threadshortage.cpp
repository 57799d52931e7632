// SPDX-License-Identifier: MIT
#include "platform/DetachedThread.h"

#include <QTest>

#include <cerrno>
#include <memory>
#include <sys/resource.h>

// A program of its own: there must be no stack of an earlier thread to take.
class TestThreadShortage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void systemWithoutRoomForAnotherThread();
};

void TestThreadShortage::systemWithoutRoomForAnotherThread()
{
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

QTEST_APPLESS_MAIN(TestThreadShortage)
#include "tst_threadshortage.moc"
