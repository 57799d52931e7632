// SPDX-License-Identifier: MIT
//
// Uses two windows on the real disk service and real loop disks by chance for as long as it is told, and
// looks after every step whether they show what is there. Repeat a run with its seed.
#include "tests/soak/SoakRun.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>
#include <cstdlib>

#include <sys/prctl.h>

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
        refuse(QStringLiteral("--%1 takes a number").arg(option));
    return number;
}

SoakRun::Options readOptions(const QCoreApplication &application)
{
    const QString seed = QStringLiteral("seed");
    const QString seconds = QStringLiteral("seconds");
    const QString steps = QStringLiteral("steps");
    const QString without = QStringLiteral("without");
    const QString verbose = QStringLiteral("verbose");
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({ seed, QStringLiteral("repeats the run with this seed"), seed });
    parser.addOption({ seconds, QStringLiteral("how long to run"), seconds, QStringLiteral("300") });
    parser.addOption({ steps, QStringLiteral("ends after so many steps"), steps });
    parser.addOption({ without, QStringLiteral("leaves out a kind of step; may be given again"), without });
    parser.addOption({ verbose, QStringLiteral("prints every step") });
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
            refuse(QStringLiteral("there is no kind of step named ") + kind);
        options.without.insert(kind);
    }
    options.isVerbose = parser.isSet(verbose);
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    // What a child leaves behind becomes this process's own, and is found.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const SoakRun::Options options = readOptions(application);
    std::printf("soak: seed %u, %lld s\n", options.seed, static_cast<long long>(options.seconds));
    std::fflush(stdout);
    return SoakRun(options).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
