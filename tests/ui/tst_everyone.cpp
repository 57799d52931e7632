// SPDX-License-Identifier: MIT
//
// What the window offers to a keyboard, a screen reader and a reader of Arabic.
#include "tests/support/TestController.h"

#include "ui/direction_rules.h"
#include "ui/ElidingLabel.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OperationBar.h"
#include "ui/OutlineView.h"

#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

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

// What the tool tip says when the pointer rests on the widget; empty when there is none.
QString toolTipAt(QWidget *widget, const QPoint &position)
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
        return QStringLiteral("a tool tip that does not go away");
    QHelpEvent help(QEvent::ToolTip, position, widget->mapToGlobal(position));
    QApplication::sendEvent(widget, &help);
    if (!QToolTip::isVisible())
        return {};
    QTextDocument shown;
    shown.setHtml(QToolTip::text());
    return shown.toPlainText();
}

// The names of what Tab reaches, from the tree to the tree.
QStringList tabStops(TestController &test)
{
    QStringList names;
    QWidget *const first = test.controller().leftOutlineView;
    first->setFocus();
    do {
        names.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 40);
    return names;
}

// Asks for the menu of a row with the mouse, and returns it.
QMenu *openMenuOfRow(TestController &test, int row)
{
    OutlineView *const view = test.controller().leftOutlineView;
    const QPoint name = view->frameOfCellAtColumn(0, row).center();
    QContextMenuEvent click(QContextMenuEvent::Mouse, name, view->viewport()->mapToGlobal(name));
    QApplication::sendEvent(view->viewport(), &click);
    return test.window().findChild<QMenu *>(QStringLiteral("rowMenu"));
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

class TestEveryone : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowSaysWhatItIs();
    void rowHasItsWholeNameAndStateAsToolTip();
    void cutValueIsItsToolTip();
    void cutValueShowsFocusAndSelection();
    void dividerSaysWhatItIs();
    void iconIsDescribed();
    void menuItemsFollowTheirButtons();
    void menuItemIsCalledAsTheButton();
    void formatItemNeedsItsPage();
    void menuClosesWithItsDisk();
    void menusShowTheirShortcuts();
    void menuOfARowIsForItsDisk();
    void menuOfARowOpensByKey();
    void nameOfARowIsCopied();
    void labelIsCopied();
    void deviceNodeStandsBesideTheName();
    void emptyValuesAreNoTabStops();
    void tabStopsStandInOrder_data();
    void tabStopsStandInOrder();
    void focusGoesOnWhenTheLinkGoes();
    void headlineGrowsWithTheFont();
    void pathTakesAsManyLinesAsItNeeds();
    void lettersStayJoinedInArabic();
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

void TestEveryone::rowHasItsWholeNameAndStateAsToolTip()
{
    const QString name = QStringLiteral("<b>a name that is far longer than the tree is wide</b>");
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    volume->description->insert(DAKey::volumeName, name);
    test.add(volume);
    QWidget *const viewport = test.controller().leftOutlineView->viewport();
    const QPoint row = test.controller().leftOutlineView->frameOfCellAtColumn(0, 0).center();
    QCOMPARE(toolTipAt(viewport, row), QString(name + QStringLiteral(", NTFS, mounted")));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(toolTipAt(viewport, row), QString(name + QStringLiteral(", NTFS, not mounted")));
    QCOMPARE(toolTipAt(viewport, QPoint(5, viewport->height() - 2)), QString());
}

void TestEveryone::cutValueIsItsToolTip()
{
    const QString longName = QString(300, u'x');
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    test.select(QStringLiteral("disk2s1"));
    QLabel *const label = test.controller().infoNameLabel;
    QCOMPARE(toolTipAt(label, label->rect().center()), QString());
    volume->description->insert(DAKey::volumeName, longName);
    test.service.changeDisk(volume);
    QCOMPARE(label->text(), longName);
    QCOMPARE(toolTipAt(label, label->rect().center()), longName);
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);
    test.controller().maintenanceOperationBar->setOperation(longName, 42);
    QCoreApplication::processEvents();
    auto *const activity = test.controller().maintenanceOperationBar->findChild<QLabel *>();
    QVERIFY(activity->isVisible());
    QCOMPARE(toolTipAt(activity, activity->rect().center()), longName);
    for (const QLabel *value : { test.controller().infoDiskSpaceLabel, test.controller().filesystemLabel,
             test.controller().bsdNameLabel, test.controller().deviceNodeLabel,
             test.controller().wholeDeviceLabel, test.controller().removableLabel,
             test.controller().contentHintLabel, test.controller().ejectableLabel,
             test.controller().preferredBlockSizeLabel })
        QVERIFY2(qobject_cast<const ElidingLabel *>(value), qPrintable(value->objectName()));
}

