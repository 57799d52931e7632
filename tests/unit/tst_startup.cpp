// SPDX-License-Identifier: MIT
#include "app/Startup.h"
#include "app/startup_rules.h"
#include "platform/DesktopUser.h"
#include "platform/FileDescriptor.h"
#include "platform/RuntimeFolder.h"
#include "platform/SingleInstance.h"
#include "platform/SystemLog.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <fcntl.h>
#include <future>
#include <pty.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

GroupList foundGroups(int count, std::vector<gid_t> groups)
{
    groups.resize(static_cast<std::size_t>(StartupRules::groupCapacity), 0);
    return { 0, count, 0, std::move(groups) };
}

GroupList groupsWith80At(std::size_t index, int count)
{
    std::vector<gid_t> groups(static_cast<std::size_t>(StartupRules::groupCapacity), 7);
    groups[index] = StartupRules::administratorsGroup;
    return foundGroups(count, groups);
}

// Answers at once as it is told to, and notes what it is asked.
class ScriptedAuthorization : public Authorization
{
public:
    AuthorizationStatus created = AuthorizationStatus::Success;
    AuthorizationStatus granted = AuthorizationStatus::Success;
    QStringList calls;

    void create(StatusHandler handler) override
    {
        calls << u"create"_s;
        handler(created);
    }
    void copyRights(const QByteArray &program, StatusHandler handler) override
    {
        calls << u"copyRights "_s + QString::fromUtf8(program);
        handler(granted);
    }
    void executeWithPrivileges(
        const QByteArray &program, const QByteArrayList &arguments, std::function<void()> done) override
    {
        calls << u"execute "_s + QString::fromUtf8(program) + u' ' + QString::fromUtf8(arguments.join(' '));
        done();
    }
    void free() override { calls << u"free"_s; }
};

// A socket that waits at the path, as a bus or a compositor has it.
FileDescriptor listenAt(const QString &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::bind(socket.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        qFatal("no socket at %s", qPrintable(path));
    return socket;
}

} // namespace

class StartupTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { redirectLog(); }
    void init() { m_log.clear(); }

    void elevatedWordCountsWithExactlyTwoArguments_data();
    void elevatedWordCountsWithExactlyTwoArguments();
    void administratorIsWhoHasGroup80AmongThe128_data();
    void administratorIsWhoHasGroup80AmongThe128();
    void failedLookUpIsLoggedAndLeadsToElevation();
    void lookUpAsksFor128Groups();
    void realLookUp_data();
    void realLookUp();
    void elevation_data();
    void elevation();
    void whatTheUserIsTold();
    void requestReachesTheFirstInstance();
    void hungInstanceGetsNoOtherBesideIt();
    void freedNameCanBeTakenAgain();
    void startInTheSameInstantIsWaitedFor();
    void folderThatOthersCanWriteToIsNotUsed();
    void runtimeFolderIsTheUsersOwn();
    void strangerHoldingTheNameIsNotObeyed();
    void waylandSocketIsTheUsersOwn();
    void accessibilityBusIsTheUsersOwn();
    void logIsUtf8InEveryLocale();
    void errorTextsAreEnglish();

private:
    InstanceOwner testOwner() const;

    const QTemporaryDir m_folder;
    QStringList m_log;
    std::unique_ptr<SystemLogRedirection> m_redirection;

    void redirectLog()
    {
        m_redirection.reset();
        m_redirection
            = std::make_unique<SystemLogRedirection>([this](const QString &line) { m_log.append(line); });
    }
};

