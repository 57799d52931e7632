// SPDX-License-Identifier: MIT
//
// diskutil's verbs for encrypted volumes, and how it reads a passphrase.
#include "platform/FileDescriptor.h"
#include "tests/support/MemoryDiskSession.h"
#include "tools/diskutil/EncryptionJob.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using Encryption = DADisk::Encryption;
using Kind = MemoryDiskService::RequestKind;

namespace {

QString copyOf(const std::optional<Passphrase> &passphrase)
{
    return passphrase ? QString(passphrase->text().constData(), passphrase->text().size()) : u"none"_s;
}

// What is written to it can be read as a standard input.
struct Pipe
{
    Pipe()
    {
        std::array<int, 2> ends {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            qFatal("no pipe");
        input = FileDescriptor(ends[0]);
        output = FileDescriptor(ends[1]);
    }
    void type(const QByteArray &bytes) const
    {
        QCOMPARE(
            write(output.number(), bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
    }

    FileDescriptor input;
    FileDescriptor output;
};

// A terminal, and the side of the person at it.
struct Terminal
{
    Terminal()
    {
        person = FileDescriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
        if (!person.isOpen() || grantpt(person.number()) != 0 || unlockpt(person.number()) != 0)
            qFatal("no terminal");
        input = FileDescriptor(open(ptsname(person.number()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    }
    void type(const QByteArray &bytes) const
    {
        QCOMPARE(
            write(person.number(), bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
    }
    QByteArray shown() const
    {
        QByteArray bytes(1024, 0);
        const ssize_t count = read(person.number(), bytes.data(), 1024);
        return bytes.left(std::max<qsizetype>(count, 0));
    }
    bool isEchoing() const
    {
        termios state = {};
        tcgetattr(input.number(), &state);
        return state.c_lflag & ECHO;
    }

    FileDescriptor person;
    FileDescriptor input;
};

// A run of the verb on a disk2s1 with this part in encryption, with what the person at the input has typed.
template <typename Input> struct Run
{
    Run(Verb verb, Encryption encryption, const QString &device = u"disk2s1"_s)
        : reader(input.input.number())
    {
        disk->description = PropertyDictionary { { DAKey::mediaBSDName, u"disk2s1"_s } };
        disk->partInEncryption = encryption;
        media.add(disk);
        session->scheduleWithRunLoop();
        CommandLine line;
        line.verb = verb;
        line.device = device;
        job = std::make_unique<EncryptionJob>(line, *session, media, reader);
        QObject::connect(
            job.get(), &EncryptionJob::said, job.get(), [this](const QString &t) { said.append(t); });
        QObject::connect(
            job.get(), &EncryptionJob::asked, job.get(), [this](const QString &t) { asked.append(t); });
        QObject::connect(job.get(), &EncryptionJob::complained, job.get(),
            [this](const QString &t) { complained.append(t); });
        QObject::connect(
            job.get(), &EncryptionJob::finished, job.get(), [this](ExitCode c) { exits.append(c); });
        job->start();
    }

    void ask(bool isRetry)
    {
        service.askPassphrase(disk, isRetry,
            [this](const std::optional<Passphrase> &passphrase) { answers.append(copyOf(passphrase)); });
    }

    Input input;
    MemoryDiskService service;
    std::unique_ptr<DASession> session = service.createSession();
    MemoryDiskRef disk = std::make_shared<MemoryDisk>();
    MediaList media;
    PassphraseReader reader;
    QStringList said;
    QStringList asked;
    QStringList complained;
    QStringList answers;
    QList<ExitCode> exits;
    std::unique_ptr<EncryptionJob> job;
};

} // namespace

class TestDiskutilEncryption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsThePassphrase_data();
    void lineIsThePassphrase();
    void onlyOneLineIsTaken();
    void terminalShowsNothing();
    void terminalIsAsBeforeAfterAnInterruption();
    void refusals_data();
    void refusals();
    void unlockMounts();
    void wrongLineIsTold();
    void terminalIsAskedThreeTimes();
    void emptyLineAtTheTerminal();
    void lockUnmountsFirst();
    void refusedUnmountAndLock();
    void interruption();
};

void TestDiskutilEncryption::lineIsThePassphrase_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("passphrase");
    QTest::newRow("line") << QByteArray(" two words \n") << u" two words "_s;
    QTest::newRow("end of the input") << QByteArray("word") << u"word"_s;
    QTest::newRow("UTF-8") << QByteArray("sch\xc3\xb6n\n") << u"schön"_s;
    QTest::newRow("no UTF-8") << QByteArray("sch\xf6n\n") << u"none"_s;
    QTest::newRow("empty line") << QByteArray("\n") << u"none"_s;
    QTest::newRow("nothing") << QByteArray() << u"none"_s;
    QTest::newRow("longest") << QByteArray(4096, 'x') << QString(4096, u'x');
    QTest::newRow("too long") << QByteArray(4097, 'x') << u"none"_s;
}

void TestDiskutilEncryption::lineIsThePassphrase()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, passphrase);
    Pipe pipe;
    pipe.type(bytes);
    pipe.output = FileDescriptor();
    PassphraseReader reader(pipe.input.number());
    QVERIFY(!reader.isTerminal());
    QStringList read;
    reader.read([&read](const std::optional<Passphrase> &given) { read.append(copyOf(given)); });
    QVERIFY(read.isEmpty());
    QTRY_COMPARE(read, QStringList { passphrase });
}

void TestDiskutilEncryption::onlyOneLineIsTaken()
{
    const Pipe pipe;
    pipe.type("one\ntwo\n");
    PassphraseReader reader(pipe.input.number());
    bool isDone = false;
    reader.read([&isDone](const std::optional<Passphrase> &) { isDone = true; });
    QTRY_VERIFY(isDone);
    QByteArray rest(4, 0);
    QCOMPARE(::read(pipe.input.number(), rest.data(), 4), 4);
    QCOMPARE(rest, QByteArray("two\n"));
}

void TestDiskutilEncryption::terminalShowsNothing()
{
    const Terminal terminal;
    QVERIFY(terminal.isEchoing());
    PassphraseReader reader(terminal.input.number());
    QVERIFY(reader.isTerminal());
    QStringList read;
    reader.read([&read](const std::optional<Passphrase> &given) { read.append(copyOf(given)); });
    QVERIFY(!terminal.isEchoing());
    terminal.type("secret\n");
    QTRY_COMPARE(read, QStringList { u"secret"_s });
    QCOMPARE(terminal.shown(), QByteArray("\r\n"));
    QVERIFY(terminal.isEchoing());
}

void TestDiskutilEncryption::terminalIsAsBeforeAfterAnInterruption()
{
    const Terminal terminal;
    {
        PassphraseReader reader(terminal.input.number());
        reader.read([](const std::optional<Passphrase> &) { });
        QVERIFY(!terminal.isEchoing());
    }
    QVERIFY(terminal.isEchoing());
}

void TestDiskutilEncryption::refusals_data()
{
    QTest::addColumn<Verb>("verb");
    QTest::addColumn<Encryption>("encryption");
    QTest::addColumn<QString>("device");
    QTest::addColumn<ExitCode>("code");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no disk") << Verb::UnlockVolume << Encryption::Encrypted << u"disk3"_s
                             << ExitCode::NoSuchDisk << u"there is no disk disk3"_s;
    QTest::newRow("unlock plain") << Verb::UnlockVolume << Encryption::None << u"disk2s1"_s
                                  << ExitCode::NotSupported << u"disk2s1 is not encrypted"_s;
    QTest::newRow("lock plain") << Verb::LockVolume << Encryption::None << u"disk2s1"_s
                                << ExitCode::NotSupported << u"disk2s1 is not encrypted"_s;
    QTest::newRow("unlocked") << Verb::UnlockVolume << Encryption::Unlocked << u"disk2s1"_s
                              << ExitCode::NotSupported << u"disk2s1 is unlocked already"_s;
}

void TestDiskutilEncryption::refusals()
{
    QFETCH(Verb, verb);
    QFETCH(Encryption, encryption);
    QFETCH(QString, device);
    QFETCH(QString, reason);
    const Run<Pipe> run(verb, encryption, device);
    QTEST(run.exits.value(0), "code");
    QCOMPARE(run.complained, QStringList { reason });
    QVERIFY(run.service.requests().empty());
}

void TestDiskutilEncryption::unlockMounts()
{
    Run<Pipe> run(Verb::UnlockVolume, Encryption::Encrypted);
    QCOMPARE(run.service.requests().front().kind, Kind::Mount);
    run.ask(false);
    run.input.type("right\n");
    QTRY_COMPARE(run.answers, QStringList { u"right"_s });
    QVERIFY(run.asked.isEmpty()); // nobody is there
    run.service.completeRequest();
    QCOMPARE(run.exits, QList<ExitCode> { ExitCode::Success });
    QCOMPARE(run.said, QStringList { u"Unlocked and mounted disk2s1"_s });
}

void TestDiskutilEncryption::wrongLineIsTold()
{
    Run<Pipe> run(Verb::UnlockVolume, Encryption::Encrypted);
    run.ask(false);
    run.input.type("wrong\nright\n");
    QTRY_COMPARE(run.answers.size(), 1);
    run.ask(true);
    QCOMPARE(run.answers, (QStringList { u"wrong"_s, u"none"_s }));
    run.service.completeRequest(makeDeclinedDissenter());
    QCOMPARE(run.exits, QList<ExitCode> { ExitCode::PassphraseRefused });
    QCOMPARE(run.complained, QStringList { u"disk2s1 was not unlocked: that was not the passphrase"_s });
}

void TestDiskutilEncryption::terminalIsAskedThreeTimes()
{
    Run<Terminal> run(Verb::UnlockVolume, Encryption::Encrypted);
    for (int i = 0; i < 3; ++i) {
        run.ask(i > 0);
        QCOMPARE(run.asked, QStringList(i + 1, u"Passphrase for disk2s1: "_s));
        QCOMPARE(run.complained.size(), i);
        run.input.type("wrong\n");
        QTRY_COMPARE(run.answers.size(), i + 1);
    }
    run.ask(true);
    QCOMPARE(run.answers.constLast(), u"none"_s);
    run.service.completeRequest(makeDeclinedDissenter());
    QCOMPARE(run.exits, QList<ExitCode> { ExitCode::PassphraseRefused });
}

void TestDiskutilEncryption::emptyLineAtTheTerminal()
{
    Run<Terminal> run(Verb::UnlockVolume, Encryption::Encrypted);
    run.ask(false);
    run.input.type("\n");
    QTRY_COMPARE(run.answers, QStringList { u"none"_s });
    run.service.completeRequest(makeDeclinedDissenter());
    QCOMPARE(run.complained, QStringList { u"disk2s1 was not unlocked: no passphrase was given"_s });
}

void TestDiskutilEncryption::lockUnmountsFirst()
{
    Run<Pipe> run(Verb::LockVolume, Encryption::Unlocked);
    QCOMPARE(run.service.requests().front().kind, Kind::Unmount);
    run.service.completeRequest();
    QCOMPARE(run.service.requests().front().kind, Kind::Lock);
    QVERIFY(run.exits.isEmpty());
    run.service.completeRequest();
    QCOMPARE(run.exits, QList<ExitCode> { ExitCode::Success });
    QCOMPARE(run.said, QStringList { u"Unmounted and locked disk2s1"_s });
}

void TestDiskutilEncryption::refusedUnmountAndLock()
{
    Run<Pipe> unmount(Verb::LockVolume, Encryption::Encrypted);
    unmount.service.completeRequest(makeDissenter(DAReturn::Busy, u"target is busy"_s));
    QCOMPARE(unmount.exits, QList<ExitCode> { ExitCode::UnmountRefused });
    QVERIFY(unmount.service.requests().empty());
    Run<Pipe> lock(Verb::LockVolume, Encryption::Encrypted);
    lock.service.completeRequest();
    lock.service.completeRequest(makeDissenter(DAReturn::Busy, u"device is busy"_s));
    QCOMPARE(lock.exits, QList<ExitCode> { ExitCode::InUse });
    QCOMPARE(lock.complained, QStringList { u"disk2s1 could not be locked: device is busy"_s });
}

void TestDiskutilEncryption::interruption()
{
    Run<Pipe> run(Verb::UnlockVolume, Encryption::Encrypted);
    run.ask(false);
    run.job->interrupt(u"Interrupt"_s);
    QCOMPARE(run.exits, QList<ExitCode> { ExitCode::Interrupted });
    run.service.completeRequest(makeDeclinedDissenter());
    QCOMPARE(run.exits.size(), 1);
    QCOMPARE(run.complained, QStringList { u"interrupted (Interrupt)"_s });
}

QTEST_GUILESS_MAIN(TestDiskutilEncryption)
#include "tst_diskutil_encryption.moc"
