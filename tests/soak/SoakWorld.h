// SPDX-License-Identifier: MIT
//
// What the steps of a soak run work on: two windows, loop disks of the run's own, a source of chance that can
// be repeated, and the rules that must hold between two steps.
#pragma once

#include "tests/soak/ServiceListing.h"
#include "tests/support/LoopDisk.h"
#include "tests/support/RealWindow.h"

#include <QRandomGenerator>

#include <functional>
#include <memory>
#include <vector>

// Ends the run; what went wrong.
struct SoakFailure
{
    QString message;
};

struct SoakDisk
{
    std::unique_ptr<LoopDisk> loop;
    QList<LoopDisk::Partition> partitions;
};

// A volume of the run's own disks, as one of the windows has it.
struct SoakVolume
{
    RealWindow *window = nullptr;
    DiskRecord record;
    QString node;
};

class SoakWorld
{
public:
    explicit SoakWorld(quint32 seed);

    // A number from 0 on, below the bound; and whether something that happens once in so many times does.
    int below(int bound) { return static_cast<int>(m_random.bounded(static_cast<quint32>(bound))); }
    bool onceIn(int times) { return below(times) == 0; }
    template <typename List> const auto &oneOf(const List &list)
    {
        return list[static_cast<typename List::size_type>(below(static_cast<int>(list.size())))];
    }

    // The window that stands all the time, or the one that is opened again and again.
    RealWindow &anyWindow() { return onceIn(2) ? *standing : *changing; }
    RealWindow &otherWindow(const RealWindow &window)
    {
        return &window == standing.get() ? *changing : *standing;
    }

    // The volumes for which the condition holds, as a window chosen by chance has them.
    std::vector<SoakVolume> volumes(const std::function<bool(const SoakVolume &)> &condition);

    // Waits for the condition while the windows live on; fails with these words when it does not come true.
    void waitFor(const std::function<bool()> &condition, const QString &what) const;
    static void require(bool condition, const QString &what);

    // Waits until everything holds that must hold between two steps: the rows of both windows are what the
    // service has, nothing is flagged as running, no process of the run is left, no sheet is open.
    void settle() const;

    // Presses the first button of every sheet that is open, and of those that follow; what they said.
    static QStringList dismissSheets(RealWindow &window);

    // Notes what a step is about to do, for the report of a failure.
    void note(const QString &line);
    const QStringList &notes() const { return m_notes; }

    std::unique_ptr<RealWindow> standing;
    std::unique_ptr<RealWindow> changing;
    std::vector<SoakDisk> disks;
    ServiceListing service;
    int labelsGiven = 0; // each label is given once

private:
    QString unsettled() const;

    QRandomGenerator m_random;
    QStringList m_notes;
};

// The volume without an operation, with no mount or with one.
bool isIdleUnmounted(const SoakVolume &volume);
bool isIdleMounted(const SoakVolume &volume);
