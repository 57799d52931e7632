// SPDX-License-Identifier: MIT
#include "tools/diskutil/ToolProcess.h"

#include "filesystems/SystemTools.h"
#include "platform/SystemLog.h"

#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// How long a program that is told to end has to do so, and how often it is looked at meanwhile.
constexpr std::chrono::milliseconds stopStep { 50 };
constexpr int stepsBeforeForce = 100;

constexpr unsigned short terminalColumns = 80;
constexpr unsigned short terminalRows = 24;

constexpr mode_t usualMask = 022;

// Above the descriptors that a shell, and its scripts, use for themselves.
constexpr int firstInherited = 20;

// Drops what the program would inherit from the caller of diskutil besides the environment: open files,
// ignored and blocked signals, the file mode mask. Safe between fork and exec.
void forgetCaller()
{
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    for (int number = 1; number < NSIG; ++number)
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    umask(usualMask);
}

} // namespace

ToolProcess::ToolProcess(OutputHandler handler, QObject *parent)
    : ToolRunner(parent)
    , m_handler(std::move(handler))
{
    prepareProcess();
    connect(&m_process, &QProcess::started, this, &ToolProcess::started);
    connect(&m_process, &QProcess::finished, this, &ToolProcess::programFinished);
    connect(&m_process, &QProcess::errorOccurred, this, &ToolProcess::programFailed);
}

ToolProcess::~ToolProcess()
{
    m_process.disconnect(this);
}

void ToolProcess::prepareProcess()
{
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, toolFolders().join(u':'));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"TERM"_s, u"dumb"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(u"/"_s);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setChildProcessModifier([this] {
        // Only calls that are safe between fork and exec are allowed here.
        const int output = m_childOutput.isOpen() ? m_childOutput.number() : m_childTerminal.number();
        setsid();
        ioctl(m_childTerminal.number(), TIOCSCTTY, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        forgetCaller();
        for (const int number : m_inherited)
            fcntl(number, F_DUPFD, firstInherited);
    });
}

bool ToolProcess::openChannels(ToolCommand::Output output)
{
    m_terminal = FileDescriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    std::array<char, 64> name {};
    if (!m_terminal.isOpen() || grantpt(m_terminal.number()) != 0 || unlockpt(m_terminal.number()) != 0
        || ptsname_r(m_terminal.number(), name.data(), name.size()) != 0)
        return false;
    m_childTerminal = FileDescriptor(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios mode = {};
    if (!m_childTerminal.isOpen() || tcgetattr(m_childTerminal.number(), &mode) != 0)
        return false;
    // Raw, so that line ends stay as they are written: an added carriage return would make a line look
    // rewritten.
    cfmakeraw(&mode);
    const winsize size { terminalRows, terminalColumns, 0, 0 };
    if (tcsetattr(m_childTerminal.number(), TCSANOW, &mode) != 0
        || ioctl(m_childTerminal.number(), TIOCSWINSZ, &size) != 0)
        return false;
    if (output == ToolCommand::Output::Pipe) {
        std::array<int, 2> ends {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return false;
        m_output = FileDescriptor(ends[0]);
        m_childOutput = FileDescriptor(ends[1]);
        return fcntl(m_output.number(), F_SETFL, O_NONBLOCK) == 0;
    }
    return true;
}

void ToolProcess::start(const ToolCommand &command)
{
    m_isStopping = false;
    m_end = {};
    m_output = {};
    m_childOutput = {};
    m_inherited = command.descriptors;
    if (!openChannels(command.output)) {
        m_end.message = errnoText(errno);
        QTimer::singleShot(0, this, [this] { finish(m_end); });
        return;
    }
    const int fd = m_output.isOpen() ? m_output.number() : m_terminal.number();
    m_notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ToolProcess::readOutput);
    m_process.setStandardInputFile(command.input.isEmpty() ? QProcess::nullDevice() : QString());
    m_process.start(command.program, command.arguments);
    if (!command.input.isEmpty()) {
        m_process.write(command.input);
        m_process.closeWriteChannel();
    }
    m_group = m_process.processId();
    m_childOutput = {};
}

void ToolProcess::readOutput()
{
    const int fd = m_output.isOpen() ? m_output.number() : m_terminal.number();
    std::array<char, 4096> buffer {};
    for (;;) {
        const ssize_t length = read(fd, buffer.data(), buffer.size());
        if (length > 0) {
            m_handler(QByteArray(buffer.data(), length));
        } else if (length == 0 || (errno != EINTR && errno != EAGAIN)) {
            m_notifier->setEnabled(false); // no writer is left
            return;
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

void ToolProcess::programFinished(int code, QProcess::ExitStatus status)
{
    readOutput();
    m_end = { status == QProcess::NormalExit ? ToolEnd::Kind::Exited : ToolEnd::Kind::Killed, code, {} };
    if (!m_isStopping)
        finish(m_end);
}

void ToolProcess::programFailed(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return;
    m_end.message = m_process.errorString();
    finish(m_end);
}

void ToolProcess::finish(const ToolEnd &end)
{
    m_notifier.reset();
    m_output = {};
    m_childTerminal = {};
    m_terminal = {};
    m_group = 0;
    Q_EMIT ended(end);
}

bool ToolProcess::isGroupAlive() const
{
    return m_group > 0 && ::kill(static_cast<pid_t>(-m_group), 0) == 0;
}

void ToolProcess::stop()
{
    if (m_isStopping || m_group <= 0)
        return;
    m_isStopping = true;
    m_polls = 0;
    ::kill(static_cast<pid_t>(-m_group), SIGTERM);
    awaitGroupEnd();
}

void ToolProcess::awaitGroupEnd()
{
    if (m_process.state() == QProcess::NotRunning && !isGroupAlive()) {
        finish(m_end);
        return;
    }
    if (++m_polls == stepsBeforeForce)
        ::kill(static_cast<pid_t>(-m_group), SIGKILL);
    QTimer::singleShot(stopStep, this, &ToolProcess::awaitGroupEnd);
}
