// SPDX-License-Identifier: MIT
//
// The manual, the About panel and the mount path that is a link.
#include "platform/Localization.h"
#include "platform/SystemRelease.h"
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"
#include "ui/LinkTextView.h"
#include "ui/OutlineView.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTest>
#include <QTextBlock>

using namespace Qt::Literals::StringLiterals;

class TestHelp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linkHoldsThePathBetweenControls();
    void linkIsStyled();
    void pointerIsAHandOverTheTextOnly_data();
    void pointerIsAHandOverTheTextOnly();
    void linkIsToldAsOne();
    void linkColorByGeneration_data();
    void linkColorByGeneration();
    void linkColorFollowsTheTheme();
    void linkIsBlueWhenTheReleaseCannotBeHad();
    void linkLooksTheSameAfterAnotherDisk();
    void clickInsideOpensTheVolume();
    void clickBeforeTheFirstCharacterDoesNothing();
    void clickBehindTheLastCharacterDoesNothing();
    void dragDoesNothing();
    void otherMouseButtonDoesNothing();
    void clickWorksWhileThePanelIsRefreshed();
    void clickWithNothingSelectedDoesNothing();
    void returnKeyOpensTheVolume();
    void pathIsCopiedWithoutItsControls();
    void failingFileManagerIsTold();
    void hostilePathIsPlain();
    void manualIsOpened();
    void missingManualIsAlertedOnce();
    void aboutPanelTellsTheVersion();
    void aboutPanelBlocksNothing();
    void aboutPanelThatIsOpenIsRaised();
    void aboutPanelClosesWithTheWindow();

private:
    static std::unique_ptr<TestController> withMountedVolume(
        const QString &path = u"/Volumes/X"_s, const QString &localization = u"en"_s);
};

std::unique_ptr<TestController> TestHelp::withMountedVolume(const QString &path, const QString &localization)
{
    auto test = std::make_unique<TestController>(localization);
    test->launch();
    test->add(makeDisk(u"disk2"_s));
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024);
    setMounted(volume, path);
    test->add(volume);
    test->select(u"disk2s1"_s);
    // Disabled until the window is laid out once.
    if (!QTest::qWaitForWindowExposed(&test->window()))
        qFatal("the window is not shown");
    return test;
}

