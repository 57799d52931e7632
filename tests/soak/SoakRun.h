// SPDX-License-Identifier: MIT
//
// One soak run: steps by chance, with the rules checked after each, and memory weighed a few times.
#pragma once

#include "tests/soak/Steps.h"

#include <QElapsedTimer>
#include <QFont>
#include <QList>
#include <QMap>
#include <QSet>

#include <optional>

class SoakRun
{
public:
    struct Options
    {
        quint32 seed = 0;
        qint64 seconds = 300;
        qint64 steps = -1; // ends after this many, if before its time; -1 for no such limit
        QSet<QString> without; // kinds of steps that are left out
        bool isVerbose = false;
    };

    explicit SoakRun(Options options);

    // Runs to the end and prints a summary; whether all was as it must be.
    bool run();

private:
    void loadFonts();
    void step();
    void weigh();
    void summarize() const;

    struct Tally
    {
        int count = 0;
        qint64 milliseconds = 0;
    };

    Options m_options;
    SoakWorld m_world;
    QList<QFont> m_fonts; // keep what Qt has loaded for them
    QElapsedTimer m_clock;
    QMap<QString, Tally> m_tallies;
    qint64 m_steps = 0;
    std::optional<std::size_t> m_firstWeight;
    std::size_t m_lastWeight = 0;
};
