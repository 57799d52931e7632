// SPDX-License-Identifier: MIT
#include "filesystems/LabelRule.h"
#include "tools/diskutil/CommandLine.h"
#include "tools/diskutil/Medium.h"
#include "tools/diskutil/OutputFilter.h"
#include "tools/diskutil/Personality.h"
#include "tools/diskutil/preflight_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

PropertyDictionary fatInformation()
{
    const PropertyDictionary general { { u"FSFormatExecutable"_s, u"format"_s },
        { u"FSVerificationExecutable"_s, u"verify"_s } };
    const PropertyDictionary fat16 { { u"FSSubType"_s, PropertyNumber(qint64 { 2 }) },
        { u"FSFormatMinimumSize"_s, PropertyNumber(qint64 { 1000 }) },
        { u"FSFormatMaximumSize"_s, PropertyNumber(qint64 { 2000 }) },
        { u"FSFormatExecutable"_s, u"format"_s },
        { u"FSFormatArguments"_s, PropertyArray { PropertyValue(u"-F"_s), PropertyValue(u"16"_s) } },
        { u"FSVerificationExecutable"_s, u"verify16"_s } };
    const PropertyDictionary fat32 { { u"FSSubType"_s, PropertyNumber(qint64 { 3 }) },
        { u"FSRepairExecutable"_s, u"repair"_s } };
    return { { u"FSPersonalities"_s,
                 PropertyDictionary { { u"FAT"_s, general }, { u"odd"_s, u"text"_s }, { u"FAT16"_s, fat16 },
                     { u"FAT32"_s, fat32 } } },
        { u"FSLabelLimit"_s, PropertyNumber(qint64 { 11 }) }, { u"FSLabelUnit"_s, u"ascii"_s },
        { u"FSLabelForbiddenCharacters"_s, u":/"_s },
        { u"FSLinuxTools"_s, PropertyArray { PropertyValue(u"mkfs.fat"_s) } },
        { u"FSLinuxPackages"_s, PropertyArray { PropertyValue(u"dosfstools"_s) } },
        { u"FSLinuxTypes"_s, PropertyArray { PropertyValue(u"vfat"_s) } } };
}

FilesystemBundle bundleOf(const QString &directory, const QString &name, PropertyDictionary information)
{
    information.insert(u"CFBundleIdentifier"_s, QString(u"test."_s + name));
    return readFilesystemBundle(*describeBundle(directory, name, information, [](const QString &) { }));
}

std::vector<FilesystemBundle> bundles()
{
    return { bundleOf(u"/own"_s, u"zorvex_fat"_s, fatInformation()),
        bundleOf(u"/system"_s, u"msdos"_s, fatInformation()) };
}

Medium volume()
{
    Medium medium;
    medium.bsdName = u"disk2s1"_s;
    medium.deviceNode = u"/dev/sdb1"_s;
    medium.size = 1500;
    medium.kind = u"msdos"_s;
    medium.isWritable = true;
    return medium;
}

PreflightRules::DeviceSituation freeDevice()
{
    PreflightRules::DeviceSituation situation;
    situation.isBlockDevice = true;
    situation.canRead = true;
    situation.canWrite = true;
    return situation;
}

ExitCode codeOf(const std::optional<Refusal> &refusal)
{
    return refusal ? refusal->code : ExitCode::Success;
}

} // namespace

class TestDiskutilRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outputHasNoControlCharacters();
    void personalitiesBeyondTheLimitAreLeftOut();
    void commandLine_data();
    void commandLine();
    void commandLineThatMakesNoSense_data();
    void commandLineThatMakesNoSense();
    void bsdNameOfAnArgument_data();
    void bsdNameOfAnArgument();
    void labels_data();
    void labels();
    void labelUnits();
    void bundleWithOddValues();
    void executablesOutsideTheBundleAreNotTaken();
    void formatComesFromTheFirstBundle();
    void formatIsNamedInAnyCaseAndAsTheMenuShowsIt();
    void personalityOfAVolume_data();
    void personalityOfAVolume();
    void bundlesThatServeTheSameVolumes();
    void operationsOfVerbs();
    void refusedDevices();
    void refusedChoices();
    void refusedErases();
    void refusedTools();
    void layoutOfADisk_data();
    void layoutOfADisk();
    void schemesOfDisks();
    void scriptsForTheTable();
};