void StartupTest::elevatedWordCountsWithExactlyTwoArguments_data()
{
    QTest::addColumn<QByteArrayList>("arguments");
    QTest::addColumn<bool>("isElevated");

    QTest::newRow("relaunched") << QByteArrayList { "/usr/bin/p", "-elevated" } << true;
    QTest::newRow("alone") << QByteArrayList { "/usr/bin/p" } << false;
    QTest::newRow("third of three") << QByteArrayList { "/usr/bin/p", "x", "-elevated" } << false;
    QTest::newRow("second of three") << QByteArrayList { "/usr/bin/p", "-elevated", "x" } << false;
    QTest::newRow("only the word") << QByteArrayList { "-elevated" } << false;
    QTest::newRow("prefix") << QByteArrayList { "/usr/bin/p", "-elevate" } << false;
    QTest::newRow("longer") << QByteArrayList { "/usr/bin/p", "-elevated=1" } << false;
    QTest::newRow("other case") << QByteArrayList { "/usr/bin/p", "-Elevated" } << false;
    QTest::newRow("two dashes") << QByteArrayList { "/usr/bin/p", "--elevated" } << false;
    QTest::newRow("no arguments at all") << QByteArrayList {} << false;
}

void StartupTest::elevatedWordCountsWithExactlyTwoArguments()
{
    QFETCH(QByteArrayList, arguments);
    QFETCH(bool, isElevated);
    int lookUps = 0;
    const bool mayRun = mayRunInterface(arguments, [&lookUps](int) {
        ++lookUps;
        return foundGroups(0, {});
    });
    QCOMPARE(mayRun, isElevated);
    QCOMPARE(lookUps, isElevated ? 0 : 1);
}

void StartupTest::administratorIsWhoHasGroup80AmongThe128_data()
{
    QTest::addColumn<GroupList>("list");
    QTest::addColumn<bool>("isAdministrator");

    QTest::newRow("no groups") << groupsWith80At(0, 0) << false;
    QTest::newRow("first") << groupsWith80At(0, 1) << true;
    QTest::newRow("last of 128") << groupsWith80At(127, 128) << true;
    QTest::newRow("behind the count") << groupsWith80At(5, 5) << false;
    QTest::newRow("more counted than the array holds") << groupsWith80At(127, 200) << true;
    QTest::newRow("none among more than the array holds") << foundGroups(200, {}) << false;
    QTest::newRow("negative count") << groupsWith80At(0, -3) << false;
}

void StartupTest::administratorIsWhoHasGroup80AmongThe128()
{
    QFETCH(GroupList, list);
    QFETCH(bool, isAdministrator);
    QCOMPARE(mayRunInterface({ "p" }, [&list](int) { return list; }), isAdministrator);
    QCOMPARE(m_log, QStringList());
}

void StartupTest::failedLookUpIsLoggedAndLeadsToElevation()
{
    GroupList list = groupsWith80At(0, 129);
    list.result = -1;
    list.error = ENOMEM;
    QVERIFY(!mayRunInterface({ "p" }, [&list](int) { return list; }));
    QCOMPARE(m_log,
        QStringList { u"Error while getting the group list for the current user: Cannot allocate memory (12) "
                      "Too bad but let's try to elevate privileges by default."_s });
}

void StartupTest::lookUpAsksFor128Groups()
{
    int asked = 0;
    mayRunInterface({ "p" }, [&asked](int capacity) {
        asked = capacity;
        return foundGroups(0, {});
    });
    QCOMPARE(asked, 128);
}

void StartupTest::realLookUp_data()
{
    QTest::addColumn<std::optional<QByteArray>>("login");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<bool>("isFound");
    QTest::addColumn<int>("error");

    QTest::newRow("root") << std::optional<QByteArray>("root") << 128 << true << 0;
    QTest::newRow("array without room") << std::optional<QByteArray>("root") << 0 << false << ERANGE;
    QTest::newRow("no name") << std::optional<QByteArray>() << 128 << false << ENOENT;
}

void StartupTest::realLookUp()
{
    QFETCH(std::optional<QByteArray>, login);
    QFETCH(int, capacity);
    QFETCH(bool, isFound);
    QFETCH(int, error);
    const GroupList list = lookUpGroups(login, capacity);
    QCOMPARE(list.result != -1, isFound);
    QCOMPARE(list.error, error);
    if (isFound)
        QCOMPARE(list.groups.at(0), getgid());
}

