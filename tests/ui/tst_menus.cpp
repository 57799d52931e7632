// SPDX-License-Identifier: MIT
//
// The menus of the window and of a row: what they offer, for which disk, and by which keys.
#include "tests/support/TestController.h"

#include "ui/ImageButton.h"
#include "ui/OutlineView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Asks for the menu of a row with the mouse, and returns it.
QMenu *openMenuOfRow(TestController &test, int row)
{
    OutlineView *const view = test.controller().leftOutlineView;
    const QPoint name = view->frameOfCellAtColumn(0, row).center();
    QContextMenuEvent click(QContextMenuEvent::Mouse, name, view->viewport()->mapToGlobal(name));
    QApplication::sendEvent(view->viewport(), &click);
    return test.window().findChild<QMenu *>(u"rowMenu"_s);
}

QStringList titlesOf(const QMenu *menu)
{
    QStringList titles;
    for (const QAction *action : menu->actions()) {
        if (!action->isSeparator())
            titles.append(action->text().remove(u'&') + u'|' + action->shortcut().toString());
    }
    return titles;
}

} // namespace

class TestMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menuItemsFollowTheirButtons();
    void menuItemIsCalledAsTheButton();
    void everyMediumThatCanBeEjectedHasTheItem_data();
    void everyMediumThatCanBeEjectedHasTheItem();
    void formatItemNeedsItsPage();
    void menuClosesWithItsDisk();
    void menusShowTheirShortcuts();
    void menuOfARowIsForItsDisk();
    void menuOfARowOpensByKey();
    void nameOfARowIsCopied();
    void labelIsCopied();
    void fieldIsEditedFromTheMenu();
    void devicePathIsCopied();
    void keysShowThePages();
    void refreshReadsBundlesAndDisks_data();
    void refreshReadsBundlesAndDisks();
};

void TestMenus::menuItemsFollowTheirButtons()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"NTFS"_s, u"NTFS"_s);
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    const MemoryDiskRef readOnly = makePartition(u"disk2s2"_s, 2048);
    readOnly->description->insert(DAKey::volumeKind, u"NTFS"_s);
    readOnly->description->insert(DAKey::mediaWritable, false);
    test.add(readOnly);
    QAction *const mount = test.action(u"actionMountUnmount"_s);
    QAction *const show = test.action(u"actionShowInFileManager"_s);
    // Mount, format, check and repair.
    const auto enabled = [&test, mount] {
        QList<bool> states { mount->isEnabled() };
        for (const char *name : { "actionFormat", "actionCheck", "actionRepair" })
            states.append(test.action(QLatin1String(name))->isEnabled());
        return states;
    };
    QCOMPARE(enabled(), (QList<bool> { false, false, false, false }));
    QVERIFY(!show->isEnabled());
    test.select(u"disk2s2"_s);
    QCOMPARE(enabled(), (QList<bool> { true, false, true, false }));
    QVERIFY(!show->isEnabled());
    test.select(u"disk2s1"_s);
    QCOMPARE(enabled(), (QList<bool> { true, true, true, true }));
    QVERIFY(show->isEnabled());
    test.recordOf(u"disk2s1"_s)->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(enabled(), (QList<bool> { false, false, false, false }));
    test.recordOf(u"disk2s1"_s)->operationInProgress = false;
    test.controller().outlineViewSelectionDidChange();
    show->trigger();
    QCOMPARE(test.workspace->folders, QStringList { u"/media/DATA"_s });
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QVERIFY(mount->isEnabled());
    QVERIFY(!show->isEnabled());
}

void TestMenus::menuItemIsCalledAsTheButton()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    auto *menu = test.window().findChild<QMenu *>(u"diskMenu"_s);
    const auto title = [&](const QString &bsdName) {
        test.select(bsdName);
        menu->popup({});
        menu->close();
        return test.action(u"actionMountUnmount"_s)->text();
    };
    QCOMPARE(title(u"disk2s1"_s), u"&Unmount"_s);
    QCOMPARE(title(u"disk2"_s), u"E&ject"_s);
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(title(u"disk2s1"_s), u"&Mount"_s);
}

