// SPDX-License-Identifier: MIT
//
// The free space of a volume whose file system does not answer.
#include "tests/support/TestController.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QTest>

#include <condition_variable>

using namespace Qt::Literals::StringLiterals;

namespace {

// Its volume can be told not to answer until it is let go on.
class StallingMountTable : public TestMountTable
{
public:
    int freeSpace(const QByteArray &path, qint64 *bytes) const override
    {
        std::unique_lock lock(m_mutex);
        ++m_asked;
        m_isFree.wait(lock, [this] { return !m_isStalled; });
        return TestMountTable::freeSpace(path, bytes);
    }
    void stall() { set(true, {}); }
    void goOn(qint64 freeSpace) { set(false, freeSpace); }
    int asked() const
    {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

private:
    void set(bool isStalled, std::optional<qint64> freeSpace)
    {
        const std::lock_guard lock(m_mutex);
        m_isStalled = isStalled;
        if (freeSpace)
            freeSpaces["/media/A"] = *freeSpace;
        m_isFree.notify_all();
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_isFree;
    mutable int m_asked = 0;
    bool m_isStalled = false;
};

} // namespace

class TestFreeSpace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void volumeThatDoesNotAnswerFreezesNothing_data();
    void volumeThatDoesNotAnswerFreezesNothing();
};

void TestFreeSpace::volumeThatDoesNotAnswerFreezesNothing_data()
{
    QTest::addColumn<bool>("hasAnsweredBefore");
    QTest::addColumn<QString>("meanwhile");
    QTest::newRow("the last value stays") << true << u"40 MB free of 100 MB"_s;
    QTest::newRow("nothing is known") << false << u"100 MB"_s;
}

void TestFreeSpace::volumeThatDoesNotAnswerFreezesNothing()
{
    QFETCH(const bool, hasAnsweredBefore);
    QFETCH(const QString, meanwhile);
    const auto table = std::make_shared<StallingMountTable>();
    table->mounted = { { "/dev/disk2s1", "/media/A", { 1, 2 }, {} } };
    table->ids["/media/A"] = { 1, 2 };
    table->goOn(40'000'000);
    TestController test;
    test.platform().mountTable = table;
    test.launch();
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"DATA"_s);
    setMounted(volume, u"/media/A"_s);
    test.add(volume);
    const QLabel *const space = test.controller().infoDiskSpaceLabel;
    if (hasAnsweredBefore) {
        test.select(u"disk2s1"_s);
        QTRY_COMPARE(space->text(), meanwhile);
    }

    table->stall();
    const int asked = table->asked();
    QElapsedTimer clock;
    clock.start();
    test.select(u"disk2s1"_s);
    for (int i = 0; i < 60; ++i) // as often as in a second of a check's output
        test.controller().outlineViewSelectionDidChange();
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(space->text(), meanwhile);
    QTRY_COMPARE(table->asked(), asked + 1);

    table->goOn(30'000'000);
    QTRY_COMPARE(space->text(), u"30 MB free of 100 MB"_s);
    QCOMPARE(table->asked(), asked + 1); // what shows the answer does not ask again
}

QTEST_MAIN(TestFreeSpace)
#include "tst_freespace.moc"
