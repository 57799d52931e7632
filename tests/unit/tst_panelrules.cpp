// SPDX-License-Identifier: MIT
//
// What the information panel shows and allows for a medium, without a window.
#include "ui/panel_rules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPanelRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void abilitiesOfAMedium_data();
    void abilitiesOfAMedium();
    void busyMediumAllowsNothing();
    void titleAndRowOfAMedium_data();
    void titleAndRowOfAMedium();
    void tabsOfAMedium_data();
    void tabsOfAMedium();
    void personalityOfTheSubtypeNamesTheVolume();
    void firstGeneralPersonalityNamesTheVolume();
    void exactPersonalityWinsAfterAGeneralOne();
    void subtypesAreComparedAs16Bits();
    void subtypeThatIsNoNumberIsGeneral();
    void absentListMatchesNothing();
    void percentageOfTheCurrentLine_data();
    void percentageOfTheCurrentLine();
};

namespace {

FilesystemBundleRef makeBundle(
    const QString &name, const std::optional<PropertyValue> &subtype = {}, const QString &personality = {})
{
    auto bundle = std::make_shared<ZorvexDiskManagerFSBundle>();
    bundle->bundleName = name;
    bundle->fsSubtype = subtype;
    bundle->fsPersonality = personality;
    return bundle;
}

PropertyValue numberValue(qint64 number)
{
    return PropertyValue(PropertyNumber(number));
}

const std::optional<FilesystemBundleList> fatList { FilesystemBundleList { makeBundle(u"msdos"_s) } };
const std::optional<FilesystemBundleList> noList { FilesystemBundleList {} };

enum Trait : unsigned {
    Whole = 0x1,
    Leaf = 0x2,
    Mountable = 0x4,
    Writable = 0x8,
    Internal = 0x10,
    Mounted = 0x20,
    Kind = 0x40,
    Busy = 0x80,
    ShowFormat = 0x100,
    ShowMaintenance = 0x200,
};

void setTraits(ZorvexDiskManagerDisk &disk, unsigned traits)
{
    disk.whole = traits & Whole ? 1 : 0;
    disk.leaf = traits & Leaf ? 1 : 0;
    disk.mountable = traits & Mountable;
    disk.writable = traits & Writable;
    disk.internal = traits & Internal;
    if (traits & Mounted)
        disk.volumePath = QUrl::fromLocalFile(u"/media/A"_s);
    if (traits & Kind)
        disk.volumeKind = u"msdos"_s;
    disk.operationInProgress = traits & Busy;
    disk.operationInProgressShowFormatTab = traits & ShowFormat;
    disk.operationInProgressShowMaintenanceTab = traits & ShowMaintenance;
}

} // namespace

void TestPanelRules::abilitiesOfAMedium_data()
{
    QTest::addColumn<unsigned>("traits");
    QTest::addColumn<bool>("isInLists");
    QTest::addColumn<QString>("abilities"); // m mount, f format, c check, r repair
    const unsigned volume = Leaf | Mountable | Writable | Kind;
    const auto row = [](const char *name, unsigned traits, bool isInLists, const QString &abilities) {
        QTest::newRow(name) << traits << isInLists << abilities;
    };
    row("a volume", volume, true, u"mfcr"_s);
    row("a mounted internal volume", volume | Mounted | Internal, true, u"mfcr"_s);
    row("a volume that cannot be written", Leaf | Mountable | Kind, true, u"mc"_s);
    row("a volume without a bundle", volume, false, u"mf"_s);
    row("a volume of no known kind", Leaf | Mountable | Writable, true, u"mf"_s);
    row("a partition that cannot be mounted", Leaf | Writable | Kind, true, u"mf"_s);
    row("a partition that has parts", Mountable | Writable | Kind, true, u"m"_s);
    row("a disk that is one volume", Whole | volume, true, u"mfcr"_s);
    row("an internal disk without parts", Whole | Leaf | Writable | Internal, true, u"mf"_s);
    row("a disk with partitions", Whole | Writable, true, u"m"_s);
    row("an internal disk with partitions", Whole | Writable | Internal, true, u""_s);
}

