// SPDX-License-Identifier: MIT
#include "platform/FileDescriptor.h"

#include <QTest>

#include <fcntl.h>

class TestFileDescriptor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsOpen();
    void closesAtItsEnd();
    void movedFromOwnsNothing();
    void assignmentClosesWhatWasOpen();
};

namespace {

FileDescriptor openNull()
{
    return FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool isOpen(int number)
{
    return fcntl(number, F_GETFD) != -1;
}

} // namespace

void TestFileDescriptor::nothingIsOpen()
{
    QVERIFY(!FileDescriptor().isOpen());
    QVERIFY(!FileDescriptor(-1).isOpen());
}

void TestFileDescriptor::closesAtItsEnd()
{
    int number = -1;
    {
        const FileDescriptor file = openNull();
        QVERIFY(file.isOpen());
        number = file.number();
        QVERIFY(isOpen(number));
    }
    QVERIFY(!isOpen(number));
}

void TestFileDescriptor::movedFromOwnsNothing()
{
    FileDescriptor first = openNull();
    const int number = first.number();
    {
        const FileDescriptor second(std::move(first));
        QCOMPARE(second.number(), number);
        QVERIFY(!first.isOpen()); // NOLINT(bugprone-use-after-move): what is left is looked at
        QVERIFY(isOpen(number));
    }
    QVERIFY(!isOpen(number));
}

void TestFileDescriptor::assignmentClosesWhatWasOpen()
{
    FileDescriptor file = openNull();
    FileDescriptor other = openNull();
    const int first = file.number();
    const int second = other.number();
    file = std::move(other);
    QVERIFY(!isOpen(first));
    QCOMPARE(file.number(), second);
    file = FileDescriptor();
    QVERIFY(!isOpen(second));
    QVERIFY(!file.isOpen());
}

QTEST_GUILESS_MAIN(TestFileDescriptor)
#include "tst_filedescriptor.moc"
