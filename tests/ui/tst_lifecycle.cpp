// SPDX-License-Identifier: MIT
//
// How the window comes up and goes.
#include "platform/udisks/UDisksSession.h"
#include "tests/support/FakeUDisks.h"
#include "tests/support/TestController.h"
#include "ui/AlertSheet.h"
#include "ui/FlippedOutlineView.h"
#include "ui/ImageButton.h"
#include "ui/OutlineView.h"
#include "ui/OutputView.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenuBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QSessionManager>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensWithTheInfoTabAlone();
    void contentIs800By450Centred_data();
    void contentIs800By450Centred();
    void treePaneKeepsItsWidth();
    void arabicAloneIsMirrored_data();
    void arabicAloneIsMirrored();
    void threePanesAreNotSwapped();
    void outputIsDrawnAsControlText();
    void disksPresentAtLaunchAreExpandedAndNoneIsSelected();
    void launchGoesInItsOrder();
    void peekComesBeforeAppeared();
    void sessionIsGivenBackOnce();
    void listsAreGivenBackInTheirOrder();
    void withoutSessionTheTreeIsEmpty();
    void serviceThatDoesNotStartIsLoggedAndTakenUpLater();
    void activationReadsTheBundlesEveryTime();
    void closingTheWindowEndsTheProgram();
    void quitMenuItemQuits();
    void closingAsksWhileSomethingIsWritten_data();
    void closingAsksWhileSomethingIsWritten();
    void severalAreToldAsSuch();
    void questionEndsWithWhatItIsAbout();
    void stopAndCloseStopsTheTool();
    void checkEndsWithTheWindow();
    void endOfTheSessionAsksWhileSomethingIsWritten();
    void endOfTheSessionWithoutAQuestion();
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
    void refresh() override { }
    void mount(const DADiskRef &, quint32, DADiskCompletion) override { }
    void mountAgain(const DADiskRef &, const QString &, const QStringList &, DADiskCompletion) override { }
    void unmount(const DADiskRef &, quint32, DADiskCompletion) override { }
    DADiskRef unlockedDisk(const DADiskRef &) const override { return nullptr; }
    void lock(const DADiskRef &, DADiskCompletion) override { }
    void eject(const DADiskRef &, quint32, DADiskCompletion) override { }
    void rename(const DADiskRef &, const QString &, quint32, DADiskCompletion) override { }

private:
    QStringList &m_calls;
};

using Note = std::function<void(const QString &call)>;

// Notes what it is asked in, and has a disk with a partition.
class NotingSession : public DASession
{
public:
    explicit NotingSession(Note note)
        : m_note(std::move(note))
    {
    }
    void registerDiskPeekCallback(DADiskPeekCallback callback, int order) override
    {
        m_note(order == 0 ? u"peek"_s : u"peek of another order"_s);
        DASession::registerDiskPeekCallback(std::move(callback), order);
    }
    void registerDiskAppearedCallback(DADiskAppearedCallback callback) override
    {
        m_note(u"appeared"_s);
        DASession::registerDiskAppearedCallback(std::move(callback));
    }
    void registerDiskDisappearedCallback(DADiskDisappearedCallback callback) override
    {
        m_note(u"disappeared"_s);
        DASession::registerDiskDisappearedCallback(std::move(callback));
    }
    void registerDiskDescriptionChangedCallback(DADiskDescriptionChangedCallback callback) override
    {
        m_note(u"changed"_s);
        DASession::registerDiskDescriptionChangedCallback(std::move(callback));
    }
    void scheduleWithRunLoop() override
    {
        m_note(u"schedule"_s);
        deliverAppeared(makeDisk(u"disk2"_s));
        deliverAppeared(makePartition(u"disk2s1"_s, 1024));
    }
    void unscheduleFromRunLoop() override { }
    void refresh() override { }
    void mount(const DADiskRef &, quint32, DADiskCompletion) override { }
    void mountAgain(const DADiskRef &, const QString &, const QStringList &, DADiskCompletion) override { }
    void unmount(const DADiskRef &, quint32, DADiskCompletion) override { }
    DADiskRef unlockedDisk(const DADiskRef &) const override { return nullptr; }
    void lock(const DADiskRef &, DADiskCompletion) override { }
    void eject(const DADiskRef &, quint32, DADiskCompletion) override { }
    void rename(const DADiskRef &, const QString &, quint32, DADiskCompletion) override { }

private:
    Note m_note;
};

