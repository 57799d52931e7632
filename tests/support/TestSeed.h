// SPDX-License-Identifier: MIT
//
// The seed of a test that makes random choices.
#pragma once

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTest>

// A random seed, or the one in ZORVEX_TEST_SEED. Prints the command that repeats the test with it.
inline quint32 testSeed()
{
    bool isGiven = false;
    const auto given = static_cast<quint32>(qEnvironmentVariable("ZORVEX_TEST_SEED").toUInt(&isGiven));
    const quint32 seed = isGiven ? given : QRandomGenerator::global()->generate();
    const char *const row = QTest::currentDataTag();
    qInfo("again: ZORVEX_TEST_SEED=%u '%s' '%s%s%s'", seed,
        qPrintable(QCoreApplication::applicationFilePath()), QTest::currentTestFunction(), row ? ":" : "",
        row ? row : "");
    return seed;
}
