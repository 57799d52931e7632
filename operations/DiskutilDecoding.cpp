// SPDX-License-Identifier: MIT
#include "operations/DiskutilDecoding.h"

#include <QByteArrayList>
#include <QStringList>

#include <cerrno>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// The parts of a wait status.
constexpr unsigned signalMask = 0x7F;
constexpr unsigned coreDumpFlag = 0x80;
constexpr unsigned lowByteMask = 0xFF;
constexpr unsigned stopMark = 0x7F;

// The stop signal 19 in its place: what a continued process reports, which does not count as stopped.
constexpr unsigned continuedStatus = 0x1300;

// How diskutil and the shell begin what they write to their standard error.
const QByteArray ownComplaintStart = "diskutil: "_ba;
const QByteArray shellComplaintStart = "sh: "_ba;

std::optional<DiskutilFailure> decodeExitCode(int exitCode, const QString &verb)
{
    if (exitCode == 0)
        return std::nullopt;
    if (exitCode == diskutilFoundErrors && verb == "repairVolume"_L1)
        return DiskutilFailure { EIO, u"Encountered errors when repairing the volume."_s,
            DiskutilFailure::OutputUse::Unused, exitCode };
    if (exitCode == diskutilFoundErrors && verb == "verifyVolume"_L1)
        return DiskutilFailure { EIO,
            u"Encountered errors when checking the volume.\nFilesystem needs to be repaired."_s,
            DiskutilFailure::OutputUse::Unused, exitCode };
    return DiskutilFailure { EINVAL, "diskutil returned error code: "_L1 + QString::number(exitCode),
        DiskutilFailure::OutputUse::ExplainsFailure, exitCode };
}

} // namespace

DiskutilOutputChunker::DiskutilOutputChunker(Delivery deliver)
    : m_deliver(std::move(deliver))
{
}

void DiskutilOutputChunker::add(char byte)
{
    if (byte == '\n' || byte == '\r') {
        m_deliver({ m_buffer.data(), m_size });
        m_buffer[0] = byte;
        m_size = 1;
        return;
    }
    m_buffer[m_size++] = byte;
    if (m_size == bufferSize) {
        m_deliver({ m_buffer.data(), m_size });
        m_size = 0;
    }
}

void DiskutilOutputChunker::finish()
{
    if (m_size > 0)
        m_deliver({ m_buffer.data(), m_size });
    m_size = 0;
}

std::optional<DiskutilFailure> decodeDiskutilStatus(int status, const QString &verb)
{
    const auto bits = static_cast<unsigned>(status);
    const unsigned signal = bits & signalMask;
    if (signal == 0)
        return decodeExitCode(static_cast<int>(bits >> 8 & lowByteMask), verb);
    if (signal == stopMark) {
        const bool isContinued = (bits & ~lowByteMask) == continuedStatus;
        return DiskutilFailure { EIO,
            (isContinued ? "Unknown error"_L1 : "Process stopped"_L1) + " when invoking diskutil (0x"_L1
                + QString::number(bits, 16).toUpper() + ")."_L1 };
    }
    return DiskutilFailure { EIO,
        "Fatal error when invoking diskutil.\nProcess terminated on signal "_L1 + QString::number(signal)
            + (bits & coreDumpFlag ? " (core dumped)"_L1 : ""_L1) + u'.' };
}

QString diskutilComplaints(const QByteArray &output)
{
    QStringList complaints;
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith(ownComplaintStart))
            complaints.append(QString::fromUtf8(line.mid(ownComplaintStart.size())));
        else if (line.startsWith(shellComplaintStart))
            complaints.append(QString::fromUtf8(line));
    }
    return complaints.join(u'\n');
}

QString diskutilVerbNoun(const QString &verb)
{
    if (verb == "eraseVolume"_L1 || verb == "eraseDisk"_L1)
        return u"format"_s;
    if (verb == "verifyVolume"_L1)
        return u"check"_s;
    if (verb == "repairVolume"_L1)
        return u"repair"_s;
    return u"?"_s;
}