void TestDiskutilRules::outputHasNoControlCharacters()
{
    const auto filtered = [](const QByteArrayList &pieces) {
        OutputFilter filter;
        QByteArray result;
        for (const QByteArray &piece : pieces)
            result += filter.next(piece);
        return result;
    };
    QCOMPARE(filtered({ "\001\002Pass 2\n" }), QByteArray("Pass 2\n")); // e2fsck, around its progress
    QCOMPARE(filtered({ "10%\r20%\b\b\b30%\tdone\n" }), QByteArray("10%\r20%\b\b\b30%\tdone\n"));
    QCOMPARE(filtered({ "\033[2Ja\177b" }), QByteArray("[2Jab"));
    QCOMPARE(filtered({ QByteArray("a\0b", 3) }), QByteArray("ab"));
    QCOMPARE(filtered({ "a\302\233b" }), QByteArray("ab"));
    QCOMPARE(filtered({ "a\302", "\233b" }), QByteArray("ab"));
    QCOMPARE(
        filtered({ "Gr\303\266\303\237e \302", "\261\n" }), QByteArray("Gr\303\266\303\237e \302\261\n"));
    QCOMPARE(filtered({ "\302\302\261" }), QByteArray("\302\302\261")); // not UTF-8, and no control character
}

void TestDiskutilRules::personalitiesBeyondTheLimitAreLeftOut()
{
    PropertyDictionary personalities;
    for (int i = 0; i < 2 * mostPersonalities; ++i)
        personalities.insert(QString::number(i), PropertyDictionary());
    QStringList log;
    const auto bundle = describeBundle(u"/own"_s, u"many"_s,
        { { u"CFBundleIdentifier"_s, u"test.many"_s }, { u"FSPersonalities"_s, personalities } },
        [&log](const QString &line) { log.append(line); });
    QVERIFY(bundle);
    QCOMPARE(bundle->personalities.size(), std::size_t { mostPersonalities });
    QCOMPARE(log, QStringList { u"Leaving out what is beyond 256 personalities in bundle \"many\"."_s });
}

void TestDiskutilRules::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("verb");
    QTest::addColumn<QStringList>("operands");
    const auto row
        = [](const char *name, const QStringList &arguments, Verb verb, const QStringList &operands) {
              QTest::newRow(name) << arguments << static_cast<int>(verb) << operands;
          };
    row("help", { u"--help"_s }, Verb::Help, { {}, {}, {} });
    row("list", { u"list"_s }, Verb::List, { {}, {}, {} });
    row("info", { u"info"_s, u"disk1"_s }, Verb::Info, { {}, {}, u"disk1"_s });
    row("verify", { u"verifyVolume"_s, u"disk1"_s }, Verb::VerifyVolume, { {}, {}, u"disk1"_s });
    row("repair", { u"repairVolume"_s, u"disk1"_s }, Verb::RepairVolume, { {}, {}, u"disk1"_s });
    row("unlock", { u"unlockVolume"_s, u"disk1"_s }, Verb::UnlockVolume, { {}, {}, u"disk1"_s });
    row("lock", { u"lockVolume"_s, u"disk1"_s }, Verb::LockVolume, { {}, {}, u"disk1"_s });
    row("erase", { u"eraseVolume"_s, u"MS-DOS FAT32"_s, u"A B"_s, u"disk1"_s }, Verb::EraseVolume,
        { u"MS-DOS FAT32"_s, u"A B"_s, u"disk1"_s });
    row("erase without a name", { u"eraseVolume"_s, u"ext4"_s, u""_s, u"disk1"_s }, Verb::EraseVolume,
        { u"ext4"_s, u""_s, u"disk1"_s });
    row("a name that looks like an option", { u"eraseVolume"_s, u"ext4"_s, u"--help"_s, u"disk1"_s },
        Verb::EraseVolume, { u"ext4"_s, u"--help"_s, u"disk1"_s });
}

void TestDiskutilRules::commandLine()
{
    QFETCH(QStringList, arguments);
    const auto parsed = parseCommandLine(arguments);
    const auto *line = std::get_if<CommandLine>(&parsed);
    QVERIFY(line);
    QTEST(static_cast<int>(line->verb), "verb");
    QTEST(QStringList({ line->format, line->name, line->device }), "operands");
}