// Notes what its views ask it and tell it.
class NotingController : public ZorvexDiskManagerAppDelegate
{
public:
    using ZorvexDiskManagerAppDelegate::ZorvexDiskManagerAppDelegate;
    std::vector<OutlineItem> outlineView_childrenOfItem(OutlineView *view, const OutlineItem &item) override
    {
        mainSplitView->moveDivider(240); // asks its delegate, where it has one
        note(u"data source"_s);
        return ZorvexDiskManagerAppDelegate::outlineView_childrenOfItem(view, item);
    }
    void outlineViewSelectionDidChange() override
    {
        mainSplitView->moveDivider(240);
        if (leftOutlineView->selectedRow() < 0) {
            note(u"selection"_s);
            leftOutlineView->collapse(leftOutlineView->model()->index(0, 0)); // something to expand
        }
        ZorvexDiskManagerAppDelegate::outlineViewSelectionDidChange();
    }
    int splitView_constrainMinCoordinate_ofSubviewAt(SplitView *view, int proposed, int index) override
    {
        note(u"split view"_s);
        return ZorvexDiskManagerAppDelegate::splitView_constrainMinCoordinate_ofSubviewAt(
            view, proposed, index);
    }
    Note note;
};

// A volume, and a tool that works on it until it is let go on, or stopped.
class WrittenVolume : public TestController
{
public:
    WrittenVolume()
    {
        writeWholeBundle(localDirectory(), u"msdos"_s, u"FAT"_s);
        setDiskutilScript("trap 'echo stopped >\"$dir/end\"; exit 19' TERM\n"
                          "echo begun >\"$dir/begin\"\nread go <&3\necho whole >\"$dir/end\"\n");
        launch();
        disk->description->insert(DAKey::volumeKind, u"msdos"_s);
        add(disk);
        select(u"disk2s1"_s);
    }
    void repair() { controller().repairButton->click(); }
    void format()
    {
        controller().formatFilesystemsPopupButton->setCurrentText(u"FAT"_s);
        controller().formatButton->click();
        sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    }

    MemoryDiskRef disk = makePartition(u"disk2s1"_s, 1024, u"DATA"_s);
};

// Runs the application until it quits by itself with status 0; false when it has to be stopped.
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

void TestLifecycle::contentIs800By450Centred_data()
{
    QTest::addColumn<bool>("hasMenusInTheWindow");
    QTest::newRow("menus in the window") << true;
    QTest::newRow("menus elsewhere") << false;
}

void TestLifecycle::contentIs800By450Centred()
{
    QFETCH(const bool, hasMenusInTheWindow);
    TestController test;
    test.load();
    if (!hasMenusInTheWindow) {
        // As where the desktop shows them in a bar of its own.
        test.window().menuBar()->hide();
        test.controller().awakeFromNib();
    }
    test.launch();
    const QWidget *const content = test.window().centralWidget();
    QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
    QCOMPARE(content->size(), QSize(800, 450));
    QCOMPARE(test.window().height() > 450, hasMenusInTheWindow);
    const QRect screen = test.window().screen()->availableGeometry();
    const QPoint distance = test.window().pos() + test.window().rect().center() - screen.center();
    QVERIFY2(distance.manhattanLength() <= 2, qPrintable(u"%1 %2"_s.arg(distance.x()).arg(distance.y())));
    test.window().resize(100, 100);
    QTRY_COMPARE(content->size(), QSize(720, 420));
}

