// SPDX-License-Identifier: MIT
//
// How the window comes up and goes.
#include "tests/support/TestController.h"
#include "ui/FlippedOutlineView.h"
#include "ui/ImageButton.h"
#include "ui/OutputView.h"

#include <QAction>
#include <QApplication>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensWithTheInfoTabAlone();
    void opensAt800By450Centred();
    void treePaneKeepsItsWidth();
    void arabicAloneIsMirrored_data();
    void arabicAloneIsMirrored();
    void threePanesAreNotSwapped();
    void outputIsDrawnAsControlText();
    void disksPresentAtLaunchAreExpandedAndNoneIsSelected();
    void sessionIsGivenBackOnce();
    void listsAreGivenBack();
    void withoutSessionTheTreeIsEmpty();
    void activationReadsTheBundlesEveryTime();
    void closingTheWindowQuits();
    void quitMenuItemQuits();
};

namespace {

// Counts the calls of its methods.
class CountingSession : public DASession
{
public:
    explicit CountingSession(QStringList &calls)
        : m_calls(calls)
    {
    }
    ~CountingSession() override { m_calls += u"release"_s; }
    void scheduleWithRunLoop() override { m_calls += u"schedule"_s; }
    void unscheduleFromRunLoop() override { m_calls += u"unschedule"_s; }
    void mount(const DADiskRef &, quint32, DADiskCompletion) override { }
    void unmount(const DADiskRef &, quint32, DADiskCompletion) override { }
    void eject(const DADiskRef &, quint32, DADiskCompletion) override { }
    void rename(const DADiskRef &, const QString &, quint32, DADiskCompletion) override { }

private:
    QStringList &m_calls;
};

// Runs the application until it quits by itself; false when it has to be stopped.
template <typename Action> bool quitsAfter(Action action)
{
    QTimer::singleShot(0, qApp, action);
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    watchdog.start(10000);
    return QApplication::exec() == 0;
}

} // namespace

void TestLifecycle::opensWithTheInfoTabAlone()
{
    TestController test;
    test.launch();
    QTabWidget *const tabs = test.controller().rightTabView;
    QCOMPARE(tabs->count(), 1);
    QCOMPARE(tabs->widget(0), test.controller().infoTab);
    QVERIFY(test.controller().formatTab && test.controller().maintenanceTab);
}

void TestLifecycle::opensAt800By450Centred()
{
    TestController test;
    test.launch();
    QCOMPARE(test.window().size(), QSize(800, 450));
    const QRect screen = test.window().screen()->availableGeometry();
    const QPoint distance = test.window().pos() + test.window().rect().center() - screen.center();
    QVERIFY2(distance.manhattanLength() <= 2, qPrintable(u"%1 %2"_s.arg(distance.x()).arg(distance.y())));
    test.window().resize(100, 100);
    QCOMPARE(test.window().size(), QSize(720, 420));
}

void TestLifecycle::treePaneKeepsItsWidth()
{
    for (const QString &localization : { u"en"_s, u"ar"_s }) {
        TestController test(localization);
        test.launch();
        QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
        QCOMPARE(test.controller().outlineViewContainer->width(), 240);
        QCOMPARE(test.controller().rightTabView->width(), 552);
    }
}

void TestLifecycle::arabicAloneIsMirrored_data()
{
    QTest::addColumn<bool>("hasList");
    QTest::addColumn<QStringList>("localizations");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("isMirrored");
    QTest::newRow("ar") << true << QStringList { u"ar"_s } << u"en_US"_s << true;
    QTest::newRow("ar_SA") << true << QStringList { u"ar_SA"_s, u"en"_s } << u"en_US"_s << true;
    QTest::newRow("ar-SA") << true << QStringList { u"ar-SA"_s } << u"ar_SA"_s << false;
    QTest::newRow("fr") << true << QStringList { u"fr"_s, u"ar"_s } << u"ar_SA"_s << false;
    QTest::newRow("arx") << true << QStringList { u"arx"_s } << u"ar"_s << false;
    QTest::newRow("he") << true << QStringList { u"he"_s } << u"he_IL"_s << false;
    QTest::newRow("no list, Arabic locale") << false << QStringList() << u"ar_EG"_s << true;
    QTest::newRow("no list, French locale") << false << QStringList() << u"fr_FR"_s << false;
    QTest::newRow("empty list, Arabic locale") << true << QStringList() << u"ar"_s << true;
}

void TestLifecycle::arabicAloneIsMirrored()
{
    QFETCH(bool, hasList);
    QFETCH(QStringList, localizations);
    QFETCH(QString, locale);
    QFETCH(bool, isMirrored);
    TestController test;
    test.platform().preferredLocalizations
        = hasList ? std::optional<QStringList>(localizations) : std::nullopt;
    test.platform().localeIdentifier = locale;
    test.launch();
    const auto &controller = test.controller();
    QCOMPARE(controller.isRightToLeftLocalization(), isMirrored);
    QCOMPARE(controller.mainSplitView->widget(0) == controller.rightTabView, isMirrored);
    QCOMPARE(controller.mainSplitView->widget(1) == controller.outlineViewContainer, isMirrored);
    const QPoint tree = controller.outlineViewContainer->mapTo(&test.window(), QPoint(0, 0));
    const QPoint tabs = controller.rightTabView->mapTo(&test.window(), QPoint(0, 0));
    QCOMPARE(tree.x() > tabs.x(), isMirrored);
    QCOMPARE(controller.mountUnmountButton->imagePosition() == ImageButton::ImagePosition::Right, isMirrored);
    QCOMPARE(controller.mountUnmountButton->textAlignment() == Qt::AlignRight, isMirrored);
    QCOMPARE(qobject_cast<FlippedOutlineView *>(controller.leftOutlineView) != nullptr, isMirrored);
}

