// SPDX-License-Identifier: MIT
//
// What the window offers to a keyboard, a screen reader and a reader of Arabic.
#include "tests/support/TestController.h"

#include "ui/direction_rules.h"
#include "ui/OutlineView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>

namespace {

MemoryDiskRef mountedVolume()
{
    const MemoryDiskRef volume = makePartition(QStringLiteral("disk2s1"), 1024, QStringLiteral("DATA"));
    volume->node = QStringLiteral("/dev/sdb1");
    volume->description->insert(DAKey::volumeKind, QStringLiteral("NTFS"));
    setMounted(volume, QStringLiteral("/media/DATA"));
    return volume;
}

QAction *actionOf(TestController &test, const QString &name)
{
    return test.window().findChild<QAction *>(name);
}

} // namespace

class TestEveryone : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowSaysWhatItIs();
    void menuItemsFollowTheirButtons();
    void menuOfARowIsForItsDisk();
    void labelIsCopied();
    void groupsOfDigitsKeepTheirOrderInArabic();
};

void TestEveryone::rowSaysWhatItIs()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    const OutlineView *view = test.controller().leftOutlineView;
    const QModelIndex row = view->model()->index(0, 0);
    QCOMPARE(row.data(Qt::DisplayRole).toString(), QStringLiteral("DATA"));
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), QStringLiteral("DATA, NTFS, mounted"));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), QStringLiteral("DATA, NTFS, not mounted"));
}

void TestEveryone::menuItemsFollowTheirButtons()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    QAction *const mount = actionOf(test, QStringLiteral("actionMountUnmount"));
    QAction *const show = actionOf(test, QStringLiteral("actionShowInFileManager"));
    QVERIFY(!mount->isEnabled());
    QVERIFY(!show->isEnabled());
    test.select(QStringLiteral("disk2s1"));
    QVERIFY(mount->isEnabled());
    QVERIFY(show->isEnabled());
    QCOMPARE(actionOf(test, QStringLiteral("actionFormat"))->isEnabled(),
        test.controller().formatButton->isEnabled());
    show->trigger();
    QCOMPARE(test.workspace->folders, QStringList { QStringLiteral("/media/DATA") });
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QVERIFY(mount->isEnabled());
    QVERIFY(!show->isEnabled());
}

void TestEveryone::menuOfARowIsForItsDisk()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk1")));
    test.add(mountedVolume());
    OutlineView *const view = test.controller().leftOutlineView;
    auto *menu = test.window().findChild<QMenu *>(QStringLiteral("diskMenu"));
    Q_EMIT view->customContextMenuRequested(view->frameOfCellAtColumn(0, 1).center());
    QCOMPARE(view->selectedRow(), 1);
    QVERIFY(menu->isVisible());
    menu->close();
    Q_EMIT view->customContextMenuRequested(QPoint(5, view->viewport()->height() - 2));
    QVERIFY(!menu->isVisible());
}

void TestEveryone::labelIsCopied()
{
    TestController test;
    test.launch();
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    test.window().activateWindow();
    test.controller().bsdNameLabel->setFocus();
    QTRY_COMPARE(QGuiApplication::focusObject(), test.controller().bsdNameLabel);
    actionOf(test, QStringLiteral("actionCopy"))->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("disk2s1"));
}

void TestEveryone::groupsOfDigitsKeepTheirOrderInArabic()
{
    QCOMPARE(DirectionRules::withGroupedNumbersKept(QStringLiteral("512 b, 500 107 862 016 b")),
        QStringLiteral("512 b, \u2066500 107 862 016\u2069 b"));
    TestController test(QStringLiteral("ar"));
    test.launch();
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    QVERIFY(
        test.controller().infoDiskSpaceLabel->toolTip().contains(QStringLiteral("\u2066100 000 000\u2069")));
    QVERIFY(test.controller().bsdNameLabel->toolTip().endsWith(QStringLiteral("\u2066/dev/sdb1\u2069")));
}

QTEST_MAIN(TestEveryone)
#include "tst_everyone.moc"
