// SPDX-License-Identifier: MIT
//
// What a screen reader meets in the window and in its sheets: names, roles, states and what they tell of
// changes.
#include "tests/support/TestController.h"

#include "ui/DiskMap.h"
#include "ui/EraseDiskSheet.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"
#include "ui/StatusRow.h"
#include "ui/UsageBar.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QAccessibleInterface *interfaceOf(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

// Of a menu, the name is what is chosen in it.
QString captionOf(const QAccessibleInterface *control)
{
    const auto relations = control->relations(QAccessible::Label);
    return relations.isEmpty() ? QString() : relations.constFirst().first->text(QAccessible::Name);
}

// A disk with a mounted volume, one that is not mounted, and space of none; the disk is selected.
void showDisk(TestController &test)
{
    test.launch();
    const MemoryDiskRef disk = makeDisk(u"disk2"_s);
    disk->description->insert(DAKey::mediaName, u"Stick"_s);
    disk->description->insert(DAKey::mediaContent, u"GUID_partition_scheme"_s);
    disk->description->insert(DAKey::mediaLeaf, false);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 500'000'000 }));
    test.add(disk);
    const MemoryDiskRef volume = makeMountedVolume();
    test.mount(volume, u"/media/DATA"_s, 40'000'000);
    test.add(volume);
    test.add(makePartition(u"disk2s2"_s, 100'001'024, u"OTHER"_s));
    test.select(u"disk2"_s);
}

QAccessibleInterface *mapOf(TestController &test)
{
    return interfaceOf(test.controller().infoDiskMap);
}

} // namespace

class TestScreenReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mapIsAListOfVolumes();
    void mapIsReachedByKeys_data();
    void mapIsReachedByKeys();
    void stopIsReachedBehindTheButtons();
    void tabPassesByWhatCannotBeStopped();
    void mapTellsWhichPartHasTheFocus();
    void partIsChosen_data();
    void partIsChosen();
    void barTellsHowFarItIs();
    void sheetOfAWholeDisk();
    void disabledItemOfAMenuSaysWhy_data();
    void disabledItemOfAMenuSaysWhy();
};

void TestScreenReader::mapIsAListOfVolumes()
{
    TestController test;
    showDisk(test);
    QAccessibleInterface *const map = mapOf(test);
    QCOMPARE(map->role(), QAccessible::List);
    QCOMPARE(map->text(QAccessible::Name), u"Volumes on this disk"_s);
    const QStringList names { u"DATA, NTFS, mounted, 100 MB, 60 MB used (60%)"_s,
        u"OTHER, not mounted, 100 MB"_s, u"300 MB belong to no volume."_s };
    QCOMPARE(map->childCount(), static_cast<int>(names.size()));
    for (int i = 0; i < names.size(); ++i) {
        QAccessibleInterface *const part = map->child(i);
        QCOMPARE(part->text(QAccessible::Name), names[i]);
        QCOMPARE(part->role(), QAccessible::ListItem);
        QVERIFY(!part->state().invisible);
        const bool isVolume = i < 2;
        QCOMPARE(bool(part->state().focusable), isVolume);
        const QStringList actions = part->actionInterface()->actionNames();
        QCOMPARE(actions.contains(QAccessibleActionInterface::pressAction()), isVolume);
    }
}

void TestScreenReader::mapIsReachedByKeys_data()
{
    QTest::addColumn<QString>("localization");
    QTest::addColumn<Qt::Key>("next");
    QTest::newRow("left to right") << u"en"_s << Qt::Key_Right;
    QTest::newRow("right to left") << u"ar"_s << Qt::Key_Left;
}

// By Tab in its place, behind the button; then by arrows. Tab leads out of it, and back to where it was left.
void TestScreenReader::mapIsReachedByKeys()
{
    QFETCH(const QString, localization);
    QFETCH(const Qt::Key, next);
    TestController test(localization);
    showDisk(test);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    test.controller().leftOutlineView->setFocus();
    const auto press = [&test](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(test.window().windowHandle(), key, modifiers);
    };
    const auto focusedVolume = [] {
        const auto *part = qobject_cast<const DiskMapPart *>(QApplication::focusWidget());
        return part ? part->part().name : QString();
    };
    QStringList stops;
    while (focusedVolume().isEmpty() && stops.size() < 20) {
        stops.append(QApplication::focusWidget()->objectName());
        press(Qt::Key_Tab);
    }
    QCOMPARE(stops.join(u' '),
        u"leftOutlineView qt_tabwidget_tabbar infoNameLabel infoDiskSpaceLabel mountUnmountButton"_s);
    QCOMPARE(focusedVolume(), u"DATA"_s);
    press(next);
    QCOMPARE(focusedVolume(), u"OTHER"_s);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"contentHintLabel"_s);
    press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(focusedVolume(), u"OTHER"_s);
}