void TestPanelRules::abilitiesOfAMedium()
{
    QFETCH(unsigned, traits);
    QFETCH(bool, isInLists);
    ZorvexDiskManagerDisk disk;
    setTraits(disk, traits);
    const auto &list = isInLists ? fatList : noList;
    const PanelRules::Abilities abilities = PanelRules::abilitiesOf(disk, list, list);
    QString text;
    text += abilities.mountUnmount ? u"m"_s : QString();
    text += abilities.format ? u"f"_s : QString();
    text += abilities.check ? u"c"_s : QString();
    text += abilities.repair ? u"r"_s : QString();
    QTEST(text, "abilities");
}

void TestPanelRules::busyMediumAllowsNothing()
{
    ZorvexDiskManagerDisk disk;
    setTraits(disk, Leaf | Mountable | Writable | Kind);
    QVERIFY(PanelRules::abilitiesOf(disk, fatList, noList).check);
    QVERIFY(!PanelRules::abilitiesOf(disk, fatList, noList).repair);
    disk.operationInProgress = true;
    const PanelRules::Abilities abilities = PanelRules::abilitiesOf(disk, fatList, fatList);
    QVERIFY(!abilities.mountUnmount && !abilities.format && !abilities.check && !abilities.repair);
}

void TestPanelRules::titleAndRowOfAMedium_data()
{
    QTest::addColumn<unsigned>("traits");
    QTest::addColumn<QByteArray>("titleKey");
    QTest::addColumn<bool>("isUnmountable");
    QTest::newRow("a volume") << unsigned { Leaf } << QByteArray("MOUNT_BUTTON_TITLE") << false;
    QTest::newRow("a mounted volume")
        << unsigned { Leaf | Mounted } << QByteArray("UNMOUNT_BUTTON_TITLE") << true;
    QTest::newRow("a disk with partitions") << unsigned { Whole } << QByteArray("EJECT_BUTTON_TITLE") << true;
    QTest::newRow("a mounted disk with partitions")
        << unsigned { Whole | Mounted } << QByteArray("EJECT_BUTTON_TITLE") << true;
    QTest::newRow("a disk without partitions")
        << unsigned { Whole | Leaf } << QByteArray("MOUNT_BUTTON_TITLE") << false;
    QTest::newRow("a mounted disk without partitions")
        << unsigned { Whole | Leaf | Mounted } << QByteArray("UNMOUNT_BUTTON_TITLE") << true;
}

void TestPanelRules::titleAndRowOfAMedium()
{
    QFETCH(unsigned, traits);
    ZorvexDiskManagerDisk disk;
    setTraits(disk, traits);
    QTEST(QByteArray(PanelRules::buttonTitleKey(disk)), "titleKey");
    QTEST(PanelRules::isUnmountable(disk), "isUnmountable");
}

void TestPanelRules::tabsOfAMedium_data()
{
    QTest::addColumn<unsigned>("traits");
    QTest::addColumn<bool>("canFormat");
    QTest::addColumn<QString>("changes"); // + comes, - goes, = stays as it is
    const auto row = [](const char *name, unsigned traits, bool canFormat, const QString &changes) {
        QTest::newRow(name) << traits << canFormat << changes;
    };
    row("a volume", Leaf | Mountable, true, u"+format +maintenance"_s);
    row("a volume that cannot be formatted", Leaf | Mountable, false, u"-format +maintenance"_s);
    row("a partition that cannot be mounted", Leaf, true, u"-format -maintenance"_s);
    row("a disk with partitions", Whole, false, u"-format -maintenance"_s);
    row("a busy volume keeps what is there", Leaf | Mountable | Busy, false, u"=format +maintenance"_s);
    row("a busy disk keeps what is there", Whole | Busy, false, u"=format =maintenance"_s);
    row("a format shows its tab", Leaf | Busy | ShowFormat, false, u"+format =maintenance"_s);
    row("a check shows its tab", Leaf | Busy | ShowMaintenance, false, u"=format +maintenance"_s);
    row("flags without an operation show nothing", Leaf | ShowFormat | ShowMaintenance, false,
        u"-format -maintenance"_s);
}

void TestPanelRules::tabsOfAMedium()
{
    QFETCH(unsigned, traits);
    QFETCH(bool, canFormat);
    ZorvexDiskManagerDisk disk;
    setTraits(disk, traits);
    using PanelRules::TabChange;
    static const QHash<TabChange, QString> words { { TabChange::Keep, u"="_s }, { TabChange::Remove, u"-"_s },
        { TabChange::Insert, u"+"_s } };
    QTEST(QString(words.value(PanelRules::formatTabChange(disk, canFormat)) + u"format "_s
              + words.value(PanelRules::maintenanceTabChange(disk)) + u"maintenance"_s),
        "changes");
}

