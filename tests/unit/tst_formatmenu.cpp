// SPDX-License-Identifier: MIT
//
// The format menu: titles, icons, which items fit the selected disk, and where the selection goes.
#include "filesystems/format_menu_rules.h"

#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 megabyte = 1'000'000;
constexpr qint64 gigabyte = 1000 * megabyte;

PropertyValue number(qint64 value)
{
    return PropertyNumber(value);
}

FilesystemBundleRef makeRecord(const QString &bundleName, std::optional<PropertyValue> minimum = {},
    std::optional<PropertyValue> maximum = {})
{
    FilesystemBundleRef record = ZorvexDiskManagerFSBundle::alloc();
    record->bundleName = bundleName;
    record->fsFormatMinimumSize = std::move(minimum);
    record->fsFormatMaximumSize = std::move(maximum);
    return record;
}

FormatMenuRules::FormatMenu menuOf(const FilesystemBundleList &list, std::optional<qint64> size = {},
    const FilesystemBundleRef &remembered = {})
{
    return FormatMenuRules::formatMenuItems(list, size, remembered,
        [](const ZorvexDiskManagerFSBundle &record) { return QString("title of "_L1 + record.bundleName); });
}

bool isEnabledFor(const FilesystemBundleRef &record, std::optional<qint64> size)
{
    return menuOf({ record }, size).items.front().isEnabled();
}

} // namespace

class TestFormatMenu : public QObject
{
    Q_OBJECT

private slots:
    void emptyListGivesAnEmptyMenuWithoutSelection();
    void itemsFollowTheListWithTitleAndRecord();
    void onlyOwnFilesystemsHaveTheIcon();
    void itemTooLargeForTheDiskIsDisabled();
    void boundsAreInclusive();
    void withoutADiskEveryItemIsEnabled();
    void diskOfUnknownSizeCountsAsEmpty();
    void minimumBeyondTheSignedRangeDisables();
    void boundsOfAnotherTypeBindNothing_data();
    void boundsOfAnotherTypeBindNothing();
    void nothingRememberedSelectsNothing();
    void rememberedItemStaysSelected();
    void rememberedRecordIsFoundByOrderNotIdentity();
    void rememberedRecordThatIsGoneSelectsNothing();
    void lastOfEqualItemsIsSelected();
    void selectionMovesUpToTheNearestEnabledItem();
    void selectionNeverMovesDown();
    void subtypesOfAnotherTypeCompareAsAbsent();
};

void TestFormatMenu::emptyListGivesAnEmptyMenuWithoutSelection()
{
    const FormatMenuRules::FormatMenu menu = menuOf({}, 5 * gigabyte, makeRecord(u"msdos"_s));
    QVERIFY(menu.items.empty());
    QCOMPARE(menu.selectedIndex, -1);
}

void TestFormatMenu::itemsFollowTheListWithTitleAndRecord()
{
    const FilesystemBundleList list { makeRecord(u"zorvex_ntfs"_s), makeRecord(u"msdos"_s) };
    const FormatMenuRules::FormatMenu menu = menuOf(list);
    QCOMPARE(menu.items.size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        QCOMPARE(menu.items[i].record, list[i]);
        QCOMPARE(menu.items[i].title, "title of "_L1 + list[i]->bundleName);
    }
}

void TestFormatMenu::onlyOwnFilesystemsHaveTheIcon()
{
    const FormatMenuRules::FormatMenu menu
        = menuOf({ makeRecord(u"fusefs_qvontfs"_s), makeRecord(u"zorvex_exfat"_s), makeRecord(u"exfat"_s),
            makeRecord(u"Zorvex_exfat"_s), makeRecord(u"fusefs"_s) });
    QList<bool> icons;
    for (const FormatMenuRules::FormatMenuItem &item : menu.items)
        icons.append(item.hasOwnIcon);
    QCOMPARE(icons, QList<bool>({ true, true, false, false, false }));
}

void TestFormatMenu::itemTooLargeForTheDiskIsDisabled()
{
    const FilesystemBundleRef record = makeRecord(u"xfs"_s, number(gigabyte));
    QVERIFY(!isEnabledFor(record, 100 * megabyte));
    QVERIFY(isEnabledFor(record, {}));
}

void TestFormatMenu::boundsAreInclusive()
{
    const FilesystemBundleRef record = makeRecord(u"msdos"_s, number(megabyte), number(gigabyte));
    QVERIFY(!isEnabledFor(record, megabyte - 1));
    QVERIFY(isEnabledFor(record, megabyte));
    QVERIFY(isEnabledFor(record, gigabyte));
    QVERIFY(!isEnabledFor(record, gigabyte + 1));
}

