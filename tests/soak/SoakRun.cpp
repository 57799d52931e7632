// SPDX-License-Identifier: MIT
#include "tests/soak/SoakRun.h"

#include "platform/Localization.h"
#include "tests/soak/LiveHeap.h"
#include "ui/OutlineView.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPixmapCache>
#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int weighings = 10;
constexpr double allowedGrowth = 1.1;

void print(const QString &line)
{
    std::fprintf(stdout, "%s\n", qPrintable(line));
    std::fflush(stdout);
}

} // namespace

const std::vector<StepKind> &stepKinds()
{
    static const std::vector<StepKind> kinds {
        { "attach", 10, attachDisk },
        { "detach", 4, detachDisk },
        { "eject", 3, ejectDisk },
        { "change from outside", 3, changeFromOutside },
        { "mount", 12, mountVolume },
        { "unmount", 6, unmountVolume },
        { "busy unmount", 3, unmountBusyVolume },
        { "check", 6, checkVolume },
        { "damage and repair", 2, repairDamagedVolume },
        { "format", 5, formatVolume },
        { "two operations", 4, twoOperations },
        { "restart", 2, restartService },
        { "restart in operation", 2, restartServiceDuringOperation },
        { "select", 12, selectRow },
        { "resize", 6, resizeWindow },
        { "page", 6, switchPage },
        { "activate", 3, activateWindow },
        { "language", 3, changeLanguage },
        { "close in check", 1, closeWindowDuringCheck },
        { "command line", 6, commandLine },
        { "command line beside", 3, commandLineBesideOperation },
        { "command line during", 2, commandLineDuringOperation },
        { "command line in a race", 2, commandLineInARace },
    };
    return kinds;
}

SoakRun::SoakRun(Options options)
    : m_options(std::move(options))
    , m_world(m_options.seed)
{
}

bool SoakRun::run()
{
    m_clock.start();
    try {
        loadFonts();
        m_world.settle();

        const qint64 interval = m_options.seconds * 1000 / weighings;
        qint64 nextWeighing = interval;
        while (m_clock.elapsed() < m_options.seconds * 1000 && m_steps != m_options.steps) {
            step();
            if (m_clock.elapsed() >= nextWeighing) {
                weigh();
                nextWeighing += interval;
            }
        }
        weigh();
        if (static_cast<double>(m_lastWeight) > allowedGrowth * static_cast<double>(*m_firstWeight))
            throw SoakFailure { u"memory has grown by more than a tenth"_s };
    } catch (const SoakFailure &failure) {
        for (const QString &line : m_world.notes())
            print(line);
        print(u"failed in step %1 of the run with seed %2: %3"_s.arg(m_steps)
                .arg(m_options.seed)
                .arg(failure.message));
        summarize();
        return false;
    }
    summarize();
    return true;
}

// Qt loads the faces of a language's fonts when its characters are first drawn, up to 1 MB each, and lets
// them go when it has many others: which of them are there at a weighing is up to chance. All are loaded
// before the first one, and held: those of the windows, of the sheets, whose titles are bold, and of the
// output.
void SoakRun::loadFonts()
{
    for (const QString &language : bundleLocalizations()) {
        m_world.changing = std::make_unique<RealWindow>(language);
        const QString text = localizedString("CONFIRM_FORMAT_DIALOG_TITLE");
        QFont bold = QApplication::font();
        bold.setBold(true);
        for (const QFont &font :
            { QApplication::font(), bold, QFontDatabase::systemFont(QFontDatabase::FixedFont) }) {
            QFontMetrics(font).horizontalAdvance(text);
            m_fonts.append(font);
        }
    }
}

void SoakRun::step()
{
    ++m_steps;
    int total = 0;
    for (const StepKind &kind : stepKinds())
        total += kind.weight;
    while (true) {
        int chosen = m_world.below(total);
        auto kind = stepKinds().begin();
        while (chosen >= kind->weight)
            chosen -= (kind++)->weight;
        const QString name = QString::fromLatin1(kind->name);
        if (m_options.without.contains(name))
            continue;
        QElapsedTimer time;
        time.start();
        if (!kind->run(m_world))
            continue;
        m_world.settle();
        Tally &tally = m_tallies[name];
        ++tally.count;
        tally.milliseconds += time.elapsed();
        if (m_options.isVerbose)
            print(u"%1 %2: %3 ms"_s.arg(m_steps).arg(m_world.notes().constLast()).arg(time.elapsed()));
        return;
    }
}

// In a state that comes again, whatever came before.
void SoakRun::weigh()
{
    detachAllDisks(m_world);
    for (RealWindow *window : { m_world.standing.get(), m_world.changing.get() }) {
        window->window().resize(window->window().minimumSize()); // its picture is the larger part of it
        window->controller().leftOutlineView->selectRow(-1);
    }
    QPixmapCache::clear(); // has a limit of its own, which it is far from at the first weighing
    m_world.settle();
    for (RealWindow *window : { m_world.standing.get(), m_world.changing.get() }) {
        SoakWorld::require(QTest::qWaitForWindowExposed(&window->window()), u"a window is not shown"_s);
        window->window().repaint(); // makes the picture of the new size
    }
    m_lastWeight = liveHeap();
    if (!m_firstWeight)
        m_firstWeight = m_lastWeight;
    print(u"after %1 s and %2 steps: %3 kB live"_s.arg(m_clock.elapsed() / 1000)
            .arg(m_steps)
            .arg(m_lastWeight / 1000));
}

void SoakRun::summarize() const
{
    print(u"%1 steps in %2 s, seed %3"_s.arg(m_steps).arg(m_clock.elapsed() / 1000).arg(m_options.seed));
    for (const StepKind &kind : stepKinds()) {
        const Tally tally = m_tallies.value(QString::fromLatin1(kind.name));
        print(u"  %1 %2, %3 ms each"_s.arg(tally.count, 6)
                .arg(QString::fromLatin1(kind.name))
                .arg(tally.count ? tally.milliseconds / tally.count : 0));
    }
}