namespace {

QTextCharFormat formatAt(const LinkTextView *view, int position)
{
    QTextCursor cursor(view->document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

// The point between two characters of the view's text.
QPoint pointAt(const LinkTextView *view, int position)
{
    QTextCursor cursor(view->document());
    cursor.setPosition(position);
    return view->cursorRect(cursor).center();
}

// Those that are there, open or about to be deleted.
QList<QMessageBox *> aboutPanels(TestController &test)
{
    return test.window().findChildren<QMessageBox *>(u"aboutPanel"_s);
}

void click(const LinkTextView *view, int position, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(view->viewport(), button, {}, pointAt(view, position));
}

} // namespace

void TestHelp::linkHoldsThePathBetweenControls()
{
    const auto test = withMountedVolume();
    const QString path = u"/Volumes/X"_s;
    const LinkTextView *const view = test->controller().infoMountedPathView;
    QCOMPARE(view->toPlainText(), QString(QString(QChar(0x202A)) + path + QChar(0x202C)));
    QCOMPARE(view->textLength(), path.size() + 2);
}

void TestHelp::linkIsStyled()
{
    const auto test = withMountedVolume();
    const LinkTextView *const view = test->controller().infoMountedPathView;
    for (const int position : { 0, 5, static_cast<int>(view->textLength()) - 1 }) {
        QVERIFY(formatAt(view, position).fontUnderline());
        QCOMPARE(
            formatAt(view, position).font().family(), test->controller().infoDiskSpaceLabel->font().family());
        QCOMPARE(formatAt(view, position).font().pointSizeF(),
            test->controller().infoDiskSpaceLabel->font().pointSizeF());
    }
    setMounted(std::static_pointer_cast<MemoryDisk>(test->recordOf(u"disk2s1"_s)->daDisk), {});
    test->select(u"disk2"_s);
    QCOMPARE(view->toPlainText(), QString());
}

void TestHelp::pointerIsAHandOverTheTextOnly_data()
{
    QTest::addColumn<QString>("localization");
    QTest::addColumn<QString>("path");
    QTest::newRow("left to right") << u"en"_s << u"/Volumes/X"_s;
    QTest::newRow("right to left") << u"ar"_s << u"/Volumes/X"_s;
    QTest::newRow("two lines") << u"en"_s << QString(u"/Volumes/"_s + QString(200, u'M'));
}

void TestHelp::pointerIsAHandOverTheTextOnly()
{
    QFETCH(const QString, localization);
    QFETCH(const QString, path);
    const auto test = withMountedVolume(path, localization);
    const LinkTextView *const view = test->controller().infoMountedPathView;
    QWidget *const viewport = view->viewport();
    const auto isHandAt = [viewport](const QPoint &position) {
        QMouseEvent move(
            QEvent::MouseMove, position, viewport->mapToGlobal(position), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(viewport, &move);
        return viewport->cursor().shape() == Qt::PointingHandCursor;
    };
    QVERIFY(viewport->hasMouseTracking());
    const QPoint inside = pointAt(view, 5);
    const int last = static_cast<int>(view->textLength()) - 1;
    // In the line of the link, on its far side from the caption.
    const QPoint beside(localization == u"ar"_s ? 2 : viewport->width() - 2, inside.y());
    const bool isFullLine = last > 100;
    QVERIFY(isHandAt(inside));
    QVERIFY(isFullLine || !isHandAt(beside));
    QVERIFY(isHandAt(pointAt(view, 2)));
    QVERIFY(!isHandAt(QPoint(inside.x(), 10000)));
    QVERIFY(isHandAt(inside));
    test->select(u"disk2"_s);
    QCOMPARE(view->toPlainText(), QString());
    QVERIFY(viewport->cursor().shape() != Qt::PointingHandCursor);
    QVERIFY(!isHandAt(inside) && !isHandAt(QPoint(0, inside.y())));
}

void TestHelp::linkIsToldAsOne()
{
    const auto test = withMountedVolume();
    QAccessibleInterface *const told
        = QAccessible::queryAccessibleInterface(test->controller().infoMountedPathView);
    QCOMPARE(told->text(QAccessible::Name), u"Mount point"_s);
    QCOMPARE(told->text(QAccessible::Description), u"Link: opens the file manager"_s);
    test->select(u"disk2"_s);
    QCOMPARE(told->text(QAccessible::Description), QString());
}

void TestHelp::linkColorByGeneration_data()
{
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<bool>("isSystemColor");
    QTest::newRow("13") << QByteArray("13.4.0") << false;
    QTest::newRow("14") << QByteArray("14.0.0") << true;
    QTest::newRow("no number") << QByteArray("x.1") << false;
}

void TestHelp::linkColorByGeneration()
{
    QFETCH(QByteArray, release);
    QFETCH(bool, isSystemColor);
    const SystemReleaseOverride system(release);
    const auto test = withMountedVolume();
    const LinkTextView *const view = test->controller().infoMountedPathView;
    QPalette palette = view->palette();
    palette.setColor(QPalette::Link, Qt::darkGreen);
    view->parentWidget()->setPalette(palette);
    test->controller().infoMountedPathView->setPalette(palette);
    test->controller().makeHyperlink(test->controller().infoMountedPathView, u"/A"_s, {});
    QCOMPARE(formatAt(view, 1).foreground().color(), QColor(isSystemColor ? Qt::darkGreen : Qt::blue));
}

void TestHelp::linkColorFollowsTheTheme()
{
    const SystemReleaseOverride system("14.0.0");
    const auto test = withMountedVolume();
    const LinkTextView *const view = test->controller().infoMountedPathView;
    const auto restore = qScopeGuard([usual = QApplication::palette()] { QApplication::setPalette(usual); });
    for (const QColor &color : { QColor(Qt::darkGreen), QColor(Qt::yellow) }) {
        QPalette theme = QApplication::palette();
        theme.setColor(QPalette::Link, color);
        QApplication::setPalette(theme);
        QTRY_COMPARE(formatAt(view, 1).foreground().color(), color);
    }
}

void TestHelp::linkIsBlueWhenTheReleaseCannotBeHad()
{
    const auto test = withMountedVolume();
    test->log.clear();
    const SystemReleaseOverride system({}, EIO);
    test->controller().makeHyperlink(test->controller().infoMountedPathView, u"/A"_s, {});
    QCOMPARE(formatAt(test->controller().infoMountedPathView, 1).foreground().color(), QColor(Qt::blue));
    QCOMPARE(
        test->log.lines(), QStringList { u"Error while issuing 'utsname': %1 (5)"_s.arg(errnoText(EIO)) });
}

void TestHelp::linkLooksTheSameAfterAnotherDisk()
{
    const auto test = withMountedVolume();
    const LinkTextView *const view = test->controller().infoMountedPathView;
    test->select(u"disk2"_s);
    QCOMPARE(view->toPlainText(), QString());
    test->select(u"disk2s1"_s);
    QCOMPARE(view->textLength(), 12);
}

void TestHelp::clickInsideOpensTheVolume()
{
    const auto test = withMountedVolume();
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->workspace->folders, QStringList { u"/Volumes/X"_s });
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->workspace->folders.size(), 2);
}

void TestHelp::clickBeforeTheFirstCharacterDoesNothing()
{
    const auto test = withMountedVolume();
    QTest::mouseClick(test->controller().infoMountedPathView->viewport(), Qt::LeftButton, {}, QPoint(0, 2));
    QCOMPARE(test->controller().infoMountedPathView->selection().location, 0);
    QCOMPARE(test->workspace->folders, QStringList());
}

void TestHelp::clickBehindTheLastCharacterDoesNothing()
{
    const auto test = withMountedVolume();
    LinkTextView *const view = test->controller().infoMountedPathView;
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(view->viewport()->width() - 2, 2));
    QCOMPARE(view->selection().location, view->textLength());
    QCOMPARE(test->workspace->folders, QStringList());
}

