// SPDX-License-Identifier: MIT
#include "tools/diskutil/CommandLine.h"

#include <QHash>
#include <QRegularExpression>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct VerbForm
{
    Verb verb;
    qsizetype argumentCount; // without what may be left out
};

const QHash<QString, VerbForm> &verbForms()
{
    static const QHash<QString, VerbForm> forms {
        { u"--help"_s, { Verb::Help, 0 } },
        { u"-h"_s, { Verb::Help, 0 } },
        { u"list"_s, { Verb::List, 0 } },
        { u"info"_s, { Verb::Info, 1 } },
        { u"eraseVolume"_s, { Verb::EraseVolume, 3 } },
        { u"eraseDisk"_s, { Verb::EraseDisk, 3 } },
        { u"verifyVolume"_s, { Verb::VerifyVolume, 1 } },
        { u"repairVolume"_s, { Verb::RepairVolume, 1 } },
        { u"unlockVolume"_s, { Verb::UnlockVolume, 1 } },
        { u"lockVolume"_s, { Verb::LockVolume, 1 } },
    };
    return forms;
}

} // namespace

std::variant<CommandLine, Refusal> parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return Refusal { ExitCode::Usage, u"no verb given; see diskutil --help"_s };
    const auto form = verbForms().constFind(arguments.first());
    if (form == verbForms().constEnd())
        return Refusal { ExitCode::Usage,
            u"\"%1\" is not a verb; see diskutil --help"_s.arg(arguments.first()) };
    QStringList operands = arguments.mid(1);
    CommandLine line;
    line.verb = form->verb;
    if (line.verb == Verb::EraseDisk && operands.size() == form->argumentCount + 1) {
        const QString scheme = operands.takeAt(2);
        line.scheme = DiskLayoutRules::schemeNamed(scheme);
        if (!line.scheme)
            return Refusal { ExitCode::Usage,
                u"\"%1\" is no partition scheme; it is GPT or MBR"_s.arg(scheme) };
    }
    if (operands.size() != form->argumentCount)
        return Refusal { ExitCode::Usage,
            u"%1 takes %2 arguments; see diskutil --help"_s.arg(arguments.first()).arg(form->argumentCount) };
    if (line.verb == Verb::EraseVolume || line.verb == Verb::EraseDisk) {
        line.format = operands.at(0);
        line.name = operands.at(1);
    }
    if (!operands.isEmpty())
        line.device = operands.last();
    return line;
}

QString usageText()
{
    return uR"(Usage: diskutil VERB [ARGUMENTS]

  list                               Lists all disks, partitions and volumes
  info DEVICE                        Shows what is known about one of them
  eraseVolume FORMAT NAME DEVICE     Makes a new volume, losing all that is on the device
  eraseDisk FORMAT NAME [GPT|MBR] DEVICE
                                     Makes a whole disk one new volume, losing all that is on it
  verifyVolume DEVICE                Looks for errors, and changes nothing
  repairVolume DEVICE                Looks for errors, and repairs them
  unlockVolume DEVICE                Unlocks an encrypted volume, and mounts it; asks for the passphrase
  lockVolume DEVICE                  Unmounts an encrypted volume, and locks it
  --help                             Prints this text

DEVICE is disk2s1, /dev/disk2s1 or a device node such as /dev/sda1.
FORMAT is the name of a file system in an installed bundle, such as "MS-DOS FAT32" or ext4.
The exit status is 0 for success, 1 when errors were found or remain; see diskutil(8) for the others.
)"_s;
}

QString bsdNameOfArgument(const QString &argument)
{
    static const QRegularExpression pattern(u"\\A(?:/dev/)?(disk[0-9]+(?:s[0-9]+)?)\\z"_s);
    return pattern.match(argument).captured(1);
}
