// SPDX-License-Identifier: MIT
//
// What the program takes the system for, and that it asks uname(2) each time.
#include "platform/SystemLog.h"
#include "platform/SystemRelease.h"

#include <QStringList>
#include <QTest>

#include <sys/utsname.h>

#include <cerrno>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace {

int calls = 0;
int unameError = 0;

} // namespace

// In the place of the C library's.
int uname(utsname *system) noexcept
{
    ++calls;
    if (unameError != 0) {
        errno = unameError;
        return -1;
    }
    std::strcpy(system->release, "5.15.0-1");
    return 0;
}

class TestSystemRelease : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anyLinuxIsTheNewestGeneration();
    void failureIsLogged();
    void overrideEndsWithItsObject();
};

void TestSystemRelease::init()
{
    calls = 0;
    unameError = 0;
}

void TestSystemRelease::anyLinuxIsTheNewestGeneration()
{
    QByteArray release;
    QCOMPARE(systemRelease(&release), 0);
    QCOMPARE(release, QByteArray("24.0.0"));
    QCOMPARE(calls, 1);
    QCOMPARE(systemMajorVersion(), std::optional<unsigned long>(24));
    QCOMPARE(calls, 2);
}

void TestSystemRelease::failureIsLogged()
{
    QStringList lines;
    const SystemLogRedirection redirection([&lines](const QString &line) { lines.append(line); });
    unameError = EPERM;
    QByteArray release = "untouched";
    QCOMPARE(systemRelease(&release), EPERM);
    QCOMPARE(release, QByteArray("untouched"));
    QCOMPARE(lines, QStringList());
    QVERIFY(!systemMajorVersion());
    QCOMPARE(lines, QStringList { u"Error while issuing 'utsname': Operation not permitted (1)"_s });
}

void TestSystemRelease::overrideEndsWithItsObject()
{
    {
        const SystemReleaseOverride old("8.11.1");
        QCOMPARE(systemMajorVersion(), std::optional<unsigned long>(8));
        QCOMPARE(calls, 0);
    }
    QCOMPARE(systemMajorVersion(), std::optional<unsigned long>(24));
    QCOMPARE(calls, 1);
}

QTEST_APPLESS_MAIN(TestSystemRelease)
#include "tst_systemrelease.moc"