void TestDiskutilRules::commandLineThatMakesNoSense_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("unknown verb") << QStringList { u"eraseDisk"_s, u"disk1"_s };
    QTest::newRow("too few") << QStringList { u"eraseVolume"_s, u"ext4"_s, u"disk1"_s };
    QTest::newRow("too many") << QStringList { u"verifyVolume"_s, u"disk1"_s, u"disk2"_s };
    QTest::newRow("verb in another case") << QStringList { u"verifyvolume"_s, u"disk1"_s };
}

void TestDiskutilRules::commandLineThatMakesNoSense()
{
    QFETCH(QStringList, arguments);
    const auto parsed = parseCommandLine(arguments);
    const auto *refusal = std::get_if<Refusal>(&parsed);
    QVERIFY(refusal);
    QCOMPARE(refusal->code, ExitCode::Usage);
}

void TestDiskutilRules::bsdNameOfAnArgument_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("bsdName");
    QTest::newRow("name") << u"disk2s1"_s << u"disk2s1"_s;
    QTest::newRow("node") << u"/dev/disk12"_s << u"disk12"_s;
    QTest::newRow("Linux node") << u"/dev/sda1"_s << QString();
    QTest::newRow("folder of links") << u"/dev/disk/by-id/x"_s << QString();
    QTest::newRow("more behind it") << u"disk2s1x"_s << QString();
    QTest::newRow("line end behind it") << u"disk2\n"_s << QString();
    QTest::newRow("no number") << u"disk"_s << QString();
}

void TestDiskutilRules::bsdNameOfAnArgument()
{
    QFETCH(QString, argument);
    QTEST(bsdNameOfArgument(argument), "bsdName");
}

void TestDiskutilRules::labels_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("isAllowed");
    const auto row = [](const char *name, const QString &unit, qint64 limit, const QString &label,
                         bool allowed) { QTest::newRow(name) << unit << limit << label << allowed; };
    row("empty", u"bytes"_s, 0, u""_s, true);
    row("bytes at the limit", u"bytes"_s, 4, u"éé"_s, true);
    row("bytes beyond", u"bytes"_s, 4, u"ééx"_s, false);
    row("code units at the limit", u"utf16"_s, 4, u"ééé日"_s, true);
    row("surrogates count twice", u"utf16"_s, 3, u"😀😀"_s, false);
    row("ASCII at the limit", u"ascii"_s, 3, u"ABC"_s, true);
    row("ASCII beyond", u"ascii"_s, 3, u"ABCD"_s, false);
    row("not ASCII", u"ascii"_s, 3, u"É"_s, false);
    row("8 bits at the limit", u"osta"_s, 4, u"éééé"_s, true);
    row("8 bits beyond", u"osta"_s, 4, u"ééééé"_s, false);
    row("16 bits at the limit", u"osta"_s, 4, u"日本"_s, true);
    row("16 bits beyond", u"osta"_s, 4, u"日本x"_s, false);
    row("forbidden character", u"ascii"_s, 9, u"A:B"_s, false);
    row("forbidden first character", u"ascii"_s, 9, u" A"_s, false);
    row("the same later", u"ascii"_s, 9, u"A B"_s, true);
    row("line end", u"bytes"_s, 9, u"A\nB"_s, false);
    row("control character beyond ASCII", u"bytes"_s, 9, u"A\u0085B"_s, false);
    row("lone surrogate", u"utf16"_s, 9, QString(QChar(0xd800)), false);
    row("bytes that were no text", u"bytes"_s, 9, QString(QChar(QChar::ReplacementCharacter)), false);
    row("no limit declared", u"unknown"_s, 1, u"as long as it likes"_s, true);
}

void TestDiskutilRules::labels()
{
    QFETCH(QString, unit);
    QFETCH(qint64, limit);
    QFETCH(QString, label);
    LabelRule rule;
    rule.unit = labelUnitNamed(unit).value_or(LabelRule::Unit::Unlimited);
    rule.limit = limit;
    rule.forbidden = u":/"_s;
    rule.forbiddenFirst = u" "_s;
    QTEST(!reasonAgainstLabel(rule, label).has_value(), "isAllowed");
}

