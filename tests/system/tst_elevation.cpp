// SPDX-License-Identifier: MIT
//
// The start of the installed program by users of all sorts, against polkit itself: on the machine's own bus
// in tests/support/with-installed-policy, or in tests/support/with-private-services, where users can be made;
// always in tests/support/on-virtual-display.
#include "platform/SingleInstance.h"
#include "tests/support/PolkitAgent.h"
#include "tests/support/UserProcess.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <csignal>
#include <memory>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString program = u"/usr/bin/zorvex-disk-manager"_s;
const QString windowTitle = u"^Zorvex Disk Manager$"_s; // and that of the message
constexpr int startLimit = 30000; // milliseconds

const TestUser plainUser { "nobody", 65534, 65534 }; // whom every machine has
const TestUser administrator { "zvadmin", 61002, 61002 };
const TestUser manyGroups { "zvmany", 61003, 61003 };
const TestUser tooManyGroups { "zvtoomany", 61004, 61004 };
const TestUser namelessUser { "", 61005, 61005 };

constexpr auto groupsFailed
    = "Error while getting the group list for the current user: %1 (%2) Too bad but let's try to "
      "elevate privileges by default.";

// Groups that stand for nothing, and the administrators' as the last of them.
std::vector<gid_t> groupsEndingIn80(std::size_t count)
{
    std::vector<gid_t> groups(count - 1);
    std::iota(groups.begin(), groups.end(), gid_t { 62000 });
    groups.push_back(80);
    return groups;
}

// The processes of an executable that belong to the user; those on other displays are none of ours.
QList<qint64> processesOf(uid_t user, const QByteArray &display, const QByteArray &executable)
{
    QList<qint64> processes;
    for (const QString &name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        const QString folder = u"/proc/"_s + name;
        QFile command(folder + u"/cmdline"_s);
        QFile environment(folder + u"/environ"_s);
        struct stat status = {};
        if (!command.open(QIODevice::ReadOnly) || !environment.open(QIODevice::ReadOnly)
            || stat(QFile::encodeName(folder).constData(), &status) != 0)
            continue;
        const bool isOurs = environment.readAll().split('\0').contains("DISPLAY=" + display);
        if (isOurs && status.st_uid == user && command.readAll().split('\0').value(0) == executable)
            processes.append(name.toLongLong());
    }
    return processes;
}

QList<qint64> windowsOf(uid_t user, const QByteArray &display)
{
    return processesOf(user, display, QFile::encodeName(program));
}

QString runtimeFolderOf(const TestUser &user)
{
    return u"/run/user/%1"_s.arg(user.user);
}

// As logind makes them.
void makeRuntimeFolders()
{
    for (const TestUser &user : { plainUser, administrator, manyGroups, tooManyGroups, namelessUser }) {
        const QByteArray folder = QFile::encodeName(runtimeFolderOf(user));
        mkdir(folder.constData(), 0700);
        if (chown(folder.constData(), user.user, user.group) != 0)
            qFatal("no runtime folder for %s", user.name.constData());
    }
}

QList<QByteArray> commandLine(qint64 process)
{
    QFile file(u"/proc/%1/cmdline"_s.arg(process));
    return file.open(QIODevice::ReadOnly) ? file.readAll().chopped(1).split('\0') : QList<QByteArray>();
}

} // namespace

class ElevationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void grantedUserGetsTheWindowAsRootAfterOneQuestion();
    void elevatedWindowLooksAsTheUsersDesktop();
    void secondStartRaisesTheElevatedWindowWithoutAQuestion();
    void bundleOfSomebodyElseIsNotReadAsRoot();
    void refusal_data();
    void refusal();
    void withoutAnAgentNobodyIsAsked();
    void withoutAnAuthorityTheSessionCannotBeMade_data();
    void withoutAnAuthorityTheSessionCannotBeMade();
    void administratorGetsTheWindowAtOnce_data();
    void administratorGetsTheWindowAtOnce();
    void secondStartRaisesTheFirstWindow();
    void startsInTheSameInstantMakeOneWindow();
    void instanceThatWasKilledIsNotInTheWay();
    void strangerCannotTakeTheName();
    void strangerWhoHoldsTheFolderIsNotInTheWay();
    void instanceThatHangsGetsNoOtherBesideIt();
    void moreGroupsThanTheArrayHoldsLeadToElevation();
    void loginWithoutANameLeadsToElevation();
    void elevatedWordAmongOtherArgumentsIsNotLookedAt();
    void otherArgumentsAreNotWhatTheActionIsFor();
    void elevatedWordAloneStartsTheInterface();