void TestScreenReader::stopIsReachedBehindTheButtons()
{
    TestController test;
    showDisk(test);
    test.select(u"disk2s1"_s);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);
    test.controller().beginOperation(test.recordOf(u"disk2s1"_s), RunningOperation::Check);
    TestController::handlePostedEvents();
    test.controller().rightTabView->tabBar()->setFocus();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QAccessibleInterface *const stop = interfaceOf(QApplication::focusWidget());
    QCOMPARE(stop->text(QAccessible::Name), u"Stop"_s);
    QCOMPARE(stop->role(), QAccessible::Button);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), test.controller().checkRepairOutputView);
    test.controller().finishOperation(test.recordOf(u"disk2s1"_s));
}

void TestScreenReader::tabPassesByWhatCannotBeStopped()
{
    TestController test;
    showDisk(test);
    test.select(u"disk2s1"_s);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);
    test.controller().rightTabView->tabBar()->setFocus();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), test.controller().checkRepairOutputView);
}

void TestScreenReader::mapTellsWhichPartHasTheFocus()
{
    TestController test;
    showDisk(test);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    qobject_cast<QWidget *>(mapOf(test)->child(0)->object())->setFocus();
    QCOMPARE(mapOf(test)->focusChild(), mapOf(test)->child(0));
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Right);
    QVERIFY(mapOf(test)->child(1)->state().focused);
    QVERIFY(!mapOf(test)->child(0)->state().focused);
    QCOMPARE(mapOf(test)->focusChild(), mapOf(test)->child(1));
    // What a screen reader puts the focus on is also where Tab comes back to.
    mapOf(test)->child(0)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(mapOf(test)->focusChild(), mapOf(test)->child(0));
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(mapOf(test)->focusChild(), mapOf(test)->child(0));
}

void TestScreenReader::partIsChosen_data()
{
    QTest::addColumn<Qt::Key>("key"); // none: by the assistive technology
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("action") << Qt::Key_unknown;
}

void TestScreenReader::partIsChosen()
{
    QFETCH(const Qt::Key, key);
    TestController test;
    showDisk(test);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QAccessibleInterface *const part = mapOf(test)->child(0);
    qobject_cast<QWidget *>(part->object())->setFocus();
    if (key == Qt::Key_unknown)
        part->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    else
        QTest::keyClick(test.window().windowHandle(), key);
    QCOMPARE(test.controller().infoNameLabel->text(), u"DATA"_s);
    // The map has gone with the disk, and what is read next is the row that was chosen.
    const OutlineView *const tree = test.controller().leftOutlineView;
    QCOMPARE(QApplication::focusWidget(), tree);
    QVERIFY(interfaceOf(const_cast<OutlineView *>(tree))
            ->focusChild()
            ->text(QAccessible::Name)
            .startsWith(u"DATA,"_s));
}

void TestScreenReader::barTellsHowFarItIs()
{
    StatusRow row;
    row.setVisible(true);
    row.showOperation(u"Checking DATA…"_s, 40, std::chrono::seconds(1), true);
    auto *const bar = row.findChild<UsageBar *>();
    QAccessibleInterface *const told = interfaceOf(bar);
    QCOMPARE(told->role(), QAccessible::ProgressBar);
    QCOMPARE(told->text(QAccessible::Name), u"Checking DATA…"_s);
    QCOMPARE(told->valueInterface()->currentValue().toInt(), 40);
    QCOMPARE(told->valueInterface()->maximumValue().toInt(), 100);
    row.showOperation(u"Checking DATA…"_s, 41, std::chrono::seconds(2), true);
    QCOMPARE(told->valueInterface()->currentValue().toInt(), 41);
    auto *const stop = row.findChild<QPushButton *>();
    QCOMPARE(interfaceOf(stop)->text(QAccessible::Name), u"Stop"_s);
}