void TestHelp::dragDoesNothing()
{
    const auto test = withMountedVolume();
    LinkTextView *const view = test->controller().infoMountedPathView;
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, pointAt(view, 2));
    QMouseEvent move(QEvent::MouseMove, pointAt(view, 8), view->viewport()->mapToGlobal(pointAt(view, 8)),
        Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(view->viewport(), &move);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, pointAt(view, 8));
    QCOMPARE(view->selection().length, 6);
    QCOMPARE(test->workspace->folders, QStringList());
}

void TestHelp::otherMouseButtonDoesNothing()
{
    const auto test = withMountedVolume();
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->workspace->folders.size(), 1);
    click(test->controller().infoMountedPathView, 5, Qt::MiddleButton);
    click(test->controller().infoMountedPathView, 5, Qt::BackButton);
    QCOMPARE(test->workspace->folders.size(), 1);
}

void TestHelp::clickWorksWhileThePanelIsRefreshed()
{
    const auto test = withMountedVolume();
    LinkTextView *const view = test->controller().infoMountedPathView;
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, pointAt(view, 5));
    test->controller().outlineViewSelectionDidChange();
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, pointAt(view, 5));
    QCOMPARE(test->workspace->folders, QStringList { u"/Volumes/X"_s });
}

void TestHelp::clickWithNothingSelectedDoesNothing()
{
    const auto test = withMountedVolume();
    test->controller().leftOutlineView->selectRow(-1);
    test->controller().makeHyperlink(test->controller().infoMountedPathView, u"/Volumes/X"_s, {});
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->workspace->folders, QStringList());
}

void TestHelp::returnKeyOpensTheVolume()
{
    const auto test = withMountedVolume();
    QTest::keyClick(test->controller().infoMountedPathView, Qt::Key_Return);
    QCOMPARE(test->workspace->folders, QStringList { u"/Volumes/X"_s });
}

void TestHelp::pathIsCopiedWithoutItsControls()
{
    const auto test = withMountedVolume(u"/Volumes/X\u00A0Y"_s);
    LinkTextView *const view = test->controller().infoMountedPathView;
    const QClipboard *const clipboard = QApplication::clipboard();
    test->window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&test->window()));
    view->setFocus();
    QTest::keyClick(test->window().windowHandle(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(view->selection().length, view->textLength());
    QTest::keyClick(test->window().windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard->text(), u"/Volumes/X\u00A0Y"_s);
    QTextCursor cursor = view->textCursor();
    cursor.setPosition(2);
    cursor.setPosition(9, QTextCursor::KeepAnchor);
    view->setTextCursor(cursor);
    view->copy();
    QCOMPARE(clipboard->text(), u"Volumes"_s);
    cursor.setPosition(0);
    cursor.setPosition(1, QTextCursor::KeepAnchor);
    view->setTextCursor(cursor);
    view->copy();
    QCOMPARE(clipboard->text(), QString());
}

void TestHelp::failingFileManagerIsTold()
{
    const auto test = withMountedVolume();
    test->workspace->succeeds = false;
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->log.lines(), QStringList { u"Unable to open \"/Volumes/X\" in Finder."_s });
    QCOMPARE(test->sheets().size(), 1);
    QCOMPARE(test->sheets().constFirst()->text(), u"The folder could not be opened"_s);
    QVERIFY(test->sheets().constFirst()->informativeText().contains(u"/Volumes/X"_s));
}

void TestHelp::hostilePathIsPlain()
{
    const QString path = u"/media/<b>X</b> & Y"_s;
    const auto test = withMountedVolume(path);
    const LinkTextView *const view = test->controller().infoMountedPathView;
    QCOMPARE(view->textLength(), path.size() + 2);
    // A tool tip guesses whether it is markup: this one must be, and show the path as it is.
    QVERIFY(Qt::mightBeRichText(view->toolTip()));
    QTextDocument shown;
    shown.setHtml(view->toolTip());
    QVERIFY(shown.toPlainText().contains(path));
}