void TestEveryone::cutValueShowsFocusAndSelection()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    volume->description->insert(DAKey::volumeName, QString(300, u'x'));
    test.add(volume);
    test.select(QStringLiteral("disk2s1"));
    test.window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    auto *const name = qobject_cast<ElidingLabel *>(test.controller().infoNameLabel);
    QVERIFY(name->isCut());
    const QImage plain = name->grab().toImage();
    test.controller().rightTabView->tabBar()->setFocus();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), name);
    const QImage focused = name->grab().toImage();
    QVERIFY(focused != plain);
    actionOf(test, QStringLiteral("actionSelectAll"))->trigger();
    QVERIFY(name->hasSelectedText());
    QVERIFY(name->grab().toImage() != focused);
}

void TestEveryone::dividerSaysWhatItIs()
{
    TestController test;
    test.launch();
    QWidget *const divider = test.controller().mainSplitView->handle(1);
    QCOMPARE(divider->accessibleName(), QStringLiteral("Divider"));
    const QString tip = toolTipAt(divider, divider->rect().center());
    QVERIFY(tip.contains(QStringLiteral("arrow keys")));
    QCOMPARE(divider->accessibleDescription(), tip);
}

void TestEveryone::iconIsDescribed()
{
    TestController test;
    test.launch();
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    QCOMPARE(test.controller().infoBigImageField->accessibleName(), QStringLiteral("Disk icon"));
    QCOMPARE(
        test.controller().infoBigImageField->accessibleDescription(), QStringLiteral("DATA, NTFS, mounted"));
    test.controller().leftOutlineView->selectRow(-1);
    QCOMPARE(test.controller().infoBigImageField->accessibleDescription(), QString());
}

void TestEveryone::menuItemsFollowTheirButtons()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), QStringLiteral("NTFS"), QStringLiteral("NTFS"));
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    const MemoryDiskRef readOnly = makePartition(QStringLiteral("disk2s2"), 2048);
    readOnly->description->insert(DAKey::volumeKind, QStringLiteral("NTFS"));
    readOnly->description->insert(DAKey::mediaWritable, false);
    test.add(readOnly);
    QAction *const mount = actionOf(test, QStringLiteral("actionMountUnmount"));
    QAction *const show = actionOf(test, QStringLiteral("actionShowInFileManager"));
    // Mount, format, check and repair.
    const auto enabled = [&test, mount] {
        QList<bool> states { mount->isEnabled() };
        for (const char *name : { "actionFormat", "actionCheck", "actionRepair" })
            states.append(actionOf(test, QLatin1String(name))->isEnabled());
        return states;
    };
    QCOMPARE(enabled(), (QList<bool> { false, false, false, false }));
    QVERIFY(!show->isEnabled());
    test.select(QStringLiteral("disk2s2"));
    QCOMPARE(enabled(), (QList<bool> { true, false, true, false }));
    QVERIFY(!show->isEnabled());
    test.select(QStringLiteral("disk2s1"));
    QCOMPARE(enabled(), (QList<bool> { true, true, true, true }));
    QVERIFY(show->isEnabled());
    test.recordOf(QStringLiteral("disk2s1"))->operationInProgress = true;
    test.controller().outlineViewSelectionDidChange();
    QCOMPARE(enabled(), (QList<bool> { false, false, false, false }));
    test.recordOf(QStringLiteral("disk2s1"))->operationInProgress = false;
    test.controller().outlineViewSelectionDidChange();
    show->trigger();
    QCOMPARE(test.workspace->folders, QStringList { QStringLiteral("/media/DATA") });
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QVERIFY(mount->isEnabled());
    QVERIFY(!show->isEnabled());
}

