// SPDX-License-Identifier: MIT
//
// Another user, whom only root can become, cannot raise the window.
#include "platform/SingleInstance.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <future>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

class StrangerTest : public QObject
{
    Q_OBJECT

private slots:
    void strangerWhoAsksIsNotObeyed();
};

void StrangerTest::strangerWhoAsksIsNotObeyed()
{
    QCOMPARE(geteuid(), uid_t { 0 });
    const QTemporaryDir folder;
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    const InstanceOwner owner { geteuid(), static_cast<uid_t>(4000000000U) - static_cast<uid_t>(getpid()),
        folder.path() };
    SingleInstance instance(owner);
    QCOMPARE(instance.listen(), SingleInstance::Listening::Started);
    const QSignalSpy requests(&instance, &SingleInstance::activationRequested);
    auto raised = std::async(std::launch::async, [owner] {
        // The kernel keeps rights for each thread; only the C library's call changes them for all.
        syscall(SYS_setresuid, -1, 65534, -1);
        const InstanceAnswer answer = raiseInstance(owner, "token");
        syscall(SYS_setresuid, -1, 0, -1);
        return answer;
    });
    QTRY_VERIFY(raised.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QCOMPARE(raised.get(), InstanceAnswer::None);
    QCOMPARE(requests.size(), 0);
}

QTEST_GUILESS_MAIN(StrangerTest)
#include "tst_stranger.moc"
