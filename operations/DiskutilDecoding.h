// SPDX-License-Identifier: MIT
//
// How a run of diskutil is understood: its output cut into chunks, its wait status turned into a code and a
// message.
#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

// Cuts output into lines as they are completed. A line's terminator (line feed or carriage return) is not
// part of its own chunk but the first byte of the next one. A line longer than the buffer comes in pieces of
// the buffer's size.
class DiskutilOutputChunker
{
public:
    static constexpr std::size_t bufferSize = 512;

    // The bytes are valid during the call only.
    using Delivery = std::function<void(std::string_view chunk)>;

    explicit DiskutilOutputChunker(Delivery deliver);

    void add(char byte);

    // Delivers what is left at the end of the output, if anything.
    void finish();

private:
    Delivery m_deliver;
    std::array<char, bufferSize> m_buffer {};
    std::size_t m_size = 0;
};

struct DiskutilFailure
{
    enum class OutputUse { Unused, ExplainsFailure };

    qint32 code; // an errno value
    QString message;
    OutputUse output = OutputUse::Unused;
    int exitStatus = 0; // of diskutil; 0 where the run has failed in another way
};

// How diskutil ends where a check has found errors, or a repair has left some.
inline constexpr int diskutilFoundErrors = 1;

// How diskutil ends where nothing can be said of the volume that it was to check or repair.
inline constexpr int diskutilNoSuchDisk = 3;
inline constexpr int diskutilDeviceGone = 23;
inline constexpr int diskutilDeviceUnreadable = 24;

// The failure that the wait status of a finished run means; std::nullopt for success.
std::optional<DiskutilFailure> decodeDiskutilStatus(int status, const QString &verb);

// The lines of the output that say why nothing was done, or not all of it: diskutil's complaints, without its
// name before them, and those of the shell that could not run it. Empty when there are none.
QString diskutilComplaints(const QByteArray &output);

// "format", "check" or "repair"; "?" for any other verb.
QString diskutilVerbNoun(const QString &verb);
