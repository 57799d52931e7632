// SPDX-License-Identifier: MIT
//
// What the window offers to a keyboard, a screen reader and a reader of Arabic.
#include "tests/support/TestController.h"

#include "ui/direction_rules.h"
#include "ui/ElidingLabel.h"
#include "ui/ImageButton.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"
#include "ui/StatusRow.h"

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

using namespace Qt::Literals::StringLiterals;

namespace {

// What the tool tip says when the pointer rests on the widget; empty when there is none.
QString toolTipAt(QWidget *widget, const QPoint &position)
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
        return u"a tool tip that does not go away"_s;
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
    void brokenLineKeepsItsPlaceInArabic();
};

void TestEveryone::rowSaysWhatItIs()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    const OutlineView *view = test.controller().leftOutlineView;
    const QModelIndex row = view->model()->index(0, 0);
    QCOMPARE(row.data(Qt::DisplayRole).toString(), u"DATA"_s);
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), u"DATA, NTFS, mounted"_s);
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), u"DATA, NTFS, not mounted"_s);
}

void TestEveryone::rowHasItsWholeNameAndStateAsToolTip()
{
    const QString name = u"<b>a name that is far longer than the tree is wide</b>"_s;
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    volume->description->insert(DAKey::volumeName, name);
    test.add(volume);
    QWidget *const viewport = test.controller().leftOutlineView->viewport();
    const QPoint row = test.controller().leftOutlineView->frameOfCellAtColumn(0, 0).center();
    QCOMPARE(toolTipAt(viewport, row), QString(name + u", NTFS, mounted"_s));
    setMounted(volume, {});
    test.service.changeDisk(volume);
    QCOMPARE(toolTipAt(viewport, row), QString(name + u", NTFS, not mounted"_s));
    QCOMPARE(toolTipAt(viewport, QPoint(5, viewport->height() - 2)), QString());
}

void TestEveryone::cutValueIsItsToolTip()
{
    const QString longName = QString(300, u'x');
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    test.select(u"disk2s1"_s);
    QLabel *const label = test.controller().infoNameLabel;
    QCOMPARE(toolTipAt(label, label->rect().center()), QString());
    volume->description->insert(DAKey::volumeName, longName);
    test.service.changeDisk(volume);
    QCOMPARE(label->text(), longName);
    QCOMPARE(toolTipAt(label, label->rect().center()), longName);
    test.controller().rightTabView->setCurrentWidget(test.controller().maintenanceTab);
    test.controller().maintenanceStatusRow->showOperation(longName, 42, {}, false);
    TestController::handlePostedEvents();
    auto *const activity = test.controller().maintenanceStatusRow->findChild<ElidingLabel *>();
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
    QApplication::setStyle(u"Fusion"_s);
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    volume->description->insert(DAKey::volumeName, QString(300, u'x'));
    test.add(volume);
    test.select(u"disk2s1"_s);
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
    test.action(u"actionSelectAll"_s)->trigger();
    QVERIFY(name->hasSelectedText());
    QVERIFY(name->grab().toImage() != focused);
}

void TestEveryone::dividerSaysWhatItIs()
{
    TestController test;
    test.launch();
    QWidget *const divider = test.controller().mainSplitView->handle(1);
    QCOMPARE(divider->accessibleName(), u"Divider"_s);
    const QString tip = toolTipAt(divider, divider->rect().center());
    QVERIFY(tip.contains(u"press Tab"_s));
    QCOMPARE(divider->accessibleDescription(), tip);
}

void TestEveryone::iconIsDescribed()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    QCOMPARE(test.controller().infoBigImageField->accessibleName(), u"Disk icon"_s);
    QCOMPARE(test.controller().infoBigImageField->accessibleDescription(), u"DATA, NTFS, mounted"_s);
    test.controller().leftOutlineView->selectRow(-1);
    QCOMPARE(test.controller().infoBigImageField->accessibleDescription(), QString());
}

void TestEveryone::deviceNodeStandsBesideTheName()
{
    TestController test;
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    const QLabel *node = test.controller().deviceNodeLabel;
    QCOMPARE(node->text(), u"/dev/sdb1"_s);
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
        QVERIFY2(!stop.endsWith(u"Label"_s), qPrintable(stop));

    test.select(u"disk2s1"_s);
    QVERIFY(!tabStops(test).contains(u"filesystemLabel"_s));
}

void TestEveryone::tabStopsStandInOrder_data()
{
    QTest::addColumn<QString>("localization");
    QTest::newRow("left to right") << u"en"_s;
    QTest::newRow("right to left") << u"ar"_s;
}

void TestEveryone::tabStopsStandInOrder()
{
    QFETCH(QString, localization);
    TestController test(localization);
    test.launch();
    test.add(makeMountedVolume());
    QVERIFY(QTest::qWaitForWindowActive(&test.window()));
    QCOMPARE(QApplication::focusWidget(), test.controller().leftOutlineView);
    test.select(u"disk2s1"_s);
    const QString expected
        = u"leftOutlineView qt_tabwidget_tabbar infoNameLabel infoDiskSpaceLabel mountUnmountButton "
          "infoMountedPathView filesystemLabel bsdNameLabel deviceNodeLabel preferredBlockSizeLabel "
          "wholeDeviceLabel removableLabel ejectableLabel qt_splithandle_"_s;
    QCOMPARE(tabStops(test), expected.split(u' '));
}