void TestMenus::everyMediumThatCanBeEjectedHasTheItem_data()
{
    QTest::addColumn<bool>("isEjectable");
    QTest::addColumn<bool>("isInternal");
    QTest::addColumn<bool>("isLeaf");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<bool>("isOffered");
    QTest::addColumn<QString>("reason");
    const QString isInternal = u"Internal disks are not ejected."_s;
    QTest::newRow("disc or bare stick") << true << false << true << true << true << u"Eject"_s;
    QTest::newRow("built-in disk") << false << true << true << true << false << isInternal;
    QTest::newRow("built-in drive with a lever") << true << true << true << true << false << isInternal;
    QTest::newRow("disk with partitions") << true << false << false << false << false << u"Eject"_s;
    QTest::newRow("built-in disk with partitions") << false << true << false << false << false << isInternal;
    QTest::newRow("other disk") << false << false << true << true << false
                                << u"This disk cannot be ejected."_s;
}

void TestMenus::everyMediumThatCanBeEjectedHasTheItem()
{
    QFETCH(bool, isEjectable);
    QFETCH(bool, isInternal);
    QFETCH(bool, isLeaf);
    TestController test;
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaEjectable, isEjectable);
    disk->description->insert(DAKey::deviceInternal, isInternal);
    disk->description->insert(DAKey::mediaLeaf, isLeaf);
    setMounted(disk, u"/media/DISC"_s);
    test.add(disk);
    QAction *const eject = test.action(u"actionEject"_s);
    QVERIFY(eject->isVisible() && !eject->isEnabled()); // nothing is selected
    QCOMPARE(eject->toolTip(), u"Select a disk or volume"_s);
    test.select(u"disk2"_s);
    QTEST(eject->isVisible(), "isShown");
    QTEST(eject->isVisible() && eject->isEnabled(), "isOffered");
    QTEST(eject->toolTip(), "reason");
    if (!eject->isVisible() || !eject->isEnabled())
        return;
    eject->trigger();
    QVERIFY(!eject->isEnabled()); // while it is at work
    using Kind = MemoryDiskService::RequestKind;
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().kind, Kind::Unmount);
    QCOMPARE(test.service.requests().front().options, quint32 { kDADiskUnmountOptionWhole });
    test.service.completeRequest();
    QCOMPARE(test.service.requests().front().kind, Kind::Eject);
    test.service.completeRequest();
    QVERIFY(test.sheets().isEmpty());
    QVERIFY(eject->isEnabled());
}

void TestMenus::formatItemNeedsItsPage()
{
    TestController test;
    test.launch();
    QAction *const format = test.action(u"actionFormat"_s);
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    test.select(u"disk2s1"_s);
    QVERIFY(format->isEnabled());
    format->trigger();
    QCOMPARE(test.controller().rightTabView->currentWidget(), test.controller().formatTab);
    // Without a volume there is no page to choose a file system on.
    volume->description->insert(DAKey::volumeMountable, false);
    test.service.changeDisk(volume);
    QCOMPARE(test.controller().rightTabView->indexOf(test.controller().formatTab), -1);
    QVERIFY(!format->isEnabled());
}

void TestMenus::menuClosesWithItsDisk()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    test.add(makePartition(u"disk3s1"_s, 1024));
    const QAction *const mount = test.action(u"actionMountUnmount"_s);
    for (QMenu *menu : { openMenuOfRow(test, 0), test.window().findChild<QMenu *>(u"diskMenu"_s) }) {
        test.select(u"disk2s1"_s);
        menu->popup({});
        QVERIFY(menu->isVisible());
        // The same disk in another state, and another disk that is not selected.
        setMounted(volume, {});
        test.service.changeDisk(volume);
        QCOMPARE(mount->text(), u"&Mount"_s);
        test.add(makePartition(u"disk4s1"_s, 1024));
        QVERIFY(menu->isVisible());
        test.service.removeDisk(volume);
        QCOMPARE(test.controller().bsdNameLabel->text(), u"disk3s1"_s);
        QVERIFY2(!menu->isVisible(), qPrintable(menu->objectName()));
        setMounted(volume, u"/media/DATA"_s);
        test.add(volume);
    }
}

