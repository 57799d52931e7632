// SPDX-License-Identifier: MIT
#include "ui/FreeSpaceReader.h"

#include "platform/DetachedThread.h"
#include "platform/SystemLog.h"
#include "ui/MountedVolume.h"

#include <QSet>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// A volume that is well answers within a fraction of this: the window shows its space at once.
constexpr std::chrono::milliseconds moment { 100 };

// Handed from a worker to the main thread, which may have gone on.
struct Answer
{
    std::mutex mutex;
    std::condition_variable isReady;
    std::optional<qint64> bytes;
    bool isLate = false;
};

QByteArray keyOf(const MountedFilesystem &volume)
{
    return volume.mountedFrom + '\0' + volume.mountPoint;
}

// Takes as long as the file system takes.
qint64 askFreeSpace(const MountTable &table, const MountedFilesystem &volume)
{
    const QByteArray path = VolumeRules::pathToVolume(table, volume);
    qint64 bytes = FreeSpaceReader::unknown;
    const int error = table.freeSpace(path, &bytes);
    if (error == 0)
        return bytes;
    systemLog(u"getattrlist returned error for \"%1\": %2 (%3)"_s.arg(
        QString::fromLocal8Bit(path), errnoText(error), QString::number(error)));
    return FreeSpaceReader::unknown;
}

} // namespace

FreeSpaceReader::FreeSpaceReader(std::shared_ptr<const MountTable> table,
    std::shared_ptr<MainThreadRelay> relay, std::function<void()> lateAnswer)
    : m_table(std::move(table))
    , m_relay(std::move(relay))
    , m_lateAnswer(std::move(lateAnswer))
{
}

qint64 FreeSpaceReader::freeSpaceOf(
    const MountedFilesystem &volume, const std::vector<MountedFilesystem> &mounted)
{
    QSet<QByteArray> keys;
    for (const MountedFilesystem &each : mounted)
        keys.insert(keyOf(each));
    m_known.removeIf([&keys](const auto &known) { return !known->isAsking && !keys.contains(known.key()); });

    const QByteArray key = keyOf(volume);
    Known &known = m_known[key];
    if (known.isAsking || std::exchange(known.isNew, false))
        return known.bytes;
    const auto answer = std::make_shared<Answer>();
    const int error = startDetachedThread([this, answer, key, volume, table = m_table, relay = m_relay] {
        const qint64 bytes = askFreeSpace(*table, volume);
        std::unique_lock lock(answer->mutex);
        answer->bytes = bytes;
        if (answer->isLate)
            relay->perform([this, key, bytes] { takeLateAnswer(key, bytes); });
        else
            answer->isReady.notify_one();
    });
    if (error != 0)
        return known.bytes;
    std::unique_lock lock(answer->mutex);
    known.isAsking = !answer->isReady.wait_for(lock, known.isSlow ? std::chrono::milliseconds {} : moment,
        [&answer] { return answer->bytes.has_value(); });
    known.isSlow = answer->isLate = known.isAsking;
    if (answer->bytes)
        known.bytes = *answer->bytes;
    return known.bytes;
}

void FreeSpaceReader::takeLateAnswer(const QByteArray &key, qint64 bytes)
{
    Known &known = m_known[key];
    known.isAsking = false;
    if (std::exchange(known.bytes, bytes) == bytes)
        return;
    known.isNew = true;
    m_lateAnswer();
}