void TestEveryone::focusGoesOnWhenTheLinkGoes()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    test.select(u"disk2s1"_s);
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
    QCOMPARE(headline->font().pointSizeF(), usual.pointSizeF() * 1.4);
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    QTRY_COMPARE(headline->font().pointSizeF(), large.pointSizeF() * 1.4);
    QVERIFY(headline->font().bold());
    QApplication::setFont(usual);
    QTRY_COMPARE(headline->font().pointSizeF(), usual.pointSizeF() * 1.4);
}

void TestEveryone::pathTakesAsManyLinesAsItNeeds()
{
    TestController test;
    test.launch();
    const MemoryDiskRef volume = makeMountedVolume();
    test.add(volume);
    test.select(u"disk2s1"_s);
    const LinkTextView *path = test.controller().infoMountedPathView;
    const int line = path->fontMetrics().lineSpacing();
    QTRY_VERIFY(path->height() >= line && path->height() < 2 * line);
    setMounted(volume, QString(u"/media/"_s + QString(120, u'x')));
    test.service.changeDisk(volume);
    QTRY_VERIFY(path->height() >= 2 * line && path->height() < 3 * line);
}

void TestEveryone::lettersStayJoinedInArabic()
{
    QVERIFY(DirectionRules::joinsLetters(u"ar"_s));
    for (const QString &language : { u"en"_s, u"de"_s, u"ja"_s, u"pt_BR"_s, u"ru"_s, u"zh_TW"_s })
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
        TestController test(u"ar"_s);
        test.launch();
        test.add(makeMountedVolume());
        test.select(u"disk2s1"_s);
        // The marked letter is drawn as if it were not marked, and works.
        QCOMPARE(picture(test, u"ف&صل"_s), picture(test, u"فصل"_s));
        QVERIFY(QTest::qWaitForWindowActive(&test.window()));
        QTest::sendKeyEvent(QTest::Click, test.window().windowHandle(),
            static_cast<Qt::Key>(QChar(u'ص').unicode()), u"ص"_s, Qt::AltModifier);
        QTRY_COMPARE(test.service.requests().size(), std::size_t { 1 });
    }
    TestController test;
    test.launch();
    QVERIFY(picture(test, u"&Mount"_s) != picture(test, u"Mount"_s));
}

void TestEveryone::groupsOfDigitsKeepTheirOrderInArabic()
{
    QCOMPARE(DirectionRules::withGroupedNumbersKept(u"512 b, 500 107 862 016 b"_s),
        u"512 b, \u2066500 107 862 016\u2069 b"_s);
    // What dots have cut off leaves no part open.
    QCOMPARE(DirectionRules::withPartsClosed(u"a \u2066/dev…"_s), u"a \u2066/dev…\u2069"_s);
    QCOMPARE(DirectionRules::withPartsClosed(u"\u2068a \u2066b\u2069…"_s), u"\u2068a \u2066b\u2069…\u2069"_s);
    QCOMPARE(DirectionRules::withPartsClosed(u"a\u2069…"_s), u"a\u2069…"_s);
    TestController test(u"ar"_s);
    test.launch();
    test.add(makeMountedVolume());
    test.select(u"disk2s1"_s);
    QVERIFY(test.controller().infoDiskSpaceLabel->toolTip().contains(u"\u2066100 000 000\u2069"_s));
    QVERIFY(test.controller().bsdNameLabel->toolTip().endsWith(u"\u2066/dev/sdb1\u2069"_s));
}

// The space at which it was broken takes no room.
void TestEveryone::brokenLineKeepsItsPlaceInArabic()
{
    ElidingLabel label;
    label.setLayoutDirection(Qt::RightToLeft);
    label.setWordWrap(true);
    label.setText(QStringList(20, u"لا"_s).join(u' '));
    label.setFixedWidth(label.fontMetrics().horizontalAdvance(label.text()) * 3 / 5);
    label.setFixedHeight(label.heightForWidth(label.width()));
    const QImage image = label.grab().toImage();
    const auto lastColumnWithInk = [&image](int top, int bottom) {
        for (int x = image.width() - 1; x >= 0; --x) {
            for (int y = top; y < bottom; ++y) {
                if (image.pixelColor(x, y) != image.pixelColor(0, 0))
                    return x;
            }
        }
        return -1;
    };
    const int middle = image.height() / 2;
    QCOMPARE(label.height(), 2 * label.fontMetrics().lineSpacing());
    QVERIFY(lastColumnWithInk(0, middle) > 0);
    QCOMPARE(lastColumnWithInk(0, middle), lastColumnWithInk(middle, image.height()));
}

QTEST_MAIN(TestEveryone)
#include "tst_everyone.moc"