void TestMenus::menusShowTheirShortcuts()
{
    TestController test;
    test.launch();
    const QStringList operations { u"Mount|Ctrl+E"_s, u"Eject|Ctrl+Shift+E"_s, u"Format…|Ctrl+Shift+F"_s,
        u"Erase Disk…|"_s, u"Check|Ctrl+K"_s, u"Repair|"_s };
    const QString show = u"Show in File Manager|Ctrl+Return"_s;
    QCOMPARE(titlesOf(test.window().findChild<QMenu *>(u"diskMenu"_s)), operations + QStringList { show });
    QCOMPARE(titlesOf(test.window().findChild<QMenu *>(u"rowMenu"_s)),
        operations + QStringList({ u"Copy|Ctrl+C"_s, u"Copy Device Path|"_s, show }));
    QCOMPARE(test.window().menuBar()->actions().size(), 4);
    QSet<QKeySequence> shortcuts;
    for (const QAction *action : test.window().findChildren<QAction *>()) {
        for (const QKeySequence &shortcut : action->shortcuts()) {
            QVERIFY2(!shortcuts.contains(shortcut), qPrintable(action->text()));
            shortcuts.insert(shortcut);
        }
    }
}

void TestMenus::menuOfARowIsForItsDisk()
{
    for (const QString &language : { u"en"_s, u"ar"_s }) {
        TestController test(language);
        test.launch();
        test.add(makeDisk(u"disk1"_s));
        test.add(makeMountedVolume());
        OutlineView *const view = test.controller().leftOutlineView;
        QMenu *const menu = openMenuOfRow(test, 1);
        QCOMPARE(view->selectedRow(), 1);
        QVERIFY(menu->isVisible());
        QCOMPARE(test.action(u"actionMountUnmount"_s)->isEnabled(),
            test.controller().mountUnmountButton->isEnabled());
        menu->close();
        const QPoint nothing(5, view->viewport()->height() - 2);
        QContextMenuEvent beside(QContextMenuEvent::Mouse, nothing, view->viewport()->mapToGlobal(nothing));
        QApplication::sendEvent(view->viewport(), &beside);
        QVERIFY(!menu->isVisible());
    }
}

void TestMenus::menuOfARowOpensByKey()
{
    TestController test;
    test.launch();
    test.add(makeDisk(u"disk1"_s));
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    OutlineView *const view = test.controller().leftOutlineView;
    view->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    // The platform turns the key into this event.
    const QPoint cursor = view->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, cursor, view->mapToGlobal(cursor));
    QApplication::sendEvent(view, &key);
    auto *menu = test.window().findChild<QMenu *>(u"rowMenu"_s);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(view->selectedRow(), 1);
    QVERIFY(view->rect().contains(view->mapFromGlobal(menu->pos())));
    QTest::keyClick(menu, Qt::Key_U);
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().kind, MemoryDiskService::RequestKind::Unmount);
}

void TestMenus::nameOfARowIsCopied()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    test.window().activateWindow();
    test.controller().leftOutlineView->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"DATA"_s);
}

void TestMenus::labelIsCopied()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    test.window().activateWindow();
    test.controller().bsdNameLabel->setFocus();
    QTRY_COMPARE(QGuiApplication::focusObject(), test.controller().bsdNameLabel);
    test.action(u"actionCopy"_s)->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"disk2s1"_s);
}