void TestLifecycle::threePanesAreNotSwapped()
{
    TestController test(u"ar"_s);
    test.load();
    auto &controller = test.controller();
    auto *third = new QWidget(controller.mainSplitView);
    controller.mountUnmountButton->setTextAlignment(Qt::AlignCenter);
    controller.mountUnmountButton->setImagePosition(ImageButton::ImagePosition::Left);
    controller.awakeFromNib();
    QCOMPARE(test.log.lines(), QStringList { u"Unexpected subview count: 3"_s });
    QCOMPARE(controller.mainSplitView->widget(0), controller.rightTabView);
    QCOMPARE(controller.mainSplitView->widget(2), third);
    QCOMPARE(controller.mountUnmountButton->textAlignment(), Qt::AlignRight);
    QCOMPARE(controller.mountUnmountButton->imagePosition(), ImageButton::ImagePosition::Right);
}

void TestLifecycle::outputIsDrawnAsControlText()
{
    TestController test;
    test.launch();
    const auto restore = qScopeGuard([usual = QApplication::palette()] { QApplication::setPalette(usual); });
    for (const QColor &color : { QColor(Qt::darkBlue), QColor(Qt::yellow) }) {
        QPalette theme = QApplication::palette();
        theme.setColor(QPalette::WindowText, color);
        theme.setColor(QPalette::Disabled, QPalette::WindowText, Qt::gray);
        theme.setColor(QPalette::Text, Qt::red);
        theme.setColor(QPalette::Base, color.darker());
        QApplication::setPalette(theme);
        const QPalette &output = test.controller().checkRepairOutputView->palette();
        QTRY_COMPARE(output.color(QPalette::Active, QPalette::Text), color);
        QCOMPARE(output.color(QPalette::Inactive, QPalette::Text), color);
        QCOMPARE(output.color(QPalette::Disabled, QPalette::Text), QColor(Qt::gray));
        QTRY_COMPARE(output.color(QPalette::Active, QPalette::Base), color.darker());
    }
}

void TestLifecycle::disksPresentAtLaunchAreExpandedAndNoneIsSelected()
{
    TestController test;
    test.service.addDisk(makeDisk(u"disk2"_s));
    test.service.addDisk(makePartition(u"disk2s1"_s, 1024));
    test.service.addDisk(makeDisk(u"disk3"_s));
    test.service.addDisk(makePartition(u"disk3s1"_s, 1024));
    test.launch();
    QCOMPARE(test.rowNames(), (QStringList { u"disk2"_s, u"disk2s1"_s, u"disk3"_s, u"disk3s1"_s }));
    QCOMPARE(test.controller().leftOutlineView->selectedRow(), -1);
}

void TestLifecycle::sessionIsGivenBackOnce()
{
    QStringList calls;
    TestController test;
    test.platform().createSession = [&calls] { return std::make_unique<CountingSession>(calls); };
    test.launch();
    QCOMPARE(calls, QStringList { u"schedule"_s });
    test.controller().applicationWillTerminate();
    QCOMPARE(calls, (QStringList { u"schedule"_s, u"unschedule"_s, u"release"_s }));
    QVERIFY(!test.controller().session);
    test.controller().applicationWillTerminate();
    QCOMPARE(calls.size(), 3);
}

void TestLifecycle::listsAreGivenBack()
{
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.launch();
    auto &controller = test.controller();
    QCOMPARE(controller.allFilesystemBundlesList.value().size(), std::size_t { 1 });
    QCOMPARE(controller.repairFilesystemBundlesList.value().size(), std::size_t { 1 });
    controller.applicationWillTerminate();
    QVERIFY(!controller.allFilesystemBundlesList);
    QVERIFY(!controller.formatFilesystemBundlesList);
    QVERIFY(!controller.checkFilesystemBundlesList);
    QVERIFY(!controller.repairFilesystemBundlesList);
}

void TestLifecycle::withoutSessionTheTreeIsEmpty()
{
    TestController test;
    test.service.addDisk(makeDisk(u"disk2"_s));
    test.platform().createSession = [] { return nullptr; };
    test.launch();
    QCOMPARE(test.log.lines(), QStringList { u"Unable to create DASession."_s });
    QCOMPARE(test.rowNames(), QStringList());
    QVERIFY(test.window().isVisible());
    QVERIFY(test.sheets().isEmpty());
}

void TestLifecycle::activationReadsTheBundlesEveryTime()
{
    TestController test;
    test.launch();
    const auto activate = [&test] {
        QEvent event(QEvent::WindowActivate);
        QApplication::sendEvent(&test.window(), &event);
    };
    std::size_t expected = 0;
    for (const QString &name : { u"first"_s, u"second"_s }) {
        writeWholeBundle(test.localDirectory(), name, name);
        QCOMPARE(test.controller().allFilesystemBundlesList.value().size(), expected);
        activate();
        ++expected;
        QCOMPARE(test.controller().allFilesystemBundlesList.value().size(), expected);
    }
}

void TestLifecycle::closingTheWindowQuits()
{
    TestController test;
    test.launch();
    const QSignalSpy quits(qApp, &QCoreApplication::aboutToQuit);
    QVERIFY(quitsAfter([&test] { test.window().close(); }));
    QCOMPARE(quits.size(), 1);
    QVERIFY(!test.window().isVisible());
}

void TestLifecycle::quitMenuItemQuits()
{
    TestController test;
    test.launch();
    auto *const quit = test.action(u"actionQuit"_s);
    QVERIFY(quit);
    QVERIFY(quitsAfter([quit] { quit->trigger(); }));
}

// The application quits because the window says so, not because it was the last one.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    TestLifecycle test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lifecycle.moc"