void StartupTest::elevation_data()
{
    QTest::addColumn<AuthorizationStatus>("created");
    QTest::addColumn<AuthorizationStatus>("granted");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("log");

    constexpr auto good = AuthorizationStatus::Success;
    QTest::newRow("granted") << good << good
                             << QStringList { u"create"_s, u"copyRights ./p"_s, u"execute ./p -elevated"_s,
                                    u"free"_s }
                             << QStringList();
    QTest::newRow("refused") << good << AuthorizationStatus::Denied
                             << QStringList { u"create"_s, u"copyRights ./p"_s, u"free"_s }
                             << QStringList { u"AuthorizationCopyRights failed with status: -60005"_s };
    QTest::newRow("cancelled") << good << AuthorizationStatus::Canceled
                               << QStringList { u"create"_s, u"copyRights ./p"_s, u"free"_s }
                               << QStringList { u"AuthorizationCopyRights failed with status: -60006"_s };
    QTest::newRow("no service") << AuthorizationStatus::Internal << good
                                << QStringList { u"create"_s, u"free"_s }
                                << QStringList { u"Error while creating AuthorizationRef. Status: -60008"_s };
}

void StartupTest::elevation()
{
    QFETCH(AuthorizationStatus, created);
    QFETCH(AuthorizationStatus, granted);
    ScriptedAuthorization authorization;
    authorization.created = created;
    authorization.granted = granted;
    QList<AuthorizationStatus> ends;
    elevate("./p", authorization, [&ends](AuthorizationStatus status) { ends.append(status); });
    QCOMPARE(
        ends, QList<AuthorizationStatus> { created == AuthorizationStatus::Success ? granted : created });
    QTEST(authorization.calls, "calls");
    QTEST(m_log, "log");
}

void StartupTest::whatTheUserIsTold()
{
    using StartupRules::problemOf;
    QCOMPARE(problemOf(AuthorizationStatus::Success), std::nullopt);
    QCOMPARE(problemOf(AuthorizationStatus::Canceled), std::nullopt); // they have closed the question
    QCOMPARE(problemOf(AuthorizationStatus::Denied), std::optional(StartProblem::Refused));
    QCOMPARE(problemOf(AuthorizationStatus::InteractionNotAllowed), std::optional(StartProblem::NobodyAsks));
    QCOMPARE(problemOf(AuthorizationStatus::Internal), std::optional(StartProblem::NoAuthority));
    QSet<QByteArray> keys;
    for (const StartProblem problem : { StartProblem::Refused, StartProblem::NobodyAsks,
             StartProblem::NoAuthority, StartProblem::NoAnswer }) {
        keys.insert(StartupRules::textsOf(problem).title);
        keys.insert(StartupRules::textsOf(problem).text);
    }
    QCOMPARE(keys.size(), 8);
}

// A number that no user has, and a folder of the test's own.
InstanceOwner StartupTest::testOwner() const
{
    return { geteuid(), static_cast<uid_t>(4000000000U) - static_cast<uid_t>(getpid()), m_folder.path() };
}