void TestDiskutilRules::labelUnits()
{
    QCOMPARE(labelUnitNamed(u"utf16"_s), std::optional(LabelRule::Unit::Utf16));
    QCOMPARE(labelUnitNamed(u"UTF16"_s), std::nullopt);
}

void TestDiskutilRules::bundleWithOddValues()
{
    const FilesystemBundle bundle = bundleOf({}, u"x"_s, fatInformation());
    QCOMPARE(bundle.personalities.size(), std::size_t { 3 }); // the one that is a text is left out
    QCOMPARE(bundle.personalities.at(1).key, u"FAT16"_s);
    QCOMPARE(bundle.personalities.at(1).minimumSize, std::optional<qint64>(1000));
    QCOMPARE(bundle.personalities.at(1).format->arguments, QStringList({ u"-F"_s, u"16"_s }));
    QCOMPARE(bundle.labelRule.limit, 11);
    QCOMPARE(bundle.requiredTools, QStringList { u"mkfs.fat"_s });

    const PropertyDictionary odd { { u"FSPersonalities"_s,
                                       PropertyDictionary { { u"X"_s, PropertyDictionary() } } },
        { u"FSLabelLimit"_s, u"11"_s }, { u"FSLabelUnit"_s, PropertyNumber(qint64 { 1 }) },
        { u"FSLinuxTools"_s, u"mkfs.fat"_s } };
    const FilesystemBundle oddBundle = bundleOf({}, u"x"_s, odd);
    QVERIFY(oddBundle.requiredTools.isEmpty());
    QVERIFY(oddBundle.labelRule.unit == LabelRule::Unit::Unlimited);
}

void TestDiskutilRules::executablesOutsideTheBundleAreNotTaken()
{
    for (const QString &name : { u"../verify"_s, u"/bin/true"_s, u".."_s, u""_s, u"a/b"_s }) {
        const PropertyDictionary personality { { u"FSVerificationExecutable"_s, name } };
        const PropertyDictionary information { { u"FSPersonalities"_s,
            PropertyDictionary { { u"X"_s, personality } } } };
        const auto bundle = bundleOf({}, u"x"_s, information);
        QVERIFY2(!bundle.personalities.front().verification, qPrintable(name));
    }
}

void TestDiskutilRules::formatComesFromTheFirstBundle()
{
    const auto installed = bundles();
    const PersonalityChoice choice = personalityNamed(installed, u"FAT16"_s);
    QCOMPARE(choice.bundle, &installed.front());
    QCOMPARE(choice.personality->key, u"FAT16"_s);
}

void TestDiskutilRules::formatIsNamedInAnyCaseAndAsTheMenuShowsIt()
{
    PropertyDictionary exfat { { u"FSPersonalities"_s,
        PropertyDictionary { { u"Big"_s,
            PropertyDictionary {
                { u"FSName"_s, u"ExFAT (large)"_s }, { u"FSFormatExecutable"_s, u"format"_s } } } } } };
    auto installed = bundles();
    installed.push_back(bundleOf({}, u"exfat"_s, exfat));
    const Personality *big = &installed.back().personalities.front();
    QCOMPARE(personalityNamed(installed, u"fat16"_s).personality->key, u"FAT16"_s);
    for (const QString &name : { u"Big"_s, u"bIG"_s, u"exFAT (large)"_s, u"EXFAT (LARGE)"_s })
        QCOMPARE(personalityNamed(installed, name).personality, big);
    QVERIFY(!personalityNamed(installed, u"exFAT"_s).personality);
    // A key letter for letter goes before one in another case, and that before a name of the menu.
    exfat.insert(u"FSPersonalities"_s,
        PropertyDictionary { { u"big"_s, PropertyDictionary {} },
            { u"x"_s, PropertyDictionary { { u"FSName"_s, u"fat16"_s } } } });
    installed.insert(installed.begin(), bundleOf({}, u"first"_s, exfat));
    QCOMPARE(personalityNamed(installed, u"Big"_s).bundle->name, u"exfat"_s);
    QCOMPARE(personalityNamed(installed, u"BIG"_s).bundle->name, u"first"_s);
    QCOMPARE(personalityNamed(installed, u"fat16"_s).personality->key, u"FAT16"_s);
    QCOMPARE(namesOfFormats(installed), QStringList({ u"FAT"_s, u"FAT16"_s, u"exFAT (large)"_s }));
    // A bundle that must not be run takes no name from another.
    installed.front().isTrusted = false;
    QCOMPARE(personalityNamed(installed, u"big"_s).bundle->name, u"exfat"_s);
    QCOMPARE(personalityNamed(installed, u"x"_s).bundle->name, u"first"_s);
}