void TestFormatMenu::withoutADiskEveryItemIsEnabled()
{
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, number(std::numeric_limits<qint64>::max())), {}));
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, {}, number(-1)), {}));
}

void TestFormatMenu::diskOfUnknownSizeCountsAsEmpty()
{
    QVERIFY(!isEnabledFor(makeRecord(u"a"_s, number(1)), 0));
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, number(0), number(0)), 0));
    QVERIFY(isEnabledFor(makeRecord(u"a"_s), 0));
}

void TestFormatMenu::minimumBeyondTheSignedRangeDisables()
{
    const PropertyValue beyond = PropertyNumber(std::numeric_limits<quint64>::max());
    QVERIFY(!isEnabledFor(makeRecord(u"a"_s, beyond), std::numeric_limits<qint64>::max()));
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, {}, beyond), std::numeric_limits<qint64>::max()));
}

void TestFormatMenu::boundsOfAnotherTypeBindNothing_data()
{
    QTest::addColumn<PropertyValue>("bound");
    QTest::newRow("null") << PropertyValue();
    QTest::newRow("string") << PropertyValue(u"524288"_s);
    QTest::newRow("boolean") << PropertyValue(true);
    QTest::newRow("data") << PropertyValue(QByteArray("x"));
    QTest::newRow("array") << PropertyValue(PropertyArray { number(1) });
    QTest::newRow("dictionary") << PropertyValue(PropertyDictionary());
}

void TestFormatMenu::boundsOfAnotherTypeBindNothing()
{
    QFETCH(const PropertyValue, bound);
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, bound, bound), 0));
    QVERIFY(isEnabledFor(makeRecord(u"a"_s, bound, bound), gigabyte));
    QVERIFY(!isEnabledFor(makeRecord(u"a"_s, bound, number(1)), gigabyte));
}

void TestFormatMenu::nothingRememberedSelectsNothing()
{
    QCOMPARE(menuOf({ makeRecord(u"a"_s), makeRecord(u"b"_s) }, gigabyte).selectedIndex, -1);
}

void TestFormatMenu::rememberedItemStaysSelected()
{
    const FilesystemBundleList list { makeRecord(u"a"_s), makeRecord(u"b"_s), makeRecord(u"c"_s) };
    for (std::size_t i = 0; i < list.size(); ++i)
        QCOMPARE(menuOf(list, gigabyte, list[i]).selectedIndex, static_cast<int>(i));
}

void TestFormatMenu::rememberedRecordIsFoundByOrderNotIdentity()
{
    const FilesystemBundleList list { makeRecord(u"a"_s), makeRecord(u"b"_s) };
    QCOMPARE(menuOf(list, {}, makeRecord(u"b"_s)).selectedIndex, 1);
}

void TestFormatMenu::rememberedRecordThatIsGoneSelectsNothing()
{
    QCOMPARE(menuOf({ makeRecord(u"a"_s) }, {}, makeRecord(u"b"_s)).selectedIndex, -1);
}

void TestFormatMenu::lastOfEqualItemsIsSelected()
{
    const FilesystemBundleList list { makeRecord(u"a"_s), makeRecord(u"a"_s), makeRecord(u"b"_s) };
    QCOMPARE(menuOf(list, {}, list[0]).selectedIndex, 1);
}

void TestFormatMenu::selectionMovesUpToTheNearestEnabledItem()
{
    const FilesystemBundleList list { makeRecord(u"a"_s), makeRecord(u"b"_s),
        makeRecord(u"c"_s, number(gigabyte)), makeRecord(u"d"_s, number(gigabyte)), makeRecord(u"e"_s) };
    QCOMPARE(menuOf(list, gigabyte, list[3]).selectedIndex, 3);
    QCOMPARE(menuOf(list, megabyte, list[3]).selectedIndex, 1);
}

void TestFormatMenu::selectionNeverMovesDown()
{
    const FilesystemBundleList list { makeRecord(u"a"_s, number(gigabyte)),
        makeRecord(u"b"_s, number(gigabyte)), makeRecord(u"c"_s) };
    QCOMPARE(menuOf(list, megabyte, list[1]).selectedIndex, -1);
}

void TestFormatMenu::subtypesOfAnotherTypeCompareAsAbsent()
{
    const FilesystemBundleList list { makeRecord(u"a"_s), makeRecord(u"a"_s) };
    list[1]->fsSubtype = number(1);
    const FilesystemBundleRef remembered = makeRecord(u"a"_s);
    remembered->fsSubtype = PropertyValue(u"1"_s);
    QCOMPARE(menuOf(list, {}, remembered).selectedIndex, 0);
}

QTEST_APPLESS_MAIN(TestFormatMenu)
#include "tst_formatmenu.moc"
