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
    const MemoryDiskRef volume = makeMountedVolume();
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
    const MemoryDiskRef volume = makeMountedVolume();
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
    const MemoryDiskRef volume = makeMountedVolume();
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
    TestController::handlePostedEvents();
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
    const MemoryDiskRef volume = makeMountedVolume();
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
    test.action(QStringLiteral("actionSelectAll"))->trigger();
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
    test.add(makeMountedVolume());
    test.select(QStringLiteral("disk2s1"));
    QCOMPARE(test.controller().infoBigImageField->accessibleName(), QStringLiteral("Disk icon"));
    QCOMPARE(
        test.controller().infoBigImageField->accessibleDescription(), QStringLiteral("DATA, NTFS, mounted"));
    test.controller().leftOutlineView->selectRow(-1);
    QCOMPARE(test.controller().infoBigImageField->accessibleDescription(), QString());
}

void TestEveryone::deviceNodeStandsBesideTheName()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
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
    const MemoryDiskRef volume = makeMountedVolume();
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
    test.add(makeMountedVolume());
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
    const MemoryDiskRef volume = makeMountedVolume();
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
    const MemoryDiskRef volume = makeMountedVolume();
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
        test.add(makeMountedVolume());
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
    test.add(makeMountedVolume());
    test.select(QStringLiteral("disk2s1"));
    QVERIFY(
        test.controller().infoDiskSpaceLabel->toolTip().contains(QStringLiteral("\u2066100 000 000\u2069")));
    QVERIFY(test.controller().bsdNameLabel->toolTip().endsWith(QStringLiteral("\u2066/dev/sdb1\u2069")));
}

QTEST_MAIN(TestEveryone)
#include "tst_everyone.moc"