void TestHelp::manualIsOpened()
{
    TestController test;
    test.launch();
    test.action(u"actionManual"_s)->trigger();
    QCOMPARE(test.workspace->documents,
        QStringList { u"/Library/Application Support/Zorvex NTFS/User Manual.pdf"_s });
    QVERIFY(test.sheets().isEmpty());
}

void TestHelp::missingManualIsAlertedOnce()
{
    TestController test;
    test.launch();
    test.workspace->succeeds = false;
    test.controller().clickHelpMenuItem(nullptr);
    QCOMPARE(test.log.lines(), QStringList());
    test.controller().clickHelpMenuItem(nullptr);
    QCOMPARE(test.workspace->documents.size(), 2);
    QCOMPARE(test.sheets().size(), 1);
    const AlertSheet *const sheet = test.sheets().constFirst();
    QCOMPARE(sheet->text(), localizedString("USER_MANUAL_NOT_FOUND_TITLE"));
    QCOMPARE(sheet->informativeText(), localizedString("USER_MANUAL_NOT_FOUND_TEXT"));
    QVERIFY(!sheet->text().isEmpty());
    QCOMPARE(sheet->icon(), QMessageBox::Warning);
}

void TestHelp::aboutPanelTellsTheVersion()
{
    QCoreApplication::setApplicationVersion(u"12.34.56"_s);
    TestController test;
    test.launch();
    test.action(u"actionAbout"_s)->trigger();
    QCOMPARE(aboutPanels(test).size(), 1);
    const QMessageBox *const panel = aboutPanels(test).constFirst();
    QCOMPARE(panel->windowTitle(), localizedString("WINDOW_TITLE"));
    QCOMPARE(panel->text(), localizedString("WINDOW_TITLE"));
    const QString text = panel->informativeText();
    QVERIFY2(text.contains(u"12.34.56"_s), qPrintable(text));
    QVERIFY2(!text.contains(u"%@"_s), qPrintable(text));
    QVERIFY2(text.contains(u"MIT"_s), qPrintable(text));
    // The address that the packages and software centres give.
    QFile metainfo(QStringLiteral(ZORVEX_METAINFO));
    QVERIFY(metainfo.open(QIODevice::ReadOnly));
    const QString home
        = QString::fromUtf8(metainfo.readAll()).section(u"homepage\">"_s, 1).section(u'<', 0, 0);
    QVERIFY(home.startsWith("https://"_L1));
    QVERIFY2(text.contains(home), qPrintable(text));
}

void TestHelp::aboutPanelBlocksNothing()
{
    const auto test = withMountedVolume();
    test->action(u"actionAbout"_s)->trigger();
    QMessageBox *const panel = aboutPanels(*test).constFirst();
    QVERIFY(!panel->isModal());
    QVERIFY(test->sheets().isEmpty());
    // Clicks reach the window.
    click(test->controller().infoMountedPathView, 5);
    QCOMPARE(test->workspace->folders, QStringList { u"/Volumes/X"_s });
    // Alerts come and go beside it.
    QVERIFY(!test->controller().alertInProgress);
    test->controller().errorMessage(u"Text"_s);
    QCOMPARE(test->sheets().size(), 1);
    QVERIFY(panel->isVisible());
    press(test->sheets().constFirst(), AlertSheet::firstButtonReturn);
    QTest::keyClick(panel, Qt::Key_Escape);
    QTRY_VERIFY(aboutPanels(*test).isEmpty());
    QCOMPARE(test->log.lines(), QStringList());
}

void TestHelp::aboutPanelThatIsOpenIsRaised()
{
    TestController test;
    test.launch();
    test.controller().clickAboutButton(nullptr);
    QMessageBox *const panel = aboutPanels(test).constFirst();
    QTRY_COMPARE(QApplication::activeWindow(), panel);
    test.window().activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), &test.window());
    test.controller().clickAboutButton(nullptr);
    QCOMPARE(aboutPanels(test), QList<QMessageBox *> { panel });
    QTRY_COMPARE(QApplication::activeWindow(), panel);
    // Closed, it is made again.
    panel->close();
    QTRY_VERIFY(aboutPanels(test).isEmpty());
    test.controller().clickAboutButton(nullptr);
    QCOMPARE(aboutPanels(test).size(), 1);
}

void TestHelp::aboutPanelClosesWithTheWindow()
{
    TestController test;
    test.launch();
    test.controller().clickAboutButton(nullptr);
    QCOMPARE(aboutPanels(test).size(), 1);
    QCloseEvent close;
    QCoreApplication::sendEvent(&test.window(), &close);
    QTRY_VERIFY(aboutPanels(test).isEmpty());
}

QTEST_MAIN(TestHelp)
#include "tst_help.moc"
