// SPDX-License-Identifier: MIT
#include "tools/diskutil/Medium.h"

#include "platform/SystemLog.h"

#include <QLocale>

#include <algorithm>
#include <array>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype columnGap = 2;
constexpr std::size_t columnCount = 6;
using Row = std::array<QString, columnCount>;

QString textOf(const PropertyDictionary &description, const QString &key)
{
    const PropertyValue *value = description.value(key);
    const QString *text = value ? value->asString() : nullptr;
    return text ? *text : QString();
}

bool isTrue(const PropertyDictionary &description, const QString &key)
{
    const PropertyValue *value = description.value(key);
    return value && value->booleanValue();
}

// The numbers in disk2s1; 0 for a missing one.
std::array<qulonglong, 2> numbersOf(const QString &bsdName)
{
    const QString numbers = bsdName.mid(bsdName.indexOf(u'k') + 1);
    return { numbers.section(u's', 0, 0).toULongLong(), numbers.section(u's', 1, 1).toULongLong() };
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace

Medium readMedium(const DADisk &disk)
{
    Medium medium;
    medium.deviceNode = disk.deviceNode();
    if (const auto subtype = disk.filesystemSubtype())
        medium.subtype = *subtype;
    const auto description = disk.copyDescription();
    if (!description)
        return medium;
    medium.bsdName = textOf(*description, DAKey::mediaBSDName);
    medium.mediaName = textOf(*description, DAKey::mediaName);
    medium.kind = textOf(*description, DAKey::volumeKind);
    medium.volumeName = textOf(*description, DAKey::volumeName);
    medium.isWhole = isTrue(*description, DAKey::mediaWhole);
    medium.isRemovable = isTrue(*description, DAKey::mediaRemovable);
    medium.isWritable = isTrue(*description, DAKey::mediaWritable);
    medium.isMountable = isTrue(*description, DAKey::volumeMountable);
    const PropertyValue *size = description->value(DAKey::mediaSize);
    if (const PropertyNumber *number = size ? size->asNumber() : nullptr)
        medium.size = number->longLongValue();
    const PropertyValue *path = description->value(DAKey::volumePath);
    if (const QUrl *url = path ? path->asUrl() : nullptr)
        medium.mountPoint = url->toLocalFile();
    return medium;
}

void sortMedia(std::vector<Medium> &media)
{
    std::sort(media.begin(), media.end(),
        [](const Medium &a, const Medium &b) { return numbersOf(a.bsdName) < numbersOf(b.bsdName); });
}

// Names from a medium are escaped, so that they cannot begin a line.
QString listText(const std::vector<Medium> &media)
{
    std::vector<Row> rows { { u"IDENTIFIER"_s, u"DEVICE"_s, u"SIZE"_s, u"TYPE"_s, u"NAME"_s,
        u"MOUNT POINT"_s } };
    for (const Medium &medium : media)
        rows.push_back({ medium.bsdName, medium.deviceNode, sizeText(medium.size), escapedForLog(medium.kind),
            escapedForLog(medium.volumeName.isEmpty() ? medium.mediaName : medium.volumeName),
            escapedForLog(medium.mountPoint) });

    std::array<qsizetype, columnCount> widths {};
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < columnCount; ++i)
            widths.at(i) = std::max(widths.at(i), row.at(i).size());
    }
    QString text;
    for (const Row &row : rows) {
        QString line;
        for (std::size_t i = 0; i < columnCount; ++i)
            line += row.at(i).leftJustified(widths.at(i) + columnGap);
        text += line.trimmed() + u'\n';
    }
    return text;
}

QString infoText(const Medium &medium)
{
    const QString no = u"no"_s;
    const QString yes = u"yes"_s;
    const std::array<std::pair<QString, QString>, 9> lines { {
        { u"Identifier:"_s, medium.bsdName },
        { u"Device node:"_s, medium.deviceNode },
        { u"Whole disk:"_s, medium.isWhole ? yes : no },
        { u"Media name:"_s, medium.mediaName },
        { u"Size:"_s, u"%1 (%2 bytes)"_s.arg(sizeText(medium.size)).arg(medium.size) },
        { u"Writable:"_s, medium.isWritable ? yes : no },
        { u"File system:"_s, medium.kind },
        { u"Volume name:"_s, medium.volumeName },
        { u"Mount point:"_s, medium.mountPoint.isEmpty() ? u"not mounted"_s : medium.mountPoint },
    } };
    qsizetype width = 0;
    for (const auto &[title, value] : lines)
        width = std::max(width, title.size());
    QString text;
    for (const auto &[title, value] : lines)
        text += QString(title.leftJustified(width + columnGap) + escapedForLog(value)).trimmed() + u'\n';
    return text;
}
