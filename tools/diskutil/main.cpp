// SPDX-License-Identifier: MIT
//
// diskutil lists disks, and makes, verifies and repairs volumes. It knows no file system itself: see
// diskutil(8).
#include "filesystems/BundleScan.h"
#include "filesystems/VolumeClaims.h"
#include "platform/DesktopUser.h"
#include "platform/DiskArbitration.h"
#include "platform/ProcessScope.h"
#include "tools/diskutil/Console.h"
#include "tools/diskutil/DiskJob.h"
#include "tools/diskutil/EncryptionJob.h"
#include "tools/diskutil/OutputFilter.h"
#include "tools/diskutil/Privilege.h"
#include "tools/diskutil/ToolProcess.h"
#include "tools/diskutil/VolumeJob.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

int statusOf(ExitCode code)
{
    return static_cast<int>(code);
}

ExitCode printList(const MediaList &list, Console &console)
{
    std::vector<Medium> media = list.media();
    sortMedia(media);
    console.pass(listText(media).toUtf8());
    return ExitCode::Success;
}

ExitCode printInfo(const MediaList &list, const QString &device, Console &console)
{
    const auto medium = findMedium(list.media(), device);
    if (!medium) {
        console.complain(u"there is no disk %1"_s.arg(device));
        return ExitCode::NoSuchDisk;
    }
    console.pass(infoText(*medium).toUtf8());
    return ExitCode::Success;
}

// Carries out a command that needs to know the media.
class Session
{
public:
    Session(CommandLine line, Console &console)
        : m_line(std::move(line))
        , m_console(console)
        , m_session(createDiskArbitrationSession(
              volumeClaimReader(filesystemDirectories(), guardOfBundlesToRun(), Distrusted::Last)))
        , m_tools([&console, filter = OutputFilter()](
                      const QByteArray &bytes) mutable { console.pass(filter.next(bytes)); })
    {
    }

    ExitCode run()
    {
        if (!m_session)
            return serviceUnavailable();
        m_session->registerDiskAppearedCallback([this](const DADiskRef &disk) { m_media.add(disk); });
        m_session->registerDiskDisappearedCallback([this](const DADiskRef &disk) { m_media.remove(disk); });
        m_session->registerDiskDescriptionChangedCallback([this](const DADiskRef &disk, const QStringList &) {
            if (m_job)
                m_job->mediumChanged(disk);
        });
        m_session->setInitialListingCallback([this](bool isAvailable) { listed(isAvailable); });
        QObject beforeTheJob;
        const auto stop = [this] {
            if (!m_job && !m_encryptionJob)
                finish(ExitCode::Interrupted);
        };
        QObject::connect(&m_console, &Console::interrupted, &beforeTheJob, stop);
        QObject::connect(&m_console, &Console::readerLeft, &beforeTheJob, stop);
        m_session->scheduleWithRunLoop();
        return static_cast<ExitCode>(QCoreApplication::exec());
    }

private:
    ExitCode serviceUnavailable()
    {
        m_console.complain(u"the disk service (udisks2) cannot be reached"_s);
        return ExitCode::ServiceUnavailable;
    }

    static void finish(ExitCode code) { QCoreApplication::exit(statusOf(code)); }

    void listed(bool isAvailable)
    {
        if (!isAvailable)
            finish(serviceUnavailable());
        else if (const auto operation = PreflightRules::operationOfVerb(m_line.verb))
            startJobWhereItCanEnd(*operation);
        else if (EncryptionJob::isFor(m_line.verb))
            startEncryptionJob();
        else if (m_line.verb == Verb::Info)
            finish(printInfo(m_media, m_line.device, m_console));
        else
            finish(printList(m_media, m_console));
    }

    // What is being written to a disk does not end with its user's session: half of a repair is worse than
    // none.
    void startJobWhereItCanEnd(Operation operation)
    {
        const auto slice = operation == Operation::Verify ? std::nullopt : userSlice();
        if (slice)
            moveToScopeIn(*slice, QCoreApplication::instance(), [this, operation] { startJob(operation); });
        else
            startJob(operation);
    }

