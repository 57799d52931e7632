// SPDX-License-Identifier: MIT
//
// The free space of mounted volumes, asked on workers: a file system that does not answer holds up nobody.
// Main thread only.
#pragma once

#include "platform/MainThreadRelay.h"
#include "platform/MountTable.h"

#include <QHash>

#include <functional>
#include <memory>

class FreeSpaceReader
{
public:
    // What cannot be told, or is not known yet.
    static constexpr qint64 unknown = -1;

    // The function is called when an answer has come late, and differs from the last one. The relay must be
    // closed before this object goes.
    FreeSpaceReader(std::shared_ptr<const MountTable> table, std::shared_ptr<MainThreadRelay> relay,
        std::function<void()> lateAnswer);

    // The free space in bytes of one of the mounted volumes. One that answers at once is waited for, for a
    // moment, unless its last answer was late. Otherwise this is what it answered last, and it is not asked
    // again until it has answered and somebody has taken the answer.
    qint64 freeSpaceOf(const MountedFilesystem &volume, const std::vector<MountedFilesystem> &mounted);

private:
    struct Known
    {
        qint64 bytes = unknown;
        bool isAsking = false; // a worker is
        bool isSlow = false; // the last answer has come late
        bool isNew = false; // it has come since somebody wanted it
    };

    void takeLateAnswer(const QByteArray &key, qint64 bytes);

    std::shared_ptr<const MountTable> m_table;
    std::shared_ptr<MainThreadRelay> m_relay;
    std::function<void()> m_lateAnswer;
    QHash<QByteArray, Known> m_known;
};