void TestDiskutilRules::personalityOfAVolume_data()
{
    QTest::addColumn<int>("subtype"); // -1: unknown
    QTest::addColumn<QString>("key");
    QTest::newRow("just this one") << 2 << u"FAT16"_s;
    QTest::newRow("this one does not verify") << 3 << u"FAT"_s;
    QTest::newRow("none of this subtype") << 1 << u"FAT"_s;
    QTest::newRow("unknown") << -1 << u"FAT"_s;
}

void TestDiskutilRules::personalityOfAVolume()
{
    QFETCH(int, subtype);
    const auto installed = bundles();
    const auto number = subtype < 0 ? std::nullopt : std::optional<qint64>(subtype);
    const auto choice = personalityForVolume(installed, u"msdos"_s, number, Operation::Verify);
    QCOMPARE(choice.bundle, &installed.back());
    QVERIFY(choice.personality);
    QTEST(choice.personality->key, "key");

    // Only FAT32 repairs.
    const auto repair = personalityForVolume(installed, u"msdos"_s, number, Operation::Repair);
    QCOMPARE(repair.personality != nullptr, subtype == 3);
    QVERIFY(!personalityForVolume(installed, u"ext4"_s, number, Operation::Verify).bundle);
}

void TestDiskutilRules::bundlesThatServeTheSameVolumes()
{
    auto installed = bundles();
    QVERIFY(servesSameVolumes(installed, u"msdos"_s, u"zorvex_fat"_s));
    QVERIFY(!servesSameVolumes(installed, u"msdos"_s, u"ext4"_s));
    installed.back().linuxTypes = { u"ntfs"_s };
    QVERIFY(!servesSameVolumes(installed, u"msdos"_s, u"zorvex_fat"_s));
}

void TestDiskutilRules::operationsOfVerbs()
{
    QCOMPARE(PreflightRules::operationOfVerb(Verb::EraseVolume), std::optional(Operation::Erase));
    QCOMPARE(PreflightRules::operationOfVerb(Verb::VerifyVolume), std::optional(Operation::Verify));
    QCOMPARE(PreflightRules::operationOfVerb(Verb::RepairVolume), std::optional(Operation::Repair));
    for (const Verb verb : { Verb::Help, Verb::List, Verb::Info })
        QVERIFY(!PreflightRules::operationOfVerb(verb));
}

void TestDiskutilRules::refusedDevices()
{
    const Medium medium = volume();
    QCOMPARE(
        codeOf(PreflightRules::refusalOfDevice(Operation::Erase, medium, freeDevice())), ExitCode::Success);

    PreflightRules::DeviceSituation situation = freeDevice();
    situation.isBlockDevice = false;
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)),
        ExitCode::NoBlockDevice);
    situation = freeDevice();
    situation.systemUse = SystemUse::Current;
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)),
        ExitCode::SystemVolume);
    situation.systemUse = SystemUse::Named;
    QCOMPARE(
        codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)), ExitCode::Success);
    for (const Operation operation : { Operation::Repair, Operation::Erase })
        QCOMPARE(
            codeOf(PreflightRules::refusalOfDevice(operation, medium, situation)), ExitCode::SystemVolume);
    situation = freeDevice();
    situation.inUse = { u"dm-0 uses it"_s };
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)), ExitCode::InUse);
    situation = freeDevice();
    situation.canWrite = false;
    QCOMPARE(
        codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)), ExitCode::Success);
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Repair, medium, situation)),
        ExitCode::NotPermitted);
    situation.canRead = false;
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Verify, medium, situation)),
        ExitCode::NotPermitted);

    Medium readOnly = medium;
    readOnly.isWritable = false;
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Verify, readOnly, freeDevice())),
        ExitCode::Success);
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Repair, readOnly, freeDevice())),
        ExitCode::ReadOnly);
    QCOMPARE(codeOf(PreflightRules::refusalOfDevice(Operation::Erase, readOnly, freeDevice())),
        ExitCode::ReadOnly);
}