void StartupTest::requestReachesTheFirstInstance()
{
    const InstanceOwner owner = testOwner();
    QCOMPARE(raiseInstance(owner, "nobody is there"), InstanceAnswer::None);
    SingleInstance first(owner);
    QCOMPARE(first.listen(), SingleInstance::Listening::Started);
    SingleInstance second(owner);
    QCOMPARE(second.listen(), SingleInstance::Listening::Taken);

    const QSignalSpy requests(&first, &SingleInstance::activationRequested);
    for (const QByteArray &token : { QByteArray("token-1"), QByteArray() }) {
        auto raised = std::async(std::launch::async, [&] { return raiseInstance(owner, token); });
        QTRY_VERIFY(raised.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
        QCOMPARE(raised.get(), InstanceAnswer::Raised);
        QCOMPARE(requests.last().at(0).toByteArray(), token);
    }
    QCOMPARE(requests.size(), 2);
}

// This thread, which would have to answer, waits.
void StartupTest::hungInstanceGetsNoOtherBesideIt()
{
    SingleInstance hung(testOwner());
    QCOMPARE(hung.listen(), SingleInstance::Listening::Started);
    SingleInstance second(testOwner());
    QCOMPARE(second.listenOrRaise("token"), InstanceAnswer::Silent);
}

void StartupTest::freedNameCanBeTakenAgain()
{
    const QString socket = m_folder.filePath(QString::number(testOwner().user));
    {
        SingleInstance first(testOwner());
        QCOMPARE(first.listen(), SingleInstance::Listening::Started);
        QVERIFY(QFile::exists(socket));
    }
    QVERIFY(!QFile::exists(socket));
    {
        const FileDescriptor left = listenAt(socket); // by a process that was killed
    }
    SingleInstance second(testOwner());
    QCOMPARE(second.listenOrRaise({}), InstanceAnswer::None);
    QCOMPARE(SingleInstance(testOwner()).listen(), SingleInstance::Listening::Taken);
}

// The other has its lock before it has its socket; this one waits for one or the other.
void StartupTest::startInTheSameInstantIsWaitedFor()
{
    const QByteArray lock
        = QFile::encodeName(m_folder.filePath(QString::number(testOwner().user) + u".lock"_s));
    FileDescriptor other(open(lock.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    QCOMPARE(flock(other.number(), LOCK_EX), 0);
    SingleInstance instance(testOwner());
    QCOMPARE(instance.listen(), SingleInstance::Listening::Taken);
    const auto released = std::async(std::launch::async, [&other] { other = {}; });
    QCOMPARE(instance.listenOrRaise({}), InstanceAnswer::None);
}

void StartupTest::folderThatOthersCanWriteToIsNotUsed()
{
    QVERIFY(QDir(m_folder.path()).mkdir(u"open"_s));
    InstanceOwner owner = testOwner();
    owner.folder = m_folder.filePath(u"open"_s);
    QCOMPARE(chmod(QFile::encodeName(owner.folder).constData(), 0777), 0);
    SingleInstance instance(owner);
    QCOMPARE(instance.listenOrRaise({}), InstanceAnswer::None);
    QCOMPARE(m_log.size(), 1);
    QVERIFY(m_log.first().startsWith(u"Another start will not find this window: "_s));
}

void StartupTest::runtimeFolderIsTheUsersOwn()
{
    if (geteuid() != 0)
        QSKIP("Only root can give folders away.");
    constexpr uid_t user = 61999; // nobody's number
    const QByteArray folder = QFile::encodeName(m_folder.path());
    const QString fallback = u"/tmp/zorvex-disk-manager-61999"_s;
    qunsetenv("XDG_RUNTIME_DIR");
    QCOMPARE(programsRuntimeFolder(user), fallback);
    qputenv("XDG_RUNTIME_DIR", folder);
    QCOMPARE(programsRuntimeFolder(user), fallback); // root's
    QCOMPARE(chown(folder.constData(), user, user), 0);
    QCOMPARE(programsRuntimeFolder(user), m_folder.path() + u"/zorvex-disk-manager"_s);
    QCOMPARE(chmod(folder.constData(), 0770), 0);
    QCOMPARE(programsRuntimeFolder(user), fallback);
    QCOMPARE(programsRuntimeFolder(0), u"/run/zorvex-disk-manager"_s);
    qunsetenv("XDG_RUNTIME_DIR");
    QCOMPARE(chown(folder.constData(), 0, 0), 0);
    QCOMPARE(chmod(folder.constData(), 0700), 0);
}

void StartupTest::strangerHoldingTheNameIsNotObeyed()
{
    // The process at the other end has other rights than the name says, and answers as an instance would.
    InstanceOwner owner = testOwner();
    owner.rights = geteuid() + 1;
    const QByteArray path = QFile::encodeName(m_folder.path()) + '/' + QByteArray::number(owner.user);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int listener = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    QCOMPARE(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    QCOMPARE(::listen(listener, 1), 0);
    auto heard = std::async(std::launch::async, [listener] {
        const int client = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        QByteArray token(64, '\0');
        ::send(client, "!", 1, MSG_NOSIGNAL);
        token.resize(std::max<ssize_t>(0, ::recv(client, token.data(), 64, 0)));
        ::close(client);
        return token;
    });
    QCOMPARE(raiseInstance(owner, "token"), InstanceAnswer::None);
    QCOMPARE(heard.get(), QByteArray());
    ::close(listener);
    QFile::remove(QFile::decodeName(path));
}

void StartupTest::waylandSocketIsTheUsersOwn()
{
    const QTemporaryDir folder;
    QCOMPARE(waylandSocket(folder.path(), getuid()), QString());
    QFile lock(folder.filePath(u"wayland-0"_s));
    QVERIFY(lock.open(QIODevice::WriteOnly)); // a file, no socket
    const QString path = folder.filePath(u"wayland-1"_s);
    const FileDescriptor socket = listenAt(path);
    QCOMPARE(waylandSocket(folder.path(), getuid()), path);
    QCOMPARE(waylandSocket(folder.path(), getuid() + 1), QString());
    QCOMPARE(waylandSocket(u"/nonexistent"_s, getuid()), QString());
}

// The address comes from the user, and an address can name a program to be run.
void StartupTest::accessibilityBusIsTheUsersOwn()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"run"_s));
    const QString runtimeFolder = folder.filePath(u"run"_s);
    const QString path = runtimeFolder + u"/bus_0"_s;
    const FileDescriptor socket = listenAt(path);
    const FileDescriptor other = listenAt(folder.filePath(u"other"_s));
    const QByteArray address = "unix:path="_ba + QFile::encodeName(path);
    const auto found = [&](const QByteArray &given, uid_t user) {
        return accessibilitySocket(given, runtimeFolder, user);
    };
    QCOMPARE(found(address, getuid()), path);
    QCOMPARE(found(address + ",guid=0123456789abcdef", getuid()), path);
    QCOMPARE(found(address, getuid() + 1), QString());
    QCOMPARE(found({}, getuid()), QString());
    QCOMPARE(found("unixexec:path=/bin/sh", getuid()), QString());
    QCOMPARE(found("unix:abstract=bus", getuid()), QString());
    QCOMPARE(found(address + ";unixexec:path=/bin/sh", getuid()), QString());
    QCOMPARE(found("unix:path="_ba + QFile::encodeName(folder.filePath(u"other"_s)), getuid()), QString());
    QCOMPARE(found("unix:path="_ba + QFile::encodeName(runtimeFolder + u"/../other"_s), getuid()), QString());
    QCOMPARE(found("unix:path="_ba + QFile::encodeName(runtimeFolder + u"/none"_s), getuid()), QString());
    // A socket can have a name that is read as something else in an address.
    for (const QString &name : { u"/bus;unixexec:path=sh"_s, u"/bus%2f..%2fother"_s }) {
        const FileDescriptor misleading = listenAt(runtimeFolder + name);
        QCOMPARE(found("unix:path="_ba + QFile::encodeName(runtimeFolder + name), getuid()), QString());
    }
}

void StartupTest::logIsUtf8InEveryLocale()
{
    int terminal = -1;
    int childTerminal = -1;
    QCOMPARE(openpty(&terminal, &childTerminal, nullptr, nullptr, nullptr), 0);
    const int savedError = dup(STDERR_FILENO);
    const QByteArray savedLocale = setlocale(LC_ALL, nullptr);
    setlocale(LC_ALL, "C");
    dup2(childTerminal, STDERR_FILENO);
    m_redirection.reset();
    systemLog(u"Größe 大\n"_s);
    redirectLog();
    dup2(savedError, STDERR_FILENO);
    ::close(savedError);
    setlocale(LC_ALL, savedLocale.constData());
    QByteArray output(64, '\0');
    const ssize_t length = ::read(terminal, output.data(), 64);
    QCOMPARE(output.left(length), QByteArray("Gr\303\266\303\237e \345\244\247\\n\r\n"));
    ::close(terminal);
    ::close(childTerminal);
}

void StartupTest::errorTextsAreEnglish()
{
    QCOMPARE(errnoText(ENOENT), u"No such file or directory"_s);
    QCOMPARE(errnoText(0), u"Success"_s);
    QCOMPARE(errnoText(99999), u"Unknown error 99999"_s);
}

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
