// SPDX-License-Identifier: MIT
//
// The command-line tool on the disks that the windows show: alone, beside an operation of a window, and on
// the volume that a window works on.
#include "tests/soak/Bystanders.h"
#include "tests/soak/Operation.h"
#include "tests/soak/Steps.h"

#include "platform/FileDescriptor.h"
#include "ui/AlertSheet.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What diskutil(8) says of its exit status.
constexpr int success = 0;
constexpr int inUse = 6;
constexpr int mediumChanged = 17;
constexpr int mountRefused = 20;

// A run of diskutil, as from a terminal.
class CommandLineRun
{
public:
    CommandLineRun(SoakWorld &world, const QStringList &arguments)
        : m_world(world)
    {
        world.note(u"  diskutil "_s + arguments.join(u' '));
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(u"/usr/sbin/diskutil"_s, arguments);
        SoakWorld::require(m_process.waitForStarted(), u"diskutil does not start"_s);
    }
    ~CommandLineRun()
    {
        m_process.kill();
        m_process.waitForFinished(-1);
    }
    CommandLineRun(const CommandLineRun &) = delete;
    CommandLineRun &operator=(const CommandLineRun &) = delete;

    // Waits while the windows live on; its exit status.
    int waitForEnd()
    {
        m_world.waitFor(
            [this] { return m_process.state() == QProcess::NotRunning; }, u"diskutil does not end"_s);
        m_output += m_process.readAll();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    QString output() const { return QString::fromUtf8(m_output); }

private:
    SoakWorld &m_world;
    QProcess m_process;
    QByteArray m_output;
};

// What is asked of diskutil.
struct Request
{
    QStringList arguments;
    QString node;
    QString label; // of the new volume; null for a check or a repair
    QStringList mountPoints; // before