void TestMenus::fieldIsEditedFromTheMenu()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"NTFS"_s, u"NTFS"_s);
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    test.controller().rightTabView->setCurrentWidget(test.controller().formatTab);
    QLineEdit *const field = test.controller().formatVolumeLabelField;
    auto *menu = test.window().findChild<QMenu *>(u"editMenu"_s);
    // Undo, cut, paste.
    const auto enabled = [&] {
        menu->popup({});
        menu->close();
        QList<bool> states;
        for (const char *name : { "actionUndo", "actionCut", "actionPaste" })
            states.append(test.action(QLatin1String(name))->isEnabled());
        return states;
    };
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QGuiApplication::clipboard()->setText(u"PASTED"_s);
    test.controller().leftOutlineView->setFocus();
    QCOMPARE(enabled(), (QList<bool> { false, false, false }));
    field->setFocus();
    field->setText(u"OLD"_s);
    QCOMPARE(enabled(), (QList<bool> { false, false, true }));
    test.action(u"actionSelectAll"_s)->trigger();
    QCOMPARE(enabled(), (QList<bool> { false, true, true }));
    test.action(u"actionPaste"_s)->trigger();
    QCOMPARE(field->text(), u"PASTED"_s);
    QCOMPARE(enabled(), (QList<bool> { true, false, true }));
    test.action(u"actionUndo"_s)->trigger();
    QCOMPARE(field->text(), u"OLD"_s);
    field->selectAll();
    QVERIFY(enabled().at(1));
    test.action(u"actionCut"_s)->trigger();
    QCOMPARE(field->text(), QString());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"OLD"_s);
    QCOMPARE(titlesOf(menu),
        (QStringList { u"Undo|Ctrl+Z"_s, u"Cut|Ctrl+X"_s, u"Copy|Ctrl+C"_s, u"Paste|Ctrl+V"_s,
            u"Select All|Ctrl+A"_s }));
}

void TestMenus::devicePathIsCopied()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    volume->node = u"/dev/sdx1"_s;
    test.add(volume);
    const MemoryDiskRef other = makePartition(u"disk2s2"_s, 2048);
    other->node.clear();
    test.add(other);
    test.select(u"disk2s1"_s);
    QAction *const copy = test.action(u"actionCopyDevicePath"_s);
    QVERIFY(copy->isEnabled());
    copy->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"/dev/sdx1"_s);
    test.select(u"disk2s2"_s);
    QVERIFY(!copy->isEnabled());
}

void TestMenus::keysShowThePages()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"NTFS"_s, u"NTFS"_s);
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    ZorvexDiskManagerAppDelegate &controller = test.controller();
    controller.leftOutlineView->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    const auto press
        = [&test](Qt::Key key) { QTest::keyClick(test.window().windowHandle(), key, Qt::ControlModifier); };
    press(Qt::Key_3);
    QCOMPARE(controller.rightTabView->currentWidget(), controller.maintenanceTab);
    press(Qt::Key_2);
    QCOMPARE(controller.rightTabView->currentWidget(), controller.formatTab);
    press(Qt::Key_1);
    QCOMPARE(controller.rightTabView->currentWidget(), controller.infoTab);
    // A page that is not there.
    test.controller().leftOutlineView->selectRow(-1);
    press(Qt::Key_3);
    QCOMPARE(controller.rightTabView->currentWidget(), controller.infoTab);
}

void TestMenus::refreshReadsBundlesAndDisks_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::newRow("F5") << QKeyCombination(Qt::Key_F5);
    QTest::newRow("Ctrl+R") << (Qt::CTRL | Qt::Key_R);
}

void TestMenus::refreshReadsBundlesAndDisks()
{
    QFETCH(QKeyCombination, keys);
    TestController test;
    writeWholeBundle(test.localDirectory(), u"NTFS"_s, u"NTFS"_s);
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    writeWholeBundle(test.localDirectory(), u"another"_s, u"Another"_s);
    QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), 1);
    QTest::keyClick(test.window().windowHandle(), keys.key(), keys.keyboardModifiers());
    QCOMPARE(test.controller().formatFilesystemsPopupButton->count(), 2);
    QCOMPARE(test.service.refreshCount(), 1);
    // Nothing is asked of a disk.
    QVERIFY(test.service.requests().empty());
    QVERIFY(!test.recordOf(u"disk2s1"_s)->operationInProgress);
}

QTEST_MAIN(TestMenus)
#include "tst_menus.moc"