void TestEveryone::menuItemIsCalledAsTheButton()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    const MemoryDiskRef disk = makeDisk(QStringLiteral("disk2"));
    disk->description->insert(DAKey::mediaLeaf, false);
    test.add(disk);
    auto *menu = test.window().findChild<QMenu *>(QStringLiteral("diskMenu"));
    const auto title = [&](const QString &bsdName) {
        test.select(bsdName);
        menu->popup({});
        menu->close();
        return actionOf(test, QStringLiteral("actionMountUnmount"))->text();
    };
    QCOMPARE(title(QStringLiteral("disk2s1")), QStringLiteral("&Unmount"));
    QCOMPARE(title(QStringLiteral("disk2")), QStringLiteral("E&ject"));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(title(QStringLiteral("disk2s1")), QStringLiteral("&Mount"));
}

void TestEveryone::formatItemNeedsItsPage()
{
    TestController test;
    test.launch();
    QAction *const format = actionOf(test, QStringLiteral("actionFormat"));
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    test.select(QStringLiteral("disk2s1"));
    QVERIFY(format->isEnabled());
    format->trigger();
    QCOMPARE(test.controller().rightTabView->currentWidget(), test.controller().formatTab);
    // Without a volume there is no page to choose a file system on.
    volume->description->insert(DAKey::volumeMountable, false);
    test.service.changeDisk(volume);
    QCOMPARE(test.controller().rightTabView->indexOf(test.controller().formatTab), -1);
    QVERIFY(!format->isEnabled());
}

void TestEveryone::menuClosesWithItsDisk()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    test.add(makePartition(QStringLiteral("disk3s1"), 1024));
    const QAction *const mount = actionOf(test, QStringLiteral("actionMountUnmount"));
    for (QMenu *menu :
        { openMenuOfRow(test, 0), test.window().findChild<QMenu *>(QStringLiteral("diskMenu")) }) {
        test.select(QStringLiteral("disk2s1"));
        menu->popup({});
        QVERIFY(menu->isVisible());
        // The same disk in another state, and another disk that is not selected.
        setMounted(volume, {});
        test.service.changeDisk(volume);
        QCOMPARE(mount->text(), QStringLiteral("&Mount"));
        test.add(makePartition(QStringLiteral("disk4s1"), 1024));
        QVERIFY(menu->isVisible());
        test.service.removeDisk(volume);
        QCOMPARE(test.controller().bsdNameLabel->text(), QStringLiteral("disk3s1"));
        QVERIFY2(!menu->isVisible(), qPrintable(menu->objectName()));
        setMounted(volume, QStringLiteral("/media/DATA"));
        test.add(volume);
    }
}

void TestEveryone::menusShowTheirShortcuts()
{
    TestController test;
    test.launch();
    const QStringList operations { QStringLiteral("Mount|Ctrl+E"), QStringLiteral("Format…|Ctrl+Shift+F"),
        QStringLiteral("Check|Ctrl+K"), QStringLiteral("Repair|Ctrl+R") };
    const QString show = QStringLiteral("Show in File Manager|Ctrl+Return");
    QCOMPARE(titlesOf(test.window().findChild<QMenu *>(QStringLiteral("diskMenu"))),
        operations + QStringList { show });
    QCOMPARE(titlesOf(test.window().findChild<QMenu *>(QStringLiteral("rowMenu"))),
        operations + QStringList({ QStringLiteral("Copy|Ctrl+C"), show }));
    QCOMPARE(test.window().menuBar()->actions().size(), 4);
    QSet<QKeySequence> shortcuts;
    for (const QAction *action : test.window().findChildren<QAction *>()) {
        if (action->shortcut().isEmpty())
            continue;
        QVERIFY2(!shortcuts.contains(action->shortcut()), qPrintable(action->text()));
        shortcuts.insert(action->shortcut());
    }
}

