// SPDX-License-Identifier: MIT
//
// What a tool prints, on its way to the screen: cut into chunks, gathered, shown. The first two bytes are how
// the tool ends.
#include "disks/OutputBuffer.h"
#include "operations/DiskutilDecoding.h"
#include "ui/output_rules.h"

#include <QStringList>

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QString shownText(const QByteArray &output)
{
    return OutputRules::changeBetween({}, output).text;
}

// Lays out the change on what is shown.
QString changed(const QString &shown, const OutputRules::Change &change)
{
    const QStringList kept = shown.split(u'\n').mid(0, change.firstBlock);
    return kept.isEmpty() ? change.text : kept.join(u'\n') + u'\n' + change.text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int status = data[0] | data[1] << 8;
    for (const char16_t *verb : { u"eraseVolume", u"verifyVolume", u"repairVolume" }) {
        const auto failure = decodeDiskutilStatus(status, QString::fromUtf16(verb));
        // A core dump without a signal is no failure; nor is anything else but a signal, a stop or an exit
        // code.
        require(!failure == ((status & 0xFF7F) == 0));
        require(!failure || (failure->code != 0 && !failure->message.isEmpty()));
    }

    const QByteArray printed(reinterpret_cast<const char *>(data) + 2, static_cast<qsizetype>(size) - 2);
    QByteArray delivered;
    OutputBuffer held;
    QByteArray before;
    DiskutilOutputChunker chunker([&](std::string_view chunk) {
        require(chunk.size() <= DiskutilOutputChunker::bufferSize);
        delivered.append(chunk.data(), static_cast<qsizetype>(chunk.size()));
        held.append(chunk.data(), static_cast<qsizetype>(chunk.size()));
        require(changed(shownText(before), OutputRules::changeBetween(before, held.bytes()))
            == shownText(held.bytes()));
        before = held.bytes();
    });
    for (const char byte : printed)
        chunker.add(byte);
    chunker.finish();
    require(delivered == printed);
    return 0;
}
