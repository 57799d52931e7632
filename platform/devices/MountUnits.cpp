// SPDX-License-Identifier: MIT
#include "platform/devices/MountUnits.h"

#include <QFile>

namespace {

bool standsForItself(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z')
        || (character >= 'a' && character <= 'z') || character == ':' || character == '_' || character == '.';
}

// As systemd-escape(1) writes a path.
QByteArray unitName(const QByteArray &mountPoint)
{
    QByteArray name;
    for (const char character : mountPoint.mid(1)) {
        if (character == '/')
            name += '-';
        else if (standsForItself(character))
            name += character;
        else
            name += "\\x" + QByteArray(1, character).toHex();
    }
    return name + ".mount";
}

} // namespace

QByteArray sourceOfMountUnit(const QByteArray &mountPoint, const SystemRoot &system)
{
    // In the order in which systemd takes them.
    static constexpr const char *folders[] { "/etc/systemd/system/", "/run/systemd/system/",
        "/run/systemd/generator/", "/usr/lib/systemd/system/", "/run/systemd/generator.late/" };
    for (const char *folder : folders) {
        QFile unit(QFile::decodeName(system.folder + folder + unitName(mountPoint)));
        if (!unit.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : unit.readAll().split('\n')) {
            if (line.startsWith("What="))
                return line.mid(line.indexOf('=') + 1).trimmed();
        }
    }
    return {};
}