void TestPanelRules::personalityOfTheSubtypeNamesTheVolume()
{
    ZorvexDiskManagerDisk disk;
    disk.volumeKind = u"msdos"_s;
    disk.subtype = 2;
    const std::optional<FilesystemBundleList> list { FilesystemBundleList {
        makeBundle(u"MSDOS"_s, numberValue(2)), makeBundle(u"msdos"_s, numberValue(1)),
        makeBundle(u"msdos"_s, numberValue(2)), makeBundle(u"msdos"_s, numberValue(2)) } };
    QCOMPARE(PanelRules::namingBundle(disk, list), (*list)[2].get());
    disk.subtype = 3;
    QCOMPARE(PanelRules::namingBundle(disk, list), nullptr);
    QVERIFY(!PanelRules::hasMatchingBundle(disk, list));
}

void TestPanelRules::firstGeneralPersonalityNamesTheVolume()
{
    ZorvexDiskManagerDisk disk;
    disk.volumeKind = u"msdos"_s;
    disk.subtype = 5;
    const std::optional<FilesystemBundleList> list { FilesystemBundleList {
        makeBundle(u"msdos"_s, numberValue(1)), makeBundle(u"msdos"_s), makeBundle(u"msdos"_s) } };
    QCOMPARE(PanelRules::namingBundle(disk, list), (*list)[1].get());
}

void TestPanelRules::exactPersonalityWinsAfterAGeneralOne()
{
    ZorvexDiskManagerDisk disk;
    disk.volumeKind = u"msdos"_s;
    disk.subtype = 1;
    const std::optional<FilesystemBundleList> list { FilesystemBundleList {
        makeBundle(u"msdos"_s), makeBundle(u"msdos"_s, numberValue(1)), makeBundle(u"msdos"_s) } };
    QCOMPARE(PanelRules::namingBundle(disk, list), (*list)[1].get());
}

void TestPanelRules::subtypesAreComparedAs16Bits()
{
    ZorvexDiskManagerDisk disk;
    disk.volumeKind = u"msdos"_s;
    disk.subtype = -1;
    const std::optional<FilesystemBundleList> list { FilesystemBundleList {
        makeBundle(u"msdos"_s, numberValue(0xFFFF)) } };
    QCOMPARE(PanelRules::namingBundle(disk, list), (*list)[0].get());
    disk.subtype = 0xFFFF;
    QCOMPARE(PanelRules::namingBundle(disk, list), nullptr);
}

void TestPanelRules::subtypeThatIsNoNumberIsGeneral()
{
    ZorvexDiskManagerDisk disk;
    disk.volumeKind = u"msdos"_s;
    const std::optional<FilesystemBundleList> list { FilesystemBundleList {
        makeBundle(u"msdos"_s, PropertyValue(u"two"_s)) } };
    QCOMPARE(PanelRules::namingBundle(disk, list), (*list)[0].get());
}

void TestPanelRules::absentListMatchesNothing()
{
    ZorvexDiskManagerDisk disk;
    setTraits(disk, Leaf | Mountable | Writable | Kind);
    QCOMPARE(PanelRules::namingBundle(disk, std::nullopt), nullptr);
    QVERIFY(!PanelRules::abilitiesOf(disk, std::nullopt, std::nullopt).check);
}

void TestPanelRules::percentageOfTheCurrentLine_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<int>("percentage"); // -1 for none
    QTest::newRow("none") << QByteArray("Checking\n") << -1;
    QTest::newRow("current line") << QByteArray("10%\nChecking 42%") << 42;
    QTest::newRow("line that is over") << QByteArray("Checking 42%\n") << -1;
    QTest::newRow("decimals") << QByteArray("12.50 %") << 12;
    QTest::newRow("last of several") << QByteArray("10% 20%") << 20;
    QTest::newRow("more than all") << QByteArray("300%") << -1;
    QTest::newRow("all") << QByteArray("100%") << 100;
    QTest::newRow("not UTF-8") << QByteArray("\xff\xfe 7%") << 7;
    QTest::newRow("nothing") << QByteArray() << -1;
}

void TestPanelRules::percentageOfTheCurrentLine()
{
    QFETCH(QByteArray, output);
    QTEST(PanelRules::percentageIn(output).value_or(-1), "percentage");
}

QTEST_APPLESS_MAIN(TestPanelRules)
#include "tst_panelrules.moc"