void TestDiskutilRules::refusedChoices()
{
    const auto installed = bundles();
    const QStringList formats = namesOfFormats(installed);
    const CommandLine erase { Verb::EraseVolume, u"FAT16"_s, u"NAME"_s, {} };
    const CommandLine verify { Verb::VerifyVolume, {}, {}, {} };
    QCOMPARE(codeOf(PreflightRules::refusalOfChoice(
                 Operation::Erase, erase, volume(), personalityNamed(installed, u"FAT16"_s), formats)),
        ExitCode::Success);
    const auto noFormat = PreflightRules::refusalOfChoice(Operation::Erase, erase, volume(), {}, formats);
    QCOMPARE(codeOf(noFormat), ExitCode::UnknownFormat);
    QVERIFY(noFormat->message.endsWith(u": FAT, FAT16"_s));
    QCOMPARE(codeOf(PreflightRules::refusalOfChoice(
                 Operation::Erase, erase, volume(), personalityNamed(installed, u"FAT32"_s), formats)),
        ExitCode::NotSupported);
    QCOMPARE(codeOf(PreflightRules::refusalOfChoice(Operation::Verify, verify, volume(), {}, formats)),
        ExitCode::NotSupported);
    Medium unknown = volume();
    unknown.kind.clear();
    const auto refusal = PreflightRules::refusalOfChoice(Operation::Verify, verify, unknown, {}, formats);
    QCOMPARE(codeOf(refusal), ExitCode::NotSupported);
    QVERIFY(refusal->message.contains(u"no known file system"_s));
}

void TestDiskutilRules::refusedErases()
{
    const auto installed = bundles();
    const auto choice = personalityNamed(installed, u"FAT16"_s);
    CommandLine line { Verb::EraseVolume, u"FAT16"_s, u"NAME"_s, {} };
    Medium medium = volume();
    for (const qint64 size : { 1000, 1500, 2000 }) {
        medium.size = size;
        QCOMPARE(codeOf(PreflightRules::refusalOfErase(line, medium, choice)), ExitCode::Success);
    }
    for (const qint64 size : { 999, 2001 }) {
        medium.size = size;
        QCOMPARE(codeOf(PreflightRules::refusalOfErase(line, medium, choice)), ExitCode::SizeOutOfRange);
    }
    medium.size = 1500;
    line.name = u"ABCDEFGHIJKL"_s;
    QCOMPARE(codeOf(PreflightRules::refusalOfErase(line, medium, choice)), ExitCode::NameRefused);
}

void TestDiskutilRules::refusedTools()
{
    const auto installed = bundles();
    QCOMPARE(codeOf(PreflightRules::refusalOfTool(installed.front(), {})), ExitCode::Success);
    const auto missing = PreflightRules::refusalOfTool(installed.front(), { { u"mkfs.fat"_s }, {} });
    QCOMPARE(codeOf(missing), ExitCode::ToolMissing);
    QVERIFY(missing->message.contains(u"dosfstools"_s));
    QCOMPARE(codeOf(PreflightRules::refusalOfTool(installed.front(), { {}, u"anyone may write"_s })),
        ExitCode::UntrustedBundle);
}