    bool erases() const { return !label.isNull(); }
};

Request eraseRequest(SoakWorld &world, const SoakVolume &volume)
{
    const QString label = u"SOAK%1"_s.arg(++world.labelsGiven);
    return { { u"eraseVolume"_s, chooseFormat(world, volume), label, volume.node }, volume.node, label, {} };
}

Request anyRequest(SoakWorld &world, const SoakVolume &volume)
{
    if (!canBeChecked(volume) || world.onceIn(3))
        return eraseRequest(world, volume);
    const QString verb = world.onceIn(2) ? u"verifyVolume"_s : u"repairVolume"_s;
    return { { verb, volume.node }, volume.node, {}, mountPointsOf(volume.node) };
}

// Fails unless all that was asked for is done.
void requireDone(const Request &request, int code, const QString &output)
{
    const QString told = u"%1 ends with %2: %3"_s.arg(request.arguments.join(u' ')).arg(code).arg(output);
    if (!request.erases()) {
        SoakWorld::require(code == success, told);
        SoakWorld::require(mountPointsOf(request.node) == request.mountPoints,
            u"%1 was mounted at '%2', and is at '%3'; %4"_s.arg(request.node, request.mountPoints.join(u' '),
                mountPointsOf(request.node).join(u' '), output));
        return;
    }
    SoakWorld::require(
        code == success || (code == mountRefused && !isMountableEverywhere(request.node)), told);
    const QString label = probed(request.node, u"LABEL"_s);
    SoakWorld::require(label == request.label, u"%1 is named '%2'"_s.arg(request.node, label));
}

// Whether a run of diskutil works on the device.
bool isLocked(const QString &node)
{
    const FileDescriptor device(
        ::open(QFile::encodeName(node).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return device.isOpen() && ::flock(device.number(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// A diskutil of a window that works on the medium, held where it is as long as this lives: its tool ends, and
// the device stays locked.
class HeldTool
{
public:
    explicit HeldTool(const QString &mediumName)
    {
        for (const QString &number : QDir(u"/proc"_s).entryList({ u"[0-9]*"_s })) {
            QFile arguments(u"/proc/%1/cmdline"_s.arg(number));
            if (!arguments.open(QIODevice::ReadOnly))
                continue; // it has just ended
            const QByteArrayList words = arguments.readAll().split('\0');
            if (words.constFirst() == "/usr/sbin/diskutil" && words.contains("/dev/" + mediumName.toUtf8()))
                m_processes.append(number.toInt());
        }
        for (const pid_t process : std::as_const(m_processes))
            kill(process, SIGSTOP);
    }
    ~HeldTool()
    {
        for (const pid_t process : std::as_const(m_processes))
            kill(process, SIGCONT);
    }
    HeldTool(const HeldTool &) = delete;
    HeldTool &operator=(const HeldTool &) = delete;

    // Whether one stands still, or none is left. A process that has just been forked has the words of its
    // parent, which cannot stop before it.
    bool isSettled() const
    {
        const auto stateOf = [](pid_t process) {
            QFile stat(u"/proc/%1/stat"_s.arg(process));
            const QByteArray text = stat.open(QIODevice::ReadOnly) ? stat.readAll() : QByteArray();
            return text.isEmpty() ? 'X' : text.at(text.lastIndexOf(')') + 2);
        };
        const auto hasEnded = [&](pid_t process) { return "XZ"_L1.contains(QLatin1Char(stateOf(process))); };
        return std::any_of(m_processes.begin(), m_processes.end(), [&](pid_t process) {
            return stateOf(process) == 'T';
        }) || std::all_of(m_processes.begin(), m_processes.end(), hasEnded);
    }

private:
    QList<pid_t> m_processes;
};

} // namespace

bool commandLine(SoakWorld &world)
{
    const std::vector<SoakVolume> volumes = idleVolumes(world);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"the command line on "_s + volume.node);
    const Request request = anyRequest(world, volume);
    const bool mayWrite = request.arguments.constFirst() != "verifyVolume"_L1;
    const Bystanders bystanders(world, mayWrite ? QStringList { volume.node } : QStringList());
    CommandLineRun run(world, request.arguments);
    const int code = run.waitForEnd();
    requireDone(request, code, run.output());
    bystanders.requireUnchanged();
    return true;
}

bool commandLineBesideOperation(SoakWorld &world)
{
    const std::vector<SoakVolume> first = idleVolumes(world);
    const std::vector<SoakVolume> second = idleVolumes(world);
    if (first.empty())
        return false;
    const SoakVolume &one = world.oneOf(first);
    const SoakVolume &two = world.oneOf(second);
    if (one.node == two.node)
        return false;
    world.note(u"the command line beside an operation"_s);
    const Request request = anyRequest(world, two);
    const Bystanders bystanders(world, { one.node, two.node });
    startAnything(world, one);
    CommandLineRun run(world, request.arguments);
    waitForEnd(world, one);
    const int code = run.waitForEnd();
    requireDone(request, code, run.output());
    bystanders.requireUnchanged();
    return true;
}

bool commandLineDuringOperation(SoakWorld &world)
{
    const std::vector<SoakVolume> volumes = idleVolumes(world);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"the command line on a volume that a window works on"_s);
    const bool isCheck = canBeChecked(volume) && world.onceIn(2);
    // Whether a volume can be checked is not to be told while it is made.
    const Request request = isCheck ? anyRequest(world, volume) : eraseRequest(world, volume);
    const QString label = isCheck ? probed(volume.node, u"LABEL"_s) : u"SOAK%1"_s.arg(++world.labelsGiven);
    const Bystanders bystanders(world, { volume.node });
    if (isCheck) {
        startCheck(volume);
    } else {
        world.note(u"  format as %1 named %2"_s.arg(openFormatSheet(world, volume, label), label));
        volume.window->endSheet(AlertSheet::firstButtonReturn);
    }
    world.waitFor([&] { return isLocked(volume.node) || !volume.record->operationInProgress; },
        u"%1 is not locked for its operation"_s.arg(volume.node));
    {
        const HeldTool tool(volume.record->description());
        world.waitFor([&] { return tool.isSettled(); }, u"diskutil cannot be held"_s);
        if (isLocked(volume.node)) {
            CommandLineRun run(world, request.arguments);
            const int code = run.waitForEnd();
            SoakWorld::require(code == inUse && run.output().contains(u"in use"_s),
                u"a second run on %1 ends with %2: %3"_s.arg(volume.node).arg(code).arg(run.output()));
            world.note(u"  is refused"_s);
        }
    }
    const QStringList texts = waitForEnd(world, volume);
    SoakWorld::require(std::all_of(texts.begin(), texts.end(),
                           [&](const QString &text) { return mayBeUnmountable(volume, text); }),
        u"the operation is disturbed by one that was refused: "_s + texts.join(u' '));
    const QString found = probed(volume.node, u"LABEL"_s);
    SoakWorld::require(found == label, u"%1 is named '%2'"_s.arg(volume.node, found));
    bystanders.requireUnchanged();
    return true;
}

bool commandLineInARace(SoakWorld &world)
{
    const std::vector<SoakVolume> volumes = world.volumes(canBeChecked);
    if (volumes.empty())
        return false;
    const SoakVolume &volume = world.oneOf(volumes);
    world.note(u"the command line and a check at once on "_s + volume.node);
    const Request request = anyRequest(world, volume);
    const QString label = probed(volume.node, u"LABEL"_s);
    const Bystanders bystanders(world, { volume.node });
    startCheck(volume);
    CommandLineRun run(world, request.arguments);
    const QStringList texts = waitForEnd(world, volume);
    const int code = run.waitForEnd();
    world.note(u"  ends with %1: %2; the window tells: %3"_s.arg(code).arg(run.output(), texts.join(u' ')));
    if (code == inUse || code == mediumChanged) {
        SoakWorld::require(texts.isEmpty(), u"both are refused"_s);
        const QString found = probed(volume.node, u"LABEL"_s);
        SoakWorld::require(found == label, u"%1 is named '%2'"_s.arg(volume.node, found));
    } else {
        requireDone(request, code, run.output());
    }
    bystanders.requireUnchanged();
    return true;
}