void TestLifecycle::treePaneKeepsItsWidth()
{
    for (const QString &localization : { u"en"_s, u"ar"_s }) {
        TestController test(localization);
        test.launch();
        QVERIFY(QTest::qWaitForWindowExposed(&test.window()));
        QCOMPARE(test.controller().outlineViewContainer->width(), 232);
        QCOMPARE(test.controller().rightTabView->width(), 560);
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

void TestLifecycle::launchGoesInItsOrder()
{
    QStringList calls;
    const auto note = [&calls](const QString &call) {
        if (!calls.contains(call))
            calls += call;
    };
    TestController test;
    writeWholeBundle(test.localDirectory(), u"msdos"_s, u"FAT"_s);
    test.platform().catalogueMemory.allocRecord = [note] {
        note(u"scan"_s);
        return ZorvexDiskManagerFSBundle::alloc();
    };
    test.platform().createSession = [note] {
        note(u"session"_s);
        return std::make_unique<NotingSession>(note);
    };
    test.makeController = [note](const ApplicationPlatform &platform) {
        auto controller = std::make_unique<NotingController>(platform);
        controller->note = note;
        return controller;
    };
    test.load();
    const auto &controller = static_cast<NotingController &>(test.controller());
    // Something to deselect.
    connect(controller.leftOutlineView->model(), &QAbstractItemModel::dataChanged, &test.window(),
        [&controller] { controller.leftOutlineView->selectRow(0); });
    connect(controller.leftOutlineView, &QTreeView::expanded, &test.window(), [&] {
        if (calls.contains(u"selection"_s)) {
            controller.mainSplitView->moveDivider(240);
            note(u"expand"_s);
        }
    });
    test.launch();
    QCOMPARE(calls,
        (QStringList { u"scan"_s, u"session"_s, u"peek"_s, u"appeared"_s, u"disappeared"_s, u"changed"_s,
            u"schedule"_s, u"data source"_s, u"selection"_s, u"split view"_s, u"expand"_s }));
    QCOMPARE(controller.leftOutlineView->selectedRow(), -1);
}

void TestLifecycle::peekComesBeforeAppeared()
{
    MemoryDiskService service;
    const std::unique_ptr<DASession> session = service.createSession();
    QStringList calls;
    session->registerDiskPeekCallback([&calls](const DADiskRef &) { calls += u"peek"_s; }, 0);
    session->registerDiskAppearedCallback([&calls](const DADiskRef &) { calls += u"appeared"_s; });
    service.addDisk(makeDisk(u"disk2"_s));
    session->scheduleWithRunLoop();
    service.addDisk(makeDisk(u"disk3"_s));
    QCOMPARE(calls, (QStringList { u"peek"_s, u"appeared"_s, u"peek"_s, u"appeared"_s }));
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

void TestLifecycle::listsAreGivenBackInTheirOrder()
{
    QStringList calls;
    TestController test;
    test.platform().createSession = [&calls] { return std::make_unique<CountingSession>(calls); };
    test.launch();
    auto &controller = test.controller();
    // A record that notes when its list goes.
    const auto listThatNotes = [&calls](const QString &name) {
        return FilesystemBundleList { FilesystemBundleRef(
            new ZorvexDiskManagerFSBundle, [&calls, name](const ZorvexDiskManagerFSBundle *record) {
                calls += name;
                delete record;
            }) };
    };
    controller.allFilesystemBundlesList = listThatNotes(u"all"_s);
    controller.formatFilesystemBundlesList = listThatNotes(u"format"_s);
    controller.checkFilesystemBundlesList = listThatNotes(u"check"_s);
    controller.repairFilesystemBundlesList = listThatNotes(u"repair"_s);
    controller.applicationWillTerminate();
    QCOMPARE(calls,
        (QStringList {
            u"schedule"_s, u"unschedule"_s, u"release"_s, u"repair"_s, u"check"_s, u"format"_s, u"all"_s }));
    QVERIFY(!controller.allFilesystemBundlesList && !controller.formatFilesystemBundlesList);
    QVERIFY(!controller.checkFilesystemBundlesList && !controller.repairFilesystemBundlesList);
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

void TestLifecycle::serviceThatDoesNotStartIsLoggedAndTakenUpLater()
{
    FakeUDisks fake;
    fake.addInterfaces(FakeUDisks::blockPath(u"fake2"_s), fakeWholeDisk(u"fake2"_s), FakeUDisks::Tell::No);
    TestController test;
    test.platform().createSession
        = [&fake] { return createUDisksSession(noClaims, fake.client(), FakeUDisks::facts); };
    test.launch();
    const QString line = u"Unable to create DASession."_s;
    QVERIFY(test.controller().session);
    QTRY_VERIFY(test.log.lines().contains(line));
    QCOMPARE(test.rowNames(), QStringList());
    QVERIFY(test.sheets().isEmpty());
    fake.start();
    QTRY_COMPARE(test.rowNames(), QStringList { u"disk2"_s });
    // It was there once: it has not failed to start when it goes.
    fake.stop();
    QTRY_COMPARE(test.rowNames(), QStringList());
    fake.start();
    QTRY_COMPARE(test.rowNames(), QStringList { u"disk2"_s });
    QCOMPARE(test.log.lines().count(line), 1);
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

void TestLifecycle::closingTheWindowEndsTheProgram()
{
    QStringList calls;
    TestController test;
    test.platform().createSession = [&calls] { return std::make_unique<CountingSession>(calls); };
    test.launch();
    QVERIFY(quitsAfter([&test] { test.window().close(); }));
    QVERIFY(!test.window().isVisible());
    QCOMPARE(calls, (QStringList { u"schedule"_s, u"unschedule"_s, u"release"_s }));
}

void TestLifecycle::quitMenuItemQuits()
{
    TestController test;
    test.launch();
    auto *const quit = test.action(u"actionQuit"_s);
    QVERIFY(quit);
    QVERIFY(quitsAfter([quit] { quit->trigger(); }));
}

void TestLifecycle::closingAsksWhileSomethingIsWritten_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("isRepair");
    for (const QString &way : { u"close"_s, u"menu"_s, u"quit"_s }) {
        for (const bool isRepair : { true, false })
            QTest::addRow("%s, %s", qPrintable(way), isRepair ? "repair" : "format") << way << isRepair;
    }
}

void TestLifecycle::closingAsksWhileSomethingIsWritten()
{
    QFETCH(const QString, way);
    QFETCH(const bool, isRepair);
    WrittenVolume test;
    isRepair ? test.repair() : test.format();
    const auto leave = [&] {
        if (way == u"close"_s)
            test.window().close();
        else
            test.action(way == u"menu"_s ? u"actionClose"_s : u"actionQuit"_s)->trigger();
    };
    bool isAsked = false;
    const auto wait = [&] {
        leave();
        leave(); // asked once
        isAsked = test.sheets().size() == 1;
        QCOMPARE(test.sheets().constFirst()->text(),
            isRepair ? u"“DATA” is being repaired"_s : u"“DATA” is being formatted"_s);
        QTest::keyClick(test.sheets().constFirst(), Qt::Key_Return); // the default is to wait
        QVERIFY(test.sheets().isEmpty() && test.window().isVisible());
        leave();
        QTest::keyClick(test.sheets().constFirst(), Qt::Key_Escape);
        QVERIFY(test.sheets().isEmpty() && test.window().isVisible());
        test.letScriptsGoOn();
    };
    connect(
        &test.controller(), &ZorvexDiskManagerAppDelegate::panelDidChange, &test.window(),
        [&, record = test.recordOf(u"disk2s1"_s)] {
            if (isAsked && !record->operationInProgress)
                leave(); // nothing is written any more
        },
        Qt::QueuedConnection);
    QVERIFY(quitsAfter(wait));
    QVERIFY(isAsked && !test.window().isVisible());
    QCOMPARE(test.fileFromScript(u"end"_s), "whole\n"_ba);
}

void TestLifecycle::severalAreToldAsSuch()
{
    WrittenVolume test;
    test.repair();
    const MemoryDiskRef other = makePartition(u"disk2s2"_s, 2048, u"OTHER"_s);
    other->description->insert(DAKey::volumeKind, u"msdos"_s);
    test.add(other);
    test.select(u"disk2s2"_s);
    test.controller().repairButton->click();
    test.window().close();
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"Several disks are being repaired or formatted"_s);
    test.letScriptsGoOn(2);
    QTRY_VERIFY(test.sheets().isEmpty());
}

void TestLifecycle::questionEndsWithWhatItIsAbout()
{
    WrittenVolume test;
    test.repair();
    test.service.removeDisk(test.disk); // without a row, it is still written
    test.window().close();
    QCOMPARE(test.sheets().size(), 1);
    test.letScriptsGoOn();
    QTRY_VERIFY(test.sheets().isEmpty());
    QVERIFY(test.window().isVisible());
}

void TestLifecycle::stopAndCloseStopsTheTool()
{
    WrittenVolume test;
    test.repair();
    QTRY_COMPARE(test.fileFromScript(u"begin"_s), "begun\n"_ba);
    QVERIFY(quitsAfter([&] {
        test.window().close();
        test.sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    }));
    QVERIFY(!test.window().isVisible());
    QTRY_COMPARE(test.fileFromScript(u"end"_s), "stopped\n"_ba);
}

void TestLifecycle::checkEndsWithTheWindow()
{
    WrittenVolume test;
    test.controller().checkButton->click();
    QVERIFY(test.recordOf(u"disk2s1"_s)->operationInProgress);
    QVERIFY(quitsAfter([&test] { test.window().close(); }));
    QVERIFY(test.sheets().isEmpty());
}

// A desktop that ends the session, and what it was told.
struct EndingSession
{
    SessionEnd end()
    {
        return { [this] {
                    calls.append(u"ask"_s);
                    return allowsInteraction;
                },
            [this] { calls.append(u"cancel"_s); }, [this] { calls.append(u"release"_s); } };
    }
    bool allowsInteraction = true;
    QStringList calls;
};

void TestLifecycle::endOfTheSessionAsksWhileSomethingIsWritten()
{
    WrittenVolume test;
    test.repair();
    EndingSession session;
    test.controller().closeQuestion.sessionWillEnd(session.end());
    QCOMPARE(session.calls, QStringList({ u"ask"_s, u"cancel"_s, u"release"_s }));
    QCOMPARE(test.sheets().size(), 1);
    QCOMPARE(test.sheets().constFirst()->text(), u"“DATA” is being repaired"_s);
    // The user has chosen to stop: the session may end.
    QTRY_COMPARE(test.fileFromScript(u"begin"_s), "begun\n"_ba);
    test.sheets().constFirst()->buttonForReturn(AlertSheet::firstButtonReturn)->click();
    session.calls.clear();
    test.controller().closeQuestion.sessionWillEnd(session.end());
    QVERIFY(!session.calls.contains(u"cancel"_s));
    QTRY_COMPARE(test.fileFromScript(u"end"_s), "stopped\n"_ba);
}

void TestLifecycle::endOfTheSessionWithoutAQuestion()
{
    WrittenVolume test;
    EndingSession session;
    test.controller().closeQuestion.sessionWillEnd(session.end());
    QVERIFY(session.calls.isEmpty()); // nobody else has to wait for their turn
    test.repair();
    session.allowsInteraction = false;
    test.controller().closeQuestion.sessionWillEnd(session.end());
    QCOMPARE(session.calls, QStringList { u"ask"_s });
    // What Qt has on a platform without sessions allows no interaction either.
    auto *const manager = qApp->findChild<QSessionManager *>();
    QVERIFY(manager);
    Q_EMIT qApp->commitDataRequest(*manager);
    QVERIFY(test.sheets().isEmpty());
    test.letScriptsGoOn();
    QTRY_COMPARE(test.fileFromScript(u"end"_s), "whole\n"_ba);
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