void TestDiskutilRules::layoutOfADisk_data()
{
    QTest::addColumn<PartitionScheme>("scheme");
    QTest::addColumn<qint64>("diskSize");
    QTest::addColumn<qint64>("size"); // 0: none
    constexpr qint64 mebibyte = qint64 { 1 } << 20;
    QTest::newRow("MBR") << PartitionScheme::Mbr << 100 * mebibyte << 99 * mebibyte;
    QTest::newRow("GPT") << PartitionScheme::Gpt << 100 * mebibyte << 98 * mebibyte;
    QTest::newRow("odd size") << PartitionScheme::Mbr << 100 * mebibyte - 512 << 98 * mebibyte;
    QTest::newRow("smallest") << PartitionScheme::Mbr << 2 * mebibyte << mebibyte;
    QTest::newRow("too small") << PartitionScheme::Mbr << 2 * mebibyte - 512 << qint64 { 0 };
    QTest::newRow("too small for the copy") << PartitionScheme::Gpt << 2 * mebibyte << qint64 { 0 };
    QTest::newRow("no medium") << PartitionScheme::Gpt << qint64 { 0 } << qint64 { 0 };
    constexpr qint64 reach = qint64 { 1 } << 41;
    QTest::newRow("as far as MBR reaches") << PartitionScheme::Mbr << reach << reach - mebibyte;
    QTest::newRow("beyond") << PartitionScheme::Mbr << reach + 512 << qint64 { 0 };
    QTest::newRow("GPT beyond") << PartitionScheme::Gpt << 2 * reach << 2 * reach - 2 * mebibyte;
}

void TestDiskutilRules::layoutOfADisk()
{
    QFETCH(const PartitionScheme, scheme);
    QFETCH(const qint64, diskSize);
    QFETCH(const qint64, size);
    const auto layout = DiskLayoutRules::layoutOfDisk(scheme, diskSize);
    QCOMPARE(layout.has_value(), size > 0);
    if (layout) {
        QCOMPARE(layout->start, qint64 { 1 } << 20);
        QCOMPARE(layout->size, size);
    }
}

void TestDiskutilRules::schemesOfDisks()
{
    constexpr qint64 reach = qint64 { 1 } << 41;
    QCOMPARE(DiskLayoutRules::usualScheme(true, reach), PartitionScheme::Mbr);
    QCOMPARE(DiskLayoutRules::usualScheme(true, reach + 512), PartitionScheme::Gpt);
    QCOMPARE(DiskLayoutRules::usualScheme(false, 1000), PartitionScheme::Gpt);

    const auto parsed = parseCommandLine({ u"eraseDisk"_s, u"ext4"_s, u"N"_s, u"gpt"_s, u"disk1"_s });
    QCOMPARE(std::get<CommandLine>(parsed).scheme, std::optional(PartitionScheme::Gpt));
    QCOMPARE(std::get<CommandLine>(parsed).device, u"disk1"_s);
    const auto plain = parseCommandLine({ u"eraseDisk"_s, u"ext4"_s, u"MBR"_s, u"disk1"_s });
    QVERIFY(!std::get<CommandLine>(plain).scheme);
    QCOMPARE(std::get<CommandLine>(plain).name, u"MBR"_s);
    const auto other = parseCommandLine({ u"eraseDisk"_s, u"ext4"_s, u"N"_s, u"APM"_s, u"disk1"_s });
    QCOMPARE(std::get<Refusal>(other).code, ExitCode::Usage);
}

// What becomes part of a script is a type, and nothing more.
void TestDiskutilRules::scriptsForTheTable()
{
    const DiskLayout layout { PartitionScheme::Gpt, qint64 { 1 } << 20, qint64 { 98 } << 20 };
    QCOMPARE(DiskLayoutRules::sfdiskScript(layout, {}),
        "label: gpt\nstart=1MiB, size=98MiB, type=0FC63DAF-8483-4772-8E79-3D69D8477DE4\n"_ba);
    PropertyDictionary personality { { u"FSPartitionTypeGPT"_s, u"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"_s },
        { u"FSPartitionTypeMBR"_s, u"0c"_s } };
    const auto typesOf = [&personality] {
        const PropertyDictionary information { { u"FSPersonalities"_s,
            PropertyDictionary { { u"X"_s, personality } } } };
        return bundleOf({}, u"x"_s, information).personalities.front().partitionTypes;
    };
    QCOMPARE(typesOf().gpt, u"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"_s);
    QCOMPARE(typesOf().mbr, u"0c"_s);
    personality.insert(u"FSPartitionTypeGPT"_s, u"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7\nsize=1"_s);
    personality.insert(u"FSPartitionTypeMBR"_s, u"0c, bootable"_s);
    QCOMPARE(typesOf().gpt, PartitionTypes().gpt);
    QCOMPARE(typesOf().mbr, u"83"_s);
}

QTEST_APPLESS_MAIN(TestDiskutilRules)
#include "tst_diskutil_rules.moc"