void TestScreenReader::sheetOfAWholeDisk()
{
    TestController test;
    writeWholeBundle(test.systemDirectory(), u"ext4"_s, u"ext4"_s);
    writeWholeBundle(test.systemDirectory(), u"xfs"_s, u"xfs"_s,
        "<key>FSFormatMinimumSize</key><integer>900000000000</integer>");
    test.platform().isSystemDevice = [](const QString &) { return false; };
    showDisk(test);
    test.action(u"actionEraseDisk"_s)->trigger();
    auto *const sheet = test.window().findChild<EraseDiskSheet *>();
    QVERIFY(sheet);
    QAccessibleInterface *const dialog = interfaceOf(sheet);
    QCOMPARE(dialog->role(), QAccessible::Dialog);
    QCOMPARE(dialog->text(QAccessible::Name), u"Zorvex Disk Manager"_s);
    QCOMPARE(dialog->text(QAccessible::Description), u"Erase Disk, Stick (disk2)"_s);
    struct Field
    {
        QWidget *widget;
        QAccessible::Role role;
        QString caption;
    };
    const QList<Field> fields { { sheet->filesystemPopupButton, QAccessible::ComboBox, u"File system:"_s },
        { sheet->labelField, QAccessible::EditableText, u"Volume label:"_s },
        { sheet->schemePopupButton, QAccessible::ComboBox, u"Partition scheme:"_s } };
    for (const Field &field : fields) {
        QAccessibleInterface *const told = interfaceOf(field.widget);
        QCOMPARE(told->role(), field.role);
        QCOMPARE(captionOf(told), field.caption);
        QVERIFY(told->state().focusable);
    }
    // The menu's items, and why one is disabled.
    sheet->filesystemPopupButton->showPopup();
    QAccessibleInterface *const items = interfaceOf(sheet->filesystemPopupButton->view());
    QCOMPARE(items->childCount(), 2);
    QCOMPARE(items->child(0)->text(QAccessible::Description), QString());
    QCOMPARE(items->child(1)->text(QAccessible::Name), u"xfs"_s);
    QCOMPARE(items->child(1)->text(QAccessible::Description), u"for volumes of 900 GB or more"_s);
    sheet->filesystemPopupButton->hidePopup();
}

void TestScreenReader::disabledItemOfAMenuSaysWhy_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("menu bar") << u"diskMenu"_s;
    QTest::newRow("row") << u"rowMenu"_s;
}

void TestScreenReader::disabledItemOfAMenuSaysWhy()
{
    QFETCH(const QString, name);
    TestController test;
    showDisk(test);
    auto *const menu = test.window().findChild<QMenu *>(name);
    const auto itemOf = [menu](const QAction *action) {
        return interfaceOf(menu)->child(static_cast<int>(menu->actions().indexOf(action)));
    };
    QAction *const check = test.action(u"actionCheck"_s);
    QAccessibleInterface *const item = itemOf(check);
    QCOMPARE(item->text(QAccessible::Name), u"Check"_s);
    QCOMPARE(item->text(QAccessible::Accelerator), u"Ctrl+K"_s);
    QCOMPARE(item->role(), QAccessible::MenuItem);
    QVERIFY(item->state().disabled && item->state().invisible);
    QCOMPARE(item->text(QAccessible::Description), u"Select one of the volumes on this disk."_s);
    menu->popup({});
    QVERIFY(!item->state().invisible);
    QCOMPARE(item->parent()->object(), menu);
    QCOMPARE(item->rect(), menu->actionGeometry(check).translated(menu->pos()));
    QCOMPARE(interfaceOf(menu)->indexOfChild(item), static_cast<int>(menu->actions().indexOf(check)));
    menu->close();

    // One that can be chosen has nothing to explain.
    QAction *const copy = test.action(u"actionCopyDevicePath"_s);
    QAccessibleInterface *const path = interfaceOf(copy);
    QVERIFY(!path->state().disabled);
    QCOMPARE(path->text(QAccessible::Name), u"Copy Device Path"_s);
    QCOMPARE(path->text(QAccessible::Description), QString());
    copy->setEnabled(false); // without a reason
    QCOMPARE(path->text(QAccessible::Description), QString());
    copy->setEnabled(true);
    QGuiApplication::clipboard()->clear();
    path->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"/dev/disk2"_s);
}

QTEST_MAIN(TestScreenReader)
#include "tst_screenreader.moc"
