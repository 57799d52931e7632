// SPDX-License-Identifier: MIT
//
// Uses two windows on the real disk service and real loop disks by chance for as long as it is told, and
// looks after every step whether they show what is there. Repeat a run with its seed.
#include "tests/soak/SoakRun.h"
#include "tests/support/RecordingApplication.h"

#include <QCommandLineParser>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

[[noreturn]] void refuse(const QString &message)
{
    std::fprintf(stderr, "soak: %s\n", qPrintable(message));
    std::exit(64);
}

qint64 numberOf(const QCommandLineParser &parser, const QString &option)
{
    bool isNumber = false;
    const qint64 number = parser.value(option).toLongLong(&isNumber);
    if (!isNumber || number < 0)
        refuse(u"--%1 takes a number"_s.arg(option));
    return number;
}

SoakRun::Options readOptions(const QCoreApplication &application)
{
    const QString seed = u"seed"_s;
    const QString seconds = u"seconds"_s;
    const QString steps = u"steps"_s;
    const QString without = u"without"_s;
    const QString verbose = u"verbose"_s;
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({ seed, u"repeats the run with this seed"_s, seed });
    parser.addOption({ seconds, u"how long to run"_s, seconds, u"300"_s });
    parser.addOption({ steps, u"ends after so many steps"_s, steps });
    parser.addOption({ without, u"leaves out a kind of step; may be given again"_s, without });
    parser.addOption({ verbose, u"prints every step"_s });
    parser.process(application);

    SoakRun::Options options;
    options.seed = parser.isSet(seed) ? static_cast<quint32>(numberOf(parser, seed))
                                      : QRandomGenerator::global()->generate();
    options.seconds = numberOf(parser, seconds);
    if (parser.isSet(steps))
        options.steps = numberOf(parser, steps);
    QSet<QString> kinds;
    for (const StepKind &kind : stepKinds())
        kinds.insert(QString::fromLatin1(kind.name));
    for (const QString &kind : parser.values(without)) {
        if (!kinds.contains(kind))
            refuse(u"there is no kind of step named "_s + kind);
        options.without.insert(kind);
    }
    options.isVerbose = parser.isSet(verbose);
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    const RecordingApplication application(argc, argv);
    // What a child leaves behind becomes this process's own, and is found.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    // Some steps stop a tool. The kernel hangs it up when the group that it belongs to loses the shell above
    // it, as that of a run in the background does: in a session of its own, nothing is lost.
    setsid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const SoakRun::Options options = readOptions(application);
    std::printf("soak: seed %u, %lld s\n", options.seed, static_cast<long long>(options.seconds));
    std::fflush(stdout);
    const bool isClean = SoakRun(options).run();
    application.printLongestHandler();
    return isClean ? EXIT_SUCCESS : EXIT_FAILURE;
}