private:
    void startHeldAs(UserProcess &process, const QStringList &arguments);
    void startAs(UserProcess &process, const QStringList &arguments = {}, PolkitAgent *agent = nullptr);
    void addEnvironment(UserProcess &process, const QString &name, const QString &value);
    static QString visibleWindow();
    qint64 waitForWindow(uid_t user);
    static int lightness(const QString &window);
    static void waitForSilentEnd(UserProcess &process);
    static void closeMessage(UserProcess &process);

    const QByteArray m_display = qgetenv("DISPLAY");
    QDBusConnection m_bus { QString() };
};

void ElevationTest::initTestCase()
{
    // Elsewhere they would be entered in the machine's own lists.
    if (qEnvironmentVariableIsSet("ZORVEX_PRIVATE_SERVICES")) {
        addUser(administrator, { 80 });
        addUser(manyGroups, groupsEndingIn80(127));
        addUser(tooManyGroups, groupsEndingIn80(128));
    }

    makeRuntimeFolders();
    QVERIFY(!m_display.isEmpty());
    m_bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, u"agent"_s);
    QVERIFY(m_bus.isConnected());
}

void ElevationTest::cleanup()
{
    for (const uid_t user : { uid_t { 0 }, plainUser.user, administrator.user, manyGroups.user }) {
        for (const qint64 process : windowsOf(user, m_display))
            ::kill(static_cast<pid_t>(process), SIGTERM);
        QTRY_VERIFY(windowsOf(user, m_display).isEmpty());
    }
    makeRuntimeFolders();
}

void ElevationTest::addEnvironment(UserProcess &process, const QString &name, const QString &value)
{
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(name, value);
    process.setProcessEnvironment(environment);
}

void ElevationTest::startHeldAs(UserProcess &process, const QStringList &arguments)
{
    addEnvironment(process, u"PATH"_s, u"/usr/bin:/bin"_s);
    addEnvironment(process, u"DISPLAY"_s, QString::fromLatin1(m_display));
    addEnvironment(process, u"XAUTHORITY"_s, qEnvironmentVariable("XAUTHORITY"));
    addEnvironment(process, u"XDG_RUNTIME_DIR"_s, runtimeFolderOf(process.user()));
    // Without an address, the bus library starts a bus on the display, and leaves it behind.
    addEnvironment(process, u"DBUS_SESSION_BUS_ADDRESS"_s,
        u"unix:path="_s + runtimeFolderOf(process.user()) + u"/bus"_s);
    process.startHeld(program, arguments);
}

void ElevationTest::startAs(UserProcess &process, const QStringList &arguments, PolkitAgent *agent)
{
    startHeldAs(process, arguments);
    if (agent)
        QVERIFY(agent->registerFor(process.processId()));
    process.release();
}

// The window that is on the display, as xdotool calls it, once there is one; empty when none comes.
QString ElevationTest::visibleWindow()
{
    QProcess search;
    search.start(u"xdotool"_s, { u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, windowTitle });
    const bool isFound = QTest::qWaitFor([&] { return search.state() == QProcess::NotRunning; }, startLimit);
    search.kill();
    search.waitForFinished();
    return isFound ? QString::fromLatin1(search.readAllStandardOutput()).section(u'\n', 0, 0) : QString();
}

qint64 ElevationTest::waitForWindow(uid_t user)
{
    const bool isFound = !visibleWindow().isEmpty();
    const QList<qint64> processes = windowsOf(user, m_display);
    return isFound && processes.size() == 1 ? processes.first() : 0;
}