void TestEveryone::menuOfARowIsForItsDisk()
{
    for (const QString &language : { QStringLiteral("en"), QStringLiteral("ar") }) {
        TestController test(language);
        test.launch();
        test.add(makeDisk(QStringLiteral("disk1")));
        test.add(mountedVolume());
        OutlineView *const view = test.controller().leftOutlineView;
        QMenu *const menu = openMenuOfRow(test, 1);
        QCOMPARE(view->selectedRow(), 1);
        QVERIFY(menu->isVisible());
        QCOMPARE(actionOf(test, QStringLiteral("actionMountUnmount"))->isEnabled(),
            test.controller().mountUnmountButton->isEnabled());
        menu->close();
        const QPoint nothing(5, view->viewport()->height() - 2);
        QContextMenuEvent beside(QContextMenuEvent::Mouse, nothing, view->viewport()->mapToGlobal(nothing));
        QApplication::sendEvent(view->viewport(), &beside);
        QVERIFY(!menu->isVisible());
    }
}

void TestEveryone::menuOfARowOpensByKey()
{
    TestController test;
    test.launch();
    test.add(makeDisk(QStringLiteral("disk1")));
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    OutlineView *const view = test.controller().leftOutlineView;
    view->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    // What the key becomes on its way through the platform.
    const QPoint cursor = view->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, cursor, view->mapToGlobal(cursor));
    QApplication::sendEvent(view, &key);
    auto *menu = test.window().findChild<QMenu *>(QStringLiteral("rowMenu"));
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(view->selectedRow(), 1);
    QVERIFY(view->rect().contains(view->mapFromGlobal(menu->pos())));
    QTest::keyClick(menu, Qt::Key_U);
    QCOMPARE(test.service.requests().size(), std::size_t { 1 });
    QCOMPARE(test.service.requests().front().kind, MemoryDiskService::RequestKind::Unmount);
}

void TestEveryone::nameOfARowIsCopied()
{
    TestController test;
    test.launch();
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    test.window().activateWindow();
    test.controller().leftOutlineView->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(test.window().windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("DATA"));
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

void TestEveryone::deviceNodeStandsBesideTheName()
{
    TestController test;
    test.launch();
    test.add(mountedVolume());
    test.select(QStringLiteral("disk2s1"));
    const QLabel *node = test.controller().deviceNodeLabel;
    QCOMPARE(node->text(), QStringLiteral("/dev/sdb1"));
    QVERIFY(node->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
    const QLabel *name = test.controller().bsdNameLabel;
    QVERIFY(name->isVisible() && node->isVisible());
    QVERIFY(node->x() >= name->geometry().right());
    QCOMPARE(node->geometry().center().y(), name->geometry().center().y());
    test.controller().leftOutlineView->selectRow(-1);
    QCOMPARE(node->text(), QString());
}

void TestEveryone::emptyValuesAreNoTabStops()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    volume->description->remove(DAKey::volumeKind);
    test.add(volume);
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    for (const QString &stop : tabStops(test))
        QVERIFY2(!stop.endsWith(QStringLiteral("Label")), qPrintable(stop));

    test.select(QStringLiteral("disk2s1"));
    QVERIFY(!tabStops(test).contains(QStringLiteral("filesystemLabel")));
}

void TestEveryone::tabStopsStandInOrder_data()
{
    QTest::addColumn<QString>("localization");
    QTest::newRow("left to right") << QStringLiteral("en");
    QTest::newRow("right to left") << QStringLiteral("ar");
}

void TestEveryone::tabStopsStandInOrder()
{
    QFETCH(QString, localization);
    TestController test(localization);
    test.launch();
    test.add(mountedVolume());
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QCOMPARE(QApplication::focusWidget(), test.controller().leftOutlineView);
    test.select(QStringLiteral("disk2s1"));
    const QString expected = QStringLiteral(
        "leftOutlineView qt_tabwidget_tabbar infoNameLabel infoDiskSpaceLabel infoMountedPathView "
        "filesystemLabel bsdNameLabel deviceNodeLabel wholeDeviceLabel removableLabel ejectableLabel "
        "preferredBlockSizeLabel mountUnmountButton qt_splithandle_");
    QCOMPARE(tabStops(test), expected.split(u' '));
}

void TestEveryone::focusGoesOnWhenTheLinkGoes()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    test.select(QStringLiteral("disk2s1"));
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    LinkTextView *const path = test.controller().infoMountedPathView;
    path->setFocus();
    QCOMPARE(QApplication::focusWidget(), path);
    QTest::keyClick(test.window().windowHandle(), Qt::Key_E, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), path); // as long as the volume is mounted
    setMounted(volume, {});
    test.service.completeRequest();
    QCOMPARE(QApplication::focusWidget(), test.controller().filesystemLabel);
    QCOMPARE(path->focusPolicy(), Qt::NoFocus);
}