    void startJob(Operation operation)
    {
        const JobEnvironment environment { *m_session, m_media, m_tools };
        if (m_line.verb == Verb::EraseDisk)
            m_job = std::make_unique<DiskJob>(m_line, environment);
        else
            m_job = std::make_unique<VolumeJob>(operation, m_line, environment);
        QObject::connect(m_job.get(), &Job::said, &m_console, &Console::say);
        QObject::connect(m_job.get(), &Job::complained, &m_console, &Console::complain);
        QObject::connect(&m_console, &Console::interrupted, m_job.get(), &Job::interrupt);
        QObject::connect(&m_console, &Console::readerLeft, m_job.get(), &Job::loseReader);
        QObject::connect(m_job.get(), &Job::finished, m_job.get(), &Session::finish);
        m_job->start();
    }

    void startEncryptionJob()
    {
        m_encryptionJob = std::make_unique<EncryptionJob>(m_line, *m_session, m_media, m_passphrases);
        EncryptionJob *const job = m_encryptionJob.get();
        QObject::connect(job, &EncryptionJob::said, &m_console, &Console::say);
        QObject::connect(job, &EncryptionJob::asked, &m_console, &Console::ask);
        QObject::connect(job, &EncryptionJob::complained, &m_console, &Console::complain);
        QObject::connect(&m_console, &Console::interrupted, job, &EncryptionJob::interrupt);
        QObject::connect(&m_console, &Console::readerLeft, job, &EncryptionJob::interrupt);
        QObject::connect(job, &EncryptionJob::finished, job, &Session::finish);
        job->start();
    }

    const CommandLine m_line;
    Console &m_console;
    MediaList m_media;
    std::unique_ptr<DASession> m_session;
    ToolProcess m_tools;
    std::unique_ptr<Job> m_job;
    PassphraseReader m_passphrases;
    std::unique_ptr<EncryptionJob> m_encryptionJob;
};

int runAsRoot(const QStringList &arguments, Console &console)
{
    PrivilegedRun run(console);
    QObject::connect(&run, &PrivilegedRun::finished, &QCoreApplication::exit);
    run.start(QCoreApplication::applicationFilePath(), arguments);
    return QCoreApplication::exec();
}

// A caller may have closed the standard descriptors. The next file that is opened, such as a device, would
// take the place of one and be written to.
void openMissingStandardDescriptors()
{
    for (int fd = open("/dev/null", O_RDWR); fd >= 0; fd = dup(fd)) {
        if (fd > STDERR_FILENO) {
            close(fd);
            return;
        }
    }
}

// Undoes what a caller may have set: ignored ends of children, blocked signals.
void hearSignals()
{
    std::signal(SIGCHLD, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The arguments as they were given. Qt removes those that it takes for its own options, and a volume may have
// such a name.
QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    return arguments;
}

} // namespace

int main(int argc, char **argv)
{
    // Names are UTF-8 and messages are English, whatever the locale of the caller.
    setenv("LC_ALL", "C.UTF-8", 1);
    openMissingStandardDescriptors();
    hearSignals();
    QStringList arguments = argumentsOf(argc, argv);
    QCoreApplication application(argc, argv);
    Console console;
    if (PrivilegedRun::takeMark(arguments))
        console.heedInput();
    const auto parsed = parseCommandLine(arguments);
    if (const auto *refusal = std::get_if<Refusal>(&parsed)) {
        console.complain(refusal->message);
        return statusOf(refusal->code);
    }
    const CommandLine &line = std::get<CommandLine>(parsed);
    if (line.verb == Verb::Help) {
        console.pass(usageText().toUtf8());
        return statusOf(ExitCode::Success);
    }
    if (const auto user = desktopUser(); user && !user->isKnown()) {
        console.complain(u"the user %1 cannot be looked up"_s.arg(user->user));
        return statusOf(ExitCode::NotPermitted);
    }
    // Only root reads and writes a medium itself.
    if (PreflightRules::operationOfVerb(line.verb) && geteuid() != 0)
        return runAsRoot(arguments, console);
    return statusOf(Session(line, console).run());
}