// Of all of the window, in percent; 100 when there is no picture of it.
int ElevationTest::lightness(const QString &window)
{
    QProcess picture;
    picture.start(u"import"_s,
        { u"-window"_s, window, u"-colorspace"_s, u"Gray"_s, u"-format"_s, u"%[fx:round(100*mean)]"_s,
            u"info:"_s });
    picture.waitForFinished();
    bool isNumber = false;
    const int mean = picture.readAllStandardOutput().trimmed().toInt(&isNumber);
    return isNumber ? mean : 100;
}

void ElevationTest::waitForSilentEnd(UserProcess &process)
{
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, startLimit);
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

// The message is on the display; the process ends when it is closed. A key that comes before the window has
// been drawn is lost.
void ElevationTest::closeMessage(UserProcess &process)
{
    bool isSeen = false;
    const bool hasEnded = QTest::qWaitFor(
        [&] {
            QProcess search;
            search.start(u"xdotool"_s, { u"search"_s, u"--onlyvisible"_s, u"--name"_s, windowTitle });
            search.waitForFinished();
            const QString message = QString::fromLatin1(search.readAllStandardOutput()).section(u'\n', 0, 0);
            isSeen = isSeen || !message.isEmpty();
            if (!message.isEmpty())
                QProcess::execute(u"xdotool"_s, { u"key"_s, u"--window"_s, message, u"Return"_s });
            return process.state() == QProcess::NotRunning;
        },
        startLimit);
    QVERIFY2(isSeen, process.terminalOutput().constData());
    QVERIFY(hasEnded);
    waitForSilentEnd(process);
}

void ElevationTest::grantedUserGetsTheWindowAsRootAfterOneQuestion()
{
    PolkitAgent agent(m_bus, PolkitAgent::Answer::Grant);
    UserProcess process(plainUser);
    startAs(process, {}, &agent);
    waitForSilentEnd(process);
    const qint64 elevated = waitForWindow(0);
    QVERIFY2(elevated != 0, process.terminalOutput().constData());
    QCOMPARE(commandLine(elevated), (QList<QByteArray> { QFile::encodeName(program), "-elevated" }));
    QCOMPARE(agent.askedActions, QStringList { u"org.zorvex.DiskManager.run"_s });
    QVERIFY(!process.terminalOutput().contains("Authorization"));
    // Qt tells when it makes a folder of its own in the temporary one.
    QVERIFY2(!process.terminalOutput().contains("QStandardPaths"), process.terminalOutput().constData());
    // No bus was started for root, which would stay.
    QCOMPARE(processesOf(0, m_display, "/usr/bin/dbus-daemon"), QList<qint64>());
    // The user's process that tells how the desktop looks ends with the window.
    QCOMPARE(windowsOf(plainUser.user, m_display).size(), 1);
    ::kill(static_cast<pid_t>(elevated), SIGTERM);
    QTRY_VERIFY(windowsOf(plainUser.user, m_display).isEmpty());
}