void TestEveryone::headlineGrowsWithTheFont()
{
    TestController test;
    test.launch();
    const QFont usual = QApplication::font();
    const QLabel *headline = test.controller().infoNameLabel;
    QVERIFY(headline->font().bold());
    QCOMPARE(headline->font().pointSizeF(), usual.pointSizeF() * 1.5);
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    QTRY_COMPARE(headline->font().pointSizeF(), large.pointSizeF() * 1.5);
    QVERIFY(headline->font().bold());
    QApplication::setFont(usual);
    QTRY_COMPARE(headline->font().pointSizeF(), usual.pointSizeF() * 1.5);
}

void TestEveryone::pathTakesAsManyLinesAsItNeeds()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = mountedVolume();
    test.add(volume);
    test.select(QStringLiteral("disk2s1"));
    const LinkTextView *path = test.controller().infoMountedPathView;
    const int line = path->fontMetrics().lineSpacing();
    QTRY_VERIFY(path->height() >= line && path->height() < 2 * line);
    setMounted(volume, QString(QStringLiteral("/media/") + QString(120, u'x')));
    test.service.changeDisk(volume);
    QTRY_VERIFY(path->height() >= 2 * line && path->height() < 3 * line);
}

void TestEveryone::lettersStayJoinedInArabic()
{
    QVERIFY(DirectionRules::joinsLetters(QStringLiteral("ar")));
    for (const QString &language : { QStringLiteral("en"), QStringLiteral("de"), QStringLiteral("ja"),
             QStringLiteral("pt_BR"), QStringLiteral("ru"), QStringLiteral("zh_TW") })
        QVERIFY2(!DirectionRules::joinsLetters(language), qPrintable(language));
    const auto picture = [](TestController &test, const QString &text) {
        ImageButton button(&test.window());
        QPixmap icon(16, 16);
        icon.fill(Qt::red);
        button.setIcon(icon);
        button.resize(200, 40);
        button.setText(text);
        return button.grab().toImage();
    };
    {
        TestController test(QStringLiteral("ar"));
        test.launch();
        test.add(mountedVolume());
        test.select(QStringLiteral("disk2s1"));
        // The marked letter is drawn as if it were not marked, and works.
        QCOMPARE(picture(test, QStringLiteral("ف&صل")), picture(test, QStringLiteral("فصل")));
        QVERIFY(QTest::qWaitForWindowActive(&test.window()));
        QTest::sendKeyEvent(QTest::Click, test.window().windowHandle(),
            static_cast<Qt::Key>(QChar(u'ص').unicode()), QStringLiteral("ص"), Qt::AltModifier);
        QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    }
    TestController test;
    test.launch();
    QVERIFY(picture(test, QStringLiteral("&Mount")) != picture(test, QStringLiteral("Mount")));
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