void ElevationTest::elevatedWindowLooksAsTheUsersDesktop()
{
    // A dark desktop of one sort, which Qt reads by itself.
    QTemporaryDir config;
    QVERIFY(config.isValid());
    QVERIFY(QFile::setPermissions(
        config.path(), QFile::permissions(config.path()) | QFile::ReadOther | QFile::ExeOther));
    QFile settings(config.filePath(u"kdeglobals"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    for (const char *part : { "Window", "View", "Button", "Selection", "Tooltip" })
        settings.write(
            QByteArray("[Colors:") + part + "]\nBackgroundNormal=20,24,28\nForegroundNormal=240,240,240\n\n");
    settings.close();
    QVERIFY(settings.setPermissions(settings.permissions() | QFile::ReadOther));

    PolkitAgent agent(m_bus, PolkitAgent::Answer::Grant);
    UserProcess process(plainUser);
    addEnvironment(process, u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    addEnvironment(process, u"KDE_SESSION_VERSION"_s, u"5"_s);
    addEnvironment(process, u"XDG_CONFIG_HOME"_s, config.path());
    startAs(process, {}, &agent);
    waitForSilentEnd(process);
    QVERIFY(waitForWindow(0) != 0);
    QTRY_VERIFY2_WITH_TIMEOUT(lightness(visibleWindow()) < 30, "the window is light", startLimit);

    // The process that tells of changes may end: the last look stays.
    const QList<qint64> tellers = windowsOf(plainUser.user, m_display);
    QCOMPARE(tellers.size(), 1);
    QCOMPARE(commandLine(tellers.first()), (QList<QByteArray> { QFile::encodeName(program), "-look" }));
    ::kill(static_cast<pid_t>(tellers.first()), SIGKILL);
    QTRY_VERIFY(windowsOf(plainUser.user, m_display).isEmpty());
    QVERIFY(waitForWindow(0) != 0);
    QVERIFY(lightness(visibleWindow()) < 30);
}

void ElevationTest::secondStartRaisesTheElevatedWindowWithoutAQuestion()
{
    PolkitAgent agent(m_bus, PolkitAgent::Answer::Grant);
    UserProcess first(plainUser);
    startAs(first, {}, &agent);
    const qint64 elevated = waitForWindow(0);
    QVERIFY(elevated != 0);
    waitForSilentEnd(first);

    UserProcess second(plainUser);
    startAs(second, {}, &agent);
    waitForSilentEnd(second);
    QCOMPARE(agent.askedActions.size(), 1);
    QCOMPARE(windowsOf(0, m_display), QList<qint64> { elevated });
}

void ElevationTest::bundleOfSomebodyElseIsNotReadAsRoot()
{
    const QString path = u"/Library/Filesystems/zvother.fs"_s;
    QVERIFY(QDir().mkpath(path + u"/Contents"_s));
    QFile information(path + u"/Contents/Info.plist"_s);
    QVERIFY(information.open(QIODevice::WriteOnly));
    information.close();
    QCOMPARE(chown(QFile::encodeName(path).constData(), plainUser.user, plainUser.group), 0);
    PolkitAgent agent(m_bus, PolkitAgent::Answer::Grant);
    UserProcess process(plainUser);
    startAs(process, {}, &agent);
    const bool hasWindow = waitForWindow(0) != 0;
    QVERIFY(QDir(path).removeRecursively());
    QVERIFY2(hasWindow, process.terminalOutput().constData());
    const QByteArray line = "The bundle " + QFile::encodeName(path)
        + " is not read with administrator rights: " + QFile::encodeName(path)
        + " does not belong to the administrator\r\n";
    QCOMPARE(process.terminalOutput().count(line), 1);
}

void ElevationTest::refusal_data()
{
    QTest::addColumn<PolkitAgent::Answer>("answer");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<bool>("isTold");

    QTest::newRow("the dialog is closed") << PolkitAgent::Answer::Dismiss << QByteArray("-60006") << false;
    QTest::newRow("the password is wrong") << PolkitAgent::Answer::Fail << QByteArray("-60005") << true;
}

void ElevationTest::refusal()
{
    QFETCH(PolkitAgent::Answer, answer);
    QFETCH(QByteArray, status);
    QFETCH(bool, isTold);
    PolkitAgent agent(m_bus, answer);
    UserProcess process(plainUser);
    startAs(process, {}, &agent);
    if (isTold)
        closeMessage(process);
    waitForSilentEnd(process);
    QCOMPARE(process.terminalOutput(),
        QByteArray("AuthorizationCopyRights failed with status: " + status + "\r\n"));
    QCOMPARE(agent.askedActions.size(), 1);
    QVERIFY(windowsOf(0, m_display).isEmpty());
}

void ElevationTest::withoutAnAgentNobodyIsAsked()
{
    UserProcess process(plainUser);
    startAs(process);
    closeMessage(process);
    QCOMPARE(process.terminalOutput(), QByteArray("AuthorizationCopyRights failed with status: -60007\r\n"));
    QVERIFY(windowsOf(0, m_display).isEmpty());
}

void ElevationTest::withoutAnAuthorityTheSessionCannotBeMade_data()
{
    QTest::addColumn<bool>("hasBus");

    QTest::newRow("no bus") << false;
    QTest::newRow("a bus that knows of none") << true;
}

void ElevationTest::withoutAnAuthorityTheSessionCannotBeMade()
{
    QFETCH(bool, hasBus);
    QProcess bus;
    QString address = u"unix:path=/nonexistent"_s;
    if (hasBus) {
        bus.setChildProcessModifier([] {
            if (setresgid(plainUser.group, plainUser.group, plainUser.group) != 0
                || setresuid(plainUser.user, plainUser.user, plainUser.user) != 0)
                _exit(EXIT_FAILURE);
        });
        bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--print-address"_s, u"--nofork"_s });
        QTRY_VERIFY(bus.canReadLine());
        address = QString::fromLatin1(bus.readLine().trimmed());
    }
    UserProcess process(plainUser);
    addEnvironment(process, u"DBUS_SYSTEM_BUS_ADDRESS"_s, address);
    startAs(process);
    closeMessage(process);
    QCOMPARE(
        process.terminalOutput(), QByteArray("Error while creating AuthorizationRef. Status: -60008\r\n"));
    QVERIFY(windowsOf(0, m_display).isEmpty());
    bus.terminate();
    bus.waitForFinished();
}

void ElevationTest::administratorGetsTheWindowAtOnce_data()
{
    QTest::addColumn<TestUser>("user");

    QTest::newRow("member of the group") << administrator;
    QTest::newRow("the group is the last of 128") << manyGroups;
}

void ElevationTest::administratorGetsTheWindowAtOnce()
{
    QFETCH(TestUser, user);
    UserProcess process(user);
    startAs(process);
    QCOMPARE(waitForWindow(user.user), process.processId());
    QCOMPARE(process.terminalOutput().contains("groups"), false);
}

void ElevationTest::secondStartRaisesTheFirstWindow()
{
    UserProcess first(administrator);
    startAs(first);
    QCOMPARE(waitForWindow(administrator.user), first.processId());

    QProcess windowManager;
    windowManager.start(u"openbox"_s, { u"--startup"_s, u"echo started"_s });
    QVERIFY(windowManager.waitForReadyRead(startLimit));
    const QString window = visibleWindow();
    // Ends when the window has gone from the display.
    QCOMPARE(QProcess::execute(u"xdotool"_s, { u"windowminimize"_s, u"--sync"_s, window }), 0);

    UserProcess second(administrator);
    startAs(second);
    waitForSilentEnd(second);
    QCOMPARE(visibleWindow(), window);
    QCOMPARE(windowsOf(administrator.user, m_display), QList<qint64> { first.processId() });
    windowManager.terminate();
    windowManager.waitForFinished();
}

void ElevationTest::startsInTheSameInstantMakeOneWindow()
{
    std::array<std::unique_ptr<UserProcess>, 3> processes;
    for (auto &process : processes) {
        process = std::make_unique<UserProcess>(administrator);
        startHeldAs(*process, {});
    }
    for (const auto &process : processes)
        process->release();
    const auto isRunning = [](const auto &process) { return process->state() == QProcess::Running; };
    QTRY_COMPARE_WITH_TIMEOUT(std::count_if(processes.begin(), processes.end(), isRunning), 1, startLimit);
    const auto winner = std::find_if(processes.begin(), processes.end(), isRunning);
    QCOMPARE(waitForWindow(administrator.user), (*winner)->processId());
    for (const auto &process : processes) {
        if (process != *winner)
            waitForSilentEnd(*process);
    }
}

void ElevationTest::instanceThatWasKilledIsNotInTheWay()
{
    UserProcess first(administrator);
    startAs(first);
    QCOMPARE(waitForWindow(administrator.user), first.processId());
    first.kill();
    QVERIFY(first.waitForFinished());

    UserProcess second(administrator);
    startAs(second);
    QCOMPARE(waitForWindow(administrator.user), second.processId());
}

void ElevationTest::strangerCannotTakeTheName()
{
    const QString userFolder = runtimeFolderOf(administrator) + u"/zorvex-disk-manager"_s;
    SingleInstance ofUser({ administrator.user, administrator.user, userFolder });
    SingleInstance ofRoot({ 0, administrator.user, u"/run/zorvex-disk-manager"_s });
    QCOMPARE(seteuid(plainUser.user), 0);
    const auto user = ofUser.listen();
    const auto root = ofRoot.listen();
    QCOMPARE(seteuid(0), 0);
    QCOMPARE(user, SingleInstance::Listening::Impossible);
    QCOMPARE(root, SingleInstance::Listening::Impossible);
}

// A user without a runtime folder: somebody else can have made the one that is taken instead.
void ElevationTest::strangerWhoHoldsTheFolderIsNotInTheWay()
{
    QVERIFY(QDir(runtimeFolderOf(administrator)).removeRecursively());
    const QString folder = u"/tmp/zorvex-disk-manager-%1"_s.arg(administrator.user);
    SingleInstance stranger({ administrator.user, administrator.user, folder });
    const QSignalSpy requests(&stranger, &SingleInstance::activationRequested);
    QCOMPARE(seteuid(plainUser.user), 0);
    const auto listening = stranger.listen();
    QCOMPARE(seteuid(0), 0);
    QCOMPARE(listening, SingleInstance::Listening::Started);

    UserProcess process(administrator);
    addEnvironment(process, u"XDG_ACTIVATION_TOKEN"_s, u"secret"_s);
    startAs(process);
    QCOMPARE(waitForWindow(administrator.user), process.processId());
    QCOMPARE(requests.size(), 0);
    QVERIFY(process.terminalOutput().contains("Another start will not find this window"));
    QVERIFY(QDir(folder).removeRecursively());
}

void ElevationTest::instanceThatHangsGetsNoOtherBesideIt()
{
    UserProcess first(administrator);
    startAs(first);
    QCOMPARE(waitForWindow(administrator.user), first.processId());
    QProcess::execute(u"xdotool"_s, { u"windowunmap"_s, u"--sync"_s, visibleWindow() });
    ::kill(static_cast<pid_t>(first.processId()), SIGSTOP);

    UserProcess second(administrator);
    startAs(second);
    closeMessage(second);
    ::kill(static_cast<pid_t>(first.processId()), SIGCONT);
    QCOMPARE(windowsOf(administrator.user, m_display), QList<qint64> { first.processId() });
}

void ElevationTest::moreGroupsThanTheArrayHoldsLeadToElevation()
{
    UserProcess process(tooManyGroups);
    startAs(process);
    closeMessage(process);
    const QString line = QString::fromLatin1(groupsFailed).arg(u"Numerical result out of range"_s, u"34"_s);
    QCOMPARE(process.terminalOutput(),
        QByteArray(line.toUtf8() + "\r\nAuthorizationCopyRights failed with status: -60007\r\n"));
}

void ElevationTest::loginWithoutANameLeadsToElevation()
{
    UserProcess process(namelessUser);
    startAs(process);
    closeMessage(process);
    const QString line = QString::fromLatin1(groupsFailed).arg(u"No such file or directory"_s, u"2"_s);
    // The bus refuses a user without a name as well.
    QCOMPARE(process.terminalOutput(),
        QByteArray(line.toUtf8() + "\r\nError while creating AuthorizationRef. Status: -60008\r\n"));
}

void ElevationTest::elevatedWordAmongOtherArgumentsIsNotLookedAt()
{
    UserProcess process(plainUser);
    startAs(process, { u"-elevated"_s, u"-elevated"_s });
    closeMessage(process);
    QCOMPARE(process.terminalOutput(), QByteArray("AuthorizationCopyRights failed with status: -60007\r\n"));
}

void ElevationTest::otherArgumentsAreNotWhatTheActionIsFor()
{
    PolkitAgent agent(m_bus, PolkitAgent::Answer::Dismiss);
    UserProcess process(plainUser);
    // pkexec asks for the process that has started it.
    process.startHeld(
        u"/bin/sh"_s, { u"-c"_s, u"pkexec --disable-internal-agent \"$0\" -reset; exit $?"_s, program });
    QVERIFY(agent.registerFor(process.processId()));
    process.release();
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, startLimit);
    QCOMPARE(agent.askedActions, QStringList { u"org.freedesktop.policykit.exec"_s });
    QCOMPARE(process.exitCode(), 126); // the question was closed
}

void ElevationTest::elevatedWordAloneStartsTheInterface()
{
    UserProcess process(plainUser);
    startAs(process, { u"-elevated"_s });
    QCOMPARE(waitForWindow(plainUser.user), process.processId());
}

QTEST_GUILESS_MAIN(ElevationTest)
#include "tst_elevation.moc"
